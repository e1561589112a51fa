#include "platform/concurrency/SyncWait.hpp"

namespace platform::inline v1 {

namespace {

thread_local bool mayBlock = true;

} // namespace

BlockingNotAllowedError::BlockingNotAllowedError()
    : std::logic_error("syncWait was called on a thread that must not block.") {}

BlockingNotAllowedError::~BlockingNotAllowedError() = default;

void disallowBlockingOnThisThread() noexcept {
    mayBlock = false;
}

void detail::requireBlockingAllowed() {
    if (!mayBlock) throw BlockingNotAllowedError();
}

} // namespace platform::inline v1
