#include "deque/detail/DequeBuffer.hpp"

#include "platform/ProgrammingError.hpp"

#include <cstdint>
#include <new>

namespace deque::inline v1::detail {

constinit const DequeBufferHeader emptyDequeStorage{2, 0};

namespace {

/// Where one allocation serves for the header and the elements, it is aligned for the stricter of them.
std::align_val_t alignmentFor(std::size_t elementAlignment) noexcept {
    return std::align_val_t{std::max(elementAlignment, alignof(DequeBufferHeader))};
}

bool isOverAligned(std::size_t elementAlignment) noexcept {
    return elementAlignment > __STDCPP_DEFAULT_NEW_ALIGNMENT__;
}

} // namespace

DequeBufferHeader* allocateDequeBuffer(
    std::ptrdiff_t capacity, std::size_t elementSize, std::size_t elementsStart, std::size_t elementAlignment
) {
    std::ptrdiff_t bytes = 0; // no object is larger than that counts
    if (__builtin_mul_overflow(capacity, elementSize, &bytes) || __builtin_add_overflow(bytes, elementsStart, &bytes))
        throw std::bad_array_new_length();
    const auto size = static_cast<std::size_t>(bytes);
    void* const memory =
        isOverAligned(elementAlignment) ? ::operator new(size, alignmentFor(elementAlignment)) : ::operator new(size);
    return ::new (memory) DequeBufferHeader(1, capacity);
}

void freeDequeBuffer(DequeBufferHeader* buffer, std::size_t elementAlignment) noexcept {
    buffer->~DequeBufferHeader();
    if (isOverAligned(elementAlignment)) {
        ::operator delete(static_cast<void*>(buffer), alignmentFor(elementAlignment));
    } else {
        ::operator delete(static_cast<void*>(buffer));
    }
}

std::string describeDequeStorage(const DequeBufferHeader& header, const std::string& elementTypeName) {
    return "Deque<" + elementTypeName + ">._Storage(capacity: " + std::to_string(header.capacity) +
           ", count: " + std::to_string(header.count) + ", startSlot: " + std::to_string(header.startSlot.position) +
           ")";
}

void stopOnIndexOutOfRange() noexcept {
    platform::stopOnProgrammingError("Index out of the range of a deque");
}

void stopOnRangeOutOfBounds() noexcept {
    platform::stopOnProgrammingError("Range out of the bounds of a deque");
}

void stopOnInvalidCount() noexcept {
    platform::stopOnProgrammingError("Invalid count or capacity of a deque");
}

void stopOnEmptyDeque() noexcept {
    platform::stopOnProgrammingError("Element taken from an empty deque");
}

} // namespace deque::inline v1::detail
