#pragma once

#include "platform/Export.hpp"
#include "platform/loading/URLResponse.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform::inline v1 {

/// The head of an HTTP response: the final one, after redirects and interim (1xx) responses; trailers are not part.
class QUILLBEAM_EXPORT HTTPURLResponse final : public URLResponse {
public:
    /// Name and value of each field in the order received, duplicates kept. Bytes from the wire are read as ISO
    /// Latin 1, so that every value is text (in UTF-8) and none is lost.
    using HeaderFields = std::vector<std::pair<std::string, std::string>>;

    HTTPURLResponse(
        URL url, int statusCode, HeaderFields allHeaderFields, std::int64_t expectedContentLength = unknownLength
    );

    [[nodiscard]] int statusCode() const noexcept { return statusCode_; }

    [[nodiscard]] const HeaderFields& allHeaderFields() const noexcept { return allHeaderFields_; }

    [[nodiscard]] std::string_view typeName() const noexcept override;

private:
    int statusCode_;
    HeaderFields allHeaderFields_;
};

} // namespace platform::inline v1
