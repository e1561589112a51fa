#include "platform/concurrency/RunLoop.hpp"

namespace platform::inline v1 {

RunLoop::~RunLoop() = default;

void RunLoop::post(Job& job) noexcept {
    {
        const std::lock_guard lock(mutex_);
        job.next = nullptr;
        (last_ ? last_->next : first_) = &job;
        last_ = &job;
    }
    arrived_.notify_one();
}

void RunLoop::run() noexcept {
    std::unique_lock lock(mutex_);
    while (true) {
        arrived_.wait(lock, [this] { return first_ || stopped_; });
        if (!first_) break;
        Job* job = first_;
        first_ = job->next;
        if (!first_) last_ = nullptr;
        lock.unlock();
        job->run(job); // may destroy the job
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
