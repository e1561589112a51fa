#pragma once

#include "platform/Export.hpp"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace HTTPTypes::inline v1 {

/// The value of a header field as the sequence of bytes that goes on the wire.
///
/// HTTP gives bytes of 0x80 and above no meaning of their own (RFC 9110, section 5.5), so they are kept as they came.
/// Text is stored as its UTF-8 bytes and read back as UTF-8; bytes that are no UTF-8 stay readable through `bytes()`.
class QUILLBEAM_EXPORT ISOLatin1String {
public:
    ISOLatin1String() = default;

    /// Takes over the UTF-8 bytes of `text`.
    explicit ISOLatin1String(std::string&& text) noexcept
        : bytes_(std::move(text)) {}

    /// Copies the UTF-8 bytes of `text`.
    explicit ISOLatin1String(std::string_view text)
        : bytes_(text) {}

    /// Copies `bytes`.
    explicit ISOLatin1String(std::span<const std::uint8_t> bytes)
        : bytes_(bytes.begin(), bytes.end()) {}

    /// The bytes read as UTF-8; each maximal malformed subpart reads as U+FFFD.
    [[nodiscard]] std::string string() const;

    /// The bytes, valid until this object is changed or destroyed.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept {
        return {reinterpret_cast<const std::uint8_t*>(bytes_.data()), bytes_.size()};
    }

    /// The bytes in the shape of a text view, whatever they are; valid until this object is changed or destroyed.
    [[nodiscard]] std::string_view view() const noexcept { return bytes_; }

    /// The bytes read as ISO 8859-1, one character for each: the text that stands for them in coded form.
    [[nodiscard]] std::string latin1Text() const;

    /// The bytes for which `text` (UTF-8) stands in coded form: one for each character up to U+00FF. Those above, which
    /// `latin1Text` never holds, stand for the bytes of their UTF-8 form.
    [[nodiscard]] static ISOLatin1String fromLatin1Text(std::string text);

    friend bool operator==(const ISOLatin1String&, const ISOLatin1String&) = default;

private:
    std::string bytes_{};
};

} // namespace HTTPTypes::inline v1

template <>
struct std::hash<HTTPTypes::ISOLatin1String> {
    std::size_t operator()(const HTTPTypes::ISOLatin1String& string) const noexcept {
        return std::hash<std::string_view>()(string.view());
    }
};
