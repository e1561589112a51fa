#include "OpenAPIURLSession/Lock.hpp"

#include "platform/ProgrammingError.hpp"

namespace OpenAPIURLSession::inline v1 {

namespace {

void require(int result, std::string_view failure) noexcept {
    if (result != 0) platform::stopOnProgrammingError(failure);
}

} // namespace

void LockOperations::create(pthread_mutex_t& mutex) noexcept {
    require(pthread_mutex_init(&mutex, nullptr), "A mutex could not be made.");
}

void LockOperations::destroy(pthread_mutex_t& mutex) noexcept {
    require(pthread_mutex_destroy(&mutex), "A mutex was destroyed while it was held.");
}

void LockOperations::lock(pthread_mutex_t& mutex) noexcept {
    require(pthread_mutex_lock(&mutex), "A mutex could not be locked.");
}

void LockOperations::unlock(pthread_mutex_t& mutex) noexcept {
    require(pthread_mutex_unlock(&mutex), "A mutex was unlocked by somebody who does not hold it.");
}

} // namespace OpenAPIURLSession::inline v1
