#include "deque/Deque.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// The bytes are a program: each operation is a byte with the arguments it takes from the bytes after it, done to one of
// two deques that share elements now and then, and to its model.

namespace {

using deque::Deque;
using Model = std::vector<std::string>;

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : next_(data)
        , end_(data + size) {}

    [[nodiscard]] bool isAtEnd() const { return next_ == end_; }

    std::ptrdiff_t below(std::ptrdiff_t bound) { return next_ == end_ ? 0 : *next_++ % bound; }

    /// Long enough at times not to lie within the string itself.
    std::string text() { return std::string(static_cast<std::size_t>(below(40)), static_cast<char>('a' + below(26))); }

private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

void require(bool holds) {
    if (!holds) std::abort();
}

struct Pair {
    Deque<std::string> elements;
    Model model;

    [[nodiscard]] std::ptrdiff_t size() const { return static_cast<std::ptrdiff_t>(model.size()); }
};

void step(Input& input, Pair& it, Pair& other) {
    const auto operation = input.below(14);
    const auto lower = input.below(it.size() + 1);
    const auto upper = lower + input.below(it.size() - lower + 1);
    const bool grows = it.size() < 200;
    auto& [elements, model] = it;
    const auto replace = [&](std::ptrdiff_t from, std::ptrdiff_t to, const Model& added) {
        model.erase(model.begin() + from, model.begin() + to);
        model.insert(model.begin() + from, added.begin(), added.end());
    };
    const Model one{input.text()};
    const Model many(static_cast<std::size_t>(grows ? input.below(20) : 0), input.text());
    switch (operation) {
    case 0:
        elements.append(one[0]), replace(it.size(), it.size(), one);
        break;
    case 1:
        elements.prepend(one[0]), replace(0, 0, one);
        break;
    case 2:
        elements.insert(one[0], lower), replace(lower, lower, one);
        break;
    case 3:
        elements.appendContentsOf(many), replace(it.size(), it.size(), many);
        break;
    case 4:
        elements.prependContentsOf(many), replace(0, 0, many);
        break;
    case 5:
        elements.insertContentsOf(many, lower), replace(lower, lower, many);
        break;
    case 6:
        elements.replaceSubrange(lower, upper, many), replace(lower, upper, many);
        break;
    case 7:
        elements.removeSubrange(lower, upper), replace(lower, upper, {});
        break;
    case 8:
        if (lower == upper) break;
        require(elements.remove(lower) == model[static_cast<std::size_t>(lower)]);
        replace(lower, lower + 1, {});
        break;
    case 9:
        require(elements.popFirst().has_value() == !model.empty());
        if (!model.empty()) replace(0, 1, {});
        break;
    case 10:
        require(elements.popLast().has_value() == !model.empty());
        if (!model.empty()) model.pop_back();
        break;
    case 11:
        if (lower < upper) elements[lower] = model[static_cast<std::size_t>(lower)] = one[0];
        break;
    case 12:
        other = it;
        break;
    default:
        elements.removeAll(upper % 2 == 0), model.clear();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto capacity = input.below(9);
    Pair pairs[2] = {
        {Deque<std::string>::withLayout(capacity, capacity == 0 ? 0 : input.below(capacity), Model{}), {}}, {}
    };
    while (!input.isAtEnd()) {
        const auto which = static_cast<std::size_t>(input.below(2));
        step(input, pairs[which], pairs[1 - which]);
        for (const auto& [elements, model] : pairs) {
            require(std::ranges::equal(elements, model));
            require(elements.count() <= elements.capacity());
        }
    }
    return 0;
}
