#include "platform/concurrency/Executor.hpp"

namespace platform::inline v1 {

Executor::~Executor() = default;

} // namespace platform::inline v1
