#include "deque/Deque.hpp"
#include "deque/DequeCoding.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <list>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

namespace {

using deque::Deque;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

static_assert(std::ranges::random_access_range<Deque<int>> && std::ranges::sized_range<const Deque<int>>);
static_assert(std::random_access_iterator<Deque<std::string>::const_iterator>);
static_assert(std::is_nothrow_move_constructible_v<Deque<int>> && std::is_nothrow_default_constructible_v<Deque<int>>);
static_assert(sizeof(Deque<int>) == 2 * sizeof(void*));
static_assert(std::same_as<decltype(Deque(std::vector<int>{})), Deque<int>>);
constinit Deque<int> atNamespaceScope;

/// A type may hold a deque of its own kind, and be compared and copied by default.
struct Node {
    int value = 0;
    Deque<Node> children{};

    bool operator==(const Node&) const = default;
};

std::string layout(const auto& elements) {
    const std::string text = elements.storageDescription();
    return text.substr(text.find('('));
}

TEST(DequeLayout, FollowsEachOperation) {
    Deque<int> grown;
    EXPECT_EQ(layout(grown), "(capacity: 0, count: 0, startSlot: 0)");
    grown.reserveCapacity(10);
    for (int i = 1; i <= 10; ++i)
        grown.append(i);
    grown.append(11);
    EXPECT_EQ(grown.storageDescription(), "Deque<int>._Storage(capacity: 15, count: 11, startSlot: 0)");

    struct Case {
        const char* name;
        Deque<int> before;
        std::function<void(Deque<int>&)> change;
        std::vector<int> after;
        const char* layout;
    };

    const auto at = [](std::ptrdiff_t capacity, std::ptrdiff_t start, const std::vector<int>& contents) {
        return Deque<int>::withLayout(capacity, start, contents);
    };
    const std::vector<int> two{8, 9};
    const Case cases[] = {
        {"prepend takes the last slot", at(4, 0, {}), [](auto& d) { d.prepend(1); }, {1}, "4, 1, 3"},
        {"a full wrapped run grows", at(4, 2, {1, 2, 3, 4}), [](auto& d) { d.append(5); }, {1, 2, 3, 4, 5}, "6, 5, 0"},
        {"prepend grows", at(2, 1, {1, 2}), [](auto& d) { d.prepend(0); }, {0, 1, 2}, "3, 3, 2"},
        {"the end slot stays", at(4, 2, {1}), [](auto& d) { d.removeLast(); }, {}, "4, 0, 2"},
        {"the start slot moves on", at(4, 3, {1}), [](auto& d) { d.removeFirst(); }, {}, "4, 0, 0"},
        {"a tie moves the tail in", at(6, 4, {1, 2}), [](auto& d) { d.insert(9, 1); }, {1, 9, 2}, "6, 3, 4"},
        {"a shorter head moves in", at(6, 0, {1, 2, 3}), [](auto& d) { d.insert(9, 1); }, {1, 9, 2, 3}, "6, 4, 5"},
        {"a tie moves the tail out", at(6, 4, {1, 2, 3}), [](auto& d) { d.remove(1); }, {1, 3}, "6, 2, 4"},
        {"a shorter head moves out", at(6, 4, {1, 2, 3, 4}), [](auto& d) { d.remove(1); }, {1, 3, 4}, "6, 3, 5"},
        {"more than was", at(6, 5, {1, 2, 3}), [&](auto& d) { d.replaceSubrange(1, 2, two); }, {1, 8, 9, 3}, "6, 4, 5"},
        {"less than was", at(6, 5, {1, 2, 3}), [&](auto& d) { d.replaceSubrange(0, 3, two); }, {8, 9}, "6, 2, 5"},
        {"all, keeping room", at(6, 5, {1, 2}), [](auto& d) { d.removeAll(true); }, {}, "6, 0, 0"},
        {"all", at(6, 5, {1, 2}), [](auto& d) { d.removeAll(); }, {}, "0, 0, 0"},
        {"reserve gives no more", at(4, 3, {1, 2}), [](auto& d) { d.reserveCapacity(5); }, {1, 2}, "5, 2, 0"},
        {"writing stays", at(4, 3, {1, 2}), [](auto& d) { d[1] = 3; }, {1, 3}, "4, 2, 3"},
    };
    for (const auto& [name, before, change, after, numbers] : cases) {
        SCOPED_TRACE(name);
        const auto numbersOf = [](const Deque<int>& d) {
            std::string text = layout(d);
            for (const char* word : {"(capacity: ", "count: ", "startSlot: ", ")"})
                text.erase(text.find(word), std::string_view(word).size());
            return text;
        };
        // Once in place and once on shared storage: both lead to the same, and what was shared stays.
        Deque<int> unique = Deque<int>::withLayout(before.capacity(), 0, std::vector<int>{});
        unique = before;
        unique.reserveCapacity(0);
        Deque<int> shared = before;
        const std::vector<int> kept(before.begin(), before.end());
        for (auto* elements : {&unique, &shared}) {
            change(*elements);
            EXPECT_THAT(std::as_const(*elements), ElementsAreArray(after));
            EXPECT_EQ(numbersOf(*elements), numbers);
        }
        EXPECT_THAT(before, ElementsAreArray(kept));
    }
}

TEST(DequeIterator, GoesFromAnyElementToAnyOtherInEveryLayout) {
    for (std::ptrdiff_t capacity = 1; capacity <= 5; ++capacity) {
        for (std::ptrdiff_t start = 0; start < capacity; ++start) {
            for (std::ptrdiff_t count = 0; count <= capacity; ++count) {
                const auto elements =
                    Deque<int>::withLayout(capacity, start, std::views::iota(0, static_cast<int>(count)));
                SCOPED_TRACE(layout(elements));
                for (std::ptrdiff_t from = 0; from <= count; ++from) {
                    const auto left = elements.begin() + from;
                    EXPECT_TRUE(from == count ? left == elements.end() : *left == from);
                    for (std::ptrdiff_t to = 0; to <= count; ++to) {
                        const auto right = elements.end() - (count - to);
                        EXPECT_EQ(right - left, to - from);
                        EXPECT_EQ(left <=> right, from <=> to);
                        EXPECT_EQ(left == right, from == to);
                        EXPECT_EQ(left + (to - from), right);
                        auto step = left;
                        while (step - elements.begin() < to)
                            ++step;
                        while (step - elements.begin() > to)
                            --step;
                        EXPECT_EQ(step, right);
                    }
                }
            }
        }
    }
}

TEST(Deque, IsConstructedFromWhatHoldsElements) {
    std::istringstream stream("1 2 3");
    const std::list<int> list{1, 2, 3};
    const Deque<int> expected{1, 2, 3};
    EXPECT_EQ(Deque<int>(list), expected);
    EXPECT_EQ(Deque<int>(list.begin(), list.end()), expected);
    EXPECT_EQ(Deque<int>(std::istream_iterator<int>(stream), std::istream_iterator<int>()), expected);
    EXPECT_EQ(Deque<int>(list | std::views::filter([](int i) { return i > 1; })), (Deque<int>{2, 3}));
    EXPECT_EQ(Deque<std::string>::repeating("x", 2), (Deque<std::string>{"x", "x"}));
    const auto raw = Deque<int>::withUninitializedCapacity(5, [](int* storage, std::ptrdiff_t& count) {
        std::iota(storage, storage + 3, 1);
        count = 3;
    });
    EXPECT_EQ(raw, expected);
    EXPECT_EQ(raw.capacity(), 5);
    EXPECT_EQ(Deque<int>::withMinimumCapacity(7).capacity(), 7);
    EXPECT_TRUE(atNamespaceScope.isEmpty());
}

TEST(Deque, KeepsCopiesApart) {
    Deque<std::string> original{"a", "b", "c"};
    Deque<std::string> copy = original;
    EXPECT_EQ(original.first(), std::as_const(copy).first()) << "a copy shares the elements";
    copy.modify(0, [](std::string& text) { text += "!"; });
    copy.swapAt(1, 2);
    EXPECT_THAT(std::as_const(original), ElementsAre("a", "b", "c"));
    EXPECT_THAT(std::as_const(copy), ElementsAre("a!", "c", "b"));

    // What was handed out to be written through never reaches a later copy, until a change ends it.
    auto& first = original.front();
    const auto it = original.begin() + 1;
    const Deque<std::string> later = original;
    first = "x";
    *it = "y";
    EXPECT_THAT(later, ElementsAre("a", "b", "c"));
    EXPECT_THAT(std::as_const(original), ElementsAre("x", "y", "c"));
    original.append("d");
    EXPECT_EQ(Deque(original).first(), original.first()) << "shared again";
    std::string& back = original.emplace_back("e");
    const Deque<std::string> last = original;
    back = "z";
    EXPECT_EQ(*last.last(), "e");
    EXPECT_EQ(*original.last(), "z");
}

TEST(Deque, IteratesOverWhatItHeld) {
    auto elements = Deque<int>::withLayout(4, 3, std::vector{1, 2, 3});
    auto iterator = elements.makeIterator();
    EXPECT_EQ(*iterator.next(), 1);
    elements.removeAll();
    elements.append(9);
    auto other = iterator;
    EXPECT_EQ(*iterator.next(), 2);
    EXPECT_EQ(*iterator.next(), 3);
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(*other.next(), 2);
    EXPECT_EQ(Deque<int>().makeIterator().next(), nullptr);

    // Of a deque with references to write through, too: the copy goes on where the iterator was.
    Deque<std::string> lent{std::string(40, 'a'), std::string(40, 'b')};
    lent[0][0] = 'x';
    auto first = std::make_unique<Deque<std::string>::Iterator>(std::move(lent).makeIterator());
    EXPECT_EQ(first->next()->front(), 'x');
    auto second = *first;
    first.reset();
    EXPECT_EQ(*second.next(), std::string(40, 'b'));

    Deque<int> base{0, 1, 2, 3};
    const auto slice = base.slice(1, 3);
    base.removeFirst(2);
    EXPECT_THAT(slice, ElementsAre(1, 2));
    EXPECT_EQ(slice[1], 2);
    EXPECT_EQ(Deque<int>(slice).count(), 2);
    EXPECT_TRUE(slice == Deque<int>({1, 2}).slice(0, 2));
}

TEST(Deque, WorksWithAlgorithms) {
    auto elements = Deque<int>::withLayout(8, 5, std::vector{5, 3, 8, 1, 7, 2, 6, 4});
    std::ranges::sort(elements);
    EXPECT_THAT(std::as_const(elements), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    std::ranges::rotate(elements, elements.begin() + 3);
    EXPECT_EQ(erase_if(elements, [](int i) { return i % 2 == 0; }), 4U);
    EXPECT_EQ(Deque<int>(elements | std::views::reverse), (Deque<int>{3, 1, 7, 5}));
    EXPECT_EQ(*elements.insert(elements.cbegin() + 1, 6), 6);
    EXPECT_EQ(*elements.erase(elements.begin(), elements.begin() + 2), 7);
    const std::vector<int> more{2, 4};
    elements.insert(elements.end(), more.begin(), more.end());
    EXPECT_EQ(elements.description(), "[7, 1, 3, 2, 4]");
    EXPECT_EQ((Deque<std::string>{"a", "b"}.debugDescription()), R"(["a", "b"])");
    const auto sum = std::as_const(elements).withContiguousStorageIfAvailable([](std::span<const int> all) {
        return std::accumulate(all.begin(), all.end(), 0);
    });
    const bool isContiguous = std::as_const(elements).segments().second.empty();
    EXPECT_EQ(sum, isContiguous ? std::optional(17) : std::nullopt);
    EXPECT_FALSE(Deque<int>::withLayout(2, 1, more).withContiguousMutableStorageIfAvailable([](std::span<int>) {
        FAIL();
    }));
}

TEST(Deque, TakesItsOwnElements) {
    for (const std::ptrdiff_t room : {0, 20}) {
        Deque<std::string> elements{"a", "b", "c"};
        elements.reserveCapacity(room);
        elements.append(std::as_const(elements)[0]);
        elements.prepend(std::as_const(elements)[2]);
        elements.insert(std::as_const(elements)[1], 2);
        elements.appendContentsOf(elements);
        elements.replaceSubrange(0, 2, elements.slice(1, 2));
        elements.insertContentsOf(elements, 1);
        EXPECT_EQ(elements.count(), 22);
        EXPECT_THAT(elements.slice(0, 6), ElementsAre("a", "a", "a", "b", "c", "a"));
    }
}

TEST(Deque, MovesElementsThatCannotBeCopied) {
    using Pointer = std::unique_ptr<int>;
    Deque<Pointer> elements;
    for (int i = 0; i < 5; ++i) {
        elements.append(std::make_unique<int>(i));
        elements.prepend(std::make_unique<int>(-i));
    }
    elements.insert(std::make_unique<int>(9), 3);
    Deque<Pointer> others;
    others.append(std::make_unique<int>(7));
    elements.insertContentsOf(std::move(others), 4);
    EXPECT_EQ(*elements.remove(4), 7);
    EXPECT_EQ(**elements.popFirst(), -4);
    EXPECT_EQ(*elements.removeLast(), 4);
    elements[0].reset();
    auto iterator = std::move(elements).makeIterator();
    EXPECT_EQ(*iterator.next(), nullptr);
    EXPECT_EQ(**iterator.next(), -2);
    EXPECT_TRUE(elements.isEmpty());
}

TEST(Deque, ComparesHashesAndCodes) {
    const Node node{1, {Node{2, {}}, Node{3, {Node{4, {}}}}}};
    Node copy = node;
    EXPECT_EQ(copy, node);
    copy.children[1].children[0].value = 5;
    EXPECT_NE(copy, node);
    EXPECT_EQ(node.children[1].children[0].value, 4);

    const auto wrapped = Deque<int>::withLayout(3, 2, std::vector{1, 2, 3});
    const Deque<int> straight{1, 2, 3};
    EXPECT_EQ(wrapped, straight);
    EXPECT_EQ(std::hash<Deque<int>>{}(wrapped), std::hash<Deque<int>>{}(straight));
    EXPECT_NE(std::hash<Deque<int>>{}(wrapped), std::hash<Deque<int>>{}(Deque<int>{1, 3, 2}));
    EXPECT_NE(wrapped, (Deque<int>{1, 2}));

    EXPECT_EQ(platform::JSONEncoder().encode(Deque<Deque<std::string>>{{"a"}, {}}), R"([["a"],[]])");
    EXPECT_EQ(platform::JSONDecoder().decode<Deque<int>>("[1, 2, 3]"), straight);
    EXPECT_THROW((void)platform::JSONDecoder().decode<Deque<int>>(R"([1, "2"])"), platform::DecodingError);
    EXPECT_EQ(platform::typeNameOf<Deque<std::string>>(), "Deque<String>");
}

TEST(DequeDeathTest, StopsOnWhatLiesOutside) {
    Deque<int> d{1, 2};
    EXPECT_DEATH(d[2] = 1, "Index out of the range");
    EXPECT_DEATH(d.remove(-1), "Index out of the range");
    EXPECT_DEATH(d.insert(1, 3), "Index out of the range");
    EXPECT_DEATH(d.removeSubrange(1, 3), "Range out of the bounds");
    EXPECT_DEATH(d.replaceSubrange(2, 1, d), "Range out of the bounds");
    EXPECT_DEATH(d.removeLast(3), "Invalid count");
    EXPECT_DEATH(Deque<int>().removeFirst(), "empty deque");
    EXPECT_DEATH(d.erase(d.end()), "Range out of the bounds");
    EXPECT_THROW(d.reserveCapacity(PTRDIFF_MAX), std::bad_alloc);
}

struct alignas(128) Wide {
    int value;
};

TEST(Deque, AlignsElements) {
    Deque<Wide> elements;
    for (int i = 0; i < 5; ++i) {
        elements.prepend(Wide{i});
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(elements.first()) % alignof(Wide), 0U);
    }
    EXPECT_EQ(elements.last()->value, 0);
}

} // namespace
