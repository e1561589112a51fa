#include "deque/detail/DequeBuffer.hpp"

#include "platform/ProgrammingError.hpp"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace deque::inline v1::detail {

constinit const DequeBufferHeader emptyDequeStorage{2, 0};

namespace {

std::size_t sizeInBytes(std::ptrdiff_t capacity, std::size_t elementSize, std::size_t elementsStart) {
    std::ptrdiff_t bytes = 0; // no object is larger than that counts
    if (__builtin_mul_overflow(capacity, elementSize, &bytes) || __builtin_add_overflow(bytes, elementsStart, &bytes))
        throw std::bad_array_new_length();
    return static_cast<std::size_t>(bytes);
}

} // namespace

DequeBufferHeader* allocateDequeBuffer(
    std::ptrdiff_t capacity, std::size_t elementSize, std::size_t elementsStart, std::size_t elementAlignment
) {
    const std::size_t size = sizeInBytes(capacity, elementSize, elementsStart);
    // `aligned_alloc` wants a multiple of the alignment, which is at most the size.
    void* const memory = elementAlignment > alignof(std::max_align_t)
                             ? std::aligned_alloc(elementAlignment, (size + elementAlignment - 1) & -elementAlignment)
                             : std::malloc(size);
    if (memory == nullptr) throw std::bad_alloc();
    return ::new (memory) DequeBufferHeader(1, capacity);
}

DequeBufferHeader* enlargeDequeBuffer(
    DequeBufferHeader* buffer, std::ptrdiff_t capacity, std::size_t elementSize, std::size_t elementsStart
) {
    const std::ptrdiff_t count = buffer->count;
    const DequeSlot startSlot = buffer->startSlot;
    void* const memory = std::realloc(static_cast<void*>(buffer), sizeInBytes(capacity, elementSize, elementsStart));
    if (memory == nullptr) throw std::bad_alloc();
    auto* const enlarged = ::new (memory) DequeBufferHeader(1, capacity);
    enlarged->count = count;
    enlarged->startSlot = startSlot;
    return enlarged;
}

void freeDequeBuffer(DequeBufferHeader* buffer) noexcept {
    buffer->~DequeBufferHeader();
    std::free(static_cast<void*>(buffer));
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
