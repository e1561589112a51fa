#pragma once

#include "platform/Export.hpp"
#include "platform/url/URL.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// The head of what a URL answered, whatever the protocol. Immutable once made; shared between tasks and their users as
/// `std::shared_ptr<const URLResponse>`.
class QUILLBEAM_EXPORT URLResponse {
public:
    /// The value of `expectedContentLength()` when the length is not known.
    static constexpr std::int64_t unknownLength = -1;

    /// @param url where the response came from, after redirects
    /// @param expectedContentLength bytes of the body, or `unknownLength`
    explicit URLResponse(URL url, std::int64_t expectedContentLength = unknownLength);

    virtual ~URLResponse();

    URLResponse(const URLResponse&) = delete;
    URLResponse& operator=(const URLResponse&) = delete;

    [[nodiscard]] const URL& url() const noexcept { return url_; }

    /// The bytes of the body as it will be delivered; `unknownLength` where the server did not say, or said it of a
    /// compressed body that is delivered decoded.
    [[nodiscard]] std::int64_t expectedContentLength() const noexcept { return expectedContentLength_; }

    /// The name of the most derived type, for diagnostics.
    [[nodiscard]] virtual std::string_view typeName() const noexcept;

private:
    URL url_;
    std::int64_t expectedContentLength_;
};

} // namespace platform::inline v1
