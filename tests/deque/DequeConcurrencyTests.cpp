#include "deque/Deque.hpp"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

TEST(DequeConcurrency, CopiesGoTheirWayInTheirThreads) {
    for (int round = 0; round < 50; ++round) {
        deque::Deque<std::string> shared;
        for (int i = 0; i < 20; ++i)
            shared.append("element number " + std::to_string(i));
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([copy = shared, thread]() mutable {
                for (int i = 0; i < 20; ++i) {
                    const auto before = copy;
                    copy.append(*copy.popFirst() + std::to_string(thread));
                    EXPECT_NE(before, copy);
                }
                EXPECT_EQ(*copy.first(), "element number 0" + std::to_string(thread));
            });
        }
        shared.removeAll(true); // the last to let go writes what others have read
        for (auto& thread : threads)
            thread.join();
    }
}

// Copying takes from a deque the knowledge that its elements are its own, and is nevertheless a reading access.
TEST(DequeConcurrency, OneDequeIsCopiedAndReadByManyThreads) {
    for (int round = 0; round < 50; ++round) {
        deque::Deque<int> original{0, 1, 2};
        original.append(3);
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&constant = std::as_const(original), thread] {
                deque::Deque<int> copy = constant;
                EXPECT_EQ(constant[1], 1);
                copy.pop_front();
                copy.append(thread);
                EXPECT_EQ(copy, (deque::Deque<int>{1, 2, 3, thread}));
            });
        }
        for (auto& thread : threads)
            thread.join();
        const auto kept = original;
        original.append(4);
        original.pop_front();
        EXPECT_EQ(kept, (deque::Deque<int>{0, 1, 2, 3}));
        EXPECT_EQ(original, (deque::Deque<int>{1, 2, 3, 4}));
    }
}

} // namespace
