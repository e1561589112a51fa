#include "http_types/HTTPField.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using Name = HTTPField::Name;

// Constants are usable before any code runs, so no order of initialisation can break them.
static_assert(Name::wwwAuthenticate.canonicalName() == "www-authenticate");
constinit Name nameAtStart = Name::eTag;

TEST(HTTPFieldName, IsATokenInTheSpellingGiven) {
    struct Case {
        std::string_view text, canonical; // no canonical name: refused
    };

    const std::vector<Case> cases{
        {"A-b_c", "a-b_c"},
        {"Content-Type", "content-type"},
        {"content-type", "content-type"},
        {"CONTENT-TYPE", "content-type"},
        {"ETag", "etag"},
        {"!#$%&'*+-.^_`|~09azAZ", "!#$%&'*+-.^_`|~09azaz"},
        {"", ""},
        {"a b", ""},
        {":path", ""},
        {"é", ""},
        {"a\x7F", ""},
        {std::string_view("a\0", 2), ""},
        {"a@", ""},
        {"a[", ""},
        {"(a", ""},
        {"a\n", ""},
    };
    for (const Case& c : cases) {
        const auto name = Name::make(c.text);
        ASSERT_EQ(name.has_value(), !c.canonical.empty()) << c.text;
        if (!name) continue;
        EXPECT_EQ(name->rawName(), c.text);
        EXPECT_EQ(name->description(), c.text);
        EXPECT_EQ(name->canonicalName(), c.canonical);
    }
}

TEST(HTTPFieldName, ComparesAndHashesWithoutRegardToCase) {
    EXPECT_EQ(nameAtStart, Name::make("etag"));
    for (const std::string_view spelling : {"Content-Type", "content-type", "cOnTeNt-TyPe"}) {
        const Name name = Name::make(spelling).value();
        EXPECT_EQ(name, Name::contentType);
        EXPECT_EQ(std::hash<Name>()(name), std::hash<Name>()(Name::contentType));
    }
    EXPECT_EQ(Name::make("X-Own").value(), Name::make("x-oWN").value());
    EXPECT_NE(Name::make("X-Own").value(), Name::make("X-Owm").value());
}

TEST(HTTPFieldName, OwnedTextLivesWithTheLastCopy) {
    Name name = Name::age;
    {
        const Name owned = Name::make("X-Of-Its-Own").value();
        Name moved = owned;
        name = std::move(moved);
    }
    EXPECT_EQ(name.rawName(), "X-Of-Its-Own");
    const Name& self = name;
    name = self;
    EXPECT_EQ(name.canonicalName(), "x-of-its-own");
}

TEST(HTTPField, ValuesAreRepairedAndKeptByteForByte) {
    struct Case {
        std::string text, bytes, read;
        bool isValid;
    };

    const std::string replacement = "\uFFFD";
    const std::vector<Case> cases{
        {"", "", "", true},
        {"a b", "a b", "a b", true},
        {"a\tb", "a\tb", "a\tb", true},
        {"a ", "a", "a", false},
        {"\ta", "a", "a", false},
        {"\t", "", "", false},
        {" a\nb ", "a b", "a b", false},
        {"a\x7F", "a", "a", false},
        {"x\r\ny: z", "x  y: z", "x  y: z", false},
        {std::string("a\0b", 3), "a b", "a b", false},
        {"\x01 \t\x1F", "", "", false},
        {"é", "\xC3\xA9", "é", true},
        {" é\n€\x01", "é €", "é €", false},
        {"\xFF\xFE", "\xFF\xFE", replacement + replacement, true},
        {"\xE9", "\xE9", replacement, true},
        {"\xE9\n", "\xE9", replacement, false},
    };
    const Name name = Name::make("x").value();
    for (const Case& c : cases) {
        EXPECT_EQ(HTTPField::isValidValue(c.text), c.isValid) << c.text;
        const std::vector<std::uint8_t> bytes(c.text.begin(), c.text.end());
        HTTPField set(name, "old");
        set.setValue(c.text);
        for (const HTTPField& field :
             {HTTPField(name, std::string(c.text)),
              HTTPField(name, std::string_view(c.text)),
              HTTPField(name, bytes),
              set}) {
            const auto stored =
                field.withUnsafeBytesOfValue([](auto all) { return std::string(all.begin(), all.end()); });
            EXPECT_EQ(stored, c.bytes);
            EXPECT_EQ(field.value(), c.read);
            EXPECT_EQ(field.description(), "x: " + c.read);
            EXPECT_TRUE(HTTPField::isValidValue(field.rawValue().bytes()));
        }
    }
}

TEST(HTTPField, EqualityCountsStrategyAndBytesButNotTheSpellingOfTheName) {
    const HTTPField field(Name::age, "1");
    EXPECT_EQ(field.indexingStrategy, HTTPField::DynamicTableIndexingStrategy::automatic);
    EXPECT_EQ(field, HTTPField(Name::make("AGE").value(), "1"));
    EXPECT_EQ(std::hash<HTTPField>()(field), std::hash<HTTPField>()(HTTPField(Name::make("AGE").value(), "1")));
    EXPECT_NE(field, HTTPField(Name::age, "2"));
    HTTPField disallowed = field;
    disallowed.indexingStrategy = HTTPField::DynamicTableIndexingStrategy::disallow;
    EXPECT_NE(field, disallowed);
}

} // namespace
