#include "platform/coding/Fields.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <unordered_set>

namespace {

using namespace platform;

enum class Status { ACTIVE, PENDING };

struct Tag {
    std::optional<std::string> id{};
    std::string name{};

    Tag() = default;

    Tag(std::optional<std::string> id_, std::string name_)
        : id(std::move(id_))
        , name(std::move(name_)) {}

    bool operator==(const Tag&) const = default;
    static const RecordFields& recordFields();
};

struct Link {
    std::string _type{};
    Date createdAt{};
    std::vector<Tag> tags{};
    std::optional<Tag> mainTag{};
    std::map<std::string, std::optional<double>> counts{};
    Status status{};

    bool operator==(const Link&) const = default;
    static const RecordFields& recordFields();
};

/// A tagged union: {"kind":"tag", ...} or {"kind":"count","value":1}.
struct Choice {
    std::variant<Tag, double> value;
};

/// A class with a raw value.
class Grade {
public:
    static std::optional<Grade> fromRawValue(std::string_view text) {
        if (text.size() != 1) return std::nullopt;
        Grade grade;
        grade.letter_ = text[0];
        return grade;
    }

    [[nodiscard]] std::string rawValue() const { return {letter_}; }

private:
    char letter_ = 'F';
};

} // namespace

template <>
struct platform::RawValues<Status> {
    static constexpr std::string_view values[] = {"ACTIVE", "PENDING"};
};

template <>
struct platform::Coding<Choice> {
    static constexpr CodedShape shape = CodedShape::keyed;

    static void decode(Decoder& decoder, Choice& out) {
        auto container = decoder.container();
        if (const auto kind = container.decode<std::string>("kind"); kind == "tag") {
            Coding<Tag>::decode(decoder, out.value.emplace<Tag>());
        } else if (kind == "count") {
            out.value = container.decode<double>("value");
        } else {
            container.throwDataCorrupted("kind", "unknown kind");
        }
    }

    static void encode(Encoder& encoder, const Choice& choice) {
        auto container = encoder.container();
        container.encode("kind", std::holds_alternative<Tag>(choice.value) ? "tag" : "count");
        if (const auto* tag = std::get_if<Tag>(&choice.value)) {
            Coding<Tag>::encode(encoder, *tag);
        } else {
            container.encode("value", std::get<double>(choice.value));
        }
    }
};

namespace {

const RecordFields& Tag::recordFields() {
    static const RecordTable table("Tag", field("id", &Tag::id), field("name", &Tag::name));
    return table;
}

const RecordFields& Link::recordFields() {
    static const RecordTable table(
        "Link",
        field("type", &Link::_type, "_type"),
        field("createdAt", &Link::createdAt),
        field("tags", &Link::tags),
        field("mainTag", &Link::mainTag),
        field("counts", &Link::counts),
        field("status", &Link::status)
    );
    return table;
}

Link sample() {
    Link link;
    link._type = "A";
    link.createdAt = Date(std::chrono::milliseconds(1500));
    link.tags = {Tag("1", "x"), Tag(std::nullopt, "y")};
    link.counts = {{"de", 2}, {"fr", std::nullopt}};
    link.status = Status::PENDING;
    return link;
}

template <class T>
std::string failure(std::string_view json) {
    try {
        (void)JSONDecoder().decode<T>(json);
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "no error";
}

TEST(Records, EncodeInOrderAndDecodeBack) {
    const Link link = sample();
    const std::string plain = R"({"type":"A","createdAt":1.5,"tags":[{"id":"1","name":"x"},{"name":"y"}],)"
                              R"("counts":{"de":2,"fr":null},"status":"PENDING"})";
    EXPECT_EQ(JSONEncoder().encode(link), plain);
    EXPECT_EQ(JSONDecoder().decode<Link>(plain), link);
    EXPECT_EQ(
        JSONEncoder(JSONEncoder::sortedKeys).encode(link),
        R"({"counts":{"de":2,"fr":null},"createdAt":1.5,"status":"PENDING",)"
        R"("tags":[{"id":"1","name":"x"},{"name":"y"}],"type":"A"})"
    );
    const std::string shuffled =
        R"({"unknown":{"type":1},"status":"PENDING","mainTag":null,"counts":{"de":2,"fr":null},)"
        R"("tags":[{"name":"x","id":"1"},{"id":null,"name":"y"}],"type":"A","createdAt":1.5})";
    EXPECT_EQ(JSONDecoder().decode<Link>(shuffled), link);
}

TEST(Records, NeedWhatIsRequired) {
    EXPECT_EQ(
        failure<Tag>(R"({"id":"1"})"),
        "DecodingError: keyNotFound name - at : No value associated with key 'name' "
        "(byte offset 0). (underlying error: <nil>)"
    );
    EXPECT_TRUE(failure<Tag>(R"({"name":null})").starts_with("DecodingError: valueNotFound String - at name: "));
    EXPECT_TRUE(failure<std::vector<Tag>>(R"(["x"])").starts_with("DecodingError: typeMismatch Tag - at 0: "));
    EXPECT_TRUE(failure<Tag>(R"({"id":1,"name":""})").starts_with("DecodingError: typeMismatch String - at id: "));
    EXPECT_EQ(
        failure<std::vector<Status>>(R"(["ACTIVE","LOST"])"),
        "DecodingError: dataCorrupted - at 1: Cannot initialize Status from invalid String value LOST (underlying "
        "error: <nil>)"
    );
    EXPECT_TRUE(failure<Status>("[]").starts_with("DecodingError: typeMismatch Status - at : "));
}

TEST(Records, HashAndDescribeByTheirFields) {
    const Link link = sample();
    Link other = sample();
    EXPECT_EQ(std::hash<Link>{}(link), std::hash<Link>{}(other));
    other.tags[1].id = "2";
    EXPECT_NE(std::hash<Link>{}(link), std::hash<Link>{}(other));
    EXPECT_EQ((std::unordered_set<Tag>{Tag("1", "x"), Tag("1", "x"), Tag("x", "1")}.size()), 2U);
    EXPECT_EQ(
        diagnosticText(link),
        R"(Link(_type: "A", createdAt: 1970-01-01T00:00:01.500Z, tags: [Tag(id: "1", name: "x"), Tag(id: nil, name: "y")], )"
        R"(mainTag: nil, counts: ["de": 2.0, "fr": nil], status: PENDING))"
    );
}

TEST(Codings, TaggedUnionsAndRawValues) {
    EXPECT_EQ(JSONEncoder().encode(Choice{Tag("1", "x")}), R"({"kind":"tag","id":"1","name":"x"})");
    EXPECT_EQ(std::get<Tag>(JSONDecoder().decode<Choice>(R"({"name":"x","kind":"tag"})").value).name, "x");
    EXPECT_EQ(std::get<double>(JSONDecoder().decode<Choice>(R"({"kind":"count","value":2})").value), 2);
    EXPECT_TRUE(failure<Choice>(R"({"kind":"?"})").starts_with("DecodingError: dataCorrupted - at kind: unknown kind"));
    EXPECT_EQ(JSONEncoder().encode(*Grade::fromRawValue("B")), R"("B")");
    EXPECT_EQ(JSONDecoder().decode<Grade>(R"("C")").rawValue(), "C");
    EXPECT_TRUE(failure<Grade>(R"("AB")").starts_with("DecodingError: dataCorrupted - at : Cannot initialize Grade"));
    EXPECT_EQ(fromRawValue<Status>("PENDING"), Status::PENDING);
    EXPECT_EQ(fromRawValue<Status>("pending"), std::nullopt);
    EXPECT_EQ(allCases<Status>().size(), 2U);
    EXPECT_EQ(rawValue(static_cast<Status>(7)), "");
}

TEST(CodingErrors, TellTheirText) {
    const CodingErrorContext context(
        CodingPath({CodingKey("a"), CodingKey(3)}), "Why.", std::make_exception_ptr(std::runtime_error("cause"))
    );
    const std::string tail = " - at a/3: Why. (underlying error: cause)";
    const std::vector<std::pair<DecodingError, std::string>> errors{
        {DecodingError::typeMismatch("T", context), "DecodingError: typeMismatch T" + tail},
        {DecodingError::valueNotFound("T", context), "DecodingError: valueNotFound T" + tail},
        {DecodingError::keyNotFound(CodingKey("k"), context), "DecodingError: keyNotFound k" + tail},
        {DecodingError::dataCorrupted(context), "DecodingError: dataCorrupted" + tail},
    };
    for (const auto& [error, text] : errors) {
        EXPECT_EQ(error.what(), text);
        EXPECT_EQ(error.prettyDescription(), text);
        EXPECT_EQ(prettyDescription(std::make_exception_ptr(error)), text);
    }
    const auto invalid = EncodingError::invalidValue(AnyValue(Tag("1", "x")), context);
    EXPECT_EQ(invalid.prettyDescription(), R"(EncodingError: invalidValue Tag(id: "1", name: "x"))" + tail);
    EXPECT_EQ(invalid.value().getIf<Tag>()->name, "x");
}

} // namespace
