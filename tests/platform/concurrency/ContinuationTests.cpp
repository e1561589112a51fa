#include "platform/concurrency/BackgroundPool.hpp"
#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <thread>
#include <utility>

namespace platform {
namespace {

template <class Body>
Task<int> awaiting(Body body) {
    co_return co_await withContinuation<int>(body);
}

template <class Body, class OnCancel>
Task<int> awaiting(Body body, OnCancel onCancel) {
    co_return co_await withContinuation<int>(body, onCancel);
}

TEST(Continuation, ResumesInItsBodyFromAThreadAndWithAnError) {
    auto inBody = [](Continuation<int> continuation) { continuation.resume(1); };
    auto fromThread = [](Continuation<int> continuation) {
        std::thread([kept = std::move(continuation)]() mutable { kept.resume(2); }).detach();
    };
    auto withError = [](Continuation<int> continuation) {
        continuation.fail(std::make_exception_ptr(std::range_error("no")));
    };
    auto dropped = [](Continuation<int>) {};
    auto droppedByThread = [](Continuation<int> continuation) {
        std::thread([kept = std::move(continuation)] {}).detach();
    };
    auto throwing = [](Continuation<int>) { throw std::domain_error("body"); };
    EXPECT_EQ(syncWait(awaiting(inBody)), 1);
    EXPECT_EQ(syncWait(awaiting(fromThread)), 2);
    EXPECT_THROW(syncWait(awaiting(withError)), std::range_error);
    EXPECT_THROW(syncWait(awaiting(dropped)), AbandonedContinuationError);
    EXPECT_THROW(syncWait(awaiting(droppedByThread)), AbandonedContinuationError);
    EXPECT_THROW(syncWait(awaiting(throwing)), std::domain_error);
}

Task<bool> goesOnWhereItStarted() {
    const std::thread::id before = std::this_thread::get_id();
    auto fromThread = [](Continuation<void> continuation) {
        std::thread([kept = std::move(continuation)]() mutable { kept.resume(); }).detach();
    };
    co_await withContinuation<void>(fromThread);
    co_return before == std::this_thread::get_id();
}

TEST(Continuation, NeverRunsTheTaskOnTheResumingThread) {
    EXPECT_TRUE(syncWait(goesOnWhereItStarted()));
}

TEST(ContinuationDeathTest, SecondResumeStops) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto twice = [](Continuation<int> continuation) {
        continuation.resume(1);
        continuation.resume(2);
    };
    EXPECT_DEATH(syncWait(awaiting(twice)), "A continuation was resumed twice\\.");
}

/// Callback code as it is met in the wild: one slot that completion and cancellation fight over.
struct Slot {
    std::mutex mutex{};
    std::optional<Continuation<int>> waiting{};
    bool isCancelled = false;

    void fill(Continuation<int> continuation) {
        std::unique_lock lock(mutex);
        if (!isCancelled) {
            waiting.emplace(std::move(continuation));
            return;
        }
        lock.unlock();
        continuation.fail(std::make_exception_ptr(CancellationError()));
    }

    /// True where it was this call that resumed.
    bool complete(int value) {
        const std::lock_guard lock(mutex);
        if (!waiting) return false;
        std::exchange(waiting, std::nullopt)->resume(value);
        return true;
    }

    void cancel() {
        const std::lock_guard lock(mutex);
        isCancelled = true;
        if (waiting) std::exchange(waiting, std::nullopt)->fail(std::make_exception_ptr(CancellationError()));
    }
};

Task<int> awaitingSlot(Slot* slot) {
    auto body = [slot](Continuation<int> continuation) { slot->fill(std::move(continuation)); };
    auto onCancel = [slot] { slot->cancel(); };
    co_return co_await withContinuation<int>(body, onCancel);
}

TEST(Continuation, IsCancelledBeforeItsBody) {
    Slot slot;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(syncWait(awaitingSlot(&slot), stop.get_token()), CancellationError);
}

TEST(Continuation, IsCancelledWhileSuspended) {
    Slot slot;
    std::stop_source stop;
    std::thread canceller([&] {
        while (true) {
            {
                const std::lock_guard lock(slot.mutex);
                if (slot.waiting) break;
            }
            std::this_thread::yield();
        }
        stop.request_stop();
    });
    EXPECT_THROW(syncWait(awaitingSlot(&slot), stop.get_token()), CancellationError);
    canceller.join();
}

TEST(Continuation, CancellationAndResumeRaceToOneEnd) {
    for (int round = 0; round < 500; ++round) {
        Slot slot;
        std::stop_source stop;
        std::atomic<bool> go{false};
        bool completed = false;
        std::thread completer([&] {
            while (!go)
                std::this_thread::yield();
            while (true) {
                if (slot.complete(round)) {
                    completed = true;
                    break;
                }
                const std::lock_guard lock(slot.mutex);
                if (slot.isCancelled) break;
            }
        });
        std::thread canceller([&] {
            while (!go)
                std::this_thread::yield();
            for (int spin = round % 7; spin > 0; --spin)
                std::this_thread::yield();
            stop.request_stop();
        });
        go = true;
        std::optional<int> value;
        try {
            value = syncWait(awaitingSlot(&slot), stop.get_token());
        } catch (const CancellationError&) {
        }
        completer.join();
        canceller.join();
        ASSERT_EQ(value.has_value(), completed);
        ASSERT_EQ(value.value_or(round), round);
    }
}

} // namespace
} // namespace platform
