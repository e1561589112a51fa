#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace platform::inline v1 {

/// One step of the way to a value: the key of a member, or the position of an element.
///
/// Thread safety: distinct objects: safe.
class CodingKey {
public:
    /// The key of a member.
    explicit CodingKey(std::string stringValue)
        : stringValue_(std::move(stringValue)) {}

    /// The position of an element, counted from 0; its text is the decimal number.
    explicit CodingKey(std::int64_t intValue)
        : stringValue_(std::to_string(intValue))
        , intValue_(intValue) {}

    [[nodiscard]] const std::string& stringValue() const noexcept { return stringValue_; }

    /// The position; none for the key of a member.
    [[nodiscard]] std::optional<std::int64_t> intValue() const noexcept { return intValue_; }

    bool operator==(const CodingKey&) const = default;

private:
    std::string stringValue_;
    std::optional<std::int64_t> intValue_{};
};

} // namespace platform::inline v1
