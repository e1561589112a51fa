#pragma once

#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/Spawn.hpp"
#include "platform/concurrency/Task.hpp"

#include <coroutine>
#include <exception>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

/// Tasks and the coroutines of other libraries, each way. Header-only; nothing in the library includes it.
namespace platform::inline v1 {

namespace detail {

/// A coroutine that starts at once, belongs to nobody and frees itself: any awaitable can be awaited in it.
struct Detached {
    struct promise_type {
        Detached get_return_object() const noexcept { return {}; }

        [[nodiscard]] std::suspend_never initial_suspend() const noexcept { return {}; }

        [[nodiscard]] std::suspend_never final_suspend() const noexcept { return {}; }

        void return_void() const noexcept {}

        void unhandled_exception() const noexcept { std::terminate(); }
    };
};

template <class T, class Awaitable>
Detached resumeFromForeign(Awaitable awaitable, Continuation<T> continuation) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(awaitable);
            continuation.resume();
        } else {
            T value = co_await std::move(awaitable);
            continuation.resume(std::move(value));
        }
    } catch (...) {
        continuation.fail(std::current_exception());
    }
}

template <class T>
class ForeignAwaiter {
public:
    ForeignAwaiter(std::shared_ptr<Executor> executor, Task<T> task, std::stop_token token)
        : executor_(std::move(executor))
        , task_(std::move(task))
        , token_(std::move(token)) {}

    [[nodiscard]] bool await_ready() const noexcept { return task_.isReady(); }

    void await_suspend(std::coroutine_handle<> waiting) {
        // The awaiter may be gone before `spawn` returns.
        spawn(std::move(executor_), std::move(token_), std::move(task_), Done{&result_, waiting});
    }

    T await_resume() { return result_.isSet() ? result_.take() : task_.takeReady(); }

private:
    struct Done {
        Result<T>* result;
        std::coroutine_handle<> waiting;

        void operator()(Result<T>&& ended) const noexcept {
            std::destroy_at(result);
            std::construct_at(result, std::move(ended));
            waiting.resume();
        }
    };

    std::shared_ptr<Executor> executor_;
    Task<T> task_;
    std::stop_token token_;
    Result<T> result_{};
};

} // namespace detail

/// A task that awaits `awaitable`, of whatever library, and gives a `T`.
///
/// The awaitable may resume on any thread: the task goes on on its own executor. It is not cancelled with the task.
///
///     Task<int> answer() {
///         other::future_coroutine<int> computing = other::compute();
///         co_return co_await fromForeign<int>(std::move(computing));
///     }
template <class T, class Awaitable>
Task<T> fromForeign(Awaitable awaitable) {
    auto start = [&awaitable](Continuation<T> continuation) {
        detail::resumeFromForeign<T, Awaitable>(std::move(awaitable), std::move(continuation));
    };
    co_return co_await withContinuation<T>(start);
}

/// What a coroutine of another library awaits to run `task` on `executor`. It goes on on that executor, or at once
/// where the task is ready.
template <class T>
[[nodiscard]] auto toForeign(std::shared_ptr<Executor> executor, Task<T> task, std::stop_token token = {}) {
    return detail::ForeignAwaiter<T>(std::move(executor), std::move(task), std::move(token));
}

} // namespace platform::inline v1
