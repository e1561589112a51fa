#include "platform/concurrency/BackgroundPool.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/WhenAll.hpp"
#include "platform/concurrency/adapters/Future.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace platform {
namespace {

Task<void> elsewhere() {
    auto fromThread = [](Continuation<void> continuation) {
        std::thread([kept = std::move(continuation)]() mutable { kept.resume(); }).detach();
    };
    co_await withContinuation<void>(fromThread);
}

Task<void> untilCancelled() {
    auto stop = std::make_shared<std::atomic<bool>>(false);
    auto body = [stop](Continuation<void> continuation) {
        std::thread([stop, kept = std::move(continuation)]() mutable {
            stop->wait(false);
            kept.fail(std::make_exception_ptr(CancellationError()));
        }).detach();
    };
    auto onCancel = [stop] {
        stop->store(true);
        stop->notify_all();
    };
    co_await withContinuation<void>(body, onCancel);
}

/// Counts how many of its kind are under way.
struct Crowd {
    std::atomic<int> now{0};
    std::atomic<int> most{0};
    std::atomic<int> started{0};
};

class Stay {
public:
    explicit Stay(Crowd* crowd)
        : crowd_(crowd) {
        ++crowd->started;
        const int now = ++crowd->now;
        int most = crowd->most;
        while (most < now && !crowd->most.compare_exchange_weak(most, now)) {
        }
    }

    Stay(const Stay&) = delete;
    Stay& operator=(const Stay&) = delete;

    ~Stay() { --crowd_->now; }

private:
    Crowd* crowd_;
};

/// Those behind the one that fails end only because it does.
Task<std::unique_ptr<int>> member(Crowd* crowd, int value, int failAt) {
    const Stay stay(crowd);
    if (value > failAt && failAt >= 0) {
        co_await untilCancelled();
    } else {
        co_await elsewhere();
    }
    if (value == failAt) throw std::out_of_range(std::to_string(value));
    co_return std::make_unique<int>(value);
}

Task<std::vector<std::unique_ptr<int>>> crowdOf(Crowd* crowd, int count, int failAt, std::size_t atMost) {
    std::vector<Task<std::unique_ptr<int>>> tasks;
    tasks.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        tasks.push_back(member(crowd, i, failAt));
    return whenAll(std::move(tasks), atMost);
}

TEST(WhenAll, KeepsOrderAndBoundsWhatIsUnderWay) {
    for (const unsigned atMost : {0U, 1U, 3U, 100U}) {
        for (const bool threaded : {false, true}) {
            Crowd crowd;
            auto task = crowdOf(&crowd, 20, -1, atMost);
            const auto values =
                threaded ? toFuture(BackgroundPool::shared(), std::move(task)).get() : syncWait(std::move(task));
            ASSERT_EQ(values.size(), 20U);
            for (int i = 0; i < 20; ++i)
                EXPECT_EQ(*values[static_cast<std::size_t>(i)], i);
            EXPECT_LE(crowd.most, static_cast<int>(std::max(atMost, 1U)));
        }
    }
    Crowd nobody;
    EXPECT_TRUE(syncWait(crowdOf(&nobody, 0, -1, 5)).empty());
}

TEST(WhenAll, FirstErrorEndsTheRest) {
    Crowd crowd;
    constexpr int failAt = 4;
    constexpr int atMost = 2;
    EXPECT_THROW(syncWait(crowdOf(&crowd, 50, failAt, atMost)), std::out_of_range);
    EXPECT_LE(crowd.started, failAt + atMost) << "what has not started never does";
    EXPECT_EQ(crowd.now, 0) << "and what has started has ended";
}

Task<int> failingLater() {
    co_await elsewhere();
    throw std::length_error("first");
}

TEST(WhenAll, PassesCancellationOnInBothDirections) {
    EXPECT_THROW(syncWait(whenAll(untilCancelled(), failingLater())), std::length_error);
    std::stop_source stop;
    std::thread canceller([&stop] { stop.request_stop(); });
    EXPECT_THROW(syncWait(whenAll(untilCancelled(), untilCancelled()), stop.get_token()), CancellationError);
    canceller.join();
}

TEST(WhenAll, GivesATupleOfWhatEachGave) {
    auto text = []() -> Task<std::string> { co_return "text"; };
    auto [first, second, third] = syncWait(whenAll(text(), elsewhere(), Task<int>::ready(3)));
    EXPECT_EQ(first, "text");
    EXPECT_EQ(third, 3);
    EXPECT_EQ(second, std::monostate());
}

} // namespace
} // namespace platform
