#pragma once

#include "platform/Ranges.hpp"
#include "platform/concurrency/Task.hpp"

#include <exception>
#include <iterator>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// The asynchronous view of a plain range, which it owns: its elements, without ever suspending. Copies share the
/// range.
///
/// A range that can be iterated only when it is not `const` (a filter, an input stream) can be wrapped, too; it should
/// then be iterated once only, since its iterators may share state.
template <platform::InputRange Upstream>
class WrappedSyncSequence {
    using Range = std::conditional_t<platform::InputRange<const Upstream>, const Upstream, Upstream>;

public:
    using Element = platform::RangeValue<Range>;

    class Iterator {
    public:
        using Element = WrappedSyncSequence::Element;

        explicit Iterator(std::shared_ptr<Range> sequence)
            : sequence_(std::move(sequence))
            , at_(std::ranges::begin(*sequence_))
            , end_(std::ranges::end(*sequence_)) {}

        /// The next element, ready; fails with what the range's own iterator throws.
        [[nodiscard]] platform::Task<std::optional<Element>> next() {
            using Next = platform::Task<std::optional<Element>>;
            try {
                if (isPastFirst_ && at_ != end_) ++at_; // only now: a step may block or consume
                isPastFirst_ = true;
                if (at_ == end_) return Next::ready(std::nullopt);
                return Next::ready(std::optional<Element>(*at_));
            } catch (...) {
                return Next::failed(std::current_exception());
            }
        }

    private:
        std::shared_ptr<Range> sequence_;
        platform::RangeIterator<Range> at_;
        platform::RangeSentinel<Range> end_;
        bool isPastFirst_ = false;
    };

    /// Takes over `sequence`.
    explicit WrappedSyncSequence(Upstream sequence)
        : sequence_(std::make_shared<Upstream>(std::move(sequence))) {}

    [[nodiscard]] Iterator makeAsyncIterator() const { return Iterator(sequence_); }

private:
    std::shared_ptr<Range> sequence_;
};

} // namespace OpenAPIRuntime::inline v1
