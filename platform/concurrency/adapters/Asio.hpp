#pragma once

#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/Spawn.hpp"
#include "platform/concurrency/Task.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/associated_cancellation_slot.hpp>
#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/cancellation_type.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <boost/system/system_error.hpp>

#include <concepts>
#include <exception>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>

/// Tasks and Boost.Asio, each way. Header-only; nothing in the library includes it, so only a program that includes it
/// needs Boost.
namespace platform::inline v1 {

/// Runs tasks on an Asio execution context, such as `boost::asio::io_context` or `thread_pool`.
///
/// It shares ownership of the context, because a thread that posts to it may still be inside the context when the
/// posted work ends the program's last other use of it. The context's `run()` does not return while the executor, or a
/// task on it, lives.
///
///     auto context = std::make_shared<boost::asio::io_context>();
///     spawn(std::make_shared<AsioExecutor<boost::asio::io_context>>(context), {}, work(), whenDone);
///     context->run();
///
/// Thread safety: as the context's `post`: from any thread.
template <class Context>
class AsioExecutor final : public Executor {
public:
    explicit AsioExecutor(std::shared_ptr<Context> context)
        : context_(std::move(context))
        , work_(context_->get_executor()) {}

    void post(Job& job) noexcept override {
        boost::asio::post(context_->get_executor(), [&job] { job.run(&job); });
    }

private:
    std::shared_ptr<Context> context_;
    boost::asio::executor_work_guard<typename Context::executor_type> work_;
};

namespace detail {

template <class T>
struct AsioSignature {
    using type = void(std::exception_ptr, T);
};

template <>
struct AsioSignature<void> {
    using type = void(std::exception_ptr);
};

/// Hands a task's result to an Asio handler, on the handler's executor.
template <class T, class Handler>
class CompleteAsioHandler {
public:
    CompleteAsioHandler(Handler handler, boost::asio::any_io_executor executor, std::shared_ptr<std::stop_source> stop)
        : handler_(std::move(handler))
        , work_(std::move(executor))
        , stop_(std::move(stop)) {}

    void operator()(Result<T>&& result) noexcept {
        boost::asio::post(
            work_.get_executor(),
            [handler = std::move(handler_), ended = std::move(result), stop = stop_]() mutable {
                std::exception_ptr error = ended.error();
                if constexpr (std::is_void_v<T>) {
                    std::move(handler)(std::move(error));
                } else if (error) {
                    std::move(handler)(std::move(error), T());
                } else {
                    std::move(handler)(nullptr, ended.take());
                }
            }
        );
    }

private:
    Handler handler_;
    boost::asio::executor_work_guard<boost::asio::any_io_executor> work_; // its loop waits for the task
    std::shared_ptr<std::stop_source> stop_;
};

/// What one Asio operation and the task that awaits it share. Used on `strand` alone.
struct AsioOperation {
    explicit AsioOperation(boost::asio::any_io_executor executor)
        : strand(std::move(executor)) {}

    boost::asio::strand<boost::asio::any_io_executor> strand;
    boost::asio::cancellation_signal signal{};
    bool isCancelled = false;
};

/// The completion handler of the operation.
template <class T>
class ResumeFromAsio {
public:
    using executor_type = boost::asio::strand<boost::asio::any_io_executor>;
    using cancellation_slot_type = boost::asio::cancellation_slot;

    ResumeFromAsio(Continuation<T> continuation, std::shared_ptr<AsioOperation> operation) noexcept
        : continuation_(std::move(continuation))
        , operation_(std::move(operation)) {}

    [[nodiscard]] executor_type get_executor() const noexcept { return operation_->strand; }

    [[nodiscard]] cancellation_slot_type get_cancellation_slot() const noexcept { return operation_->signal.slot(); }

    template <class... Values>
    void operator()(boost::system::error_code code, Values&&... values) {
        if (!code) {
            continuation_.resume(std::forward<Values>(values)...);
        } else if (code == boost::asio::error::operation_aborted && operation_->isCancelled) {
            continuation_.fail(std::make_exception_ptr(CancellationError()));
        } else {
            continuation_.fail(std::make_exception_ptr(boost::system::system_error(code)));
        }
    }

    template <class... Values>
    void operator()(std::exception_ptr error, Values&&... values) {
        if (error) {
            continuation_.fail(std::move(error));
        } else {
            continuation_.resume(std::forward<Values>(values)...);
        }
    }

private:
    Continuation<T> continuation_;
    std::shared_ptr<AsioOperation> operation_;
};

} // namespace detail

/// Runs `task` on `executor` as an Asio operation: `completion` is any completion token, such as
/// `boost::asio::use_awaitable`. Cancelling through the token's cancellation slot asks the task to stop.
///
///     auto output = co_await asyncRun(executor, client.getDomains(), boost::asio::use_awaitable);
///
/// The completion signature is `void(std::exception_ptr, T)`, or `void(std::exception_ptr)` for a task of `void`.
template <class T, class CompletionToken>
    requires(std::is_void_v<T> || std::default_initializable<T>)
auto asyncRun(std::shared_ptr<Executor> executor, Task<T> task, CompletionToken&& completion) {
    auto start = [](auto handler, std::shared_ptr<Executor> runsOn, Task<T> work) {
        auto stop = std::make_shared<std::stop_source>();
        auto slot = boost::asio::get_associated_cancellation_slot(handler);
        if (slot.is_connected()) {
            // The slot must not keep what the handler keeps alive: it ends with the handler.
            slot.assign([weak = std::weak_ptr(stop)](boost::asio::cancellation_type type) {
                const auto source = weak.lock();
                if (source && type != boost::asio::cancellation_type::none) source->request_stop();
            });
        }
        std::stop_token token = stop->get_token();
        boost::asio::any_io_executor target = boost::asio::get_associated_executor(handler);
        using Done = detail::CompleteAsioHandler<T, decltype(handler)>;
        spawn(
            std::move(runsOn),
            std::move(token),
            std::move(work),
            Done(std::move(handler), std::move(target), std::move(stop))
        );
    };
    return boost::asio::async_initiate<CompletionToken, typename detail::AsioSignature<T>::type>(
        std::move(start), completion, std::move(executor), std::move(task)
    );
}

/// A task that runs an Asio operation on `executor` and gives what its handler is called with.
///
///     auto wait = [&timer](auto handler) { timer.async_wait(std::move(handler)); };
///     co_await fromAsio<void>(timer.get_executor(), wait);
///
/// The handler's first argument is an `error_code`, thrown as `boost::system::system_error`, or a `std::exception_ptr`;
/// the rest makes the `T`. Cancelling the task cancels the operation, which then ends with `CancellationError`.
/// @param executor where the operation is initiated and cancelled, one after the other
/// @param initiate takes the handler and starts the operation; copied into the task
template <class T, class Initiate>
Task<T> fromAsio(boost::asio::any_io_executor executor, Initiate initiate) {
    const auto operation = std::make_shared<detail::AsioOperation>(executor);
    auto start = [&operation, &initiate](Continuation<T> continuation) {
        detail::ResumeFromAsio<T> handler(std::move(continuation), operation);
        auto begin = [operation, initiate = std::move(initiate), handler = std::move(handler)]() mutable {
            if (operation->isCancelled) {
                handler(std::make_exception_ptr(CancellationError()));
            } else {
                initiate(std::move(handler));
            }
        };
        boost::asio::post(operation->strand, std::move(begin));
    };
    auto cancel = [operation] {
        auto emit = [operation] {
            operation->isCancelled = true;
            operation->signal.emit(boost::asio::cancellation_type::terminal);
        };
        boost::asio::post(operation->strand, std::move(emit));
    };
    co_return co_await withContinuation<T>(start, cancel);
}

} // namespace platform::inline v1
