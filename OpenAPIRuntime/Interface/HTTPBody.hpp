#pragma once

#include "OpenAPIRuntime/Interface/AnyIterator.hpp"
#include "OpenAPIRuntime/Interface/AnySequence.hpp"
#include "OpenAPIRuntime/Interface/IterationBehavior.hpp"
#include "OpenAPIRuntime/Interface/WrappedSyncSequence.hpp"
#include "OpenAPIRuntime/Interface/detail/ChunkSequence.hpp"
#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"
#include "platform/Ranges.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/concurrency/AsyncSequence.hpp"
#include "platform/concurrency/Task.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// A body of a request or response: a stream of byte chunks.
///
///     HTTPBody body("hello");                                        // from text or bytes at hand
///     HTTPBody upload(chunks, HTTPBody::Length::known(1 << 20));      // from an asynchronous sequence
///     std::string text = co_await collect<std::string>(body, 1 << 20); // all of it, at most 1 MiB
///
/// # Iterating
///
/// A body is an asynchronous sequence (`platform::AsyncSequence`). Whoever reads it asks for a chunk at a time, and
/// what feeds it works only while it is asked:
///
///     HTTPBody::Iterator chunks = body.makeAsyncIterator();
///     while (auto chunk = co_await chunks.next()) { ... }
///
/// # Identity
///
/// It is a handle to a shared object: copies are the same body, and two bodies are equal only when they are one. A body
/// that was moved from may only be assigned to or destroyed.
///
/// Thread safety: a shared body may be used from several threads; each of its iterators belongs to one task at a time.
class QUILLBEAM_EXPORT HTTPBody {
public:
    using ByteChunk = platform::ByteChunk;
    using Element = ByteChunk;

    /// The number of bytes of a body, as far as it is known beforehand.
    class Length {
    public:
        [[nodiscard]] static constexpr Length known(std::int64_t byteCount) noexcept { return Length(byteCount); }

        [[nodiscard]] static constexpr Length unknown() noexcept { return Length(std::nullopt); }

        [[nodiscard]] constexpr bool isKnown() const noexcept { return byteCount_.has_value(); }

        [[nodiscard]] constexpr bool isUnknown() const noexcept { return !isKnown(); }

        /// The number of bytes; nothing when it is unknown.
        [[nodiscard]] constexpr std::optional<std::int64_t> byteCount() const noexcept { return byteCount_; }

        friend constexpr bool operator==(const Length&, const Length&) = default;

    private:
        constexpr explicit Length(std::optional<std::int64_t> byteCount) noexcept
            : byteCount_(byteCount) {}

        std::optional<std::int64_t> byteCount_;
    };

    class Iterator;

    /// @name Bytes and text at hand
    /// One chunk, taken over without copying where the argument is a chunk, a vector or a string that is moved in. It
    /// can be iterated any number of times. The length is the number of bytes unless given; text counts in UTF-8.
    /// @{

    /// The body without a chunk, of length 0.
    HTTPBody();

    explicit HTTPBody(ByteChunk bytes);
    HTTPBody(ByteChunk bytes, Length length);
    explicit HTTPBody(std::vector<std::uint8_t> bytes);
    HTTPBody(std::vector<std::uint8_t> bytes, Length length);
    HTTPBody(std::initializer_list<std::uint8_t> bytes);
    HTTPBody(const char* text); // NOLINT(google-explicit-constructor): a literal stands for the body of its text
    HTTPBody(const char* text, Length length);
    explicit HTTPBody(std::string text);
    HTTPBody(std::string text, Length length);
    explicit HTTPBody(std::string_view text);
    HTTPBody(std::string_view text, Length length);

    template <detail::ByteCollection Bytes>
    explicit HTTPBody(const Bytes& bytes)
        : HTTPBody(detail::chunkOf(bytes)) {}

    template <detail::ByteCollection Bytes>
    HTTPBody(const Bytes& bytes, Length length)
        : HTTPBody(detail::chunkOf(bytes), length) {}

    /// @}
    /// @name Sequences
    /// @{

    /// The bytes of a range, read anew and given as one chunk for each iteration.
    template <detail::ByteRange Bytes>
    HTTPBody(Bytes bytes, Length length, IterationBehavior iterationBehavior)
        : HTTPBody(
              AnySequence<ByteChunk>(detail::GatheredSequence<Bytes>(std::move(bytes))), length, iterationBehavior
          ) {}

    /// The chunks of a range.
    template <platform::InputRange Chunks>
        requires std::same_as<platform::RangeValue<Chunks>, ByteChunk>
    HTTPBody(Chunks chunks, Length length, IterationBehavior iterationBehavior)
        : HTTPBody(AnySequence<ByteChunk>(WrappedSyncSequence<Chunks>(std::move(chunks))), length, iterationBehavior) {}

    /// The elements of an asynchronous sequence, each one a chunk, a text or a range of bytes. Such a sequence is taken
    /// to be a stream that can be read once unless told otherwise.
    template <platform::AsyncSequence Sequence>
        requires detail::ChunkConvertible<typename Sequence::Element>
    HTTPBody(Sequence sequence, Length length, IterationBehavior iterationBehavior = IterationBehavior::single)
        : HTTPBody(
              AnySequence<ByteChunk>(detail::ChunkSequence<Sequence>(std::move(sequence))), length, iterationBehavior
          ) {}

    template <platform::AsyncSequence Sequence>
        requires std::same_as<typename Sequence::Element, ByteChunk>
    HTTPBody(Sequence sequence, Length length, IterationBehavior iterationBehavior = IterationBehavior::single)
        : HTTPBody(AnySequence<ByteChunk>(std::move(sequence)), length, iterationBehavior) {}

    HTTPBody(
        AnySequence<ByteChunk> sequence, Length length, IterationBehavior iterationBehavior = IterationBehavior::single
    );

    /// @}

    [[nodiscard]] Length length() const noexcept;

    [[nodiscard]] IterationBehavior iterationBehavior() const noexcept;

    /// A fresh iterator. The second one of a body that can be iterated once fails at its first `next()`, with
    /// `TooManyIterationsError`.
    [[nodiscard]] Iterator makeAsyncIterator() const;

    /// "OpenAPIRuntime.HTTPBody".
    [[nodiscard]] std::string prettyDescription() const;

    /// Whether both are the same body.
    friend bool operator==(const HTTPBody&, const HTTPBody&) = default;

private:
    friend struct std::hash<HTTPBody>;

    struct State;

    std::shared_ptr<State> state_;
};

/// Yields the chunks of a body.
class QUILLBEAM_EXPORT HTTPBody::Iterator {
public:
    using Element = ByteChunk;

    /// The next chunk, or nothing at the end. Fails with what the body's source fails with, or with
    /// `TooManyIterationsError`. The iterator must live until the task has ended; moving it meanwhile is allowed.
    [[nodiscard]] platform::Task<std::optional<ByteChunk>> next();

private:
    friend class HTTPBody;

    struct Ended {};

    struct Refused {};

    using Source = std::variant<Ended, Refused, ByteChunk, AnyIterator<ByteChunk>>;

    explicit Iterator(Source source) noexcept;

    Source source_;
};

/// A body held more bytes than the limit given for collecting it.
class QUILLBEAM_EXPORT TooManyBytesError final : public std::runtime_error, public platform::PrettyStringConvertible {
public:
    explicit TooManyBytesError(std::size_t maxBytes);

    [[nodiscard]] std::size_t maxBytes() const noexcept { return maxBytes_; }

    [[nodiscard]] std::string prettyDescription() const override { return what(); }

    friend bool operator==(const TooManyBytesError& left, const TooManyBytesError& right) noexcept {
        return left.maxBytes_ == right.maxBytes_;
    }

private:
    std::size_t maxBytes_;
};

/// A second iteration was started of a body that can be iterated only once.
class QUILLBEAM_EXPORT TooManyIterationsError final : public std::runtime_error,
                                                      public platform::PrettyStringConvertible {
public:
    TooManyIterationsError();

    [[nodiscard]] std::string prettyDescription() const override { return what(); }
};

/// Reads the whole body: as a `ByteChunk`, a `std::vector<std::uint8_t>`, or a `std::string` in which malformed UTF-8
/// is replaced by U+FFFD.
///
/// @param body the body to read; one that is to be iterated once is used up
/// @param upTo the most bytes to accept
/// The task fails with `TooManyBytesError` when the body has more than `upTo` bytes: before reading it when its length
/// says so, else at the chunk that passes the limit. It fails with what the body fails with.
///
/// The chunk of a body of one chunk comes back as it is, without a copy; bytes at hand give a task that is ready.
template <typename Bytes = platform::ByteChunk>
[[nodiscard]] platform::Task<Bytes> collect(HTTPBody body, std::size_t upTo) = delete;

template <>
QUILLBEAM_EXPORT platform::Task<platform::ByteChunk> collect<platform::ByteChunk>(HTTPBody body, std::size_t upTo);
template <>
QUILLBEAM_EXPORT platform::Task<std::vector<std::uint8_t>>
collect<std::vector<std::uint8_t>>(HTTPBody body, std::size_t upTo);
template <>
QUILLBEAM_EXPORT platform::Task<std::string> collect<std::string>(HTTPBody body, std::size_t upTo);

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::HTTPBody> {
    std::size_t operator()(const OpenAPIRuntime::HTTPBody& body) const noexcept {
        return std::hash<const void*>()(body.state_.get());
    }
};
