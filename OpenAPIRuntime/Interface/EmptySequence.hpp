#pragma once

#include "platform/concurrency/Task.hpp"

#include <optional>

namespace OpenAPIRuntime::inline v1 {

/// The asynchronous sequence without elements.
template <typename Element_>
class EmptySequence {
public:
    using Element = Element_;

    class EmptyIterator {
    public:
        using Element = Element_;

        [[nodiscard]] platform::Task<std::optional<Element>> next() {
            return platform::Task<std::optional<Element>>::ready(std::nullopt);
        }
    };

    [[nodiscard]] EmptyIterator makeAsyncIterator() const { return {}; }
};

} // namespace OpenAPIRuntime::inline v1
