#include "deque/Deque.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using deque::Deque;
using ::testing::ElementsAreArray;

/// What an element may do, and when it throws: at the `fuse`th copy, or move where moves may throw.
struct Fuse {
    static inline int left = -1;
    static inline int alive = 0;

    static void burn() {
        if (left >= 0 && left-- == 0) throw std::runtime_error("fuse");
    }
};

/// An element that counts its kind, and whose copies, and moves too if they may throw, burn the fuse.
template <bool movesThrow>
class Fragile {
public:
    Fragile(int value = 0)
        : value_(std::make_unique<int>(value)) {
        ++Fuse::alive;
    }

    Fragile(const Fragile& other)
        : value_((Fuse::burn(), std::make_unique<int>(*other.value_))) {
        ++Fuse::alive;
    }

    Fragile(Fragile&& other) noexcept(!movesThrow)
        : value_((burnIfMovesThrow(), std::move(other.value_))) {
        ++Fuse::alive;
    }

    Fragile& operator=(const Fragile& other) {
        Fuse::burn();
        *value_ = *other.value_;
        return *this;
    }

    Fragile& operator=(Fragile&& other) noexcept {
        value_ = std::move(other.value_);
        return *this;
    }

    ~Fragile() { --Fuse::alive; }

    operator int() const { return *value_; }

private:
    static void burnIfMovesThrow() {
        if constexpr (movesThrow) Fuse::burn();
    }

    std::unique_ptr<int> value_;
};

using Model = std::deque<int>;

bool holds(const auto& elements, const std::vector<int>& expected) {
    return std::equal(elements.begin(), elements.end(), expected.begin(), expected.end(), [](int a, int b) {
        return a == b;
    });
}

std::vector<int> numbers(std::ptrdiff_t size, int from = 100) {
    std::vector<int> result;
    for (int i = 0; i < static_cast<int>(size); ++i)
        result.push_back(from + i);
    return result;
}

/// One change with two arguments, to a deque and to a model.
struct Change {
    std::ptrdiff_t lower;
    std::ptrdiff_t upper;
    std::vector<int> added;

    template <class Element>
    void apply(Deque<Element>& d) const {
        const std::vector<Element> elements(added.begin(), added.end());
        if (lower == upper && elements.size() == 1) return d.insert(elements[0], lower);
        if (lower == upper && lower == 0) return d.prependContentsOf(elements);
        if (lower == upper && lower == d.count()) return d.appendContentsOf(elements);
        if (lower == upper) return d.insertContentsOf(elements, lower);
        if (elements.empty() && lower + 1 == upper) return (void)d.remove(lower);
        if (elements.empty()) return d.removeSubrange(lower, upper);
        d.replaceSubrange(lower, upper, elements);
    }

    void apply(Model& m) const {
        m.erase(m.begin() + lower, m.begin() + upper);
        m.insert(m.begin() + lower, added.begin(), added.end());
    }
};

/// Makes every change to every layout of up to `maximum` slots; `check` gets the deque, the change and the outcome.
template <class Check>
void forEveryChange(std::ptrdiff_t maximum, Check&& check) {
    for (std::ptrdiff_t capacity = 1; capacity <= maximum; ++capacity)
        for (std::ptrdiff_t start = 0; start < capacity; ++start)
            for (std::ptrdiff_t count = 0; count <= capacity; ++count)
                for (std::ptrdiff_t lower = 0; lower <= count; ++lower)
                    for (std::ptrdiff_t upper = lower; upper <= count; ++upper)
                        for (std::ptrdiff_t added = 0; added <= 3; ++added) {
                            const Change change{lower, upper, numbers(added)};
                            const std::vector<int> contents = numbers(count, 1);
                            Model model(contents.begin(), contents.end());
                            change.apply(model);
                            check(capacity, start, contents, change, std::vector<int>(model.begin(), model.end()));
                        }
}

TEST(DequeModel, EveryChangeAtEveryWrapOfSmallBuffers) {
    forEveryChange(7, [](auto capacity, auto start, const auto& contents, const Change& change, const auto& expected) {
        auto trivial = Deque<int>::withLayout(capacity, start, contents);
        const Deque<int> copy = trivial;
        Deque<int> shared = copy;
        change.apply(shared);
        trivial.reserveCapacity(0);
        change.apply(trivial);
        auto strings = Deque<Fragile<false>>::withLayout(capacity, start, contents);
        change.apply(strings);
        ASSERT_THAT(std::as_const(trivial), ElementsAreArray(expected)) << copy.storageDescription();
        ASSERT_TRUE(holds(strings, expected)) << copy.storageDescription();
        ASSERT_EQ(shared.storageDescription(), trivial.storageDescription());
        ASSERT_EQ(shared, trivial);
        ASSERT_TRUE(holds(copy, contents));
    });
    EXPECT_EQ(Fuse::alive, 0);
}

template <bool movesThrow>
void throwAtEveryStep() {
    using Element = Fragile<movesThrow>;
    forEveryChange(4, [](auto capacity, auto start, const auto& contents, const Change& change, const auto& expected) {
        for (const bool isShared : {false, true}) {
            for (int fuse = 0;; ++fuse) {
                auto elements = Deque<Element>::withLayout(capacity, start, contents);
                const auto other = isShared ? elements : Deque<Element>();
                // The vector of what is added burns the fuse as well; that it then throws changes nothing either.
                Fuse::left = fuse;
                bool threw = false;
                try {
                    change.apply(elements);
                } catch (const std::runtime_error&) {
                    threw = true;
                }
                Fuse::left = -1;
                const bool isStrong = change.lower == change.upper || change.added.empty() || isShared || movesThrow;
                if (!threw) {
                    ASSERT_TRUE(holds(elements, expected));
                } else if (isStrong) {
                    ASSERT_TRUE(holds(elements, contents)) << fuse;
                }
                if (isShared) {
                    ASSERT_TRUE(holds(other, contents));
                }
                if (!threw) break;
            }
        }
    });
    EXPECT_EQ(Fuse::alive, 0);
}

TEST(DequeModel, ThrowsWithoutEffect) {
    throwAtEveryStep<false>();
    throwAtEveryStep<true>();
}

TEST(DequeModel, RandomOperations) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&random](std::ptrdiff_t bound) {
        return static_cast<std::ptrdiff_t>(random() % static_cast<std::size_t>(bound));
    };
    Deque<std::string> elements;
    std::deque<std::string> model;
    Deque<std::string> kept;
    std::deque<std::string> keptModel;
    for (int step = 0; step < 20'000; ++step) {
        const std::string text = std::to_string(step) + std::string(static_cast<std::size_t>(below(30)), '.');
        const auto size = static_cast<std::ptrdiff_t>(model.size());
        const auto at = below(size + 1);
        switch (size > 60 ? 5 + below(6) : below(13)) {
        case 0:
            elements.append(text), model.push_back(text);
            break;
        case 1:
            elements.prepend(text), model.push_front(text);
            break;
        case 2:
            elements.insert(text, at), model.insert(model.begin() + at, text);
            break;
        case 3:
            elements.insertContentsOf(kept, at);
            if (!keptModel.empty()) model.insert(model.begin() + at, keptModel.begin(), keptModel.end());
            break;
        case 4:
            elements.emplace_back() = text, model.push_back(text);
            break;
        case 5:
            ASSERT_EQ(elements.popFirst(), size == 0 ? std::nullopt : std::optional(model.front()));
            if (size > 0) model.pop_front();
            break;
        case 6:
            ASSERT_EQ(elements.popLast(), size == 0 ? std::nullopt : std::optional(model.back()));
            if (size > 0) model.pop_back();
            break;
        case 7:
            if (at < size) elements.remove(at), model.erase(model.begin() + at);
            break;
        case 8: {
            const auto upper = at + below(size - at + 1);
            elements.removeSubrange(at, upper);
            model.erase(model.begin() + at, model.begin() + upper);
            break;
        }
        case 9:
            if (at < size) elements[at] = model[static_cast<std::size_t>(at)] = text;
            break;
        case 10:
            if (below(9) == 0) elements.removeAll(below(2) == 0), model.clear();
            break;
        case 11:
            kept = elements.slice(0, at).count() < 20 ? Deque(elements.slice(0, at)) : Deque<std::string>{text};
            keptModel.assign(kept.begin(), kept.end());
            break;
        default: {
            const auto upper = at + below(size - at + 1);
            kept = elements;
            keptModel = model;
            elements.replaceSubrange(at, upper, std::vector<std::string>(static_cast<std::size_t>(below(5)), text));
            const auto grown = static_cast<std::ptrdiff_t>(elements.count()) - size + (upper - at);
            model.erase(model.begin() + at, model.begin() + upper);
            // The model's library moves elements onto themselves where nothing is inserted.
            if (grown > 0) model.insert(model.begin() + at, static_cast<std::size_t>(grown), text);
        }
        }
        ASSERT_TRUE(std::ranges::equal(std::as_const(elements), model)) << "step " << step;
        ASSERT_TRUE(std::ranges::equal(std::as_const(kept), keptModel)) << "step " << step;
        const auto& read = std::as_const(elements);
        if (const auto end = read.count(); end > 0) {
            const auto from = below(end);
            const auto to = below(end + 1);
            const auto moved = (read.begin() + from) + (to - from);
            ASSERT_TRUE(moved - read.begin() == to && (moved == read.end() || &*moved == &read[to]));
        }
    }
}

} // namespace
