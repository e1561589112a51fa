#include "platform/coding/Fields.hpp"
#include "platform/json/JSONDecoder.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> allocations{0};
} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

struct ErrorBody {
    std::optional<std::string> code{};
    std::string errorDescription{};

    static const platform::RecordFields& recordFields() {
        using platform::field;
        static const platform::RecordTable table(
            "ErrorBody", field("code", &ErrorBody::code), field("errorDescription", &ErrorBody::errorDescription)
        );
        return table;
    }
};

TEST(JSONAllocations, AnErrorBodyCostsItsStringsOnly) {
    const std::string body = R"({"code": "DOMAIN_NAME_ALREADY_REGISTERED", "errorDescription": ")" +
                             std::string(120, 'x') + R"(", "documentation": ["a", {"b": 1}]})";
    const platform::JSONDecoder decoder;
    (void)decoder.decode<ErrorBody>(body); // makes the record's table
    const std::size_t before = allocations;
    const auto decoded = decoder.decode<ErrorBody>(body);
    EXPECT_EQ(allocations - before, 2U);
    EXPECT_EQ(decoded.code, "DOMAIN_NAME_ALREADY_REGISTERED");
}

} // namespace
