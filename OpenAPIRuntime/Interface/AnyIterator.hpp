#pragma once

#include "platform/concurrency/AsyncSequence.hpp"
#include "platform/concurrency/Task.hpp"

#include <concepts>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// An asynchronous iterator of any type with the given element, behind one type.
///
/// Wrapping costs one allocation, a step one virtual call: `next()` hands on the wrapped iterator's task as it is.
///
/// Thread safety: as for every iterator, one `next()` at a time.
template <typename Element_>
class AnyIterator {
public:
    using Element = Element_;

    /// Takes over `iterator`.
    template <typename Iterator>
        requires(!std::same_as<Iterator, AnyIterator>) && platform::AsyncIterator<Iterator> &&
                std::same_as<typename Iterator::Element, Element>
    explicit AnyIterator(Iterator iterator)
        : box_(std::make_unique<Box<Iterator>>(std::move(iterator))) {}

    /// The next element, or nothing at the end. Fails with whatever the wrapped iterator fails with. The iterator must
    /// live until the task has ended; moving it meanwhile is allowed.
    [[nodiscard]] platform::Task<std::optional<Element>> next() { return box_->next(); }

private:
    struct AbstractBox {
        virtual ~AbstractBox() = default;
        virtual platform::Task<std::optional<Element>> next() = 0;
    };

    template <typename Iterator>
    struct Box final : AbstractBox {
        explicit Box(Iterator wrapped)
            : iterator(std::move(wrapped)) {}

        platform::Task<std::optional<Element>> next() override { return iterator.next(); }

        Iterator iterator;
    };

    std::unique_ptr<AbstractBox> box_;
};

} // namespace OpenAPIRuntime::inline v1
