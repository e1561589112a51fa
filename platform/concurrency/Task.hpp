#pragma once

#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/Result.hpp"
#include "platform/concurrency/detail/TaskContext.hpp"

#include <concepts>
#include <coroutine>
#include <cstdint>
#include <exception>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace platform::inline v1 {

template <class T>
class Task;

namespace detail {

/// Refers an awaitable of ours by address, so that nothing bigger than a pointer stands beside `co_await`.
template <class Awaitable>
struct AwaitByReference {
    Awaitable* awaitable;

    bool await_ready() noexcept { return awaitable->await_ready(); }

    template <class Promise>
    auto await_suspend(std::coroutine_handle<Promise> parent) {
        return awaitable->await_suspend(std::coroutine_handle<>(parent));
    }

    decltype(auto) await_resume() { return awaitable->await_resume(); }
};

/// What every task's coroutine has, whatever it yields.
struct PromiseBase {
    TaskContext* context = nullptr;
    std::coroutine_handle<> parent{};
    bool* endedInStarter = nullptr; ///< on the stack of the await that started this task
    std::uint64_t startRun = 0;     ///< the run in which it was started

    struct FinalAwaiter {
        [[nodiscard]] bool await_ready() const noexcept { return false; }

        template <class Promise>
        void await_suspend(std::coroutine_handle<Promise> self) const noexcept {
            PromiseBase& promise = self.promise();
            // Is the await that started us still on this stack? Then it goes on by itself; else `run` resumes the
            // parent.
            if (promise.startRun == promise.context->runCount) {
                *promise.endedInStarter = true;
            } else {
                *promise.context->next = promise.parent;
            }
        }

        void await_resume() const noexcept {}
    };

    [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }

    [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }

    template <class U>
    auto await_transform(Task<U>&& task) noexcept {
        return typename Task<U>::Awaiter(&task, context);
    }

    /// Awaitables of this library: they learn the task's context before anything else. There is no form for others on
    /// purpose: see adapters/.
    template <class Awaitable>
        requires requires(std::remove_reference_t<Awaitable>& awaitable, TaskContext& bound) { awaitable.bind(bound); }
    auto await_transform(Awaitable&& awaitable) noexcept {
        awaitable.bind(*context);
        return AwaitByReference<std::remove_reference_t<Awaitable>>{&awaitable};
    }
};

template <class T>
struct Promise : PromiseBase {
    Result<T> result{};

    Task<T> get_return_object() noexcept;

    void unhandled_exception() noexcept { result.fail(std::current_exception()); }

    template <class U>
        requires std::constructible_from<T, U&&>
    void return_value(U&& value) {
        result.set(std::forward<U>(value));
    }
};

template <>
struct Promise<void> : PromiseBase {
    Result<void> result{};

    Task<void> get_return_object() noexcept;

    void unhandled_exception() noexcept { result.fail(std::current_exception()); }

    void return_void() noexcept { result.set(); }
};

} // namespace detail

/// An asynchronous result: the return type of every function that may have to wait.
///
/// A task is lazy: it does nothing until it is awaited (`co_await std::move(task)`, or straight on the call that made
/// it), handed to `syncWait`, or spawned. It is awaited once. It may also hold its value or error from the start,
/// without a coroutine; awaiting it then costs a few nanoseconds and allocates nothing.
///
///     Task<std::string> greeting() { co_return "hello"; }
///
///     Task<std::size_t> length() {
///         std::string text = co_await greeting();
///         co_return text.size();
///     }
///
/// An error travels as an exception: it leaves the `co_await` that awaits the task. A child runs on the executor and
/// under the stop token of the task that awaits it.
///
/// Destroying a task that was not started drops its work. A task that was started is not destroyed before it ended.
///
/// Thread safety: a task is one thread's at a time; it may be handed on between being made and being awaited.
template <class T>
class [[nodiscard]] Task {
public:
    using promise_type = detail::Promise<T>;
    using value_type = T;

    /// A task that already has its value, made of `arguments`.
    template <class... Arguments>
    static Task ready(Arguments&&... arguments) {
        Task task;
        task.result_.set(std::forward<Arguments>(arguments)...);
        return task;
    }

    /// A task that already failed.
    static Task failed(std::exception_ptr error) noexcept {
        Task task;
        task.result_.fail(std::move(error));
        return task;
    }

    /// A task that already failed with `error`.
    template <class Error>
        requires(!std::same_as<std::remove_cvref_t<Error>, std::exception_ptr>)
    static Task failed(Error&& error) {
        return failed(std::make_exception_ptr(std::forward<Error>(error)));
    }

    Task(Task&& other) noexcept(std::is_nothrow_move_constructible_v<Result<T>>)
        : coroutine_(std::exchange(other.coroutine_, nullptr))
        , result_(std::move(other.result_)) {}

    Task& operator=(Task&&) = delete;

    ~Task() {
        if (coroutine_) coroutine_.destroy();
    }

    /// Whether the value or error is there already, without a coroutine.
    [[nodiscard]] bool isReady() const noexcept { return !coroutine_; }

    /// Moves the value out of a ready task, or throws its error. `isReady()` must hold.
    T takeReady() { return result_.take(); }

    /// What `co_await` uses.
    class Awaiter {
    public:
        Awaiter(Task* task, detail::TaskContext* context) noexcept
            : task_(task)
            , context_(context) {}

        [[nodiscard]] bool await_ready() const noexcept { return task_->isReady(); }

        bool await_suspend(std::coroutine_handle<> parent) noexcept {
            const auto child = task_->coroutine_;
            detail::PromiseBase& promise = child.promise();
            promise.context = context_;
            promise.parent = parent;
            if (context_->isStackDeep()) {
                *context_->next = child;
                return true;
            }
            bool ended = false;
            promise.endedInStarter = &ended;
            promise.startRun = context_->runCount;
            child.resume(); // nested, like a call, until it ends or really suspends
            return !ended;  // only the local is read: the frame may be another thread's by now
        }

        T await_resume() { return task_->coroutine_ ? task_->coroutine_.promise().result.take() : task_->takeReady(); }

    private:
        Task* task_;
        detail::TaskContext* context_;
    };

private:
    friend promise_type;

    Task() noexcept = default;

    explicit Task(std::coroutine_handle<promise_type> coroutine) noexcept
        : coroutine_(coroutine) {}

    std::coroutine_handle<promise_type> coroutine_{};
    Result<T> result_{};
};

template <class T>
Task<T> detail::Promise<T>::get_return_object() noexcept {
    return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}

inline Task<void> detail::Promise<void>::get_return_object() noexcept {
    return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

} // namespace platform::inline v1
