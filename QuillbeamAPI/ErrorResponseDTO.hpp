#pragma once

#include "platform/Export.hpp"
#include "platform/coding/RawValues.hpp"
#include "platform/coding/Record.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace QuillbeamAPI::inline v1::Components::Schemas {

/// The body of every documented response with a status from 400 upward.
struct QUILLBEAM_EXPORT ErrorResponseDTO {
    /// A cause that an application may want to tell apart.
    enum class codePayload { LINK_LIMIT_REACHED, CUSTOM_DOMAIN_LIMIT_REACHED, DOMAIN_SETTINGS_NOT_AVAILABLE };

    std::optional<codePayload> code{};
    std::string errorDescription{}; ///< for people

    ErrorResponseDTO() = default;

    ErrorResponseDTO(std::optional<codePayload> code_, std::string errorDescription_)
        : code(code_)
        , errorDescription(std::move(errorDescription_)) {}

    friend bool operator==(const ErrorResponseDTO&, const ErrorResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::ErrorResponseDTO::codePayload> {
    static constexpr std::string_view values[] = {
        "LINK_LIMIT_REACHED", "CUSTOM_DOMAIN_LIMIT_REACHED", "DOMAIN_SETTINGS_NOT_AVAILABLE"
    };
};
