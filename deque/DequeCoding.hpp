#pragma once

#include "deque/Deque.hpp"
#include "platform/coding/Coding.hpp"

#include <string>
#include <utility>

/// A deque is coded as a list of its elements in order.
template <class Element>
struct platform::Coding<deque::Deque<Element>> {
    static constexpr CodedShape shape = CodedShape::unkeyed;

    [[nodiscard]] static std::string typeName() { return "Deque<" + typeNameOf<Element>() + ">"; }

    static void decode(Decoder& decoder, deque::Deque<Element>& out) {
        out.removeAll();
        auto container = decoder.unkeyedContainer();
        while (!container.isAtEnd())
            out.append(container.template decode<Element>());
    }

    static void encode(Encoder& encoder, const deque::Deque<Element>& value) {
        auto container = encoder.unkeyedContainer();
        for (const Element& element : value)
            container.encode(element);
    }
};
