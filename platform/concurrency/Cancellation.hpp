#pragma once

#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/concurrency/detail/TaskContext.hpp"

#include <concepts>
#include <coroutine>
#include <exception>
#include <memory>
#include <stop_token>
#include <utility>

namespace platform::inline v1 {

/// The error of a task that ended because it was cancelled.
///
/// Cancelling is asking: a `std::stop_source` asks the tasks that run under its token to stop; what they wait for ends
/// early with this error, and a task may look for itself with `checkCancellation`.
class QUILLBEAM_EXPORT CancellationError final : public std::exception {
public:
    ~CancellationError() override;
    [[nodiscard]] const char* what() const noexcept override;
};

namespace detail {

struct ContextAwaiter {
    TaskContext* context = nullptr;

    void bind(TaskContext& bound) noexcept { context = &bound; }

    [[nodiscard]] bool await_ready() const noexcept { return true; }

    void await_suspend(std::coroutine_handle<>) const noexcept {}
};

struct CheckCancellation : ContextAwaiter {
    void await_resume() const {
        if (context->stopToken.stop_requested()) throw CancellationError();
    }
};

struct CurrentStopToken : ContextAwaiter {
    [[nodiscard]] std::stop_token await_resume() const noexcept { return context->stopToken; }
};

struct CurrentExecutor : ContextAwaiter {
    [[nodiscard]] std::shared_ptr<Executor> await_resume() const noexcept { return context->executor; }
};

} // namespace detail

/// `co_await checkCancellation();` throws `CancellationError` where the current task was cancelled. Never suspends.
[[nodiscard]] inline detail::CheckCancellation checkCancellation() noexcept {
    return {};
}

/// `auto token = co_await currentStopToken();` gives the token that the current task runs under. Never suspends.
[[nodiscard]] inline detail::CurrentStopToken currentStopToken() noexcept {
    return {};
}

/// `auto executor = co_await currentExecutor();` gives the executor that the current task runs on. Never suspends.
[[nodiscard]] inline detail::CurrentExecutor currentExecutor() noexcept {
    return {};
}

/// Runs `operation` and calls `onCancel` if the current task is cancelled before it ended.
///
/// `onCancel` is registered before `operation` starts, so that no cancellation is missed: where the task was cancelled
/// already, it is called first. It is called at most once, on the thread that cancels, possibly while `operation` runs;
/// it must not throw. By itself it ends nothing: `operation` still runs to its end, which the handler brings nearer.
template <class T, std::invocable Handler>
Task<T> withCancellationHandler(Task<T> operation, Handler onCancel) {
    const std::stop_token token = co_await currentStopToken();
    const std::stop_callback<Handler> registration(token, std::move(onCancel));
    co_return co_await std::move(operation);
}

} // namespace platform::inline v1
