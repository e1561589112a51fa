#include "http_types/HTTPFields.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using Name = HTTPField::Name;
using testing::ElementsAre;
using testing::IsEmpty;

static_assert(std::ranges::contiguous_range<const HTTPFields> && std::ranges::sized_range<const HTTPFields>);

Name name(std::string_view text) {
    return Name::make(text).value();
}

std::vector<std::string> listed(const HTTPFields& fields) {
    std::vector<std::string> all;
    for (const HTTPField& field : fields) {
        all.push_back(field.description());
    }
    return all;
}

/// Fields of other names before these, so that every case also runs on an index, one built at once and one that grew.
HTTPFields padded(const HTTPFields& fields, int count) {
    HTTPFields result;
    for (int i = 0; i < count; ++i) {
        result.append(HTTPField(name("P" + std::to_string(i)), "p"));
        EXPECT_TRUE(count < 50 || result.contains(name("P" + std::to_string(i / 2))));
    }
    result.append(fields);
    return result;
}

TEST(HTTPFields, EmptyHoldsNothing) {
    HTTPFields fields;
    EXPECT_EQ(std::as_const(fields)[Name::age], std::nullopt);
    EXPECT_THAT(fields.values(Name::age), IsEmpty());
    EXPECT_THAT(fields.fields(Name::age), IsEmpty());
    EXPECT_FALSE(fields.contains(Name::age));
    fields[Name::age] = std::nullopt;
    fields[Name::age] = {};
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(fields, HTTPFields());
}

TEST(HTTPFields, SettersReplaceInPlace) {
    struct Case {
        HTTPFields start;
        std::string_view name;
        std::optional<std::string> value;
        std::vector<std::string> expected;
    };

    const HTTPFields cookies{{Name::cookie, "a=1"}, {Name::age, "0"}, {Name::cookie, "b=2"}};
    const HTTPFields threeA{{name("A"), "1"}, {name("B"), "2"}, {name("a"), "3"}, {name("C"), "4"}, {name("A"), "5"}};
    const std::vector<Case> cases{
        {cookies, "cookie", "c=3; d=4; e=5", {"cookie: c=3", "Age: 0", "cookie: d=4", "cookie: e=5"}},
        {cookies, "cookie", "c=3", {"cookie: c=3", "Age: 0"}},
        {cookies, "cookie", "; x; ", {"cookie: ", "Age: 0", "cookie: x", "cookie: "}},
        {cookies, "cookie", "", {"cookie: ", "Age: 0"}},
        {threeA, "A", "9", {"A: 9", "B: 2", "C: 4"}},
        {threeA, "a", std::nullopt, {"B: 2", "C: 4"}},
        {threeA, "D", "x; y", {"A: 1", "B: 2", "a: 3", "C: 4", "A: 5", "D: x; y"}},
        {threeA, "D", std::nullopt, {"A: 1", "B: 2", "a: 3", "C: 4", "A: 5"}},
        {threeA, "b", "\n7", {"A: 1", "b: 7", "a: 3", "C: 4", "A: 5"}},
    };
    for (const Case& c : cases) {
        for (const int padding : {0, 20, 100}) {
            HTTPFields fields = padded(c.start, padding);
            const HTTPFields before = fields;
            fields[name(c.name)] = c.value;
            auto rest = listed(fields);
            rest.erase(rest.begin(), rest.begin() + padding);
            EXPECT_EQ(rest, c.expected) << c.name;
            EXPECT_EQ(listed(before), listed(padded(c.start, padding)));
            EXPECT_EQ(fields[name(c.name)].has_value(), c.value.has_value());
        }
    }
}

TEST(HTTPFields, LookupsJoinAllValuesOfAName) {
    for (const int padding : {0, 20, 100}) {
        HTTPFields fields = padded(
            {{name("X-A"), "1"}, {Name::cookie, "a=1"}, {name("x-a"), "2"}, {Name::cookie, "b=2"}, {name("Z"), "\xE9"}},
            padding
        );
        EXPECT_EQ(fields[name("x-A")], "1, 2");
        EXPECT_EQ(fields[Name::cookie], "a=1; b=2");
        EXPECT_THAT(fields.values(name("x-a")), ElementsAre("1", "2"));
        EXPECT_EQ(fields.fields(name("x-a"))[1].name.rawName(), "x-a");
        EXPECT_EQ(fields.find(name("X-A"))->value(), "1");
        EXPECT_EQ(fields[name("z")].value(), "\uFFFD");
        EXPECT_FALSE(fields.contains(name("x-b")));
        EXPECT_EQ(fields[name("x-b")], std::nullopt);
    }
}

TEST(HTTPFields, OrderCountsWithinANameOnly) {
    const HTTPField a1(name("A"), "1"), a2(name("a"), "2"), b(name("B"), "2");

    struct Case {
        HTTPFields left, right;
        bool areEqual;
    };

    const std::vector<Case> cases{
        {{a1, b}, {b, a1}, true},
        {{a1, a2}, {a2, a1}, false},
        {{a1, b, a2}, {a1, a2, b}, true},
        {{a1, a1, b}, {a1, b, b}, false},
        {{a1, a1, b}, {b, a1, a1}, true},
        {{a1}, {a1, a1}, false},
        {{a1}, {b}, false},
        {{}, {}, true},
        {{}, {a1}, false},
    };
    for (const Case& c : cases) {
        for (const int padding : {0, 20, 100}) {
            const HTTPFields left = padded(c.left, padding), right = padded(c.right, padding);
            EXPECT_EQ(left == right, c.areEqual) << left.debugDescription() << right.debugDescription();
            EXPECT_EQ(right == left, c.areEqual);
            EXPECT_TRUE(!c.areEqual || std::hash<HTTPFields>()(left) == std::hash<HTTPFields>()(right));
        }
    }
}

TEST(HTTPFields, ArgumentsMayComeFromTheCollectionItself) {
    HTTPFields fields{{name("A"), "1"}, {name("B"), "2"}, {name("A"), "3"}};
    fields.append(fields);
    EXPECT_THAT(listed(fields), ElementsAre("A: 1", "B: 2", "A: 3", "A: 1", "B: 2", "A: 3"));
    fields.setValue(fields[2].name, fields[1].rawValue().view());
    EXPECT_THAT(listed(fields), ElementsAre("A: 2", "B: 2", "B: 2"));
    fields.append(fields[0]);
    fields.insert(0, fields[1]);
    EXPECT_THAT(listed(fields), ElementsAre("B: 2", "A: 2", "B: 2", "B: 2", "A: 2"));
    HTTPFields& self = fields;
    fields = self;
    fields = std::move(self);
    EXPECT_EQ(fields.size(), 5U);
}

TEST(HTTPFields, APredicateThatThrowsChangesNothing) {
    HTTPFields fields{{name("A"), "1"}, {name("B"), "2"}};
    const auto predicate = [](const HTTPField& field) { return field.name == name("A") || (throw 1, true); };
    EXPECT_THROW(fields.removeAll(predicate), int);
    EXPECT_THAT(listed(fields), ElementsAre("A: 1", "B: 2"));
}

/// Random operations on several collections that are copied from one another, each beside a plain vector.
TEST(HTTPFields, BehavesLikeAVectorOfFields) {
    struct Pair {
        HTTPFields fields;
        std::vector<HTTPField> model;
    };

    const auto seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&random](std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random);
    };
    const auto randomField = [&] {
        std::string spelling(1, static_cast<char>((upTo(1) != 0 ? 'a' : 'A') + static_cast<char>(upTo(11))));
        return HTTPField(name(spelling), std::to_string(upTo(3)));
    };
    const auto randomFields = [&] {
        std::vector<HTTPField> fields;
        for (std::size_t i = upTo(4); i > 0; --i) {
            fields.push_back(randomField());
        }
        return fields;
    };
    std::array<Pair, 3> pairs;
    for (int round = 0; round < 20000; ++round) {
        auto& [fields, model] = pairs[upTo(2)];
        const HTTPField field = randomField();
        const auto isSameName = [&field](const HTTPField& other) { return other.name == field.name; };
        const auto at = [&model](std::size_t position) {
            return model.begin() + static_cast<std::ptrdiff_t>(position);
        };
        const std::size_t position = upTo(model.size());
        switch (upTo(8)) {
        case 0:
        case 1:
            fields.append(field);
            model.push_back(field);
            break;
        case 2:
            fields.insert(position, field);
            model.insert(at(position), field);
            break;
        case 3:
            if (position == model.size()) break;
            EXPECT_EQ(fields.remove(position), model[position]);
            model.erase(at(position));
            break;
        case 4:
            if (position == model.size()) break;
            fields.set(position, field);
            if (model[position] != field) model[position] = field;
            break;
        case 5: {
            const std::size_t last = position + upTo(std::min<std::size_t>(3, model.size() - position));
            const auto added = randomFields();
            fields.replaceSubrange(position, last, added);
            model.insert(model.erase(at(position), at(last)), added.begin(), added.end());
            break;
        }
        case 6: {
            std::vector<HTTPField> values(upTo(3), field);
            fields.setFields(field.name, values);
            std::vector<HTTPField> result;
            for (const HTTPField& old : model) {
                if (!isSameName(old)) {
                    result.push_back(old);
                } else if (!values.empty()) {
                    result.push_back(values.back());
                    values.pop_back();
                }
            }
            result.insert(result.end(), values.begin(), values.end());
            model = std::move(result);
            break;
        }
        case 7:
            if (model.size() < 30) break;
            EXPECT_EQ(fields.removeAll(isSameName), std::erase_if(model, isSameName));
            break;
        default:
            pairs[upTo(2)] = Pair{fields, model};
            break;
        }
        for (const auto& [actual, expected] : pairs) {
            ASSERT_TRUE(std::ranges::equal(actual, expected)) << actual.debugDescription();
            std::vector<HTTPField> chain;
            std::ranges::copy_if(expected, std::back_inserter(chain), isSameName);
            ASSERT_EQ(actual.fields(field.name), chain) << actual.debugDescription();
        }
    }
}

TEST(HTTPFieldsDeathTest, BrokenLimitsStopTheProgram) {
    HTTPFields full(HTTPFields::maximumCount, HTTPField(Name::age, "1"));
    full[Name::age] = "2";
    EXPECT_EQ(full.size(), 1U);
    full = HTTPFields(HTTPFields::maximumCount, HTTPField(Name::age, "1"));
    EXPECT_EQ(full.values(Name::age).size(), 65534U);
    EXPECT_DEATH(full.append(HTTPField(Name::age, "1")), "at most 65534 fields");
    EXPECT_DEATH(full.replaceSubrange(0, 0, {HTTPField(Name::age, "1")}), "at most 65534 fields");
    EXPECT_DEATH(HTTPFields(65535, HTTPField(Name::age, "1")), "at most 65534 fields");
    HTTPFields one{{Name::age, "1"}};
    EXPECT_DEATH(static_cast<void>(one[1]), "out of the range");
    EXPECT_DEATH(one.replaceSubrange(1, 0, {}), "out of the range");
    EXPECT_DEATH(one.replaceSubrange(0, 2, {}), "out of the range");
    EXPECT_DEATH(one.setFields(Name::accept, {one[0]}), "must carry that name");
}

TEST(HTTPFields, DescriptionsListTheFields) {
    const HTTPFields fields{{name("X-B"), "2"}, {Name::accept, "é"}, {name("x-b"), "1"}};
    EXPECT_EQ(fields.debugDescription(), "[X-B: 2, Accept: é, x-b: 1]");
    EXPECT_EQ(fields.prettyDescription(), "accept: é; x-b: 2; x-b: 1");
    EXPECT_EQ(HTTPFields().prettyDescription(), "");
}

} // namespace
