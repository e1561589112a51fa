#pragma once

#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/Result.hpp"
#include "platform/concurrency/Task.hpp"

#include <concepts>
#include <coroutine>
#include <exception>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace platform::inline v1 {

namespace detail {

/// The coroutine at the root of a tree of tasks: it owns the context and frees itself when it has ended.
struct Root {
    struct promise_type : PromiseBase, Job {
        TaskContext owned{};

        promise_type() noexcept { context = &owned; }

        Root get_return_object() noexcept { return Root{this}; }

        [[nodiscard]] std::suspend_never final_suspend() const noexcept { return {}; }

        void return_void() const noexcept {}

        void unhandled_exception() const noexcept { std::terminate(); }
    };

    promise_type* promise;

    /// @param executor the caller's own: the root may end, and let go of its copy, within the call
    void start(const std::shared_ptr<Executor>& executor, std::stop_token token) const noexcept {
        promise->run = [](Job* job) noexcept {
            auto* self = static_cast<promise_type*>(job);
            TaskContext::run(self->owned, std::coroutine_handle<promise_type>::from_promise(*self));
        };
        promise->owned.stopToken = std::move(token);
        promise->owned.executor = executor;
        executor->post(*promise);
    }
};

template <class T, class Done>
Root runRoot(Task<T> task, Done done) {
    Result<T> result;
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
            result.set();
        } else {
            T value = co_await std::move(task);
            result.set(std::move(value));
        }
    } catch (...) {
        result.fail(std::current_exception());
    }
    done(std::move(result));
}

} // namespace detail

/// Runs `task` on `executor` and calls `done` there with its result. Returns at once.
///
/// @param token asks the task and all that it awaits to stop
/// @param done takes a `Result<T>&&` and must not throw: an exception that leaves it terminates the program
///
/// Thread safety: safe from any thread.
template <class T, class Done>
    requires std::invocable<Done&, Result<T>&&>
// A copy: the task may end within the call, and the caller's executor with it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void spawn(std::shared_ptr<Executor> executor, std::stop_token token, Task<T> task, Done done) {
    detail::runRoot(std::move(task), std::move(done)).start(executor, std::move(token));
}

} // namespace platform::inline v1
