#include "platform/loading/HTTPURLResponse.hpp"

namespace platform::inline v1 {

HTTPURLResponse::HTTPURLResponse(
    URL url, int statusCode, HeaderFields allHeaderFields, std::int64_t expectedContentLength
)
    : URLResponse(std::move(url), expectedContentLength)
    , statusCode_(statusCode)
    , allHeaderFields_(std::move(allHeaderFields)) {}

std::string_view HTTPURLResponse::typeName() const noexcept {
    return "HTTPURLResponse";
}

} // namespace platform::inline v1
