#pragma once

#include "platform/loading/HTTPURLResponse.hpp"

#include <cstdint>
#include <optional>
#include <string_view>

namespace platform::inline v1::detail {

/// Collects the final head of a response from its lines: each status line begins a new head, interim (1xx) heads are
/// forgotten, and lines after the head (trailers) are left out.
class ResponseHead {
public:
    enum class Progress {
        more,     ///< the head goes on
        complete, ///< this line ended the final head
        trailer,  ///< a line after the head
        invalid   ///< this is no sound head; `defect()` says why
    };

    void reset() noexcept;

    /// Takes the next line, with or without its line break.
    Progress consume(std::string_view line);

    [[nodiscard]] bool isComplete() const noexcept { return complete_; }

    [[nodiscard]] int statusCode() const noexcept { return statusCode_; }

    /// True where the status line says HTTP/2.
    [[nodiscard]] bool isHTTP2() const noexcept { return http2_; }

    [[nodiscard]] const HTTPURLResponse::HeaderFields& fields() const noexcept { return fields_; }

    /// Hands the fields over; they are empty afterwards.
    [[nodiscard]] HTTPURLResponse::HeaderFields takeFields() noexcept;

    /// The first field of this name, in whatever case.
    [[nodiscard]] std::optional<std::string_view> field(std::string_view name) const noexcept;

    /// The value of Content-Length; absent where there is none, or a Transfer-Encoding overrides it (RFC 9112
    /// section 6.3).
    [[nodiscard]] std::optional<std::int64_t> contentLength() const noexcept;

    [[nodiscard]] std::string_view defect() const noexcept { return defect_; }

private:
    Progress refuse(std::string_view defect) noexcept;
    Progress statusLine(std::string_view line);

    HTTPURLResponse::HeaderFields fields_;
    std::string_view defect_;
    std::optional<std::int64_t> contentLength_;
    int statusCode_ = 0;
    bool http2_ = false;
    bool chunked_ = false;
    bool complete_ = false;
};

} // namespace platform::inline v1::detail
