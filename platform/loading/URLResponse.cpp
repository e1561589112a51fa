#include "platform/loading/URLResponse.hpp"

#include <utility>

namespace platform::inline v1 {

URLResponse::URLResponse(URL url, std::int64_t expectedContentLength)
    : url_(std::move(url))
    , expectedContentLength_(expectedContentLength) {}

URLResponse::~URLResponse() = default;

std::string_view URLResponse::typeName() const noexcept {
    return "URLResponse";
}

} // namespace platform::inline v1
