#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/Task.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <thread>

namespace platform {
namespace {

/// How far the stack grew below the point where it was made.
class StackGauge {
public:
    void note() {
        const char* here = static_cast<char*>(__builtin_frame_address(0));
        lowest_ = std::min(lowest_, here);
    }

    [[nodiscard]] std::ptrdiff_t growth() const { return top_ - lowest_; }

private:
    const char* top_ = static_cast<char*>(__builtin_frame_address(0));
    const char* lowest_ = top_;
};

constexpr int million = 1'000'000;
constexpr std::ptrdiff_t stackLimit = std::ptrdiff_t(64) * 1024;

/// `suspends` of one kind of await: whether the innermost work really leaves the stack.
Task<int> leaf(StackGauge* gauge, bool suspends) {
    gauge->note();
    if (suspends) {
        std::shared_ptr<Executor> executor = co_await currentExecutor();

        struct Resume : Job {
            std::optional<Continuation<int>> continuation{};
        } resume;

        resume.run = [](Job* job) noexcept { static_cast<Resume*>(job)->continuation->resume(1); };
        auto body = [&](Continuation<int> continuation) {
            resume.continuation.emplace(std::move(continuation));
            executor->post(resume);
        };
        co_return co_await withContinuation<int>(body);
    }
    co_return 1;
}

Task<int> inSequence(StackGauge* gauge, int count, bool suspends) {
    int sum = 0;
    for (int i = 0; i < count; ++i) {
        int one = co_await leaf(gauge, suspends);
        sum += one;
    }
    co_return sum;
}

Task<int> inDepth(StackGauge* gauge, int depth, bool suspends) {
    gauge->note();
    if (depth == 1) co_return co_await leaf(gauge, suspends);
    int below = co_await inDepth(gauge, depth - 1, suspends);
    gauge->note();
    co_return below + 1;
}

TEST(Task, StackStaysSmallOverAMillionAwaits) {
    for (const bool suspends : {false, true}) {
        StackGauge gauge;
        EXPECT_EQ(syncWait(inSequence(&gauge, million, suspends)), million);
        EXPECT_LT(gauge.growth(), stackLimit) << suspends;
    }
}

TEST(Task, StackStaysSmallAMillionDeep) {
    for (const bool suspends : {false, true}) {
        StackGauge gauge;
        EXPECT_EQ(syncWait(inDepth(&gauge, million, suspends)), million);
        EXPECT_LT(gauge.growth(), stackLimit) << suspends;
    }
}

Task<std::unique_ptr<int>> boxed(int value) {
    co_return std::make_unique<int>(value);
}

Task<void> failing(int depth) {
    if (depth == 0) throw std::out_of_range("deep");
    co_await failing(depth - 1);
}

Task<std::string> recovering() {
    std::string text;
    try {
        co_await failing(40);
    } catch (const std::out_of_range& error) {
        text = error.what();
    }
    auto task = Task<std::string>::failed(std::runtime_error(" again"));
    try {
        co_await std::move(task);
    } catch (const std::runtime_error& error) {
        text += error.what();
    }
    co_return text;
}

TEST(Task, CarriesValuesAndErrorsThroughEveryLevel) {
    EXPECT_EQ(*syncWait(boxed(7)), 7);
    EXPECT_EQ(*syncWait(Task<std::unique_ptr<int>>::ready(std::make_unique<int>(8))), 8);
    EXPECT_THROW(syncWait(failing(3)), std::out_of_range);
    EXPECT_THROW(syncWait(Task<int>::failed(std::logic_error("at once"))), std::logic_error);
    EXPECT_EQ(syncWait(recovering()), "deep again");
}

TEST(Task, IsLazyAndFreesWhatNeverStarts) {
    auto token = std::make_shared<int>(1);
    auto hold = [](std::shared_ptr<int> held) -> Task<void> {
        *held = 2;
        co_return;
    };
    {
        Task<void> task = hold(token);
        Task<void> moved = std::move(task);
        EXPECT_FALSE(moved.isReady());
        EXPECT_EQ(token.use_count(), 2);
    }
    EXPECT_EQ(*token, 1);
    EXPECT_EQ(token.use_count(), 1);
}

Task<std::thread::id> whereNested() {
    // A blocking call within a task has its own loop and may stand on another's thread.
    auto inner = []() -> Task<std::thread::id> { co_return std::this_thread::get_id(); };
    co_return syncWait(inner());
}

TEST(SyncWait, RunsOnTheCallingThreadAndRefusesWhereOthersWouldWait) {
    EXPECT_EQ(syncWait(whereNested()), std::this_thread::get_id());
    std::thread([] {
        disallowBlockingOnThisThread();
        EXPECT_THROW(syncWait(boxed(1)), BlockingNotAllowedError);
    }).join();
    EXPECT_EQ(*syncWait(boxed(1)), 1) << "the mark is the thread's own";
}

Task<int> checking() {
    co_await checkCancellation();
    std::stop_token token = co_await currentStopToken();
    co_return token.stop_requested() ? 1 : 0;
}

TEST(Cancellation, IsSeenByChildrenOfTheRoot) {
    std::stop_source stop;
    auto parent = [](Task<int> child) -> Task<int> { co_return co_await std::move(child); };
    EXPECT_EQ(syncWait(parent(checking()), stop.get_token()), 0);
    stop.request_stop();
    EXPECT_THROW(syncWait(parent(checking()), stop.get_token()), CancellationError);

    int calls = 0;
    auto count = [&calls] { ++calls; };
    auto quiet = []() -> Task<void> { co_return; };
    syncWait(withCancellationHandler(quiet(), count));
    EXPECT_EQ(calls, 0);
    syncWait(withCancellationHandler(quiet(), count), stop.get_token());
    EXPECT_EQ(calls, 1) << "called first where the task was cancelled already";
}

} // namespace
} // namespace platform
