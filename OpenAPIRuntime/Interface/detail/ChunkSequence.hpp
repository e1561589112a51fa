#pragma once

#include "platform/Ranges.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/concurrency/AsyncSequence.hpp"
#include "platform/concurrency/Task.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1::detail {

template <typename T>
concept Byte = std::same_as<T, std::uint8_t> || std::same_as<T, std::byte>;

template <typename T>
concept ByteRange = platform::InputRange<T> && Byte<std::remove_cv_t<platform::RangeValue<T>>>;

/// Bytes that lie at hand and can be read again.
template <typename T>
concept ByteCollection = ByteRange<const T> && platform::ForwardRange<const T>;

template <typename T>
concept Text = std::convertible_to<const T&, std::string_view>;

/// What becomes a chunk, but is none yet.
template <typename T>
concept ChunkConvertible = !std::same_as<T, platform::ByteChunk> && (Text<T> || ByteRange<T>);

/// The chunk of the bytes of a text or a range; a string or a vector of bytes moved in is taken over.
template <ChunkConvertible T>
[[nodiscard]] platform::ByteChunk chunkOf(T source) {
    if constexpr (std::same_as<T, std::string> || std::same_as<T, std::vector<std::uint8_t>>) {
        return platform::ByteChunk(std::move(source));
    } else if constexpr (Text<T>) {
        return platform::ByteChunk(std::string_view(source));
    } else {
        std::vector<std::uint8_t> bytes;
        if constexpr (requires { std::ranges::size(source); })
            bytes.reserve(static_cast<std::size_t>(std::ranges::size(source)));
        for (const auto byte : source) {
            bytes.push_back(static_cast<std::uint8_t>(byte));
        }
        return platform::ByteChunk(std::move(bytes));
    }
}

/// The elements of an asynchronous sequence of texts or byte ranges, each as a chunk.
template <platform::AsyncSequence Upstream>
class ChunkSequence {
    using UpstreamIterator = decltype(std::declval<const Upstream&>().makeAsyncIterator());
    using UpstreamNext = platform::Task<std::optional<typename Upstream::Element>>;
    using Next = platform::Task<std::optional<platform::ByteChunk>>;

public:
    using Element = platform::ByteChunk;

    class Iterator {
    public:
        using Element = platform::ByteChunk;

        explicit Iterator(UpstreamIterator upstream)
            : upstream_(std::move(upstream)) {}

        [[nodiscard]] Next next() {
            UpstreamNext pending = upstream_.next();
            if (!pending.isReady()) return convertLater(std::move(pending));
            try {
                return Next::ready(convert(pending.takeReady()));
            } catch (...) {
                return Next::failed(std::current_exception());
            }
        }

    private:
        static std::optional<platform::ByteChunk> convert(std::optional<typename Upstream::Element> element) {
            if (!element) return std::nullopt;
            return chunkOf(*std::move(element));
        }

        static Next convertLater(UpstreamNext pending) {
            auto element = co_await std::move(pending);
            co_return convert(std::move(element));
        }

        UpstreamIterator upstream_;
    };

    explicit ChunkSequence(Upstream upstream)
        : upstream_(std::move(upstream)) {}

    [[nodiscard]] Iterator makeAsyncIterator() const { return Iterator(upstream_.makeAsyncIterator()); }

private:
    Upstream upstream_;
};

/// The bytes of a range as one chunk, read from the range anew for each iterator.
template <ByteRange Bytes>
class GatheredSequence {
    using Range = std::conditional_t<platform::InputRange<const Bytes>, const Bytes, Bytes>;

public:
    using Element = platform::ByteChunk;

    class Iterator {
    public:
        using Element = platform::ByteChunk;

        explicit Iterator(std::shared_ptr<Range> bytes)
            : bytes_(std::move(bytes)) {}

        [[nodiscard]] platform::Task<std::optional<platform::ByteChunk>> next() {
            using Next = platform::Task<std::optional<platform::ByteChunk>>;
            const std::shared_ptr<Range> source = std::move(bytes_);
            if (!source) return Next::ready(std::nullopt);
            try {
                std::vector<std::uint8_t> bytes;
                for (const auto byte : *source) {
                    bytes.push_back(static_cast<std::uint8_t>(byte));
                }
                return Next::ready(platform::ByteChunk(std::move(bytes)));
            } catch (...) {
                return Next::failed(std::current_exception());
            }
        }

    private:
        std::shared_ptr<Range> bytes_; // none once its chunk was given
    };

    explicit GatheredSequence(Bytes bytes)
        : bytes_(std::make_shared<Bytes>(std::move(bytes))) {}

    [[nodiscard]] Iterator makeAsyncIterator() const { return Iterator(bytes_); }

private:
    std::shared_ptr<Range> bytes_;
};

} // namespace OpenAPIRuntime::inline v1::detail
