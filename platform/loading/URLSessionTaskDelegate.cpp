#include "platform/loading/URLSessionTaskDelegate.hpp"

namespace platform::inline v1 {

URLSessionTaskDelegate::~URLSessionTaskDelegate() = default;

void URLSessionTaskDelegate::didReceiveResponse(
    const URLSessionTask&,
    const std::shared_ptr<const URLResponse>&,
    const std::function<void(ResponseDisposition)>& completionHandler
) {
    completionHandler(ResponseDisposition::allow);
}

void URLSessionTaskDelegate::didReceiveData(const URLSessionTask&, const ByteChunk&) {}

void URLSessionTaskDelegate::didComplete(const URLSessionTask&, const std::exception_ptr&) {}

} // namespace platform::inline v1
