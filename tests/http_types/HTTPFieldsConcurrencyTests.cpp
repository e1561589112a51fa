#include "http_types/HTTPFields.hpp"

#include <gtest/gtest.h>

#include <barrier>
#include <string>
#include <thread>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;

/// Several threads make the first lookup of one collection at once, while others copy it, and change and drop their
/// copy.
TEST(HTTPFieldsConcurrency, FirstLookupsAndCopiesRace) {
    constexpr int threads = 4;
    std::vector<HTTPField::Name> names;
    for (int i = 0; i < 40; ++i) {
        names.push_back(HTTPField::Name::make("Name-" + std::to_string(i % 20)).value());
    }
    for (int round = 0; round < 200; ++round) {
        HTTPFields shared;
        for (const HTTPField::Name& name : names) {
            shared.append(HTTPField(name, "a value longer than the small ones"));
        }
        const HTTPFields& fields = shared;
        std::barrier start(threads);
        std::vector<std::jthread> running;
        for (int thread = 0; thread < threads; ++thread) {
            running.emplace_back([&, thread] {
                start.arrive_and_wait();
                HTTPFields copy = fields;
                if (thread % 2 == 0) {
                    EXPECT_EQ(fields.values(names[5]).size(), 2U);
                    copy[names[5]] = std::nullopt;
                } else {
                    copy.append(HTTPField(names[5], "x"));
                    EXPECT_EQ(copy.values(names[5]).size(), 3U);
                }
                EXPECT_NE(copy, fields);
            });
        }
        running.clear();
        EXPECT_EQ(shared.values(names[5]).size(), 2U);
    }
}

} // namespace
