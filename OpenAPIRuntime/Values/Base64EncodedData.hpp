#pragma once

#include "platform/Export.hpp"
#include "platform/Ranges.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// Bytes that are coded as base64 text (RFC 4648, section 4): padded, in one line. On decoding, characters that are not
/// of the alphabet, such as line breaks, are skipped.
///
/// Thread safety: distinct objects: safe.
struct Base64EncodedData {
    platform::ByteChunk data{};

    Base64EncodedData() = default;

    explicit Base64EncodedData(platform::ByteChunk data_) noexcept
        : data(std::move(data_)) {}

    Base64EncodedData(std::initializer_list<std::uint8_t> bytes)
        : data(std::vector<std::uint8_t>(bytes)) {}

    /// Copies the bytes of a sequence.
    template <platform::InputRange Bytes>
        requires std::same_as<platform::RangeValue<Bytes>, std::uint8_t>
    explicit Base64EncodedData(Bytes&& bytes)
        : data([&bytes] {
            std::vector<std::uint8_t> copy;
            if constexpr (requires { std::ranges::size(bytes); }) copy.reserve(std::ranges::size(bytes));
            for (const std::uint8_t byte : bytes)
                copy.push_back(byte);
            return platform::ByteChunk(std::move(copy));
        }()) {}

    /// The base64 text, for diagnosis.
    [[nodiscard]] QUILLBEAM_EXPORT std::string description() const;

    friend bool operator==(const Base64EncodedData&, const Base64EncodedData&) = default;
};

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::Base64EncodedData> {
    [[nodiscard]] std::size_t operator()(const OpenAPIRuntime::Base64EncodedData& value) const noexcept {
        return std::hash<platform::ByteChunk>()(value.data);
    }
};

template <>
struct platform::Coding<OpenAPIRuntime::Base64EncodedData> {
    static constexpr std::string_view typeName = "Base64EncodedData";
    static constexpr CodedShape shape = CodedShape::single;

    /// @throws OpenAPIRuntime::RuntimeError of the case `invalidBase64String` for a text that is none
    QUILLBEAM_EXPORT static void decode(Decoder& decoder, OpenAPIRuntime::Base64EncodedData& out);
    QUILLBEAM_EXPORT static void encode(Encoder& encoder, const OpenAPIRuntime::Base64EncodedData& value);
};
