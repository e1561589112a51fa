#include "http_types/ISOLatin1String.hpp"

#include "platform/text/UTF8.hpp"

namespace HTTPTypes::inline v1 {

std::string ISOLatin1String::string() const {
    return platform::isASCII(bytes_) ? bytes_ : platform::repairedUTF8(bytes_);
}

std::string ISOLatin1String::latin1Text() const {
    std::string text;
    text.reserve(bytes_.size());
    for (const char c : bytes_) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0U | byte >> 6U);
            text += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return text;
}

ISOLatin1String ISOLatin1String::fromLatin1Text(std::string text) {
    if (platform::isASCII(text)) return ISOLatin1String(std::move(text));
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        // U+0080 to U+00FF are the two-byte sequences led by C2 and C3.
        if ((lead == 0xC2 || lead == 0xC3) && i + 1 < text.size()) {
            bytes += static_cast<char>((lead & 0x03U) << 6U | (static_cast<unsigned char>(text[++i]) & 0x3FU));
        } else {
            bytes += text[i];
        }
    }
    return ISOLatin1String(std::move(bytes));
}

} // namespace HTTPTypes::inline v1
