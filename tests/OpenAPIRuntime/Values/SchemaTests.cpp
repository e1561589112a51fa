#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Values/AdditionalProperties.hpp"
#include "OpenAPIRuntime/Values/Alternatives.hpp"
#include "OpenAPIRuntime/Values/Base64EncodedData.hpp"
#include "OpenAPIRuntime/Values/CopyOnWriteBox.hpp"
#include "OpenAPIRuntime/Values/MultiError.hpp"
#include "OpenAPIRuntime/Values/SingleValueCoding.hpp"
#include "platform/coding/Fields.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

// The schemas of this file are declared as an application declares its own.

namespace shop {

using OpenAPIRuntime::Base64EncodedData;
using OpenAPIRuntime::CopyOnWriteBox;
using OpenAPIRuntime::OpenAPIObjectContainer;

/// A schema that contains itself, directly and in a list.
struct Folder {
    std::string name{};
    std::optional<CopyOnWriteBox<Folder>> parent{};
    std::vector<Folder> children{};

    Folder() = default;

    explicit Folder(std::string name_)
        : name(std::move(name_)) {}

    friend bool operator==(const Folder&, const Folder&) = default;

    static const platform::RecordFields& recordFields();
};

const platform::RecordFields& Folder::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Folder", field("name", &Folder::name), field("parent", &Folder::parent), field("children", &Folder::children)
    );
    return table;
}

struct Card {
    std::string number{};
    std::optional<std::int64_t> year{};

    friend bool operator==(const Card&, const Card&) = default;

    static const platform::RecordFields& recordFields();
};

const platform::RecordFields& Card::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Card", field("number", &Card::number), field("year", &Card::year));
    return table;
}

struct Account {
    std::string iban{};
    Base64EncodedData signature{};

    friend bool operator==(const Account&, const Account&) = default;

    static const platform::RecordFields& recordFields();
};

const platform::RecordFields& Account::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Account", field("iban", &Account::iban), field("signature", &Account::signature)
    );
    return table;
}

/// A one-of that a discriminator tells apart.
struct Payment {
    std::variant<Card, Account> method{};

    friend bool operator==(const Payment&, const Payment&) = default;
};

/// A one-of without discriminator, of a scalar and two records.
struct Source {
    std::variant<std::string, Card, Account> value{};
};

/// An any-of.
struct Contact {
    std::optional<Card> card{};
    std::optional<Account> account{};
};

/// A record with additional properties of any kind.
struct Product {
    std::string name{};
    std::optional<double> price{};
    OpenAPIObjectContainer additionalProperties{};

    friend bool operator==(const Product&, const Product&) = default;
};

/// A record with additional properties of one type.
struct Stock {
    std::string place{};
    std::map<std::string, std::int64_t> additionalProperties{};
};

/// A record that forbids additional properties.
struct Strict {
    std::optional<int> a{};
};

/// An any-of of scalars.
struct Reference {
    std::optional<std::int64_t> number{};
    std::optional<std::string> text{};
};

} // namespace shop

template <>
struct platform::Coding<shop::Payment> {
    static void decode(Decoder& decoder, shop::Payment& out) {
        auto container = decoder.container();
        const auto kind = container.decode<std::string>("kind");
        if (kind == "card") return Coding<shop::Card>::decode(decoder, out.method.emplace<shop::Card>());
        if (kind == "account") return Coding<shop::Account>::decode(decoder, out.method.emplace<shop::Account>());
        throw OpenAPIRuntime::unknownOneOfDiscriminator(CodingKey("kind"), kind, decoder.codingPath());
    }

    static void encode(Encoder& encoder, const shop::Payment& value) {
        auto container = encoder.container();
        container.encode("kind", std::holds_alternative<shop::Card>(value.method) ? "card" : "account");
        std::visit([&]<class T>(const T& method) { Coding<T>::encode(encoder, method); }, value.method);
    }
};

template <>
struct platform::Coding<shop::Source> {
    static void decode(Decoder& decoder, shop::Source& out) {
        out.value = OpenAPIRuntime::decodeOneOf<std::string, shop::Card, shop::Account>(decoder, "Source");
    }
};

template <>
struct platform::Coding<shop::Contact> {
    static void decode(Decoder& decoder, shop::Contact& out) {
        OpenAPIRuntime::decodeAnyOf(decoder, "Contact", out.card, out.account);
    }
};

template <>
struct platform::Coding<shop::Product> {
    static void decode(Decoder& decoder, shop::Product& out) {
        auto container = decoder.container();
        container.decode("name", out.name);
        container.decodeIfPresent("price", out.price);
        out.additionalProperties = OpenAPIRuntime::decodeAdditionalProperties(decoder, {"name", "price"});
    }

    static void encode(Encoder& encoder, const shop::Product& value) {
        auto container = encoder.container();
        container.encode("name", value.name);
        container.encodeIfPresent("price", value.price);
        OpenAPIRuntime::encodeAdditionalProperties(encoder, value.additionalProperties);
    }
};

template <>
struct platform::Coding<shop::Stock> {
    static void decode(Decoder& decoder, shop::Stock& out) {
        auto container = decoder.container();
        container.decode("place", out.place);
        out.additionalProperties = OpenAPIRuntime::decodeAdditionalProperties<std::int64_t>(decoder, {"place"});
    }

    static void encode(Encoder& encoder, const shop::Stock& value) {
        auto container = encoder.container();
        container.encode("place", value.place);
        OpenAPIRuntime::encodeAdditionalProperties(encoder, value.additionalProperties);
    }
};

template <>
struct platform::Coding<shop::Strict> {
    static void decode(Decoder& decoder, shop::Strict& out) {
        OpenAPIRuntime::ensureNoAdditionalProperties(decoder, {"a", "b"});
        auto container = decoder.container();
        container.decodeIfPresent("a", out.a);
    }
};

template <>
struct platform::Coding<shop::Reference> {
    static void decode(Decoder& decoder, shop::Reference& out) {
        OpenAPIRuntime::decodeAnyOf(decoder, "Reference", out.number, out.text);
    }

    static void encode(Encoder& encoder, const shop::Reference& value) {
        OpenAPIRuntime::encodeFirstNonNilValueToSingleValueContainer(encoder, value.number, value.text);
    }
};

namespace {

using OpenAPIRuntime::Base64EncodedData;
using OpenAPIRuntime::CopyOnWriteBox;
using OpenAPIRuntime::MultiError;
using platform::DecodingError;

template <class T>
T decoded(std::string_view json) {
    return platform::JSONDecoder().decode<T>(json);
}

template <class T>
std::string encoded(const T& value) {
    return platform::JSONEncoder(platform::JSONEncoder::sortedKeys).encode(value);
}

/// The failure to decode; one that never was where decoding succeeds.
template <class T>
DecodingError failure(std::string_view json) {
    try {
        static_cast<void>(decoded<T>(json));
    } catch (const DecodingError& error) {
        return error;
    }
    ADD_FAILURE() << json << " decodes";
    return DecodingError::dataCorrupted(platform::CodingErrorContext());
}

TEST(CopyOnWriteBox, LetsASchemaContainItself) {
    constexpr std::string_view json =
        R"({"children":[{"children":[],"name":"c"}],"name":"a","parent":{"children":[],"name":"b"}})";
    const auto folder = decoded<shop::Folder>(json);
    EXPECT_EQ((*folder.parent)->name, "b");
    EXPECT_EQ(encoded(folder), json);

    shop::Folder copy = folder;
    EXPECT_FALSE(copy.parent->isUniquelyOwned());
    EXPECT_EQ(std::hash<shop::Folder>()(copy), std::hash<shop::Folder>()(folder));
    copy.parent->mutableValue().name = "changed";
    EXPECT_EQ((*folder.parent)->name, "b");
    EXPECT_NE(copy, folder);
    EXPECT_TRUE(copy.parent->isUniquelyOwned() && folder.parent->isUniquelyOwned());
    EXPECT_EQ(platform::diagnosticText(*copy.parent), R"(Folder(name: "changed", parent: nil, children: []))");
    const shop::Folder* const place = &copy.parent->value();
    copy.parent->setValue(shop::Folder("set"));
    EXPECT_EQ(&copy.parent->value(), place) << "the only owner writes in place";
    copy.parent = CopyOnWriteBox(copy);
    *copy.parent = *(*copy.parent)->parent;
    EXPECT_EQ((*copy.parent)->name, "set");
}

TEST(CopyOnWriteBox, IsSharedByThreads) {
    const CopyOnWriteBox<std::string> original(std::string(100, 'x'));
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter < 'e'; ++letter) {
        threads.emplace_back([box = original, letter]() mutable {
            for (int i = 0; i < 1000; ++i) {
                CopyOnWriteBox<std::string> mine = box;
                mine.mutableValue() += letter;
                if (i % 10 == 0) box = mine;
            }
            EXPECT_EQ(box.value(), std::string(100, 'x') + std::string(100, letter));
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_TRUE(original.isUniquelyOwned());
    EXPECT_EQ(original.value(), std::string(100, 'x'));
}

TEST(Alternatives, DiscriminatorChoosesTheSchema) {
    constexpr std::string_view json = R"({"kind":"card","number":"42","year":2030})";
    const auto payment = decoded<shop::Payment>(json);
    EXPECT_EQ(payment.method.index(), 0U);
    EXPECT_EQ(encoded(payment), json);
    const DecodingError error = failure<std::vector<shop::Payment>>(R"([{"kind":"cash"}])");
    EXPECT_EQ(error.kind(), DecodingError::Kind::keyNotFound);
    EXPECT_EQ(error.key()->stringValue(), "kind");
    EXPECT_EQ(error.context().codingPath.description(), "0");
    EXPECT_EQ(
        error.context().debugDescription,
        "The oneOf structure does not contain the provided discriminator value 'cash'."
    );
}

TEST(Alternatives, FirstSchemaThatFitsIsTaken) {
    EXPECT_EQ(decoded<shop::Source>(R"("text")").value.index(), 0U);
    EXPECT_EQ(decoded<shop::Source>(R"({"number":"1","iban":"2","signature":""})").value.index(), 1U);
    EXPECT_EQ(decoded<shop::Source>(R"({"iban":"2","signature":""})").value.index(), 2U);
    EXPECT_EQ(decoded<shop::Source>(R"({"number":"1","year":1.5,"iban":"2","signature":"aGk="})").value.index(), 2U);

    const DecodingError error = failure<std::vector<shop::Source>>(R"([{"number":7,"iban":"x","signature":"a"}])");
    EXPECT_EQ(error.kind(), DecodingError::Kind::valueNotFound);
    EXPECT_EQ(error.typeName(), "Source");
    EXPECT_EQ(error.context().codingPath.description(), "0");
    EXPECT_EQ(error.context().debugDescription, "The oneOf structure did not decode into any child schema.");
    EXPECT_EQ(
        platform::localizedDescription(error.context().underlyingError),
        "MultiError (contains 3 errors): "
        "Error 1: [DecodingError: typeMismatch String - at 0: Expected to decode String but found a dictionary instead "
        "(byte offset 1). (underlying error: <nil>)], "
        "Error 2: [DecodingError: typeMismatch String - at 0/number: Expected to decode String but found a number "
        "instead (byte offset 11). (underlying error: <nil>)], "
        "Error 3: [Invalid base64-encoded string (first 128 bytes): 'a']"
    );
}

TEST(Alternatives, EverySchemaThatFitsIsFilled) {
    const auto both = decoded<shop::Contact>(R"({"number":"1","iban":"2","signature":""})");
    EXPECT_TRUE(both.card && both.account);
    const auto one = decoded<shop::Contact>(R"({"number":"1","iban":null,"signature":""})");
    EXPECT_TRUE(one.card && !one.account);
    const DecodingError error = failure<shop::Contact>("{}");
    EXPECT_EQ(error.typeName(), "Contact");
    EXPECT_EQ(error.context().debugDescription, "The anyOf structure did not decode into any child schema.");
    EXPECT_NO_THROW(OpenAPIRuntime::verifyAtLeastOneSchemaIsNotNil({one.account, one.card}, "Contact", {}, {}));

    EXPECT_EQ(encoded(decoded<std::vector<shop::Reference>>(R"([7,"x"])")), R"([7,"x"])");
    EXPECT_THROW(static_cast<void>(encoded(shop::Reference())), platform::EncodingError) << "nothing is written";
}

TEST(AdditionalProperties, AreGatheredBesideTheFields) {
    constexpr std::string_view json = R"({"color":null,"name":"cup","sizes":[1,{"x":true}],"weight":0.5})";
    const auto product = decoded<shop::Product>(json);
    EXPECT_EQ(
        product.additionalProperties.description(), R"(["color": nil, "sizes": [1, ["x": true]], "weight": 0.5])"
    );
    EXPECT_EQ(encoded(product), json);
    EXPECT_EQ(encoded(decoded<shop::Product>(R"({"name":"cup","price":2})")), R"({"name":"cup","price":2})");
    EXPECT_EQ(failure<shop::Product>(R"({"name":"cup","x":1e999})").context().codingPath.description(), "x");

    const auto stock = decoded<shop::Stock>(R"({"b":2,"place":"x","a":null,"c":3})");
    EXPECT_EQ(stock.additionalProperties, (std::map<std::string, std::int64_t>{{"b", 2}, {"c", 3}}));
    EXPECT_EQ(encoded(stock), R"({"b":2,"c":3,"place":"x"})");
    EXPECT_EQ(failure<shop::Stock>(R"({"place":"x","a":"1"})").context().codingPath.description(), "a");
}

TEST(AdditionalProperties, AreRefusedWhereForbidden) {
    EXPECT_EQ(decoded<shop::Strict>(R"({"b":1,"a":2})").a, 2);
    const DecodingError error = failure<std::vector<shop::Strict>>(R"([{"d":1,"a":2,"c":3}])");
    EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_EQ(error.context().codingPath.description(), "0/c");
    EXPECT_EQ(
        error.context().debugDescription, "Additional properties are disabled, but found 2 unknown keys during decoding"
    );
}

TEST(MultiError, CountsItsErrors) {
    const auto error = std::make_exception_ptr(std::runtime_error("one"));
    EXPECT_STREQ(MultiError({error}).what(), "MultiError (contains 1 error): Error 1: [one]");
    EXPECT_EQ(MultiError({}).prettyDescription(), "MultiError (contains 0 errors): ");
}

TEST(Base64EncodedData, SkipsWhatIsNotOfTheAlphabet) {
    const Base64EncodedData hi{'h', 'i'};
    EXPECT_EQ(encoded(hi), R"("aGk=")");
    EXPECT_EQ(Base64EncodedData(std::vector<std::uint8_t>{'h', 'i'}), hi);
    EXPECT_EQ(Base64EncodedData(platform::ByteChunk("hi")), hi);
    for (const char* json : {R"("aGk=")", R"("a\nGk\r\n=")", R"(" aG k=")"})
        EXPECT_EQ(decoded<Base64EncodedData>(json), hi) << json;
    EXPECT_TRUE(decoded<Base64EncodedData>(R"("***")").data.empty());
    try {
        static_cast<void>(decoded<Base64EncodedData>(R"("aGk")"));
        ADD_FAILURE();
    } catch (const OpenAPIRuntime::RuntimeError& error) {
        EXPECT_EQ(error.getIf<OpenAPIRuntime::RuntimeError::InvalidBase64String>()->text, "aGk");
    }
}

} // namespace
