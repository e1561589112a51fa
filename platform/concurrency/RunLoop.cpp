#include "platform/concurrency/RunLoop.hpp"

namespace platform::inline v1 {

RunLoop::~RunLoop() = default;

void RunLoop::post(Job& job) noexcept {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push(job);
    }
    arrived_.notify_one();
}

void RunLoop::run() noexcept {
    std::unique_lock lock(mutex_);
    while (true) {
        arrived_.wait(lock, [this] { return !jobs_.isEmpty() || stopped_; });
        if (jobs_.isEmpty()) break;
        Job& job = jobs_.pop();
        lock.unlock();
        job.run(&job); // may destroy the job
        lock.lock();
    }
    stopped_ = false;
}

void RunLoop::stop() noexcept {
    // Notified under the lock: whoever waits may destroy the loop as soon as it sees the flag.
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    arrived_.notify_one();
}

} // namespace platform::inline v1
