#pragma once

#include "deque/detail/DequeBuffer.hpp"
#include "deque/detail/WrappedBuffer.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace deque::inline v1::detail {

/// A view of a buffer for the length of one operation: the slot arithmetic and the moves of elements between slots.
/// It checks nothing.
template <class Element>
struct UnsafeHandle {
    DequeBufferHeader* header;
    Element* elements;

    explicit UnsafeHandle(DequeBufferHeader* buffer) noexcept
        : header(buffer)
        , elements(slotsOf<Element>(buffer)) {}

    /// The slots of `size` offsets from `offset` on, whatever is in them.
    [[nodiscard]] WrappedBuffer<Element> slots(std::ptrdiff_t offset, std::ptrdiff_t size) const noexcept {
        if (size == 0) return {};
        const std::ptrdiff_t start = header->slotForOffset(offset).position;
        const std::ptrdiff_t firstSize = std::min(size, header->capacity - start);
        return {
            {elements + start, static_cast<std::size_t>(firstSize)},
            {elements, static_cast<std::size_t>(size - firstSize)}
        };
    }

    void destroy(std::ptrdiff_t lower, std::ptrdiff_t upper) const noexcept {
        if constexpr (!std::is_trivially_destructible_v<Element>) {
            const auto [first, second] = slots(lower, upper - lower);
            std::destroy(first.begin(), first.end());
            std::destroy(second.begin(), second.end());
        }
    }

    /// Moves the elements of an offset range to free slots of another buffer, from `offset` on. Here the slots are free
    /// then.
    void
    relocateTo(UnsafeHandle target, std::ptrdiff_t lower, std::ptrdiff_t upper, std::ptrdiff_t offset) const noexcept {
        while (lower < upper) {
            const std::ptrdiff_t from = header->slotForOffset(lower).position;
            const std::ptrdiff_t to = target.header->slotForOffset(offset).position;
            const std::ptrdiff_t run = std::min({upper - lower, header->capacity - from, target.header->capacity - to});
            relocate(elements + from, target.elements + to, run);
            lower += run;
            offset += run;
        }
    }

    /// Makes `size` free slots before the element at `offset` and counts them as elements; the room is there. Either
    /// the elements behind them move toward the end, or those before them toward the start.
    [[gnu::always_inline]] WrappedBuffer<Element>
    openGap(std::ptrdiff_t size, std::ptrdiff_t offset, bool tailMoves) const noexcept {
        if (tailMoves) {
            moveTowardEnd(offset, header->count, size);
        } else {
            moveTowardStart(0, offset, size);
            header->startSlot = header->receded(header->startSlot, size);
        }
        header->count += size;
        return slots(offset, size);
    }

    /// A gap of one.
    [[nodiscard, gnu::always_inline]] Element* openSlot(std::ptrdiff_t offset, bool tailMoves) const noexcept {
        if (tailMoves) {
            moveTowardEnd(offset, header->count, 1);
        } else {
            moveTowardStart(0, offset, 1);
            header->startSlot = header->slotBefore(header->startSlot);
        }
        header->count += 1;
        return elements + header->slotForOffset(offset).position;
    }

    /// Takes the free slots of an offset range out of the count, filling them from the side that `tailMoves` names.
    [[gnu::always_inline]] void closeGap(std::ptrdiff_t lower, std::ptrdiff_t upper, bool tailMoves) const noexcept {
        const std::ptrdiff_t size = upper - lower;
        if (tailMoves) {
            moveTowardStart(upper, header->count, size);
        } else {
            moveTowardEnd(0, lower, size);
            header->startSlot = header->advanced(header->startSlot, size);
        }
        header->count -= size;
    }

    /// Puts the elements in order from slot 0 on, where they filled a buffer of `full` slots that has since grown by
    /// half: the shorter of their runs steps aside into the new slots.
    void straighten(std::ptrdiff_t full) const noexcept {
        const std::ptrdiff_t start = header->startSlot.position;
        if (start == 0) return;
        Element* const aside = elements + full;
        const std::ptrdiff_t head = full - start;
        if (head <= start) {
            relocate(elements + start, aside, head);
            relocate(elements, elements + head, start);
            relocate(aside, elements, head);
        } else {
            relocate(elements, aside, start);
            relocate(elements + start, elements, head);
            relocate(aside, elements + head, start);
        }
        header->startSlot = {};
    }

private:
    // Both sides of a move may wrap, each once: it falls into at most three runs that are contiguous on both sides. No
    // run overwrites a slot that a later one reads, since a move toward the end starts with the last run, and one
    // toward the start with the first.

    [[gnu::always_inline]] void
    moveTowardEnd(std::ptrdiff_t lower, std::ptrdiff_t upper, std::ptrdiff_t distance) const noexcept {
        const std::ptrdiff_t size = upper - lower;
        if (size == 0) return;
        const std::ptrdiff_t from = header->slotForOffset(lower).position;
        if (from + size + distance <= header->capacity) {
            relocate(elements + from, elements + from + distance, size);
        } else {
            moveTowardEndInRuns(header->slotForOffset(upper - 1), distance, size);
        }
    }

    [[gnu::always_inline]] void
    moveTowardStart(std::ptrdiff_t lower, std::ptrdiff_t upper, std::ptrdiff_t distance) const noexcept {
        const std::ptrdiff_t size = upper - lower;
        if (size == 0) return;
        const std::ptrdiff_t from = header->slotForOffset(lower).position;
        if (from >= distance && from + size <= header->capacity) {
            relocate(elements + from, elements + from - distance, size);
        } else {
            moveTowardStartInRuns({from}, distance, size);
        }
    }

    [[gnu::noinline]] void
    moveTowardEndInRuns(DequeSlot last, std::ptrdiff_t distance, std::ptrdiff_t left) const noexcept {
        // One past the last slot of either side, from 1 to capacity.
        std::ptrdiff_t from = last.position + 1;
        std::ptrdiff_t to = header->advanced(last, distance).position + 1;
        while (left > 0) {
            const std::ptrdiff_t run = std::min({left, from, to});
            from -= run;
            to -= run;
            left -= run;
            relocate(elements + from, elements + to, run);
            if (from == 0) from = header->capacity;
            if (to == 0) to = header->capacity;
        }
    }

    [[gnu::noinline]] void
    moveTowardStartInRuns(DequeSlot from, std::ptrdiff_t distance, std::ptrdiff_t left) const noexcept {
        DequeSlot to = header->receded(from, distance);
        while (left > 0) {
            const std::ptrdiff_t run =
                std::min({left, header->capacity - from.position, header->capacity - to.position});
            relocate(elements + from.position, elements + to.position, run);
            from = header->advanced(from, run);
            to = header->advanced(to, run);
            left -= run;
        }
    }

    /// Moves `size` elements into free slots, or into slots freed by this very move.
    static void relocate(Element* from, Element* to, std::ptrdiff_t size) noexcept {
        if constexpr (std::is_trivially_copyable_v<Element>) {
            std::memmove(
                static_cast<void*>(to), static_cast<const void*>(from), static_cast<std::size_t>(size) * sizeof(Element)
            );
        } else if (to < from) {
            for (std::ptrdiff_t i = 0; i < size; ++i)
                relocateOne(from + i, to + i);
        } else {
            for (std::ptrdiff_t i = size; i-- > 0;)
                relocateOne(from + i, to + i);
        }
    }

    static void relocateOne(Element* from, Element* to) noexcept {
        ::new (static_cast<void*>(to)) Element(std::move(*from));
        std::destroy_at(from);
    }
};

} // namespace deque::inline v1::detail
