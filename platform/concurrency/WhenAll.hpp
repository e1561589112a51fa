#pragma once

#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/Spawn.hpp"
#include "platform/concurrency/Task.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace platform::inline v1 {

namespace detail {

/// What the tasks of one `whenAll` share. Each lane takes the next task that nobody took, until none is left.
template <class T>
class Gathering {
public:
    explicit Gathering(std::vector<Task<T>> tasks)
        : tasks_(std::move(tasks))
        , results_(tasks_.size()) {}

    /// The index of a task to run now, or nothing once all are taken or one has failed.
    std::optional<std::size_t> claim() noexcept {
        const std::lock_guard lock(mutex_);
        if (error_ || claimed_ == tasks_.size()) return std::nullopt;
        return claimed_++;
    }

    Task<T>& task(std::size_t index) noexcept { return tasks_[index]; }

    Result<T>& result(std::size_t index) noexcept { return results_[index]; }

    void fail(std::exception_ptr error) noexcept {
        {
            const std::lock_guard lock(mutex_);
            if (error_) return;
            error_ = std::move(error);
        }
        stop_.request_stop(); // outside the lock: handlers run within
    }

    void start(std::size_t lanes, const std::shared_ptr<Executor>& executor, Continuation<void> whenEnded);

    [[nodiscard]] std::stop_source stopSource() const noexcept { return stop_; }

    auto takeAll() {
        if (error_) std::rethrow_exception(std::move(error_));
        if constexpr (!std::is_void_v<T>) {
            std::vector<T> values;
            values.reserve(results_.size());
            for (Result<T>& result : results_)
                values.push_back(result.take());
            return values;
        }
    }

private:
    struct LaneEnded {
        Gathering* gathering;

        void operator()(Result<void>&&) const noexcept { gathering->laneEnded(); }
    };

    void laneEnded() noexcept {
        {
            const std::lock_guard lock(mutex_);
            if (--lanes_ != 0) return;
        }
        // Resuming only posts, and this goes with the parent's frame: nothing is touched after it.
        Continuation<void> continuation = std::move(*whenEnded_);
        continuation.resume();
    }

    std::vector<Task<T>> tasks_;
    std::vector<Result<T>> results_;
    std::mutex mutex_{};
    std::stop_source stop_{};
    std::exception_ptr error_{};
    std::size_t claimed_ = 0;
    std::size_t lanes_ = 0;
    std::optional<Continuation<void>> whenEnded_{};
};

template <class T>
Task<void> runLane(Gathering<T>* gathering) {
    while (true) {
        const std::optional<std::size_t> index = gathering->claim();
        if (!index) break;
        Task<T>& task = gathering->task(*index);
        Result<T>& result = gathering->result(*index);
        try {
            if constexpr (std::is_void_v<T>) {
                co_await std::move(task);
                result.set();
            } else {
                T value = co_await std::move(task);
                result.set(std::move(value));
            }
        } catch (...) {
            gathering->fail(std::current_exception());
        }
    }
}

template <class T>
void Gathering<T>::start(std::size_t lanes, const std::shared_ptr<Executor>& executor, Continuation<void> whenEnded) {
    whenEnded_.emplace(std::move(whenEnded));
    lanes_ = lanes;
    for (std::size_t i = 0; i < lanes; ++i) {
        try {
            spawn(executor, stop_.get_token(), runLane(this), LaneEnded{this});
        } catch (...) {
            fail(std::current_exception()); // a lane that found no memory has failed and ended
            laneEnded();
        }
    }
}

template <class T>
auto gather(std::vector<Task<T>> tasks, std::size_t atMost) -> Task<decltype(std::declval<Gathering<T>&>().takeAll())> {
    const std::shared_ptr<Executor> executor = co_await currentExecutor();
    const std::stop_token token = co_await currentStopToken();
    const std::size_t lanes = std::min(std::max<std::size_t>(atMost, 1), tasks.size());
    Gathering<T> gathering(std::move(tasks));
    if (lanes > 0) {
        auto passOn = [stop = gathering.stopSource()]() mutable noexcept { stop.request_stop(); };
        const std::stop_callback<decltype(passOn)> registration(token, std::move(passOn));
        auto start = [&gathering, &executor, lanes](Continuation<void> whenEnded) {
            gathering.start(lanes, executor, std::move(whenEnded));
        };
        co_await withContinuation<void>(start);
    }
    co_return gathering.takeAll();
}

template <class T>
using Gathered = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

template <class T>
Task<void> runInto(Task<T> task, std::optional<Gathered<T>>* value) {
    if constexpr (std::is_void_v<T>) {
        co_await std::move(task);
        value->emplace();
    } else {
        T result = co_await std::move(task);
        value->emplace(std::move(result));
    }
}

template <class... T, std::size_t... index>
std::vector<Task<void>>
allInto(std::tuple<Task<T>...>& tasks, std::tuple<std::optional<Gathered<T>>...>& values, std::index_sequence<index...>) {
    std::vector<Task<void>> running;
    running.reserve(sizeof...(T));
    (running.push_back(runInto<T>(std::move(std::get<index>(tasks)), &std::get<index>(values))), ...);
    return running;
}

template <class... T, std::size_t... index>
std::tuple<Gathered<T>...> unwrap(std::tuple<std::optional<Gathered<T>>...>& values, std::index_sequence<index...>) {
    return std::tuple<Gathered<T>...>(std::move(*std::get<index>(values))...);
}

template <class... T>
Task<std::tuple<Gathered<T>...>> gatherTuple(std::tuple<Task<T>...> tasks) {
    std::tuple<std::optional<Gathered<T>>...> values;
    std::vector<Task<void>> running = allInto<T...>(tasks, values, std::index_sequence_for<T...>());
    const std::size_t count = running.size();
    co_await gather(std::move(running), count);
    co_return unwrap<T...>(values, std::index_sequence_for<T...>());
}

} // namespace detail

/// Runs all `tasks` on the current task's executor and gives their values in the tasks' order (nothing, for tasks of
/// `void`).
///
/// Where one fails, the others are asked to stop and those that have not started never do; when all have ended, the
/// first error is thrown. Cancelling the current task asks all of them to stop. On an executor with one thread they
/// take turns, on one with more they may run at the same time.
///
/// Each task that runs costs two allocations and one post.
/// @param atMost how many of them may be under way at a time; 0 counts as 1
template <class T>
    requires(!std::is_void_v<T>)
Task<std::vector<T>> whenAll(std::vector<Task<T>> tasks, std::size_t atMost = std::numeric_limits<std::size_t>::max()) {
    return detail::gather(std::move(tasks), atMost);
}

inline Task<void> whenAll(std::vector<Task<void>> tasks, std::size_t atMost = std::numeric_limits<std::size_t>::max()) {
    return detail::gather(std::move(tasks), atMost);
}

/// The same for tasks of different types: gives a tuple of their values, `std::monostate` for `void`.
///
///     auto [account, usage] = syncWait(whenAll(readAccount(), readUsage()));
template <class... T>
    requires(sizeof...(T) > 0)
Task<std::tuple<detail::Gathered<T>...>> whenAll(Task<T>... tasks) {
    return detail::gatherTuple<T...>(std::tuple<Task<T>...>(std::move(tasks)...));
}

} // namespace platform::inline v1
