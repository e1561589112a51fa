#pragma once

#include "OpenAPIRuntime/Conversion/AcceptHeaderContentType.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Record.hpp"

#include <array>
#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QuillbeamAPI::inline v1 {

/// A content type that an operation accepts in its response: JSON, the one that the service documents, or any other
/// text.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
class QUILLBEAM_EXPORT AcceptableContentType {
public:
    /// The case `json`.
    AcceptableContentType() = default;

    /// `json` where `rawValue` is "application/json" in any casing, else `other` with the text unchanged.
    explicit AcceptableContentType(std::string_view rawValue);

    /// The form of construction that `AcceptHeaderContentType` asks for; it always gives a value.
    [[nodiscard]] static std::optional<AcceptableContentType> fromRawValue(std::string_view rawValue) {
        return AcceptableContentType(rawValue);
    }

    [[nodiscard]] static AcceptableContentType json() { return {}; }

    [[nodiscard]] static AcceptableContentType other(std::string_view text) { return AcceptableContentType(text); }

    [[nodiscard]] bool isJSON() const noexcept { return !other_; }

    /// The content type as it goes into the Accept header.
    [[nodiscard]] std::string rawValue() const;

    /// The documented content types; `other` is not listed.
    [[nodiscard]] static std::vector<AcceptableContentType> allCases() { return {json()}; }

    friend bool operator==(const AcceptableContentType&, const AcceptableContentType&) = default;

private:
    std::optional<std::string> other_{};
};

/// The header parameters of an operation that has none of its own: the content types it accepts, in order of
/// preference.
struct QUILLBEAM_EXPORT AcceptHeaders {
    using AcceptList = std::vector<OpenAPIRuntime::AcceptHeaderContentType<AcceptableContentType>>;

    /// Every documented content type at quality 1.0 unless said otherwise.
    AcceptList accept = OpenAPIRuntime::AcceptHeaderContentType<AcceptableContentType>::defaultValues();

    AcceptHeaders() = default;

    explicit AcceptHeaders(AcceptList accept_)
        : accept(std::move(accept_)) {}

    friend bool operator==(const AcceptHeaders&, const AcceptHeaders&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1

template <>
struct std::hash<QuillbeamAPI::AcceptableContentType> {
    std::size_t operator()(const QuillbeamAPI::AcceptableContentType& type) const {
        return std::hash<std::string>()(type.rawValue());
    }
};
