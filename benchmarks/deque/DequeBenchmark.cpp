#include "benchmarks/Ratios.hpp"
#include "deque/Deque.hpp"

#include <benchmark/benchmark.h>
#include <boost/circular_buffer.hpp>
#include <boost/container/devector.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace {

const bool smoke = benchmarks::isSmokeRun();

/// A ring that grows, as the others do: circular_buffer leaves that to its user.
template <class Element>
class GrowingRing : public boost::circular_buffer<Element> {
    using Base = boost::circular_buffer<Element>;

public:
    using Base::Base;

    void push_back(const Element& element) {
        grow(1);
        Base::push_back(element);
    }

    void push_front(const Element& element) {
        grow(1);
        Base::push_front(element);
    }

    template <class At, class... Arguments>
    void insert(At at, Arguments&&... arguments) {
        const auto offset = at - this->begin();
        grow(1);
        Base::insert(this->begin() + offset, std::forward<Arguments>(arguments)...);
    }

    void reserve(std::size_t capacity) {
        if (capacity > this->capacity()) this->set_capacity(capacity);
    }

    void appendAll(const std::vector<Element>& elements) {
        grow(elements.size());
        Base::insert(this->end(), elements.begin(), elements.end());
    }

private:
    void grow(std::size_t added) {
        const std::size_t needed = this->size() + added;
        if (needed > this->capacity()) this->set_capacity(std::max(needed, this->capacity() * 3 / 2));
    }
};

template <class Queue, class Element>
void appendAll(Queue& queue, const std::vector<Element>& elements) {
    if constexpr (requires { queue.appendContentsOf(elements); }) {
        queue.appendContentsOf(elements);
    } else if constexpr (requires { queue.appendAll(elements); }) {
        queue.appendAll(elements);
    } else {
        queue.insert(queue.end(), elements.begin(), elements.end());
    }
}

template <class Element>
Element makeElement(std::size_t i) {
    if constexpr (std::is_same_v<Element, std::string>) {
        return "an element that no string holds within itself " + std::to_string(i);
    } else {
        return static_cast<Element>(i);
    }
}

/// What a user reads of an element.
template <class Element>
std::size_t read(const Element& element) {
    if constexpr (std::is_same_v<Element, std::string>) {
        return element.size();
    } else {
        return static_cast<std::size_t>(element);
    }
}

/// Compares one kind of work, `work(queue, elements)`, on a queue made by `prepare` before the clock of the round.
template <class Element, class Prepare, class Work>
void row(const std::string& name, std::size_t size, Prepare prepare, Work work) {
    std::vector<Element> elements;
    for (std::size_t i = 0; i < size; ++i)
        elements.push_back(makeElement<Element>(i));
    deque::Deque<Element> ours;
    std::deque<Element> standard;
    GrowingRing<Element> ring;
    boost::container::devector<Element> devector;
    prepare(ours, elements);
    prepare(standard, elements);
    prepare(ring, elements);
    prepare(devector, elements);
    const std::size_t repetitions = smoke ? 1 : std::max<std::size_t>(1, 200'000 / size);
    const auto repeated = [&](auto& queue) {
        return [&] {
            for (std::size_t i = 0; i < repetitions; ++i)
                work(queue, elements);
        };
    };
    const auto comparison = benchmarks::compare(
        {{"ours", repeated(ours)},
         {"std::deque", repeated(standard)},
         {"boost::circular_buffer", repeated(ring)},
         {"boost::container::devector", repeated(devector)}},
        smoke ? 1 : 41
    );
    const auto best = std::min_element(comparison.medians.begin() + 1, comparison.medians.end());
    for (std::size_t peer = 1; peer < comparison.names.size(); ++peer) {
        const bool isBest = best - comparison.medians.begin() == static_cast<std::ptrdiff_t>(peer);
        benchmarks::report(
            name,
            comparison.names[peer],
            comparison.ratio("ours", comparison.names[peer]),
            benchmarks::Bound::atMost,
            isBest ? 1.0 : 0 // the goal is the best of them
        );
    }
}

template <class Element>
void compareQueues(const std::string& kind, std::size_t size) {
    const std::string suffix = " (" + kind + ", " + std::to_string(size) + ")";
    const auto nothing = [](auto&, const auto&) {};
    const auto filled = [](auto& queue, const auto& elements) { appendAll(queue, elements); };
    row<Element>("Deque: fill from nothing at the end" + suffix, size, nothing, [](auto& queue, const auto& elements) {
        std::remove_cvref_t<decltype(queue)> made;
        for (const auto& element : elements)
            made.push_back(element);
        benchmark::DoNotOptimize(made);
    });
    row<Element>(
        "Deque: fill from nothing at the front" + suffix,
        size,
        nothing,
        [](auto& queue, const auto& elements) {
            std::remove_cvref_t<decltype(queue)> made;
            for (const auto& element : elements)
                made.push_front(element);
            benchmark::DoNotOptimize(made);
        }
    );
    // What is popped is read first, as in any use of a queue: where it is not, and popping checks nothing, a compiler
    // makes one subtraction of the whole loop.
    row<Element>("Deque: push and pop at the end" + suffix, size, filled, [](auto& queue, const auto& elements) {
        for (const auto& element : elements)
            queue.push_back(element);
        std::size_t sum = 0;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            sum += read(std::as_const(queue).back());
            queue.pop_back();
        }
        benchmark::DoNotOptimize(sum);
    });
    row<Element>("Deque: push and pop at the front" + suffix, size, filled, [](auto& queue, const auto& elements) {
        for (const auto& element : elements)
            queue.push_front(element);
        std::size_t sum = 0;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            sum += read(std::as_const(queue).front());
            queue.pop_front();
        }
        benchmark::DoNotOptimize(sum);
    });
    row<Element>("Deque: first in, first out" + suffix, size, filled, [](auto& queue, const auto& elements) {
        std::size_t sum = 0;
        for (const auto& element : elements) {
            queue.push_back(element);
            sum += read(std::as_const(queue).front());
            queue.pop_front();
        }
        benchmark::DoNotOptimize(sum);
    });
    row<Element>("Deque: iterate" + suffix, size, filled, [](const auto& queue, const auto&) {
        std::size_t sum = 0;
        for (const auto& element : queue)
            sum += read(element);
        benchmark::DoNotOptimize(sum);
    });
    row<Element>("Deque: insert and erase within" + suffix, size, filled, [](auto& queue, const auto& elements) {
        for (int i = 0; i < 16; ++i) {
            const auto at = static_cast<std::ptrdiff_t>(queue.size()) * (i + 1) / 18;
            queue.insert(queue.begin() + at, elements[0]);
            queue.erase(queue.begin() + (at * 7) % static_cast<std::ptrdiff_t>(queue.size()));
        }
    });
    row<Element>("Deque: append all at once" + suffix, size, nothing, [](auto& queue, const auto& elements) {
        std::remove_cvref_t<decltype(queue)> made;
        appendAll(made, elements);
        appendAll(made, elements);
        benchmark::DoNotOptimize(made);
    });
}

} // namespace

int main() {
    compareQueues<std::int64_t>("int64", 32);
    compareQueues<std::int64_t>("int64", 10'000);
    compareQueues<std::string>("string", 1'000);
    return 0;
}
