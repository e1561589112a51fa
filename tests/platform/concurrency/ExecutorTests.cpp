#include "platform/concurrency/BackgroundPool.hpp"
#include "platform/concurrency/Strand.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/adapters/Future.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace platform {
namespace {

struct FunctionJob : Job {
    explicit FunctionJob(std::function<void()> function)
        : work(std::move(function)) {
        run = [](Job* job) noexcept {
            const std::unique_ptr<FunctionJob> self(static_cast<FunctionJob*>(job));
            self->work();
        };
    }

    std::function<void()> work;
};

void post(Executor& executor, std::function<void()> work) {
    executor.post(*new FunctionJob(std::move(work))); // frees itself
}

TEST(BackgroundPool, RunsEveryJobBeforeItEnds) {
    for (const unsigned threads : {0U, 1U, 3U}) {
        std::atomic<int> ran{0};
        {
            BackgroundPool pool(threads);
            for (int i = 0; i < 1000; ++i)
                post(pool, [&ran] { ++ran; });
        }
        EXPECT_EQ(ran, 1000);
    }
}

TEST(BackgroundPool, SurvivesItsLastOwnerOnItsOwnThread) {
    for (int round = 0; round < 50; ++round) {
        std::promise<void> after;
        auto pool = std::make_shared<BackgroundPool>(2);
        BackgroundPool& direct = *pool;
        std::promise<void> released;
        post(direct, [owner = pool, ready = released.get_future().share()]() { ready.wait(); });
        post(direct, [&after, owner = pool]() { after.set_value(); });
        pool.reset();
        released.set_value();
        after.get_future().wait();
    }
}

TEST(BackgroundPool, SharedIsOneAndLeavesSignalsToTheApplication) {
    EXPECT_EQ(BackgroundPool::shared().get(), BackgroundPool::shared().get());
    auto mask = []() -> Task<bool> {
        sigset_t blocked;
        pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        co_return sigismember(&blocked, SIGTERM) == 1;
    };
    EXPECT_TRUE(toFuture(BackgroundPool::shared(), mask()).get());
}

TEST(Strand, IsSerialAndKeepsEachPostersOrder) {
    constexpr int posters = 3;
    constexpr int each = 2000;
    std::vector<std::vector<int>> seen(posters); // unguarded on purpose: the strand is the guard
    std::promise<void> all;
    int left = posters * each;
    {
        Strand strand(BackgroundPool::shared());
        std::vector<std::thread> threads;
        for (int poster = 0; poster < posters; ++poster) {
            threads.emplace_back([&, poster] {
                for (int i = 0; i < each; ++i) {
                    post(strand, [&, poster, i] {
                        seen[static_cast<std::size_t>(poster)].push_back(i);
                        if (--left == 0) all.set_value();
                    });
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    all.get_future().wait(); // after the strand is gone: what was posted still runs
    for (const std::vector<int>& order : seen) {
        ASSERT_EQ(order.size(), std::size_t(each));
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    }
}

TEST(Strand, DoesNotRunAJobInsideItsPost) {
    const auto loop = std::make_shared<RunLoop>();
    Strand strand(loop);
    std::vector<int> order;
    post(strand, [&] {
        post(strand, [&] {
            order.push_back(3);
            loop->stop();
        });
        order.push_back(1);
    });
    post(strand, [&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    loop->run();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

} // namespace
} // namespace platform
