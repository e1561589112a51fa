#pragma once

#include "platform/concurrency/Task.hpp"

#include <concepts>
#include <optional>

namespace platform::inline v1 {

/// Yields elements one after the other, each when it is asked for: `next()` gives a task of the next element, or of
/// nothing at the end. One call of `next` is awaited before the next one is made.
template <class I>
concept AsyncIterator = std::movable<I> && requires(I& iterator) {
    typename I::Element;
    { iterator.next() } -> std::same_as<Task<std::optional<typename I::Element>>>;
};

/// A source of elements over time: every stream is one.
template <class S>
concept AsyncSequence = requires(const S& sequence) {
    typename S::Element;
    { sequence.makeAsyncIterator() } -> AsyncIterator;
};

} // namespace platform::inline v1
