#include "platform/text/Latin1.hpp"

#include "platform/text/UTF8.hpp"

namespace platform::inline v1 {

std::string textFromLatin1(std::string_view bytes) {
    if (isASCII(bytes)) return std::string(bytes);
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text += byte;
        } else {
            text += static_cast<char>(0xC0U | code >> 6U);
            text += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return text;
}

} // namespace platform::inline v1
