#include "OpenAPIRuntime/Interface/EmptySequence.hpp"
#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <list>
#include <memory>
#include <ranges>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using OpenAPIRuntime::AnySequence;
using OpenAPIRuntime::collect;
using OpenAPIRuntime::EmptySequence;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::IterationBehavior;
using OpenAPIRuntime::TooManyBytesError;
using OpenAPIRuntime::TooManyIterationsError;
using OpenAPIRuntime::WrappedSyncSequence;
using platform::ByteChunk;
using platform::syncWait;
using platform::Task;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;
using Length = HTTPBody::Length;

static_assert(platform::AsyncSequence<HTTPBody> && platform::AsyncIterator<HTTPBody::Iterator>);

/// A source that yields its elements as ready tasks or through coroutines and then ends, or fails.
template <typename Element_>
struct Source {
    using Element = Element_;
    using Next = Task<std::optional<Element>>;

    struct Iterator {
        using Element = Element_;

        Next next() {
            if (position == source.elements.size()) {
                if (source.fails) return Next::failed(std::make_exception_ptr(std::runtime_error("source failed")));
                return Next::ready(std::nullopt);
            }
            const Element& element = source.elements[position++];
            return source.suspends ? later(element) : Next::ready(element);
        }

        static Next later(Element element) { co_return element; }

        Source source;
        std::size_t position = 0;
    };

    Iterator makeAsyncIterator() const { return {*this}; }

    std::vector<Element> elements;
    bool suspends = false;
    bool fails = false;
};

Task<std::vector<std::string>> chunksOf(HTTPBody body) {
    std::vector<std::string> chunks;
    HTTPBody::Iterator iterator = body.makeAsyncIterator();
    while (auto chunk = co_await iterator.next()) {
        chunks.emplace_back(chunk->view());
    }
    co_return chunks;
}

TEST(HTTPBody, EveryConstructorGivesItsBytesLengthAndBehavior) {
    struct Case {
        std::string_view name;
        HTTPBody body;
        std::vector<std::string> chunks;
        std::optional<std::int64_t> length;
        IterationBehavior behavior;
    };

    const auto single = IterationBehavior::single, multiple = IterationBehavior::multiple;
    const Length unknown = Length::unknown(), seven = Length::known(7);
    const Bytes ab{'a', 'b'};
    const std::string text = "aé";
    const std::vector<ByteChunk> chunks{ByteChunk("a"), ByteChunk("bc")};
    const AnySequence<ByteChunk> erased(Source<ByteChunk>{chunks});
    auto stream = std::make_shared<std::istringstream>("abc");
    const auto read = std::views::istream<char>(*stream) |
                      std::views::transform([stream](char c) { return static_cast<std::uint8_t>(c); });
    const std::vector<Case> cases{
        {"nothing", HTTPBody(), {}, 0, multiple},
        {"chunk", HTTPBody(ByteChunk("ab")), {"ab"}, 2, multiple},
        {"chunk and length", HTTPBody(ByteChunk("ab"), unknown), {"ab"}, std::nullopt, multiple},
        {"vector", HTTPBody(ab), {"ab"}, 2, multiple},
        {"vector and length", HTTPBody(ab, seven), {"ab"}, 7, multiple},
        {"braced bytes", HTTPBody{'a', 'b'}, {"ab"}, 2, multiple},
        {"array", HTTPBody(std::array<std::uint8_t, 2>{'a', 'b'}), {"ab"}, 2, multiple},
        {"std::byte", HTTPBody(std::array{std::byte{'a'}}), {"a"}, 1, multiple},
        {"list and length", HTTPBody(std::list<std::uint8_t>{'a', 'b'}, unknown), {"ab"}, std::nullopt, multiple},
        {"literal", "aé", {"aé"}, 3, multiple},
        {"literal and length", HTTPBody("aé", seven), {"aé"}, 7, multiple},
        {"text", HTTPBody(text), {"aé"}, 3, multiple},
        {"text view and length", HTTPBody(std::string_view(text), unknown), {"aé"}, std::nullopt, multiple},
        {"bytes of a range", HTTPBody(ab, seven, multiple), {"ab"}, 7, multiple},
        {"bytes of a stream", HTTPBody(read, unknown, single), {"abc"}, std::nullopt, single},
        {"range of chunks", HTTPBody(chunks, unknown, multiple), {"a", "bc"}, std::nullopt, multiple},
        {"stream of chunks", HTTPBody(Source<ByteChunk>{chunks}, unknown), {"a", "bc"}, std::nullopt, single},
        {"sequence of chunks", HTTPBody(Source<ByteChunk>{chunks, true}, seven, multiple), {"a", "bc"}, 7, multiple},
        {"erased", HTTPBody(erased, seven, multiple), {"a", "bc"}, 7, multiple},
        {"body of a body", HTTPBody(HTTPBody("ab"), unknown, multiple), {"ab"}, std::nullopt, multiple},
        {"stream of text", HTTPBody(Source<std::string>{{"a", "é"}}, unknown), {"a", "é"}, std::nullopt, single},
        {"sequence of text", HTTPBody(Source<std::string>{{"", "é"}, true}, seven, multiple), {"", "é"}, 7, multiple},
        {"sequence of bytes", HTTPBody(Source<Bytes>{{ab, ab}, true}, seven, multiple), {"ab", "ab"}, 7, multiple},
        {"wrapped", HTTPBody(WrappedSyncSequence(std::list<Bytes>{ab}), unknown), {"ab"}, std::nullopt, single},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.body.length().byteCount(), c.length);
        EXPECT_EQ(c.body.iterationBehavior(), c.behavior);
        EXPECT_EQ(syncWait(chunksOf(c.body)), c.chunks);
        if (c.behavior == multiple) {
            EXPECT_EQ(syncWait(chunksOf(c.body)), c.chunks);
        } else {
            EXPECT_THROW(syncWait(chunksOf(c.body)), TooManyIterationsError);
        }
    }
}

TEST(HTTPBody, CollectsTheSameFromEverySplit) {
    const std::string text = "aé€😀";
    for (unsigned cuts = 0; cuts < 1U << (text.size() - 1); ++cuts) {
        std::vector<ByteChunk> chunks;
        std::size_t start = 0;
        for (std::size_t i = 1; i <= text.size(); ++i) {
            if (i < text.size() && (cuts >> (i - 1) & 1U) == 0) continue;
            chunks.emplace_back(std::string_view(text).substr(start, i - start));
            start = i;
        }
        const HTTPBody body(Source<ByteChunk>{chunks, cuts % 2 == 0}, Length::unknown(), IterationBehavior::multiple);
        ASSERT_EQ(syncWait(collect<std::string>(body, text.size())), text);
        ASSERT_EQ(syncWait(collect<Bytes>(body, text.size())), Bytes(text.begin(), text.end()));
        ASSERT_THROW(syncWait(collect(body, text.size() - 1)), TooManyBytesError);
    }
    EXPECT_EQ(syncWait(collect<std::string>(HTTPBody(Bytes{'a', 0xE9, 'b'}), 3)), "a\uFFFDb");
    EXPECT_EQ(syncWait(collect<std::string>(HTTPBody(), 0)), "");
}

TEST(HTTPBody, CollectingStopsAtTheLimit) {
    const HTTPBody known("12345678901");
    const HTTPBody once(Source<std::string>{{"123456", "78901"}}, Length::known(11));
    EXPECT_THROW(syncWait(collect(once, 10)), TooManyBytesError); // before reading, so that it can be read still
    EXPECT_EQ(syncWait(collect<std::string>(once, 11)), "12345678901");
    EXPECT_THROW(syncWait(collect(once, 11)), TooManyIterationsError);
    // The length may lie; what counts in the end are the bytes.
    for (const bool suspends : {false, true}) {
        const HTTPBody more(Source<std::string>{{"123456", "78901"}, suspends}, Length::known(3));
        EXPECT_THROW(syncWait(collect(more, 10)), TooManyBytesError);
    }
    try {
        syncWait(collect<std::string>(known, 10));
        FAIL();
    } catch (const TooManyBytesError& error) {
        EXPECT_EQ(error.maxBytes(), 10U);
        EXPECT_STREQ(error.what(), "OpenAPIRuntime.HTTPBody contains more than the maximum allowed 10 bytes.");
        EXPECT_EQ(error.prettyDescription(), error.what());
    }
    EXPECT_STREQ(
        TooManyIterationsError().what(),
        "OpenAPIRuntime.HTTPBody attempted to create a second iterator, but the "
        "underlying sequence is only safe to be iterated once."
    );
}

TEST(HTTPBody, FailuresOfTheSourcePassThrough) {
    for (const bool suspends : {false, true}) {
        const HTTPBody chunks(Source<ByteChunk>{{ByteChunk("a")}, suspends, true}, Length::unknown());
        EXPECT_THROW(syncWait(collect(chunks, 10)), std::runtime_error);
        const HTTPBody texts(Source<std::string>{{"a"}, suspends, true}, Length::unknown());
        EXPECT_THROW(syncWait(chunksOf(texts)), std::runtime_error);
    }
}

TEST(HTTPBody, BytesAtHandAreNeitherCopiedNorAwaited) {
    const ByteChunk chunk("a text that lies on the heap, because it is long");
    auto collected = collect(HTTPBody(chunk), 100);
    ASSERT_TRUE(collected.isReady());
    EXPECT_EQ(collected.takeReady().data(), chunk.data());
    EXPECT_TRUE(collect<std::string>(HTTPBody(chunk), 100).isReady());
    auto alone = collect(HTTPBody(Source<ByteChunk>{{chunk}}, Length::unknown()), 100);
    ASSERT_TRUE(alone.isReady());
    EXPECT_EQ(alone.takeReady().data(), chunk.data());
}

TEST(HTTPBody, IteratorsEndForGoodAndOutliveTheBody) {
    auto body = std::make_unique<HTTPBody>(Source<std::string>{{"a"}, true}, Length::unknown());
    HTTPBody::Iterator first = body->makeAsyncIterator();
    HTTPBody::Iterator second = body->makeAsyncIterator(); // fails only when it is asked
    body.reset();
    EXPECT_EQ(syncWait(first.next()), ByteChunk("a"));
    EXPECT_EQ(syncWait(first.next()), std::nullopt);
    EXPECT_EQ(syncWait(first.next()), std::nullopt);
    EXPECT_THROW(syncWait(second.next()), TooManyIterationsError);
    EXPECT_THROW(syncWait(second.next()), TooManyIterationsError);
    HTTPBody::Iterator range =
        HTTPBody(std::list<ByteChunk>{ByteChunk("a")}, Length::unknown(), IterationBehavior::single)
            .makeAsyncIterator();
    EXPECT_EQ(syncWait(range.next()), ByteChunk("a"));
    EXPECT_EQ(syncWait(range.next()), std::nullopt);
    EXPECT_EQ(syncWait(range.next()), std::nullopt);
    AnySequence<int> nothing{EmptySequence<int>()};
    auto ended = nothing.makeAsyncIterator();
    EXPECT_EQ(syncWait(ended.next()), std::nullopt);
}

TEST(HTTPBody, EqualityIsIdentity) {
    const HTTPBody body("a");
    const HTTPBody copy = body; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(body, copy);
    EXPECT_EQ(std::hash<HTTPBody>()(body), std::hash<HTTPBody>()(copy));
    EXPECT_NE(body, HTTPBody("a"));
    EXPECT_EQ(body.prettyDescription(), "OpenAPIRuntime.HTTPBody");
}

TEST(HTTPBodyConcurrency, OneOfManyIterationsSucceeds) {
    for (int round = 0; round < 200; ++round) {
        const HTTPBody body(Source<std::string>{{"a"}}, Length::unknown());
        std::atomic<int> succeeded = 0;
        std::vector<std::jthread> readers;
        for (int reader = 0; reader < 3; ++reader) {
            readers.emplace_back([&] {
                try {
                    syncWait(collect(body, 1));
                    ++succeeded;
                } catch (const TooManyIterationsError&) {
                    // the others' fate
                }
            });
        }
        readers.clear();
        ASSERT_EQ(succeeded, 1);
    }
}

/// A source whose every element another thread brings.
struct ThreadedSource {
    using Element = ByteChunk;

    struct Iterator {
        using Element = ByteChunk;

        Task<std::optional<ByteChunk>> next() { return bring(left--, threads); }

        static Task<std::optional<ByteChunk>> bring(int left, std::vector<std::jthread>* threads) {
            if (left == 0) co_return std::nullopt;
            auto start = [threads](platform::Continuation<std::string> continuation) {
                threads->emplace_back([c = std::move(continuation)]() mutable { c.resume("ab"); });
            };
            std::string text = co_await platform::withContinuation<std::string>(start);
            co_return ByteChunk(std::move(text));
        }

        int left;
        std::vector<std::jthread>* threads;
    };

    Iterator makeAsyncIterator() const { return {3, threads}; }

    std::vector<std::jthread>* threads;
};

TEST(HTTPBodyConcurrency, ReadsASourceThatReallySuspends) {
    for (int round = 0; round < 100; ++round) {
        std::vector<std::jthread> threads;
        auto collected = collect<std::string>(HTTPBody(ThreadedSource{&threads}, Length::unknown()), 6);
        ASSERT_EQ(syncWait(std::move(collected)), "ababab");
    }
}

} // namespace
