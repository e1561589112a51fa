#include "deque/Deque.hpp"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

TEST(DequeConcurrency, CopiesGoTheirWayInTheirThreads) {
    for (int round = 0; round < 50; ++round) {
        deque::Deque<std::string> shared;
        for (int i = 0; i < 20; ++i)
            shared.append("element number " + std::to_string(i));
        std::vector<std::thread> threads;
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

} // namespace
