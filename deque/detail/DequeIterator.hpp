#pragma once

#include "deque/detail/DequeBuffer.hpp"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <iterator>
#include <type_traits>

namespace deque::inline v1 {

template <class Element>
class Deque;

namespace detail {

/// A random-access iterator over a ring of slots; `Element` is const for the read-only one.
///
/// It goes through one contiguous run of slots at a time: a step is that of a pointer and one comparison, and only at
/// the end of a run it looks into the buffer. Behind the last element `current_` is null.
template <class Element>
class DequeIterator {
public:
    using iterator_concept = std::random_access_iterator_tag;
    using iterator_category = std::random_access_iterator_tag;
    using value_type = std::remove_const_t<Element>;
    using difference_type = std::ptrdiff_t;
    using pointer = Element*;
    using reference = Element&;

    constexpr DequeIterator() noexcept = default;

    /// The read-only iterator of a writing one.
    template <class Other>
        requires(std::is_const_v<Element> && std::is_same_v<const Other, Element> && !std::is_const_v<Other>)
    constexpr DequeIterator(const DequeIterator<Other>& other) noexcept
        : current_(other.current_)
        , runEnd_(other.runEnd_)
        , header_(other.header_) {}

    [[nodiscard]] constexpr reference operator*() const noexcept { return *current_; }

    [[nodiscard]] constexpr pointer operator->() const noexcept { return current_; }

    [[nodiscard]] reference operator[](difference_type distance) const noexcept { return *(*this + distance); }

    DequeIterator& operator++() noexcept {
        if (++current_ == runEnd_) [[unlikely]]
            enterNextRun();
        return *this;
    }

    DequeIterator operator++(int) noexcept {
        DequeIterator before = *this;
        ++*this;
        return before;
    }

    DequeIterator& operator--() noexcept {
        if (current_ == nullptr || current_ == slots()) [[unlikely]]
            return *this = DequeIterator(header_, offset() - 1);
        --current_;
        return *this;
    }

    DequeIterator operator--(int) noexcept {
        DequeIterator before = *this;
        --*this;
        return before;
    }

    DequeIterator& operator+=(difference_type distance) noexcept {
        if (static_cast<std::size_t>(distance) < static_cast<std::size_t>(runEnd_ - current_)) {
            current_ += distance;
            return *this;
        }
        return *this = DequeIterator(header_, offset() + distance);
    }

    DequeIterator& operator-=(difference_type distance) noexcept { return *this += -distance; }

    [[nodiscard]] friend DequeIterator operator+(DequeIterator it, difference_type distance) noexcept {
        return it += distance;
    }

    [[nodiscard]] friend DequeIterator operator+(difference_type distance, DequeIterator it) noexcept {
        return it += distance;
    }

    [[nodiscard]] friend DequeIterator operator-(DequeIterator it, difference_type distance) noexcept {
        return it -= distance;
    }

    [[nodiscard]] friend difference_type operator-(const DequeIterator& left, const DequeIterator& right) noexcept {
        return left.offset() - right.offset();
    }

    [[nodiscard]] friend constexpr bool operator==(const DequeIterator& left, const DequeIterator& right) noexcept {
        return left.current_ == right.current_;
    }

    [[nodiscard]] friend std::strong_ordering
    operator<=>(const DequeIterator& left, const DequeIterator& right) noexcept {
        return left.offset() <=> right.offset();
    }

private:
    template <class Other>
    friend class DequeIterator;
    template <class Other>
    friend class v1::Deque;

    /// At the element `offset` of a buffer, or behind the last one.
    DequeIterator(DequeBufferHeader* header, difference_type offset) noexcept
        : header_(header) {
        if (offset == header->count) return;
        const difference_type position = header->startSlot.position + offset;
        const difference_type end = header->startSlot.position + header->count;
        if (position < header->capacity) {
            current_ = slots() + position;
            runEnd_ = slots() + std::min<difference_type>(end, header->capacity);
        } else {
            current_ = slots() + (position - header->capacity);
            runEnd_ = slots() + (end - header->capacity);
        }
    }

    [[nodiscard]] Element* slots() const noexcept { return slotsOf<value_type>(header_); }

    /// How many elements stand before it.
    [[nodiscard]] difference_type offset() const noexcept {
        if (current_ == nullptr) return header_->count;
        const difference_type distance = current_ - slots() - header_->startSlot.position;
        return distance >= 0 ? distance : distance + header_->capacity;
    }

    /// How many elements follow without a wrap, this one included.
    [[nodiscard]] difference_type runLength() const noexcept { return runEnd_ - current_; }

    /// From the end of a run to the second run, if that was the first of two, or behind the last element.
    void enterNextRun() noexcept {
        const difference_type wrapped = header_->startSlot.position + header_->count - header_->capacity;
        const bool hasNext = wrapped > 0 && runEnd_ == slots() + header_->capacity;
        current_ = hasNext ? slots() : nullptr;
        runEnd_ = hasNext ? slots() + wrapped : nullptr;
    }

    Element* current_ = nullptr;
    Element* runEnd_ = nullptr;
    DequeBufferHeader* header_ = const_cast<DequeBufferHeader*>(&emptyDequeStorage); // never written through
};

} // namespace detail

} // namespace deque::inline v1
