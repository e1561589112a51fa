#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/adapters/Asio.hpp"
#include "platform/concurrency/adapters/Future.hpp"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/bind_executor.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>

namespace platform {
namespace {

using Timer = boost::asio::steady_timer;

Task<void> waitFor(Timer* timer) {
    auto wait = [timer](auto handler) { timer->async_wait(std::move(handler)); };
    return fromAsio<void>(timer->get_executor(), wait);
}

Task<std::string> waitAndSay(Timer* timer, std::string text) {
    co_await waitFor(timer);
    if (text.empty()) throw std::invalid_argument("nothing to say");
    co_return text;
}

TEST(Asio, RunsTasksOnItsContext) {
    auto context = std::make_shared<boost::asio::io_context>();
    Timer timer(*context, std::chrono::milliseconds(1));
    auto where = [](Timer* waited) -> Task<std::thread::id> {
        co_await waitFor(waited);
        co_return std::this_thread::get_id();
    };
    auto future = toFuture(std::make_shared<AsioExecutor<boost::asio::io_context>>(context), where(&timer));
    context->run(); // returns by itself, once the task has ended
    EXPECT_EQ(future.get(), std::this_thread::get_id());
}

TEST(Asio, OperationIsAwaitedFromAnyExecutor) {
    boost::asio::thread_pool pool(2);
    for (int round = 0; round < 100; ++round) {
        Timer timer(pool, std::chrono::microseconds(round));
        EXPECT_EQ(syncWait(waitAndSay(&timer, "done")), "done");
    }
    pool.join();
}

TEST(Asio, OperationIsCancelledWithItsTask) {
    boost::asio::thread_pool pool(2);
    for (int round = 0; round < 100; ++round) {
        Timer timer(pool, std::chrono::hours(1));
        std::stop_source stop;
        std::thread canceller([&] {
            for (int spin = round; spin > 0; --spin)
                std::this_thread::yield();
            stop.request_stop();
        });
        EXPECT_THROW(syncWait(waitFor(&timer), stop.get_token()), CancellationError);
        canceller.join();
    }
    pool.join();
}

TEST(Asio, TaskIsAwaitedByAnAsioCoroutine) {
    auto context = std::make_shared<boost::asio::io_context>();
    Timer timer(*context, std::chrono::milliseconds(1));
    std::string said;
    bool failed = false;
    auto program = [&]() -> boost::asio::awaitable<void> {
        const std::shared_ptr<Executor> executor = std::make_shared<AsioExecutor<boost::asio::io_context>>(context);
        said = co_await asyncRun(executor, waitAndSay(&timer, "hello"), boost::asio::use_awaitable);
        try {
            co_await asyncRun(executor, waitAndSay(&timer, ""), boost::asio::use_awaitable);
        } catch (const std::invalid_argument&) {
            failed = true;
        }
    };
    boost::asio::co_spawn(*context, program(), [](std::exception_ptr error) { EXPECT_FALSE(error); });
    context->run();
    EXPECT_EQ(said, "hello");
    EXPECT_TRUE(failed);
}

TEST(Asio, CancellationSlotStopsTheTask) {
    auto context = std::make_shared<boost::asio::io_context>();
    Timer timer(*context, std::chrono::hours(1));
    boost::asio::cancellation_signal signal;
    std::exception_ptr error;
    auto ended = [&error](std::exception_ptr failure, const std::string&) { error = std::move(failure); };
    asyncRun(
        std::make_shared<AsioExecutor<boost::asio::io_context>>(context),
        waitAndSay(&timer, "never"),
        boost::asio::bind_cancellation_slot(signal.slot(), boost::asio::bind_executor(*context, ended))
    );
    auto cancel = [&signal] { signal.emit(boost::asio::cancellation_type::terminal); };
    boost::asio::post(*context, cancel);
    context->run();
    ASSERT_TRUE(error);
    EXPECT_THROW(std::rethrow_exception(error), CancellationError);
}

} // namespace
} // namespace platform
