#include "platform/DiagnosticText.hpp"

#include "platform/date/DateFormat.hpp"
#include "platform/text/Numbers.hpp"

#include <chrono>

namespace platform::inline v1::detail {

void appendQuoted(std::string& out, std::string_view text) {
    static constexpr std::string_view digits = "0123456789abcdef";
    out += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
        case '\\':
            out += '\\';
            out += c;
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (byte < 0x20 || byte == 0x7F) {
                out += "\\x";
                out += digits[byte >> 4U];
                out += digits[byte & 0xFU];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

void appendNumber(std::string& out, double value) {
    out += shortestText(value);
}

void appendMoment(std::string& out, long long microseconds) {
    out +=
        formatDate(Date(std::chrono::microseconds(microseconds)), ISO8601Format::internetDateTimeWithFractionalSeconds);
}

} // namespace platform::inline v1::detail
