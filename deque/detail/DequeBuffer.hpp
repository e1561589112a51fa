#pragma once

#include "platform/Export.hpp"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>

namespace deque::inline v1::detail {

/// A number in the header of a buffer. It is of a type of its own, so that a compiler knows that storing an element
/// leaves it as it is: a loop over a deque of integers keeps it in a register.
class DequeNumber {
public:
    constexpr DequeNumber() noexcept = default;

    constexpr DequeNumber(std::ptrdiff_t value) noexcept
        : value_(static_cast<Value>(value)) {}

    constexpr operator std::ptrdiff_t() const noexcept { return static_cast<std::ptrdiff_t>(value_); }

    constexpr DequeNumber& operator+=(std::ptrdiff_t added) noexcept { return *this = *this + added; }

    constexpr DequeNumber& operator-=(std::ptrdiff_t removed) noexcept { return *this = *this - removed; }

private:
    enum class Value : std::ptrdiff_t {};
    Value value_{};
};

/// A raw index into the slots of a buffer.
struct DequeSlot {
    DequeNumber position{};

    [[nodiscard]] constexpr bool operator==(const DequeSlot&) const noexcept = default;
};

/// What stands before the slots in the one allocation of a buffer.
///
/// 0 <= count <= capacity, and 0 <= startSlot < capacity or both are 0. The element at offset i lives in slot
/// startSlot + i, less `capacity` where that is `capacity` or more.
struct DequeBufferHeader {
    /// How many deques hold the buffer, or `lent`.
    std::atomic<std::ptrdiff_t> references{1};
    DequeNumber capacity{};
    DequeNumber count{};
    DequeSlot startSlot{};

    /// In `references`: one deque holds the buffer and has handed out references that may be written through. Such a
    /// buffer is not shared: a copy of the deque copies the elements, or it would change with the original.
    static constexpr std::ptrdiff_t lent = 0;

    constexpr DequeBufferHeader() noexcept = default;

    constexpr DequeBufferHeader(std::ptrdiff_t holders, std::ptrdiff_t slots) noexcept
        : references(holders)
        , capacity(slots) {}

    /// The slot `distance` behind `slot`; 0 <= distance <= capacity.
    [[nodiscard]] constexpr DequeSlot advanced(DequeSlot slot, std::ptrdiff_t distance) const noexcept {
        const std::ptrdiff_t position = slot.position + distance;
        return {position < capacity ? position : position - capacity};
    }

    /// The slot `distance` before `slot`; 0 <= distance <= capacity.
    [[nodiscard]] constexpr DequeSlot receded(DequeSlot slot, std::ptrdiff_t distance) const noexcept {
        const std::ptrdiff_t position = slot.position - distance;
        return {position >= 0 ? position : position + capacity};
    }

    [[nodiscard]] constexpr DequeSlot slotForOffset(std::ptrdiff_t offset) const noexcept {
        return advanced(startSlot, offset);
    }

    // At the ends a wrap is rare and to be branched over: a conditional move would put it into the chain from one
    // operation to the next.

    [[nodiscard]] constexpr DequeSlot slotAfter(DequeSlot slot) const noexcept {
        const std::ptrdiff_t position = slot.position + 1;
        if (position == capacity) [[unlikely]]
            return {0};
        return {position};
    }

    [[nodiscard]] constexpr DequeSlot slotBefore(DequeSlot slot) const noexcept {
        if (slot.position == 0) [[unlikely]]
            return {capacity - 1};
        return {slot.position - 1};
    }

    /// Where the next element goes; equal to `startSlot` where the buffer is full.
    [[nodiscard]] constexpr DequeSlot endSlot() const noexcept { return rarelyWrapped(startSlot.position + count); }

    /// Where the last element is; there is one.
    [[nodiscard]] constexpr DequeSlot lastSlot() const noexcept {
        return rarelyWrapped(startSlot.position + count - 1);
    }

private:
    [[nodiscard]] constexpr DequeSlot rarelyWrapped(std::ptrdiff_t position) const noexcept {
        if (__builtin_expect_with_probability(position >= capacity, 0, 0.999)) return {position - capacity};
        return {position};
    }
};

/// Stands for every deque without capacity. It is never written, and no deque counts as its only holder.
extern QUILLBEAM_EXPORT const DequeBufferHeader emptyDequeStorage;

/// The larger of `minimum` and, unless `linearly`, one and a half times `capacity`, rounded up.
[[nodiscard]] constexpr std::ptrdiff_t
grownCapacity(std::ptrdiff_t capacity, std::ptrdiff_t minimum, bool linearly) noexcept {
    return std::max(minimum, linearly ? capacity : capacity + (capacity >> 1) + (capacity & 1));
}

/// Where the slots begin, in bytes from the header.
template <class Element>
inline constexpr std::size_t elementsOffset =
    (sizeof(DequeBufferHeader) + alignof(Element) - 1) / alignof(Element) * alignof(Element);

/// The slots of a buffer.
template <class Element>
[[nodiscard]] Element* slotsOf(DequeBufferHeader* buffer) noexcept {
    return reinterpret_cast<Element*>(reinterpret_cast<std::byte*>(buffer) + elementsOffset<Element>);
}

/// A buffer without elements, held once.
/// @throws std::bad_alloc also where no object can be that large
[[nodiscard]] QUILLBEAM_EXPORT DequeBufferHeader* allocateDequeBuffer(
    std::ptrdiff_t capacity, std::size_t elementSize, std::size_t elementsStart, std::size_t elementAlignment
);

/// A buffer held once, with room for more elements, which stay in their slots: where it lies if there is room behind
/// it, else elsewhere, with the bytes of the elements. Their alignment is not above that of `std::max_align_t`.
/// @throws std::bad_alloc, and the buffer is as it was
[[nodiscard]] QUILLBEAM_EXPORT DequeBufferHeader* enlargeDequeBuffer(
    DequeBufferHeader* buffer, std::ptrdiff_t capacity, std::size_t elementSize, std::size_t elementsStart
);

/// Frees a buffer whose elements are gone.
QUILLBEAM_EXPORT void freeDequeBuffer(DequeBufferHeader* buffer) noexcept;

/// "Deque<Int>._Storage(capacity: 8, count: 3, startSlot: 6)" for the element type name "Int".
[[nodiscard]] QUILLBEAM_EXPORT std::string
describeDequeStorage(const DequeBufferHeader& header, const std::string& elementTypeName);

[[noreturn]] QUILLBEAM_EXPORT void stopOnIndexOutOfRange() noexcept;
[[noreturn]] QUILLBEAM_EXPORT void stopOnRangeOutOfBounds() noexcept;
[[noreturn]] QUILLBEAM_EXPORT void stopOnInvalidCount() noexcept;
[[noreturn]] QUILLBEAM_EXPORT void stopOnEmptyDeque() noexcept;

} // namespace deque::inline v1::detail
