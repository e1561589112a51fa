#pragma once

#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/Spawn.hpp"
#include "platform/concurrency/Task.hpp"

#include <chrono>
#include <future>
#include <memory>
#include <stop_token>
#include <thread>
#include <type_traits>
#include <utility>

/// Tasks and `std::future`, each way. Header-only; nothing in the library includes it.
namespace platform::inline v1 {

namespace detail {

template <class T>
struct SetPromise {
    std::promise<T> promise;

    void operator()(Result<T>&& result) noexcept {
        if (std::exception_ptr error = result.error()) {
            promise.set_exception(std::move(error));
        } else if constexpr (std::is_void_v<T>) {
            promise.set_value();
        } else {
            try {
                promise.set_value(result.take());
            } catch (...) {
                promise.set_exception(std::current_exception());
            }
        }
    }
};

template <class T>
void resumeFromFuture(std::future<T> future, Continuation<T> continuation) noexcept {
    try {
        if constexpr (std::is_void_v<T>) {
            future.get();
            continuation.resume();
        } else {
            continuation.resume(future.get());
        }
    } catch (...) {
        continuation.fail(std::current_exception());
    }
}

template <class T>
Task<T> awaitFuture(std::future<T> future) {
    auto wait = [&future](Continuation<T> continuation) {
        std::thread(resumeFromFuture<T>, std::move(future), std::move(continuation)).detach();
    };
    co_return co_await withContinuation<T>(wait);
}

} // namespace detail

/// Starts `task` on `executor` and gives the future of its result.
///
/// The future's destructor does not wait. Waiting for it on the executor's only thread would wait for ever.
template <class T>
[[nodiscard]] std::future<T> toFuture(std::shared_ptr<Executor> executor, Task<T> task, std::stop_token token = {}) {
    std::promise<T> promise;
    std::future<T> future = promise.get_future();
    spawn(std::move(executor), std::move(token), std::move(task), detail::SetPromise<T>{std::move(promise)});
    return future;
}

/// A task of `future`'s result; ready at once where the future is.
///
/// A `std::future` can tell nobody that it became ready, so a thread that waits for it is started when the task is: fit
/// for a future now and then. A future type with callbacks needs no thread: resume a `withContinuation` from one.
/// @param future must be valid
/// @throws (the task) what the future holds; std::system_error where no thread can be started
template <class T>
Task<T> fromFuture(std::future<T> future) {
    if (future.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        return detail::awaitFuture(std::move(future));
    }
    try {
        if constexpr (std::is_void_v<T>) {
            future.get();
            return Task<T>::ready();
        } else {
            return Task<T>::ready(future.get());
        }
    } catch (...) {
        return Task<T>::failed(std::current_exception());
    }
}

} // namespace platform::inline v1
