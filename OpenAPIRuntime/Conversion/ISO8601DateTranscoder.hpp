#pragma once

#include "OpenAPIRuntime/Conversion/DateTranscoder.hpp"
#include "platform/Export.hpp"
#include "platform/date/Date.hpp"
#include "platform/date/DateFormat.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// Dates in the internet profile of ISO 8601 (RFC 3339), in one of two exact forms: 2024-01-02T03:04:05Z, or with
/// milliseconds 2024-01-02T03:04:05.678Z. A text in the other form is refused.
///
/// Formatting and parsing keep no state, so there is nothing to lock and copies need share nothing.
///
/// Thread safety: safe to share.
class QUILLBEAM_EXPORT ISO8601DateTranscoder final : public DateTranscoder {
public:
    /// @param options the form; internet date-time unless said otherwise
    explicit ISO8601DateTranscoder(platform::ISO8601Format options = platform::ISO8601Format::internetDateTime) noexcept
        : options_(options) {}

    /// A transcoder for 2024-01-02T03:04:05Z.
    [[nodiscard]] static std::shared_ptr<const DateTranscoder> iso8601();

    /// A transcoder for 2024-01-02T03:04:05.678Z.
    [[nodiscard]] static std::shared_ptr<const DateTranscoder> iso8601WithFractionalSeconds();

    /// Never fails.
    [[nodiscard]] std::string encode(platform::Date date) const override;

    /// @throws platform::DecodingError (dataCorrupted, with an empty coding path) for a text that is no date in this
    /// form
    [[nodiscard]] platform::Date decode(std::string_view text) const override;

private:
    platform::ISO8601Format options_;
};

} // namespace OpenAPIRuntime::inline v1
