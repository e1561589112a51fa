#include "platform/concurrency/Cancellation.hpp"

namespace platform::inline v1 {

CancellationError::~CancellationError() = default;

const char* CancellationError::what() const noexcept {
    return "The task was cancelled.";
}

} // namespace platform::inline v1
