#pragma once

#include "platform/Export.hpp"
#include "platform/ProgrammingError.hpp"
#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/Result.hpp"
#include "platform/concurrency/detail/TaskContext.hpp"

#include <atomic>
#include <concepts>
#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace platform::inline v1 {

/// The error of a task that waited for a continuation which was destroyed without having been resumed.
class QUILLBEAM_EXPORT AbandonedContinuationError final : public std::exception {
public:
    ~AbandonedContinuationError() override;
    [[nodiscard]] const char* what() const noexcept override;
};

namespace detail {

template <class T>
struct ContinuationState : Job {
    enum class Stage : unsigned char { running, suspended, resumed };

    TaskContext* context = nullptr;
    std::coroutine_handle<> waiting{};
    Result<T> result{};
    std::atomic<Stage> stage{Stage::running};

    /// The result is set. While the body still runs, the task goes on in place; else it is posted to its executor.
    void complete() noexcept {
        Stage expected = Stage::running;
        if (stage.compare_exchange_strong(expected, Stage::resumed, std::memory_order_acq_rel)) return;
        const std::shared_ptr<Executor> executor = context->executor; // outlives the task within this call
        run = [](Job* job) noexcept {
            auto* self = static_cast<ContinuationState*>(job);
            TaskContext::run(*self->context, self->waiting);
        };
        executor->post(*this);
    }
};

} // namespace detail

/// The way for callback code to let a suspended task go on: exactly once, from any thread.
///
/// Resuming does not run the task: it is posted to its executor, so that the callback's thread is never used for it.
/// Only a resume inside the body that was handed the continuation lets the task go on without suspending at all.
///
/// A continuation that is destroyed without having been resumed fails the task with `AbandonedContinuationError`.
/// Resuming one twice stops the program.
///
/// Thread safety: one thread at a time, any thread.
template <class T>
class Continuation {
public:
    explicit Continuation(detail::ContinuationState<T>& state) noexcept
        : state_(&state) {}

    Continuation(Continuation&& other) noexcept
        : state_(std::exchange(other.state_, nullptr)) {}

    Continuation& operator=(Continuation&& other) noexcept {
        Continuation dropped(std::move(*this));
        state_ = std::exchange(other.state_, nullptr);
        return *this;
    }

    ~Continuation() {
        if (state_) fail(std::make_exception_ptr(AbandonedContinuationError()));
    }

    /// Whether it is still to be resumed.
    explicit operator bool() const noexcept { return state_ != nullptr; }

    /// Lets the task go on with a value made of `arguments`; an exception from making it goes to the task.
    template <class... Arguments>
    void resume(Arguments&&... arguments) noexcept {
        auto* state = claim();
        try {
            state->result.set(std::forward<Arguments>(arguments)...);
        } catch (...) {
            state->result.fail(std::current_exception());
        }
        state->complete();
    }

    /// Lets the task go on with an error, which leaves its `co_await`.
    void fail(std::exception_ptr error) noexcept {
        auto* state = claim();
        state->result.fail(std::move(error));
        state->complete();
    }

private:
    detail::ContinuationState<T>* claim() noexcept {
        if (!state_) stopOnProgrammingError("A continuation was resumed twice.");
        return std::exchange(state_, nullptr);
    }

    detail::ContinuationState<T>* state_;
};

namespace detail {

struct NoCancellationHandler {
    void operator()() const noexcept {}
};

template <class T, class Body, class OnCancel>
class ContinuationAwaitable {
public:
    ContinuationAwaitable(Body body, OnCancel onCancel)
        : body_(std::move(body))
        , onCancel_(std::move(onCancel)) {}

    ContinuationAwaitable(const ContinuationAwaitable&) = delete;
    ContinuationAwaitable& operator=(const ContinuationAwaitable&) = delete;

    void bind(TaskContext& context) noexcept { state_.context = &context; }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    bool await_suspend(std::coroutine_handle<> waiting) {
        state_.waiting = waiting;
        if constexpr (!std::same_as<OnCancel, NoCancellationHandler>) {
            handler_.emplace(state_.context->stopToken, Handler{this}); // runs at once where cancelled already
        }
        try {
            body_(Continuation<T>(state_));
        } catch (...) {
            // The error leaves the await and takes the state with it: sound only if the continuation is gone as well.
            if (suspend())
                stopOnProgrammingError("A continuation's body failed after it had handed the continuation on.");
            throw;
        }
        return suspend();
    }

    T await_resume() {
        handler_.reset(); // waits for a handler that runs on another thread
        return state_.result.take();
    }

private:
    using Stage = typename ContinuationState<T>::Stage;

    /// False where the continuation was resumed already.
    bool suspend() noexcept {
        Stage expected = Stage::running;
        return state_.stage.compare_exchange_strong(expected, Stage::suspended, std::memory_order_acq_rel);
    }

    struct Handler {
        ContinuationAwaitable* self;

        void operator()() const noexcept { self->onCancel_(); }
    };

    ContinuationState<T> state_{};
    Body body_;
    OnCancel onCancel_;
    std::optional<std::stop_callback<Handler>> handler_{};
};

} // namespace detail

/// Suspends the current task until `body`'s continuation is resumed. `body` is called at once, on this thread, with a
/// `Continuation<T>` that it keeps or hands on.
///
///     auto start = [&](Continuation<int> continuation) { service.fetch(std::move(continuation)); };
///     int value = co_await withContinuation<int>(start);
///
/// `onCancel` is called, on any thread and at most once, when the task's token is asked to stop before the task goes
/// on; it is registered before `body` runs and is called before it where the token was asked already. It has to make
/// somebody resume the continuation; by itself it ends nothing.
///
/// An exception of `body` leaves the `co_await`, unless `body` had handed the continuation on before it: that stops the
/// program, since there would be nothing left to resume.
///
/// Allocates nothing. Resumed within its body it costs a few nanoseconds, else one post to the executor.
///
/// Name `body` and `onCancel` before the `co_await` (see CONTRIBUTING.md).
/// @throws what the continuation fails with; `AbandonedContinuationError` where it was dropped
template <class T, class Body>
[[nodiscard]] auto withContinuation(Body body) {
    return detail::ContinuationAwaitable<T, Body, detail::NoCancellationHandler>(std::move(body), {});
}

template <class T, class Body, class OnCancel>
[[nodiscard]] auto withContinuation(Body body, OnCancel onCancel) {
    return detail::ContinuationAwaitable<T, Body, OnCancel>(std::move(body), std::move(onCancel));
}

} // namespace platform::inline v1
