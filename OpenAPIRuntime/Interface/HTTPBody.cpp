#include "OpenAPIRuntime/Interface/HTTPBody.hpp"

#include "OpenAPIRuntime/Interface/EmptySequence.hpp"
#include "platform/text/UTF8.hpp"

#include <atomic>
#include <exception>

namespace OpenAPIRuntime::inline v1 {

using platform::ByteChunk;
using platform::Task;

/// A chunk at hand needs neither a sequence nor an iterator of its own.
struct HTTPBody::State {
    using Source = std::variant<ByteChunk, AnySequence<ByteChunk>>;

    State(Source bodySource, Length bodyLength, IterationBehavior behavior)
        : source(std::move(bodySource))
        , length(bodyLength)
        , iterationBehavior(behavior) {}

    const Source source;
    const Length length;
    const IterationBehavior iterationBehavior;
    std::atomic<bool> iteratorCreated{false};
};

HTTPBody::HTTPBody()
    : HTTPBody(AnySequence<ByteChunk>(EmptySequence<ByteChunk>()), Length::known(0), IterationBehavior::multiple) {}

HTTPBody::HTTPBody(ByteChunk bytes) {
    const Length length = Length::known(static_cast<std::int64_t>(bytes.size()));
    state_ = std::make_shared<State>(std::move(bytes), length, IterationBehavior::multiple);
}

HTTPBody::HTTPBody(ByteChunk bytes, Length length)
    : state_(std::make_shared<State>(std::move(bytes), length, IterationBehavior::multiple)) {}

HTTPBody::HTTPBody(std::vector<std::uint8_t> bytes)
    : HTTPBody(ByteChunk(std::move(bytes))) {}

HTTPBody::HTTPBody(std::vector<std::uint8_t> bytes, Length length)
    : HTTPBody(ByteChunk(std::move(bytes)), length) {}

HTTPBody::HTTPBody(std::initializer_list<std::uint8_t> bytes)
    : HTTPBody(ByteChunk(std::vector<std::uint8_t>(bytes))) {}

HTTPBody::HTTPBody(const char* text)
    : HTTPBody(ByteChunk(text)) {}

HTTPBody::HTTPBody(const char* text, Length length)
    : HTTPBody(ByteChunk(text), length) {}

HTTPBody::HTTPBody(std::string text)
    : HTTPBody(ByteChunk(std::move(text))) {}

HTTPBody::HTTPBody(std::string text, Length length)
    : HTTPBody(ByteChunk(std::move(text)), length) {}

HTTPBody::HTTPBody(std::string_view text)
    : HTTPBody(ByteChunk(text)) {}

HTTPBody::HTTPBody(std::string_view text, Length length)
    : HTTPBody(ByteChunk(text), length) {}

HTTPBody::HTTPBody(AnySequence<ByteChunk> sequence, Length length, IterationBehavior iterationBehavior)
    : state_(std::make_shared<State>(std::move(sequence), length, iterationBehavior)) {}

HTTPBody::Length HTTPBody::length() const noexcept {
    return state_->length;
}

IterationBehavior HTTPBody::iterationBehavior() const noexcept {
    return state_->iterationBehavior;
}

HTTPBody::Iterator HTTPBody::makeAsyncIterator() const {
    const bool isFurther = state_->iteratorCreated.exchange(true, std::memory_order_relaxed);
    if (isFurther && state_->iterationBehavior == IterationBehavior::single) return Iterator(Iterator::Refused());
    if (const auto* chunk = std::get_if<ByteChunk>(&state_->source)) return Iterator(*chunk);
    return Iterator(std::get<AnySequence<ByteChunk>>(state_->source).makeAsyncIterator());
}

std::string HTTPBody::prettyDescription() const {
    return "OpenAPIRuntime.HTTPBody";
}

HTTPBody::Iterator::Iterator(Source source) noexcept
    : source_(std::move(source)) {}

Task<std::optional<ByteChunk>> HTTPBody::Iterator::next() {
    using Next = Task<std::optional<ByteChunk>>;
    if (auto* iterator = std::get_if<AnyIterator<ByteChunk>>(&source_)) return iterator->next();
    if (auto* chunk = std::get_if<ByteChunk>(&source_)) {
        std::optional<ByteChunk> only(std::move(*chunk));
        source_ = Ended();
        return Next::ready(std::move(only));
    }
    if (std::holds_alternative<Refused>(source_))
        return Next::failed(std::make_exception_ptr(TooManyIterationsError()));
    return Next::ready(std::nullopt);
}

TooManyBytesError::TooManyBytesError(std::size_t maxBytes)
    : std::runtime_error(
          "OpenAPIRuntime.HTTPBody contains more than the maximum allowed " + std::to_string(maxBytes) + " bytes."
      )
    , maxBytes_(maxBytes) {}

TooManyIterationsError::TooManyIterationsError()
    : std::runtime_error("OpenAPIRuntime.HTTPBody attempted to create a second iterator, but the underlying sequence "
                         "is only safe to be "
                         "iterated once.") {}

namespace {

/// What has been read of a body: nothing, one chunk as it came, or the bytes of several.
class Gathered {
public:
    explicit Gathered(std::size_t maxBytes) noexcept
        : maxBytes_(maxBytes) {}

    void add(ByteChunk chunk) {
        if (chunk.size() > maxBytes_ - count_) throw TooManyBytesError(maxBytes_);
        if (count_ == 0) {
            first_ = std::move(chunk);
            count_ = first_.size();
            return;
        }
        if (bytes_.empty()) bytes_.assign(first_.begin(), first_.end());
        bytes_.insert(bytes_.end(), chunk.begin(), chunk.end());
        count_ = bytes_.size();
    }

    [[nodiscard]] ByteChunk take() { return bytes_.empty() ? std::move(first_) : ByteChunk(std::move(bytes_)); }

private:
    std::size_t maxBytes_;
    std::size_t count_ = 0;
    ByteChunk first_{};
    std::vector<std::uint8_t> bytes_{}; // empty while the first chunk is all
};

Task<ByteChunk> collectRest(Task<std::optional<ByteChunk>> pending, HTTPBody::Iterator iterator, Gathered gathered) {
    auto chunk = co_await std::move(pending);
    while (chunk) {
        gathered.add(*std::move(chunk));
        chunk = co_await iterator.next();
    }
    co_return gathered.take();
}

template <typename Bytes>
Task<Bytes> convertLater(Task<ByteChunk> pending, Bytes (*convert)(const ByteChunk&)) {
    auto bytes = co_await std::move(pending);
    co_return convert(bytes);
}

template <typename Bytes>
Task<Bytes> converted(Task<ByteChunk> pending, Bytes (*convert)(const ByteChunk&)) {
    if (!pending.isReady()) return convertLater(std::move(pending), convert);
    try {
        return Task<Bytes>::ready(convert(pending.takeReady()));
    } catch (...) {
        return Task<Bytes>::failed(std::current_exception());
    }
}

} // namespace

template <>
// NOLINTNEXTLINE(performance-unnecessary-value-param): what gives a task takes its arguments by value
Task<ByteChunk> collect<ByteChunk>(HTTPBody body, std::size_t upTo) {
    try {
        const auto byteCount = body.length().byteCount();
        if (byteCount && std::cmp_greater(*byteCount, upTo)) throw TooManyBytesError(upTo);
        HTTPBody::Iterator iterator = body.makeAsyncIterator();
        Gathered gathered(upTo);
        while (true) {
            auto pending = iterator.next();
            if (!pending.isReady()) return collectRest(std::move(pending), std::move(iterator), std::move(gathered));
            auto chunk = pending.takeReady();
            if (!chunk) return Task<ByteChunk>::ready(gathered.take());
            gathered.add(*std::move(chunk));
        }
    } catch (...) {
        return Task<ByteChunk>::failed(std::current_exception());
    }
}

template <>
Task<std::vector<std::uint8_t>> collect<std::vector<std::uint8_t>>(HTTPBody body, std::size_t upTo) {
    return converted<std::vector<std::uint8_t>>(collect<ByteChunk>(std::move(body), upTo), [](const ByteChunk& bytes) {
        return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
    });
}

template <>
Task<std::string> collect<std::string>(HTTPBody body, std::size_t upTo) {
    return converted<std::string>(collect<ByteChunk>(std::move(body), upTo), [](const ByteChunk& bytes) {
        return platform::repairedUTF8(bytes.view());
    });
}

} // namespace OpenAPIRuntime::inline v1
