#include "platform/concurrency/BackgroundPool.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/adapters/Foreign.hpp"
#include "platform/concurrency/adapters/Future.hpp"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace platform {
namespace {

Task<std::string> greeting(bool fails) {
    if (fails) throw std::runtime_error("no greeting");
    co_return "hello";
}

TEST(Future, CarriesATasksResult) {
    EXPECT_EQ(toFuture(BackgroundPool::shared(), greeting(false)).get(), "hello");
    EXPECT_THROW(toFuture(BackgroundPool::shared(), greeting(true)).get(), std::runtime_error);
}

TEST(Future, IsAwaitedReadyOrNot) {
    std::promise<std::unique_ptr<int>> there;
    there.set_value(std::make_unique<int>(1));
    auto ready = fromFuture(there.get_future());
    EXPECT_TRUE(ready.isReady());
    EXPECT_EQ(*syncWait(std::move(ready)), 1);

    std::promise<void> later;
    auto waiting = fromFuture(later.get_future());
    std::thread([&later] { later.set_exception(std::make_exception_ptr(std::range_error("late"))); }).join();
    EXPECT_THROW(syncWait(std::move(waiting)), std::range_error);

    std::promise<void> afterStart;
    std::thread setter([&afterStart] { afterStart.set_value(); });
    syncWait(fromFuture(afterStart.get_future()));
    setter.join();
}

/// Another library's awaitable: resumes on a thread of its own.
struct OtherAwaitable {
    int value;

    [[nodiscard]] bool await_ready() const { return false; }

    void await_suspend(std::coroutine_handle<> waiting) const {
        std::thread([waiting] { waiting.resume(); }).detach();
    }

    [[nodiscard]] int await_resume() const {
        if (value < 0) throw std::out_of_range("negative");
        return value;
    }
};

Task<bool> comesBack(std::thread::id home) {
    OtherAwaitable five{5};
    int value = co_await fromForeign<int>(std::move(five));
    co_return value == 5 && std::this_thread::get_id() == home;
}

detail::Detached otherCoroutine(std::promise<std::string>* promise, bool fails) {
    try {
        std::string text = co_await toForeign(BackgroundPool::shared(), greeting(fails));
        promise->set_value(std::move(text));
    } catch (...) {
        promise->set_exception(std::current_exception());
    }
}

TEST(Foreign, AwaitsAndIsAwaited) {
    EXPECT_TRUE(syncWait(comesBack(std::this_thread::get_id())));
    OtherAwaitable negative{-1};
    EXPECT_THROW(syncWait(fromForeign<int>(std::move(negative))), std::out_of_range);
    for (const bool fails : {false, true}) {
        std::promise<std::string> promise;
        otherCoroutine(&promise, fails);
        auto future = promise.get_future();
        if (fails) {
            EXPECT_THROW(future.get(), std::runtime_error);
        } else {
            EXPECT_EQ(future.get(), "hello");
        }
    }
}

} // namespace
} // namespace platform
