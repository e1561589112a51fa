#pragma once

#include <iterator>
#include <utility>

/// Ranges, as far as the library's public headers need them. The standard's header of ranges brings all its views
/// along, and every source file of an application would pay for those.
namespace platform::inline v1 {

template <class T>
using RangeIterator = decltype(std::ranges::begin(std::declval<T&>()));

template <class T>
using RangeSentinel = decltype(std::ranges::end(std::declval<T&>()));

/// `std::ranges::input_range`.
template <class T>
concept InputRange = std::input_iterator<RangeIterator<T>> && std::sentinel_for<RangeSentinel<T>, RangeIterator<T>>;

/// `std::ranges::forward_range`.
template <class T>
concept ForwardRange = InputRange<T> && std::forward_iterator<RangeIterator<T>>;

template <InputRange T>
using RangeValue = std::iter_value_t<RangeIterator<T>>;

template <InputRange T>
using RangeReference = std::iter_reference_t<RangeIterator<T>>;

} // namespace platform::inline v1
