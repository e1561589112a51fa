#include "http_types/ISOLatin1String.hpp"

#include "platform/text/Latin1.hpp"
#include "platform/text/UTF8.hpp"

namespace HTTPTypes::inline v1 {

std::string ISOLatin1String::string() const {
    return platform::isASCII(bytes_) ? bytes_ : platform::repairedUTF8(bytes_);
}

std::string ISOLatin1String::latin1Text() const {
    return platform::textFromLatin1(bytes_);
}

ISOLatin1String ISOLatin1String::fromLatin1Text(std::string text) {
    if (platform::isASCII(text)) return ISOLatin1String(std::move(text));
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (const auto byte = platform::latin1ByteAt(text, i)) {
            bytes += *byte;
            ++i;
        } else {
            bytes += text[i];
        }
    }
    return ISOLatin1String(std::move(bytes));
}

} // namespace HTTPTypes::inline v1
