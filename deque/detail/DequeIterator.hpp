#pragma once

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
/// `position_` counts slots from slot 0 on without wrapping, so that it orders the elements; `current_` is where that
/// position lies. An end position that meets the end of the slots lies, wrapped, at slot 0 and is not read.
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
        , position_(other.position_)
        , capacity_(other.capacity_) {}

    [[nodiscard]] constexpr reference operator*() const noexcept { return *current_; }

    [[nodiscard]] constexpr pointer operator->() const noexcept { return current_; }

    [[nodiscard]] constexpr reference operator[](difference_type distance) const noexcept {
        return *(*this + distance);
    }

    constexpr DequeIterator& operator++() noexcept {
        ++current_;
        // Rare, and to be branched over: a conditional move would put the wrap into the chain from element to element.
        if (++position_ == capacity_) [[unlikely]]
            current_ -= capacity_;
        return *this;
    }

    constexpr DequeIterator operator++(int) noexcept {
        DequeIterator before = *this;
        ++*this;
        return before;
    }

    constexpr DequeIterator& operator--() noexcept {
        if (position_-- == capacity_) current_ += capacity_;
        --current_;
        return *this;
    }

    constexpr DequeIterator operator--(int) noexcept {
        DequeIterator before = *this;
        --*this;
        return before;
    }

    constexpr DequeIterator& operator+=(difference_type distance) noexcept {
        const difference_type target = position_ + distance;
        difference_type step = distance;
        if (position_ < capacity_ && target >= capacity_) step -= capacity_;
        if (position_ >= capacity_ && target < capacity_) step += capacity_;
        current_ += step;
        position_ = target;
        return *this;
    }

    constexpr DequeIterator& operator-=(difference_type distance) noexcept { return *this += -distance; }

    [[nodiscard]] friend constexpr DequeIterator operator+(DequeIterator it, difference_type distance) noexcept {
        return it += distance;
    }

    [[nodiscard]] friend constexpr DequeIterator operator+(difference_type distance, DequeIterator it) noexcept {
        return it += distance;
    }

    [[nodiscard]] friend constexpr DequeIterator operator-(DequeIterator it, difference_type distance) noexcept {
        return it -= distance;
    }

    [[nodiscard]] friend constexpr difference_type
    operator-(const DequeIterator& left, const DequeIterator& right) noexcept {
        return left.position_ - right.position_;
    }

    [[nodiscard]] friend constexpr bool operator==(const DequeIterator& left, const DequeIterator& right) noexcept {
        return left.position_ == right.position_;
    }

    [[nodiscard]] friend constexpr std::strong_ordering
    operator<=>(const DequeIterator& left, const DequeIterator& right) noexcept {
        return left.position_ <=> right.position_;
    }

private:
    template <class Other>
    friend class DequeIterator;
    template <class Other>
    friend class v1::Deque;

    constexpr DequeIterator(Element* elements, difference_type position, difference_type capacity) noexcept
        : current_(elements + (position < capacity ? position : position - capacity))
        , position_(position)
        , capacity_(capacity) {}

    /// How many slots follow without a wrap, this one included.
    [[nodiscard]] constexpr difference_type runLength() const noexcept {
        return position_ < capacity_ ? capacity_ - position_ : 2 * capacity_ - position_;
    }

    Element* current_ = nullptr;
    difference_type position_ = 0;
    difference_type capacity_ = 0;
};

} // namespace detail

} // namespace deque::inline v1
