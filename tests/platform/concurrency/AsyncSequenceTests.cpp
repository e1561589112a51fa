#include "platform/concurrency/AsyncSequence.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <gtest/gtest.h>

#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace platform {
namespace {

/// Counts to `end`; every `stride`-th element comes from a coroutine, the others are ready.
struct Numbers {
    using Element = int;

    struct Iterator {
        using Element = int;

        int end;
        int stride;
        int at = 0;

        Task<std::optional<int>> next() {
            if (at == end) return Task<std::optional<int>>::ready(std::nullopt);
            const int value = at++;
            if (stride > 0 && value % stride == 0) return later(value);
            return Task<std::optional<int>>::ready(value);
        }

        static Task<std::optional<int>> later(int value) { co_return value; }
    };

    [[nodiscard]] Iterator makeAsyncIterator() const { return Iterator{end, stride}; }

    int end;
    int stride;
};

/// A stage as every stage is written: a plain function while upstream has elements, a coroutine only to wait.
template <AsyncSequence Upstream>
struct KeepingOdd {
    using Element = int;

    struct Iterator {
        using Element = int;
        using Next = Task<std::optional<int>>;

        typename std::remove_cvref_t<decltype(std::declval<const Upstream&>().makeAsyncIterator())> upstream;
        int failAt;

        Next next() {
            try {
                while (true) {
                    Next element = upstream.next();
                    if (!element.isReady()) return slow(this, std::move(element));
                    const std::optional<int> value = element.takeReady();
                    if (isTaken(value)) return Next::ready(value);
                }
            } catch (...) {
                return Next::failed(std::current_exception());
            }
        }

        static Next slow(Iterator* self, Next element) {
            std::optional<int> value = co_await std::move(element);
            while (!self->isTaken(value)) {
                Next following = self->upstream.next();
                value = co_await std::move(following);
            }
            co_return value;
        }

        [[nodiscard]] bool isTaken(const std::optional<int>& value) const {
            if (value == failAt) throw std::runtime_error("unlucky");
            return !value || *value % 2 == 1;
        }
    };

    [[nodiscard]] Iterator makeAsyncIterator() const { return Iterator{upstream.makeAsyncIterator(), failAt}; }

    Upstream upstream;
    int failAt = -1;
};

static_assert(AsyncSequence<Numbers>);
static_assert(AsyncIterator<KeepingOdd<KeepingOdd<Numbers>>::Iterator>);
static_assert(!AsyncIterator<int>);
static_assert(!AsyncSequence<std::vector<int>>);

template <class Sequence>
Task<int> sum(Sequence sequence) {
    auto iterator = sequence.makeAsyncIterator();
    int total = 0;
    while (auto element = co_await iterator.next())
        total += *element;
    co_return total;
}

TEST(AsyncSequence, PipelineGivesTheSameReadyAndSuspended) {
    for (const int stride : {0, 1, 2, 3, 7}) {
        KeepingOdd<Numbers> inner{Numbers{100, stride}};
        KeepingOdd<KeepingOdd<Numbers>> outer{inner};
        EXPECT_EQ(syncWait(sum(outer)), 2500) << stride;
        outer.upstream.failAt = 42;
        EXPECT_THROW(syncWait(sum(outer)), std::runtime_error) << stride;
    }
    KeepingOdd<Numbers> ready{Numbers{3, 0}};
    auto iterator = ready.makeAsyncIterator();
    auto element = iterator.next();
    ASSERT_TRUE(element.isReady()) << "no coroutine where upstream is ready";
    EXPECT_EQ(element.takeReady(), 1);
}

} // namespace
} // namespace platform
