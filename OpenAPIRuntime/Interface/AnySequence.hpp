#pragma once

#include "OpenAPIRuntime/Interface/AnyIterator.hpp"
#include "platform/concurrency/AsyncSequence.hpp"

#include <concepts>
#include <memory>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// An asynchronous sequence of any type with the given element, behind one type. Copies share the wrapped sequence.
///
/// Thread safety: as safe as the wrapped sequence's `makeAsyncIterator()`, which is `const`.
template <typename Element_>
class AnySequence {
public:
    using Element = Element_;

    /// Takes over `sequence`.
    template <typename Sequence>
        requires(!std::same_as<Sequence, AnySequence>) && platform::AsyncSequence<Sequence> &&
                std::same_as<typename Sequence::Element, Element>
    explicit AnySequence(Sequence sequence)
        : box_(std::make_shared<const Box<Sequence>>(std::move(sequence))) {}

    [[nodiscard]] AnyIterator<Element> makeAsyncIterator() const { return box_->makeAsyncIterator(); }

private:
    struct AbstractBox {
        virtual ~AbstractBox() = default;
        virtual AnyIterator<Element> makeAsyncIterator() const = 0;
    };

    template <typename Sequence>
    struct Box final : AbstractBox {
        explicit Box(Sequence wrapped)
            : sequence(std::move(wrapped)) {}

        AnyIterator<Element> makeAsyncIterator() const override {
            return AnyIterator<Element>(sequence.makeAsyncIterator());
        }

        Sequence sequence;
    };

    std::shared_ptr<const AbstractBox> box_;
};

} // namespace OpenAPIRuntime::inline v1
