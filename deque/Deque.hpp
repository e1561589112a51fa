#pragma once

#include "deque/detail/DequeBuffer.hpp"
#include "deque/detail/DequeIterator.hpp"
#include "deque/detail/UnsafeHandle.hpp"
#include "deque/detail/WrappedBuffer.hpp"
#include "platform/DiagnosticText.hpp"
#include "platform/TypeName.hpp"
#include "platform/coding/HashValue.hpp"

#include <algorithm>
#include <atomic>
#include <concepts>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace deque::inline v1 {

template <class Element>
class Deque;

namespace detail {

/// A range whose elements can become elements of a deque. Those of a deque that goes are moved, others are not.
template <class Range, class Element>
concept ElementRange =
    std::same_as<Range, Deque<Element>> ||
    (std::ranges::input_range<Range> && std::constructible_from<Element, std::ranges::range_reference_t<Range>>);

/// A range that tells its size before it is read.
template <class Range>
concept MeasurableRange = std::ranges::sized_range<Range> || std::ranges::forward_range<Range>;

} // namespace detail

/// A double-ended queue with value semantics: an ordered random-access collection in a ring buffer.
///
///     Deque<std::string> lines{"b", "c"};
///     lines.prepend("a");
///     Deque<std::string> kept = lines;               // shares the elements
///     while (auto line = lines.popFirst()) use(*line); // `kept` still has them
///
/// Appending, prepending and removing at either end take amortised constant time and move no other element. Inserting
/// and removing elsewhere moves the elements of the shorter side. A position is an offset from the first element.
/// A full buffer gives way to one half as large again; a deque that grows from nothing element by element starts with
/// 512 bytes.
///
/// **Copies.** A copy shares the elements in constant time; the first change to either one gives it elements of its
/// own. Reading through a const deque copies nothing. What lets the caller write (`begin()`, `operator[]`, `front()`
/// and the like on a deque that is not const) makes the elements the deque's own first, and from then on, until a
/// function changes the deque, copying it copies the elements, since references into it may still be written through;
/// `set` and `modify` write without that. Elements that can be moved only are never copied: copying a deque of them
/// does not compile.
///
/// **References and iterators** are valid until the deque is changed by another function than one that lets the caller
/// write, assigned to or destroyed. One obtained through a const deque is also ended by the first writing access, if
/// the elements are shared. `makeIterator()` gives an iterator that holds on to the elements as they are.
///
/// **Exceptions.** A change that throws because memory is lacking or because an element's constructor throws has no
/// effect. There are these exceptions to the rule: appending a range of unknown size keeps what was appended before the
/// throw, `replaceSubrange` may have replaced some elements already, and where the elements' move constructor throws
/// and they cannot be copied, the deque keeps its size but may hold moved-from elements. An element type whose move
/// constructor can throw is shifted by copying all elements to a new buffer. Storage that cannot be had is reported as
/// `std::bad_alloc`.
///
/// **Preconditions.** A position, range or count outside of the collection ends the process, through
/// `platform::stopOnProgrammingError`. Iterators are not checked, nor is it checked that a range to be inserted, other
/// than the deque itself, does not lead into this deque.
///
/// **Thread safety.** Distinct deques may be used from different threads, also when they share elements; one deque is
/// used from one thread at a time, or read by several.
template <class Element>
class Deque {
    using Header = detail::DequeBufferHeader;
    using Handle = detail::UnsafeHandle<Element>;
    using Gap = WrappedBuffer<Element>;

public:
    using Index = std::ptrdiff_t;

    using value_type = Element;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = Element&;
    using const_reference = const Element&;
    using pointer = Element*;
    using const_pointer = const Element*;
    using iterator = detail::DequeIterator<Element>;
    using const_iterator = detail::DequeIterator<const Element>;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

    class Iterator;
    class Slice;

    /// @name Construction
    /// @{

    /// No elements, no capacity, no allocation.
    constexpr Deque() noexcept = default;

    Deque(std::initializer_list<Element> elements)
        : Deque(elements.begin(), elements.end()) {}

    /// The elements of a range in its order.
    template <class Range>
        requires(!std::same_as<std::remove_cvref_t<Range>, Deque> && detail::ElementRange<Range, Element>)
    explicit Deque(Range&& elements) {
        appendContentsOf(std::forward<Range>(elements));
    }

    template <std::input_iterator First, std::sentinel_for<First> Last>
        requires std::constructible_from<Element, std::iter_reference_t<First>>
    Deque(First first, Last last) {
        appendContentsOf(std::ranges::subrange(std::move(first), std::move(last)));
    }

    /// Shares the elements of `other`, in constant time; copies them if `other` has handed out references to write
    /// through.
    Deque(const Deque& other)
        : buffer_(other.shareBuffer()) {}

    Deque(Deque&& other) noexcept
        : buffer_(std::exchange(other.buffer_, emptyBuffer()))
        , own_(std::exchange(other.own_, emptyBuffer())) {}

    Deque& operator=(const Deque& other) {
        Deque(other).swap(*this);
        return *this;
    }

    Deque& operator=(Deque&& other) noexcept {
        Deque(std::move(other)).swap(*this);
        return *this;
    }

    Deque& operator=(std::initializer_list<Element> elements) {
        Deque(elements).swap(*this);
        return *this;
    }

    ~Deque() { release(buffer_); }

    /// No elements, and room for `minimumCapacity` of them.
    [[nodiscard]] static Deque withMinimumCapacity(Index minimumCapacity);

    /// `count` copies of `element`.
    [[nodiscard]] static Deque repeating(const Element& element, Index count);

    /// Lets `initialize(Element* storage, Index& initializedCount)` construct up to `capacity` elements in raw storage,
    /// from its start on. It keeps `initializedCount` at the number of them, so that they are destroyed if it throws.
    template <std::invocable<Element*, Index&> Initialize>
    [[nodiscard]] static Deque withUninitializedCapacity(Index capacity, Initialize&& initialize);

    /// `contents` in a buffer of `capacity` slots, from `startSlot` on: for those who test how code meets a wrap.
    template <std::ranges::forward_range Range>
        requires detail::ElementRange<Range, Element>
    [[nodiscard]] static Deque withLayout(Index capacity, Index startSlot, Range&& contents);

    /// @}
    /// @name Size
    /// @{

    [[nodiscard]] Index count() const noexcept { return buffer_->count; }

    [[nodiscard]] size_type size() const noexcept { return static_cast<size_type>(count()); }

    [[nodiscard]] bool isEmpty() const noexcept { return count() == 0; }

    [[nodiscard]] bool empty() const noexcept { return isEmpty(); }

    /// How many elements the buffer has slots for.
    [[nodiscard]] Index capacity() const noexcept { return buffer_->capacity; }

    [[nodiscard]] static constexpr size_type max_size() noexcept {
        return (static_cast<size_type>(PTRDIFF_MAX) - detail::elementsOffset<Element>) / sizeof(Element);
    }

    /// Makes room for `minimumCapacity` elements in all, and no more than that where there is less now, in a buffer of
    /// the deque's own.
    void reserveCapacity(Index minimumCapacity);

    void reserve(size_type minimumCapacity) { reserveCapacity(static_cast<Index>(minimumCapacity)); }

    /// Gives back unused capacity.
    void shrink_to_fit();

    /// @}
    /// @name Access
    /// @{

    [[nodiscard]] constexpr Index startIndex() const noexcept { return 0; }

    [[nodiscard]] Index endIndex() const noexcept { return count(); }

    [[nodiscard]] const Element& operator[](Index at) const {
        checkIndex(at);
        return *slot(at);
    }

    [[nodiscard]] Element& operator[](Index at) {
        checkIndex(at);
        lend();
        return *slot(at);
    }

    /// Replaces the element at `at`.
    void set(Index at, Element element) {
        modify(at, [&element](Element& place) { place = std::move(element); });
    }

    /// Lets `change(Element&)` write to the element at `at`; the reference ends with the call. Returns what it returns.
    /// `change` must not copy the deque: the copy would share the element that is being written.
    template <std::invocable<Element&> Change>
    decltype(auto) modify(Index at, Change&& change) {
        checkIndex(at);
        makeUnique();
        return std::invoke(std::forward<Change>(change), *slot(at));
    }

    /// The first element, or null.
    [[nodiscard]] const Element* first() const noexcept { return isEmpty() ? nullptr : slot(0); }

    /// The last element, or null.
    [[nodiscard]] const Element* last() const noexcept { return isEmpty() ? nullptr : slot(count() - 1); }

    [[nodiscard]] const Element& front() const {
        checkIndex(0);
        return handle().elements[buffer_->startSlot.position];
    }

    [[nodiscard]] const Element& back() const {
        checkIndex(0);
        return handle().elements[buffer_->lastSlot().position];
    }

    [[nodiscard]] Element& front() { return (*this)[0]; }

    [[nodiscard]] Element& back() { return (*this)[count() - 1]; }

    /// The elements at the positions from `lower` up to, not including, `upper`. It holds on to them as they are.
    [[nodiscard]] Slice slice(Index lower, Index upper) const {
        checkRange(lower, upper);
        return Slice(*this, lower, upper);
    }

    /// Exchanges the elements at two positions.
    void swapAt(Index i, Index j) {
        checkIndex(i);
        checkIndex(j);
        if (i == j) return;
        makeUnique();
        std::ranges::swap(*slot(i), *slot(j));
    }

    /// The elements where they lie: the fastest way to read them all.
    [[nodiscard]] WrappedBuffer<const Element> segments() const noexcept {
        const auto [first, second] = handle().slots(0, count());
        return {first, second};
    }

    /// `body(std::span<const Element>)` if the elements lie in one run: its result, as an optional; for a body without
    /// result, whether it was called.
    template <std::invocable<std::span<const Element>> Body>
    auto withContiguousStorageIfAvailable(Body&& body) const {
        return callIfContiguous<const Element>(*this, std::forward<Body>(body));
    }

    /// The same with a `std::span<Element>` to write through, which ends with the call. `body` must not copy the deque:
    /// the copy would share the elements that are being written.
    template <std::invocable<std::span<Element>> Body>
    auto withContiguousMutableStorageIfAvailable(Body&& body) {
        makeUnique();
        return callIfContiguous<Element>(*this, std::forward<Body>(body));
    }

    /// @}
    /// @name Iteration
    /// @{

    /// Goes through the elements as they are now, whatever becomes of the deque.
    [[nodiscard]] Iterator makeIterator() const& { return Iterator(*this); }

    [[nodiscard]] Iterator makeIterator() && { return Iterator(std::move(*this)); }

    [[nodiscard]] const_iterator begin() const noexcept { return iteratorAt<const Element>(0); }

    [[nodiscard]] const_iterator end() const noexcept { return iteratorAt<const Element>(count()); }

    [[nodiscard]] const_iterator cbegin() const noexcept { return begin(); }

    [[nodiscard]] const_iterator cend() const noexcept { return end(); }

    [[nodiscard]] iterator begin() { return writingIteratorAt(0); }

    [[nodiscard]] iterator end() { return writingIteratorAt(count()); }

    [[nodiscard]] const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }

    [[nodiscard]] const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }

    [[nodiscard]] const_reverse_iterator crbegin() const noexcept { return rbegin(); }

    [[nodiscard]] const_reverse_iterator crend() const noexcept { return rend(); }

    [[nodiscard]] reverse_iterator rbegin() { return reverse_iterator(end()); }

    [[nodiscard]] reverse_iterator rend() { return reverse_iterator(begin()); }

    /// @}
    /// @name Adding
    /// @{

    void append(const Element& element) { emplaceLast(element); }

    void append(Element&& element) { emplaceLast(std::move(element)); }

    /// Adds the elements of a range at the end, in its order. The range may be this deque; elements of a deque that
    /// goes are moved.
    template <detail::ElementRange<Element> Range>
    void appendContentsOf(Range&& elements);

    void prepend(const Element& element) { emplaceFirst(element); }

    void prepend(Element&& element) { emplaceFirst(std::move(element)); }

    /// Adds the elements of a range before the first one, in its order.
    template <detail::ElementRange<Element> Range>
    void prependContentsOf(Range&& elements);

    /// Puts `element` before the one at `at`, or at the end.
    void insert(Element element, Index at) {
        checkPosition(at);
        if constexpr (shiftsInPlace) {
            if (isUnique() && count() < capacity()) {
                construct(handle().openSlot(at, tailMoves(at, at)), std::move(element));
                return;
            }
        }
        insertGap(at, 1, tailMoves(at, at), [&element](Gap gap) {
            construct(gap.first.data(), std::move_if_noexcept(element));
        });
    }

    /// Puts the elements of a range before the one at `at`, or at the end, in its order.
    template <detail::ElementRange<Element> Range>
    void insertContentsOf(Range&& elements, Index at);

    /// Puts the elements of a range in the place of those from `lower` up to, not including, `upper`.
    template <detail::ElementRange<Element> Range>
    void replaceSubrange(Index lower, Index upper, Range&& elements);

    void push_back(const Element& element) { emplaceLast(element); }

    void push_back(Element&& element) { emplaceLast(std::move(element)); }

    void push_front(const Element& element) { emplaceFirst(element); }

    void push_front(Element&& element) { emplaceFirst(std::move(element)); }

    template <class... Arguments>
        requires std::constructible_from<Element, Arguments...>
    Element& emplace_back(Arguments&&... arguments) {
        Element* const place = emplaceLast(std::forward<Arguments>(arguments)...);
        lend();
        return *place;
    }

    template <class... Arguments>
        requires std::constructible_from<Element, Arguments...>
    Element& emplace_front(Arguments&&... arguments) {
        Element* const place = emplaceFirst(std::forward<Arguments>(arguments)...);
        lend();
        return *place;
    }

    template <class... Arguments>
        requires std::constructible_from<Element, Arguments...>
    iterator emplace(const_iterator before, Arguments&&... arguments) {
        const Index at = offsetOf(before);
        insert(Element(std::forward<Arguments>(arguments)...), at);
        return writingIteratorAt(at);
    }

    iterator insert(const_iterator before, Element element) { return emplace(before, std::move(element)); }

    template <std::input_iterator First, std::sentinel_for<First> Last>
        requires std::constructible_from<Element, std::iter_reference_t<First>>
    iterator insert(const_iterator before, First first, Last last) {
        const Index at = offsetOf(before);
        insertContentsOf(std::ranges::subrange(std::move(first), std::move(last)), at);
        return writingIteratorAt(at);
    }

    /// Replaces all elements by those of a range.
    template <detail::ElementRange<Element> Range>
    void assign(Range&& elements) {
        replaceSubrange(0, count(), std::forward<Range>(elements));
    }

    /// @}
    /// @name Removing
    /// @{

    /// Takes out the element at `at`.
    Element remove(Index at) {
        checkIndex(at);
        return takeOut(at, tailMoves(at, at + 1));
    }

    /// Removes the elements from `lower` up to, not including, `upper`.
    void removeSubrange(Index lower, Index upper) {
        checkRange(lower, upper);
        removeRange(lower, upper, tailMoves(lower, upper));
    }

    /// Takes out the first element; there is one.
    Element removeFirst() {
        if (isEmpty()) detail::stopOnEmptyDeque();
        return takeOut(0, false);
    }

    /// Removes the first `n` elements; there are as many.
    void removeFirst(Index n) {
        if (n < 0 || n > count()) detail::stopOnInvalidCount();
        removeRange(0, n, false);
    }

    /// Takes out the last element; there is one.
    Element removeLast() {
        if (isEmpty()) detail::stopOnEmptyDeque();
        return takeOut(count() - 1, true);
    }

    /// Removes the last `n` elements; there are as many.
    void removeLast(Index n) {
        if (n < 0 || n > count()) detail::stopOnInvalidCount();
        removeRange(count() - n, count(), true);
    }

    /// Takes out the first element, if there is one.
    [[nodiscard]] std::optional<Element> popFirst() {
        if (isEmpty()) return std::nullopt;
        return takeOut<std::optional<Element>>(0, false);
    }

    /// Takes out the last element, if there is one.
    [[nodiscard]] std::optional<Element> popLast() {
        if (isEmpty()) return std::nullopt;
        return takeOut<std::optional<Element>>(count() - 1, true);
    }

    /// Removes all elements, and the capacity unless it is to be kept.
    /// @throws std::bad_alloc only where the capacity of shared storage is kept
    void removeAll(bool keepingCapacity = false);

    void pop_front() {
        if (own_ != buffer_ || isEmpty()) [[unlikely]]
            return popSlowly(0, false);
        dropFirst();
    }

    void pop_back() {
        if (own_ != buffer_ || isEmpty()) [[unlikely]]
            return popSlowly(count() - 1, true);
        dropLast();
    }

    /// Removes all elements; keeps the capacity unless the storage is shared.
    void clear() noexcept {
        if (isUnique()) {
            removeAll(true);
        } else {
            removeAll();
        }
    }

    iterator erase(const_iterator at) {
        const Index lower = offsetOf(at);
        checkRange(lower, lower + 1);
        removeRange(lower, lower + 1, tailMoves(lower, lower + 1));
        return writingIteratorAt(lower);
    }

    iterator erase(const_iterator first, const_iterator last) {
        const Index lower = offsetOf(first);
        removeSubrange(lower, offsetOf(last));
        return writingIteratorAt(lower);
    }

    /// @}

    void swap(Deque& other) noexcept {
        std::swap(buffer_, other.buffer_);
        std::swap(own_, other.own_);
    }

    friend void swap(Deque& left, Deque& right) noexcept { left.swap(right); }

    /// Whether both hold equal elements in the same order; at once where they share them.
    [[nodiscard]] friend bool operator==(const Deque& left, const Deque& right) {
        if (left.count() != right.count()) return false;
        return left.buffer_ == right.buffer_ || std::equal(left.begin(), left.end(), right.begin());
    }

    /// The elements in square brackets, separated by ", ".
    [[nodiscard]] std::string description() const {
        std::string text = "[";
        for (const Element& element : *this) {
            if (text.size() > 1) text += ", ";
            platform::appendDiagnosticText(text, element);
        }
        return text += ']';
    }

    [[nodiscard]] std::string debugDescription() const { return description(); }

    /// The layout of the storage: "Deque<Int>._Storage(capacity: 8, count: 3, startSlot: 6)".
    [[nodiscard]] std::string storageDescription() const {
        return detail::describeDequeStorage(*buffer_, platform::unqualifiedTypeName(typeid(Element)));
    }

private:
    class FreshBuffer;

    static constexpr bool shiftsInPlace = std::is_nothrow_move_constructible_v<Element>;

    static constexpr Header* emptyBuffer() noexcept { return const_cast<Header*>(&detail::emptyDequeStorage); }

    /// Whether a buffer of the deque's own grows where it lies: the bytes of its elements may go anywhere.
    static constexpr bool growsInPlace =
        std::is_trivially_copyable_v<Element> && shiftsInPlace && alignof(Element) <= alignof(std::max_align_t);

    [[nodiscard]] Handle handle() const noexcept { return Handle(buffer_); }

    [[nodiscard]] Element* slot(Index at) const noexcept {
        return handle().elements + buffer_->slotForOffset(at).position;
    }

    void checkIndex(Index at) const {
        if (static_cast<size_type>(at) >= size()) [[unlikely]]
            detail::stopOnIndexOutOfRange();
    }

    void checkPosition(Index at) const {
        if (static_cast<size_type>(at) > size()) [[unlikely]]
            detail::stopOnIndexOutOfRange();
    }

    void checkRange(Index lower, Index upper) const {
        if (lower < 0 || lower > upper || upper > count()) [[unlikely]]
            detail::stopOnRangeOutOfBounds();
    }

    [[nodiscard]] Index offsetOf(const_iterator it) const noexcept { return it.offset(); }

    template <class Value>
    [[nodiscard]] detail::DequeIterator<Value> iteratorAt(Index at) const noexcept {
        return {buffer_, at};
    }

    [[nodiscard]] iterator writingIteratorAt(Index at) {
        lend();
        return iteratorAt<Element>(at);
    }

    template <class... Arguments>
    static void construct(Element* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) Element(std::forward<Arguments>(arguments)...);
    }

    // Ownership of the buffer.

    /// Whether the buffer may be written; ends the lending, since a change ends the references handed out.
    [[nodiscard]] bool isUnique() noexcept {
        if (own_ != emptyBuffer()) return true;
        // Acquires: what the last other holder read is read.
        if (buffer_->references.load(std::memory_order_acquire) > 1) return false;
        buffer_->references.store(1, std::memory_order_relaxed);
        own_ = buffer_;
        return true;
    }

    /// Copies shared elements, to the same slots.
    void makeUnique() {
        if (!isUnique() && capacity() != 0) rebuild(capacity(), buffer_->startSlot, count(), count(), 0, [](Gap) {});
    }

    /// Lets references into the buffer be written through: it is the deque's own then, and is not shared until a
    /// change.
    void lend() {
        if (own_ == emptyBuffer()) {
            if (capacity() == 0 || buffer_->references.load(std::memory_order_relaxed) == Header::lent) return;
            makeUnique();
        }
        own_->references.store(Header::lent, std::memory_order_relaxed);
        own_ = emptyBuffer();
    }

    [[nodiscard]] Header* shareBuffer() const {
        static_assert(std::copy_constructible<Element>, "a deque of elements that can only be moved cannot be copied");
        if (capacity() == 0) return buffer_;
        if (buffer_->references.load(std::memory_order_relaxed) == Header::lent) return cloneBuffer();
        buffer_->references.fetch_add(1, std::memory_order_relaxed);
        // Several threads may copy one deque at a time, and then write the same here; who changes it comes later.
        const std::atomic_ref<Header*> own(own_);
        if (own.load(std::memory_order_relaxed) != emptyBuffer()) own.store(emptyBuffer(), std::memory_order_relaxed);
        return buffer_;
    }

    [[nodiscard]] Header* cloneBuffer() const;

    static void release(Header* buffer) noexcept {
        if (buffer->capacity == 0) return;
        if (buffer->references.load(std::memory_order_acquire) > 1 &&
            buffer->references.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        Handle(buffer).destroy(0, buffer->count);
        detail::freeDequeBuffer(buffer);
    }

    /// Puts a buffer of this deque's own in the place of the present one.
    void adopt(Header* buffer) noexcept {
        release(std::exchange(buffer_, buffer));
        own_ = buffer;
    }

    // Changes.

    /// Whether the elements behind a range move when its size changes, and not those before it.
    [[nodiscard]] bool tailMoves(Index lower, Index upper) const noexcept { return count() - upper <= lower; }

    /// What a deque that grows from nothing element by element starts with: room for a few, at the price of one.
    static constexpr Index firstCapacity =
        std::max<Index>(1, (512 - static_cast<Index>(detail::elementsOffset<Element>)) / Index{sizeof(Element)});

    [[nodiscard]] Index capacityFor(Index added) const {
        if (added > PTRDIFF_MAX - count()) throw std::bad_array_new_length();
        const Index needed = count() + added;
        return needed <= capacity() ? capacity() : detail::grownCapacity(capacity(), needed, false);
    }

    /// Gives a full buffer of the deque's own room for another element, and puts the elements in order from slot 0 on.
    void growInPlace() {
        const Index full = capacity();
        own_ = buffer_ =
            detail::enlargeDequeBuffer(buffer_, capacityFor(1), sizeof(Element), detail::elementsOffset<Element>);
        handle().straighten(full);
    }

    /// Puts a new buffer in the place of the old one: the elements but those from `lower` up to `upper`, with a gap of
    /// `gapSize` in their place, which `fill` constructs. The elements are moved from a buffer of the deque's own and
    /// copied from a shared one. Arguments of `fill` may lead into the old elements.
    template <class Fill>
    void rebuild(Index capacity, detail::DequeSlot startSlot, Index lower, Index upper, Index gapSize, Fill&& fill);

    /// Opens a gap of `size` before the element at `at`, where it is cheapest, and has `fill` construct its elements.
    template <class Fill>
    void insertGap(Index at, Index size, bool tailMoves, Fill&& fill);

    /// Removes an offset range, filling the gap from behind it or, unless `tailMoves`, from before it.
    void removeRange(Index lower, Index upper, bool tailMoves);

    // At the ends two comparisons tell whether the fast way is open: that the buffer is known to be the deque's own,
    // and that there is room, or an element. The buffer without capacity is full and empty at once, and is never
    // written. All is read through `buffer_`, as the reading functions do, so that a compiler reads it once for both.

    template <class... Arguments>
    Element* emplaceLast(Arguments&&... arguments) {
        Header* const own = buffer_;
        if (own_ != own || own->count == own->capacity) [[unlikely]]
            return emplaceSlowly(count(), true, std::forward<Arguments>(arguments)...);
        Element* const place = Handle(own).elements + own->endSlot().position;
        construct(place, std::forward<Arguments>(arguments)...);
        own->count += 1;
        return place;
    }

    template <class... Arguments>
    Element* emplaceFirst(Arguments&&... arguments) {
        Header* const own = buffer_;
        if (own_ != own || own->count == own->capacity) [[unlikely]]
            return emplaceSlowly(0, false, std::forward<Arguments>(arguments)...);
        const detail::DequeSlot before = own->slotBefore(own->startSlot);
        Element* const place = Handle(own).elements + before.position;
        construct(place, std::forward<Arguments>(arguments)...);
        own->startSlot = before;
        own->count += 1;
        return place;
    }

    template <class... Arguments>
    [[gnu::noinline]] Element* emplaceSlowly(Index at, bool tailMoves, Arguments&&... arguments) {
        const auto fill = [&](Gap gap) { construct(gap.first.data(), std::forward<Arguments>(arguments)...); };
        if (capacity() == 0) {
            FreshBuffer fresh(firstCapacity, {tailMoves ? 0 : firstCapacity - 1});
            fresh.fill(0, 1, fill);
            adopt(fresh.release(1));
            return slot(at);
        }
        if constexpr (growsInPlace) {
            if (count() == capacity() && isUnique()) {
                Element element(std::forward<Arguments>(arguments)...); // they may lead into the buffer
                growInPlace();
                Element* const place = handle().openSlot(at, tailMoves);
                construct(place, std::move(element));
                return place;
            }
        }
        insertGap(at, 1, tailMoves, fill);
        return slot(at);
    }

    /// Removes the element at an end, of a buffer of the deque's own that has one.
    void dropFirst() noexcept {
        Header* const own = buffer_;
        std::destroy_at(Handle(own).elements + own->startSlot.position);
        own->startSlot = own->slotAfter(own->startSlot);
        own->count -= 1;
    }

    void dropLast() noexcept {
        Header* const own = buffer_;
        if constexpr (!std::is_trivially_destructible_v<Element>)
            std::destroy_at(Handle(own).elements + own->lastSlot().position);
        own->count -= 1;
    }

    [[gnu::noinline]] void popSlowly(Index at, bool tailMoves) {
        if (isEmpty()) detail::stopOnEmptyDeque();
        removeRange(at, at + 1, tailMoves);
    }

    /// Takes the element at `at` out of the deque, as an `Element` or an optional one.
    template <class Result = Element>
    [[nodiscard]] Result takeOut(Index at, bool tailMoves);

    /// Calls `body(first, size)` with an iterator over all elements of a range, which is not this deque then.
    template <class Range, class Body>
    void withElementsOf(Range&& elements, Body&& body);

    template <class Source>
    static void constructFrom(Source& source, Gap gap);
    template <class Source>
    static void constructRun(Source& source, std::span<Element> run);

    template <class Value, class Self, class Body>
    static auto callIfContiguous(Self& self, Body&& body) {
        const auto [first, second] = self.handle().slots(0, self.count());
        const bool isContiguous = second.empty();
        const std::span<Value> run = first;
        using Result = std::invoke_result_t<Body, std::span<Value>>;
        if constexpr (std::is_void_v<Result>) {
            if (isContiguous) std::invoke(std::forward<Body>(body), run);
            return isContiguous;
        } else {
            using Optional = std::optional<std::remove_cvref_t<Result>>;
            return isContiguous ? Optional(std::invoke(std::forward<Body>(body), run)) : Optional();
        }
    }

    Header* buffer_ = emptyBuffer();

    /// `buffer_` while this deque is known to be its only holder and has lent nothing of it, else the empty buffer.
    /// Copying the deque, which may go on in several threads at a time, puts the empty one here; only a change reads
    /// it.
    mutable Header* own_ = emptyBuffer();
};

template <std::input_iterator First, std::sentinel_for<First> Last>
Deque(First, Last) -> Deque<std::iter_value_t<First>>;

template <std::ranges::input_range Range>
Deque(Range&&) -> Deque<std::ranges::range_value_t<Range>>;

/// Goes once through the elements that a deque had when the iterator was made: it shares them, so that a change to the
/// deque copies them and does not disturb it. A copy goes on by itself from the same place.
template <class Element>
class Deque<Element>::Iterator {
public:
    explicit Iterator(Deque elements) noexcept
        : storage_(std::move(elements)) {
        // A deque that was moved here may still lend its buffer; copies of this iterator have to share it.
        static_cast<void>(storage_.isUnique());
        const auto [first, second] = std::as_const(storage_).segments();
        nextSlot_ = first.data();
        endSlot_ = first.data() + first.size();
        wrapped_ = second;
    }

    /// The next element, or null at the end; it lives as long as this iterator or a copy of it.
    [[nodiscard]] const Element* next() noexcept {
        if (nextSlot_ == endSlot_ && !swapSegment()) return nullptr;
        return nextSlot_++;
    }

private:
    bool swapSegment() noexcept {
        nextSlot_ = wrapped_.data();
        endSlot_ = wrapped_.data() + wrapped_.size();
        wrapped_ = {};
        return nextSlot_ != endSlot_;
    }

    Deque storage_;
    const Element* nextSlot_;
    const Element* endSlot_;
    std::span<const Element> wrapped_;
};

/// A part of a deque as it was when the slice was made; positions count from the slice's first element.
template <class Element>
class Deque<Element>::Slice {
public:
    using value_type = Element;

    Slice(Deque base, Index lower, Index upper) noexcept
        : base_(std::move(base))
        , lower_(lower)
        , upper_(upper) {}

    [[nodiscard]] const_iterator begin() const noexcept { return base_.begin() + lower_; }

    [[nodiscard]] const_iterator end() const noexcept { return base_.begin() + upper_; }

    [[nodiscard]] Index count() const noexcept { return upper_ - lower_; }

    [[nodiscard]] size_type size() const noexcept { return static_cast<size_type>(count()); }

    [[nodiscard]] bool isEmpty() const noexcept { return upper_ == lower_; }

    [[nodiscard]] bool empty() const noexcept { return isEmpty(); }

    [[nodiscard]] const Element& operator[](Index at) const {
        if (at < 0 || at >= count()) detail::stopOnIndexOutOfRange();
        return base_[lower_ + at];
    }

    [[nodiscard]] friend bool operator==(const Slice& left, const Slice& right) {
        return std::ranges::equal(left, right);
    }

private:
    Deque base_;
    Index lower_;
    Index upper_;
};

/// Removes the elements for which `predicate` holds, keeping the order of the others; returns how many went.
template <class Element, std::predicate<const Element&> Predicate>
std::size_t erase_if(Deque<Element>& elements, Predicate predicate) {
    const std::size_t before = elements.size();
    elements.erase(std::remove_if(elements.begin(), elements.end(), std::move(predicate)), elements.end());
    return before - elements.size();
}

/// A buffer under construction: what has been constructed in it is destroyed with it, unless it was released.
template <class Element>
class Deque<Element>::FreshBuffer {
public:
    FreshBuffer(Index capacity, detail::DequeSlot startSlot)
        : header_(
              detail::allocateDequeBuffer(capacity, sizeof(Element), detail::elementsOffset<Element>, alignof(Element))
          ) {
        header_->startSlot = startSlot;
    }

    FreshBuffer(const FreshBuffer&) = delete;
    FreshBuffer& operator=(const FreshBuffer&) = delete;

    ~FreshBuffer() {
        if (header_ == nullptr) return;
        for (const auto& [lower, upper] : constructed_)
            Handle(header_).destroy(lower, upper);
        detail::freeDequeBuffer(header_);
    }

    /// Has `fill` construct `size` elements at `offset`; it leaves none behind when it throws.
    template <class Fill>
    void fill(Index offset, Index size, Fill&& fill) {
        std::forward<Fill>(fill)(Handle(header_).slots(offset, size));
        constructed_[0] = {offset, offset + size};
    }

    /// Moves or copies the elements of an offset range here, to `offset` and behind; `part` is 1 or 2, each once.
    template <bool moves>
    void transfer(Handle source, Index lower, Index upper, Index offset, int part) {
        auto& [from, done] = constructed_[part];
        from = done = offset;
        const Handle target(header_);
        while (lower < upper) {
            const auto here = source.slots(lower, upper - lower).first;
            const auto there = target.slots(done, upper - lower).first;
            const std::size_t run = std::min(here.size(), there.size());
            if constexpr (moves) {
                std::uninitialized_move_n(here.data(), run, there.data());
            } else {
                std::uninitialized_copy_n(here.data(), run, there.data());
            }
            lower += static_cast<Index>(run);
            done += static_cast<Index>(run);
        }
    }

    [[nodiscard]] Handle handle() const noexcept { return Handle(header_); }

    [[nodiscard]] Header* release(Index count) noexcept {
        header_->count = count;
        return std::exchange(header_, nullptr);
    }

private:
    struct Offsets {
        Index lower = 0;
        Index upper = 0;
    };

    Header* header_;
    Offsets constructed_[3];
};

template <class Element>
Deque<Element> Deque<Element>::withMinimumCapacity(Index minimumCapacity) {
    Deque result;
    result.reserveCapacity(minimumCapacity);
    return result;
}

template <class Element>
Deque<Element> Deque<Element>::repeating(const Element& element, Index count) {
    return withUninitializedCapacity(count, [&](Element* storage, Index& initialized) {
        std::uninitialized_fill_n(storage, count, element);
        initialized = count;
    });
}

template <class Element>
template <std::invocable<Element*, std::ptrdiff_t&> Initialize>
Deque<Element> Deque<Element>::withUninitializedCapacity(Index capacity, Initialize&& initialize) {
    if (capacity < 0) detail::stopOnInvalidCount();
    Deque result;
    if (capacity == 0) return result;
    result.adopt(FreshBuffer(capacity, {}).release(0));
    Index initialized = 0;
    try {
        std::invoke(std::forward<Initialize>(initialize), result.handle().elements, initialized);
    } catch (...) {
        result.buffer_->count = initialized;
        throw;
    }
    if (initialized < 0 || initialized > capacity) detail::stopOnInvalidCount();
    result.buffer_->count = initialized;
    return result;
}

template <class Element>
template <std::ranges::forward_range Range>
    requires detail::ElementRange<Range, Element>
Deque<Element> Deque<Element>::withLayout(Index capacity, Index startSlot, Range&& contents) {
    const Index count = static_cast<Index>(std::ranges::distance(contents));
    if (capacity < count || startSlot < 0 || (startSlot >= capacity && startSlot != 0)) detail::stopOnInvalidCount();
    Deque result = withMinimumCapacity(capacity);
    if (capacity == 0) return result;
    result.buffer_->startSlot = {startSlot};
    result.appendContentsOf(std::forward<Range>(contents));
    return result;
}

template <class Element>
void Deque<Element>::reserveCapacity(Index minimumCapacity) {
    if (minimumCapacity < 0) detail::stopOnInvalidCount();
    if (minimumCapacity <= capacity()) return makeUnique();
    rebuild(detail::grownCapacity(capacity(), minimumCapacity, true), {}, count(), count(), 0, [](Gap) {});
}

template <class Element>
void Deque<Element>::shrink_to_fit() {
    if (isEmpty()) {
        removeAll();
    } else if (count() < capacity()) {
        rebuild(count(), {}, count(), count(), 0, [](Gap) {});
    }
}

template <class Element>
auto Deque<Element>::cloneBuffer() const -> Header* {
    FreshBuffer fresh(capacity(), buffer_->startSlot);
    fresh.template transfer<false>(handle(), 0, count(), 0, 1);
    return fresh.release(count());
}

template <class Element>
template <class Fill>
void Deque<Element>::rebuild(
    Index capacity, detail::DequeSlot startSlot, Index lower, Index upper, Index gapSize, Fill&& fill
) {
    const Index newCount = count() - (upper - lower) + gapSize;
    FreshBuffer fresh(capacity, startSlot);
    if (gapSize > 0) fresh.fill(lower, gapSize, std::forward<Fill>(fill));
    if constexpr (shiftsInPlace) {
        if (isUnique()) {
            handle().destroy(lower, upper);
            handle().relocateTo(fresh.handle(), 0, lower, 0);
            handle().relocateTo(fresh.handle(), upper, count(), lower + gapSize);
            buffer_->count = 0;
            return adopt(fresh.release(newCount));
        }
    }
    const auto transferAll = [&]<bool moves>(std::bool_constant<moves>) {
        fresh.template transfer<moves>(handle(), 0, lower, 0, 1);
        fresh.template transfer<moves>(handle(), upper, count(), lower + gapSize, 2);
    };
    // Copied where that is possible: what throws on the way then leaves the old elements as they are.
    transferAll(std::bool_constant<!std::copy_constructible<Element>>{});
    adopt(fresh.release(newCount));
}

template <class Element>
template <class Fill>
void Deque<Element>::insertGap(Index at, Index size, bool tailMoves, Fill&& fill) {
    const Index newCapacity = capacityFor(size);
    const bool fits = newCapacity == capacity();
    const bool movesNone = at == (tailMoves ? count() : 0);
    if (fits && isUnique() && (shiftsInPlace || movesNone)) {
        if (size == 0) return;
        const Gap gap = handle().openGap(size, at, tailMoves);
        try {
            std::forward<Fill>(fill)(gap);
        } catch (...) {
            handle().closeGap(at, at + size, tailMoves);
            throw;
        }
        return;
    }
    if (newCapacity == 0) return;
    detail::DequeSlot start = fits ? buffer_->startSlot : detail::DequeSlot{};
    if (!tailMoves) start.position -= size;
    if (start.position < 0) start.position += newCapacity;
    rebuild(newCapacity, start, at, at, size, std::forward<Fill>(fill));
}

template <class Element>
void Deque<Element>::removeRange(Index lower, Index upper, bool tailMoves) {
    if (lower == upper) return;
    const bool movesNone = tailMoves ? upper == count() : lower == 0;
    if (isUnique() && (shiftsInPlace || movesNone)) {
        handle().destroy(lower, upper);
        handle().closeGap(lower, upper, tailMoves);
        return;
    }
    const auto start = tailMoves ? buffer_->startSlot : buffer_->slotForOffset(upper - lower);
    rebuild(capacity(), start, lower, upper, 0, [](Gap) {});
}

template <class Element>
template <class Result>
Result Deque<Element>::takeOut(Index at, bool tailMoves) {
    const bool isOwn = isUnique();
    // One variable in one return, so that it is constructed in place: nothing can throw once the element is gone.
    Result result = [&]() -> Result {
        Element& element = *slot(at);
        if constexpr (std::copy_constructible<Element>) {
            if (!isOwn) return Result(std::as_const(element));
        }
        return Result(std::move_if_noexcept(element));
    }();
    if (isOwn && tailMoves && at == count() - 1) {
        dropLast();
    } else if (isOwn && !tailMoves && at == 0) {
        dropFirst();
    } else {
        removeRange(at, at + 1, tailMoves);
    }
    return result;
}

template <class Element>
void Deque<Element>::removeAll(bool keepingCapacity) {
    if (!keepingCapacity || capacity() == 0) {
        adopt(emptyBuffer());
    } else if (isUnique()) {
        handle().destroy(0, count());
        buffer_->count = 0;
        buffer_->startSlot = {};
    } else {
        adopt(FreshBuffer(capacity(), {}).release(0));
    }
}

template <class Element>
template <class Source>
void Deque<Element>::constructRun(Source& source, std::span<Element> run) {
    if constexpr (std::same_as<Source, iterator> || std::same_as<Source, const_iterator>) {
        // The source's runs are contiguous: copy them as such.
        std::size_t done = 0;
        try {
            while (done < run.size()) {
                const auto step = std::min(run.size() - done, static_cast<std::size_t>(source.runLength()));
                std::uninitialized_copy_n(std::to_address(source), step, run.data() + done);
                source += static_cast<Index>(step);
                done += step;
            }
        } catch (...) {
            std::destroy_n(run.data(), done);
            throw;
        }
    } else if constexpr (std::contiguous_iterator<Source> && std::same_as<std::iter_value_t<Source>, Element>) {
        std::uninitialized_copy_n(std::to_address(source), run.size(), run.data());
        source += static_cast<std::iter_difference_t<Source>>(run.size());
    } else {
        Element* place = run.data();
        Element* const end = run.data() + run.size();
        try {
            for (; place != end; ++place, ++source)
                construct(place, *source);
        } catch (...) {
            std::destroy(run.data(), place);
            throw;
        }
    }
}

template <class Element>
template <class Source>
void Deque<Element>::constructFrom(Source& source, Gap gap) {
    constructRun(source, gap.first);
    try {
        if (!gap.second.empty()) constructRun(source, gap.second);
    } catch (...) {
        std::destroy(gap.first.begin(), gap.first.end());
        throw;
    }
}

template <class Element>
template <class Range, class Body>
void Deque<Element>::withElementsOf(Range&& elements, Body&& body) {
    if constexpr (std::same_as<std::remove_cvref_t<Range>, Deque>) {
        if constexpr (std::is_lvalue_reference_v<Range> || std::is_const_v<std::remove_reference_t<Range>>) {
            const Deque held(elements);
            body(held.begin(), held.count());
        } else {
            Deque taken(std::forward<Range>(elements));
            if constexpr (std::copy_constructible<Element>) {
                if (std::is_trivially_copyable_v<Element> || !taken.isUnique())
                    return body(std::as_const(taken).begin(), taken.count());
            }
            body(std::make_move_iterator(taken.begin()), taken.count());
        }
    } else if constexpr (detail::MeasurableRange<Range>) {
        const auto size = static_cast<Index>(std::ranges::distance(elements));
        body(std::ranges::begin(elements), size);
    } else {
        Deque collected;
        for (auto&& element : elements)
            collected.emplaceLast(std::forward<decltype(element)>(element));
        body(std::make_move_iterator(collected.begin()), collected.count());
    }
}

template <class Element>
template <detail::ElementRange<Element> Range>
void Deque<Element>::appendContentsOf(Range&& elements) {
    if constexpr (std::same_as<std::remove_cvref_t<Range>, Deque> || detail::MeasurableRange<Range>) {
        withElementsOf(std::forward<Range>(elements), [this](auto source, Index size) {
            if (size == 0) return;
            this->insertGap(count(), size, true, [&source](Gap gap) { constructFrom(source, gap); });
        });
    } else {
        for (auto&& element : elements)
            emplaceLast(std::forward<decltype(element)>(element));
    }
}

template <class Element>
template <detail::ElementRange<Element> Range>
void Deque<Element>::prependContentsOf(Range&& elements) {
    withElementsOf(std::forward<Range>(elements), [this](auto source, Index size) {
        if (size == 0) return;
        this->insertGap(0, size, false, [&source](Gap gap) { constructFrom(source, gap); });
    });
}

template <class Element>
template <detail::ElementRange<Element> Range>
void Deque<Element>::insertContentsOf(Range&& elements, Index at) {
    checkPosition(at);
    withElementsOf(std::forward<Range>(elements), [this, at](auto source, Index size) {
        if (size == 0) return;
        this->insertGap(at, size, tailMoves(at, at), [&source](Gap gap) { constructFrom(source, gap); });
    });
}

template <class Element>
template <detail::ElementRange<Element> Range>
void Deque<Element>::replaceSubrange(Index lower, Index upper, Range&& elements) {
    checkRange(lower, upper);
    withElementsOf(std::forward<Range>(elements), [this, lower, upper](auto source, Index size) {
        if (size == 0 && lower == upper) return;
        const Index replaced = std::min(size, upper - lower);
        const Index added = size - replaced;
        const Index removed = upper - lower - replaced;
        const Index newCapacity = capacityFor(added);
        const bool fits = newCapacity == capacity();
        if constexpr (shiftsInPlace && std::is_assignable_v<Element&, decltype(*source)>) {
            if (fits && isUnique()) {
                for (auto place = iteratorAt<Element>(lower), end = place + replaced; place != end; ++place, ++source)
                    *place = *source;
                if (removed > 0) return removeRange(lower + replaced, upper, tailMoves(lower + replaced, upper));
                if (added == 0) return;
                return this->insertGap(upper, added, tailMoves(upper, upper), [&source](Gap gap) {
                    constructFrom(source, gap);
                });
            }
        }
        if (newCapacity == 0) return;
        // The layout that replacing in place would have led to.
        detail::DequeSlot start = fits ? buffer_->startSlot : detail::DequeSlot{};
        if (removed > 0 && !tailMoves(lower + replaced, upper)) start.position += removed;
        if (added > 0 && !tailMoves(upper, upper)) start.position -= added;
        if (start.position < 0) start.position += newCapacity;
        if (start.position >= newCapacity) start.position -= newCapacity;
        rebuild(newCapacity, start, lower, upper, size, [&source](Gap gap) { constructFrom(source, gap); });
    });
}

} // namespace deque::inline v1

/// The count, then the elements in order.
template <class Element>
    requires requires(const Element& element) {
        { std::hash<Element>{}(element) } -> std::convertible_to<std::size_t>;
    }
struct std::hash<deque::Deque<Element>> {
    [[nodiscard]] std::size_t operator()(const deque::Deque<Element>& elements) const {
        std::size_t joined = elements.size();
        for (const Element& element : elements)
            joined = platform::combinedHash(joined, platform::hashValue(element));
        return joined;
    }
};
