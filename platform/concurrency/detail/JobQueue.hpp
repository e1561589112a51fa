#pragma once

#include "platform/concurrency/Executor.hpp"

#include <utility>

namespace platform::inline v1::detail {

/// Jobs in the order they came, linked through themselves: no allocation, so nothing here can fail. Not thread-safe.
class JobQueue {
public:
    JobQueue() = default;

    JobQueue(JobQueue&& other) noexcept
        : first_(std::exchange(other.first_, nullptr))
        , last_(std::exchange(other.last_, nullptr)) {}

    JobQueue& operator=(JobQueue&&) = delete;

    [[nodiscard]] bool isEmpty() const noexcept { return !first_; }

    void push(Job& job) noexcept {
        job.next = nullptr;
        (last_ ? last_->next : first_) = &job;
        last_ = &job;
    }

    /// Takes the oldest job out; the queue must not be empty.
    Job& pop() noexcept {
        Job& job = *first_;
        first_ = job.next;
        if (!first_) last_ = nullptr;
        return job;
    }

private:
    Job* first_ = nullptr;
    Job* last_ = nullptr;
};

} // namespace platform::inline v1::detail
