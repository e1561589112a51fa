#include "platform/concurrency/Continuation.hpp"

namespace platform::inline v1 {

AbandonedContinuationError::~AbandonedContinuationError() = default;

const char* AbandonedContinuationError::what() const noexcept {
    return "A continuation was dropped without having been resumed.";
}

} // namespace platform::inline v1
