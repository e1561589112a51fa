#include "platform/json/JSONDecoder.hpp"

#include "platform/coding/Fields.hpp"
#include "platform/coding/KeyHash.hpp"
#include "platform/coding/ValueEvents.hpp"
#include "platform/json/detail/JSONDocument.hpp"
#include "platform/json/detail/JSONNumber.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <span>

namespace platform::inline v1 {

namespace {

using detail::JSONDocument;
using detail::JSONKind;
using detail::JSONNode;

/// What one call of `decode` works on.
struct Source {
    const JSONDecoder& settings;
    const JSONDocument& document;
};

std::string_view nounFor(JSONKind kind) noexcept {
    static constexpr std::string_view nouns[] = {
        "null", "a boolean", "a number", "a string", "an array", "a dictionary"
    };
    return nouns[static_cast<std::size_t>(kind)];
}

class ValueDecoder final : public Decoder {
public:
    ValueDecoder(const Source& source, std::uint32_t node, const PathFrame& frame) noexcept
        : source_(source)
        , node_(node)
        , frame_(frame) {}

    [[nodiscard]] CodingPath codingPath() const override { return platform::codingPath(frame_); }

    [[nodiscard]] const UserInfo& userInfo() const override { return source_.settings.userInfo; }

    [[nodiscard]] KeyedDecodingContainer container() override;
    [[nodiscard]] UnkeyedDecodingContainer unkeyedContainer() override;
    [[nodiscard]] SingleValueDecodingContainer singleValueContainer() override;

private:
    const Source& source_;
    std::uint32_t node_;
    PathFrame frame_;
};

/// " (byte offset 17)"
std::string place(const JSONNode& node) {
    return " (byte offset " + std::to_string(node.offset - (node.kind == JSONKind::string ? 1U : 0U)) + ").";
}

[[noreturn]] void
throwFor(Read read, const Source& source, std::uint32_t index, const PathFrame& frame, const std::string& typeName) {
    const JSONNode& node = source.document[index];
    if (read == Read::null) {
        throw DecodingError::valueNotFound(
            typeName,
            CodingErrorContext(
                codingPath(frame), "Expected " + typeName + " value but found null instead" + place(node)
            )
        );
    }
    if (read == Read::mismatch) {
        throw DecodingError::typeMismatch(
            typeName,
            CodingErrorContext(
                codingPath(frame),
                "Expected to decode " + typeName + " but found " + std::string(nounFor(node.kind)) + " instead" +
                    place(node)
            )
        );
    }
    throw DecodingError::dataCorrupted(CodingErrorContext(
        codingPath(frame),
        "Parsed JSON number <" + std::string(source.document.raw(node)) + "> does not fit in " + typeName + place(node)
    ));
}

/// Throws where the value is not of the kind that a container needs.
void require(JSONKind kind, const char* typeName, const Source& source, std::uint32_t node, const PathFrame& frame) {
    const JSONKind found = source.document[node].kind;
    if (found == kind) return;
    throwFor(found == JSONKind::null ? Read::null : Read::mismatch, source, node, frame, typeName);
}

void requireObject(const Source& source, std::uint32_t node, const PathFrame& frame) {
    require(JSONKind::object, "Dictionary<String, Any>", source, node, frame);
}

void requireArray(const Source& source, std::uint32_t node, const PathFrame& frame) {
    require(JSONKind::array, "Array<Any>", source, node, frame);
}

bool fits(CodedShape shape, JSONKind kind) noexcept {
    switch (shape) {
    case CodedShape::any:
        return true;
    case CodedShape::single:
        return kind == JSONKind::boolean || kind == JSONKind::number || kind == JSONKind::string;
    case CodedShape::unkeyed:
        return kind == JSONKind::array;
    case CodedShape::keyed:
        return kind == JSONKind::object;
    }
    return true;
}

bool isPlain(const JSONNode& node) noexcept {
    return (node.flags & JSONNode::isPlainInteger) != 0;
}

bool tellNumber(std::string_view text, bool isPlainInteger, ValueEvents& events) {
    double value = 0;
    if (isPlainInteger || !detail::parseJSONNumber(text, false, value) || value == std::trunc(value)) {
        if (const auto integer = detail::parseJSONInteger(text, isPlainInteger, 64, true)) {
            events.integer(static_cast<std::int64_t>(*integer));
            return true;
        }
        if (!detail::parseJSONNumber(text, isPlainInteger, value)) return false;
    }
    events.number(value);
    return true;
}

std::string_view textOf(const JSONDocument& document, const JSONNode& node, std::string& unescaped) {
    if ((node.flags & JSONNode::hasEscapes) == 0) return document.raw(node);
    document.assignString(node, unescaped);
    return unescaped;
}

/// Tells a value with everything in it; false where a number has no value. The depth of a document is limited, and with
/// it this recursion.
bool tellValue(const JSONDocument& document, std::uint32_t index, ValueEvents& events, std::string& unescaped) {
    const JSONNode& node = document[index];
    switch (node.kind) {
    case JSONKind::null:
        events.null();
        break;
    case JSONKind::boolean:
        events.boolean((node.flags & JSONNode::isTrue) != 0);
        break;
    case JSONKind::number:
        return tellNumber(document.raw(node), isPlain(node), events);
    case JSONKind::string:
        events.string(textOf(document, node, unescaped));
        break;
    case JSONKind::array:
        events.beginList(node.count);
        for (std::uint32_t at = index + 1; at != node.extent; at = document.behind(at)) {
            if (!tellValue(document, at, events, unescaped)) return false;
        }
        events.endList();
        break;
    case JSONKind::object:
        events.beginObject(node.count);
        for (std::uint32_t at = index + 1; at != node.extent; at = document.behind(at + 1)) {
            events.key(textOf(document, document[at], unescaped));
            if (!tellValue(document, at + 1, events, unescaped)) return false;
        }
        events.endObject();
        break;
    }
    return true;
}

/// The readers of all three containers. `Self` finds the value for a place (`locate`, with `JSONDocument::none` for
/// nothing, but in a single value container, whose value may be the root), tells its frame (`frameFor`) and is told
/// when it has been read (`pass`).
template <class Self, class Interface, class Place>
class Readers : public Interface {
public:
    [[nodiscard]] CodingPath codingPath() const final { return platform::codingPath(frame_); }

    [[nodiscard]] CodedKind kind(Place at) const final {
        static constexpr CodedKind kinds[] = {
            CodedKind::null,
            CodedKind::boolean,
            CodedKind::number,
            CodedKind::string,
            CodedKind::list,
            CodedKind::object
        };
        std::uint32_t index = 0;
        if (!self().find(at, index)) return CodedKind::unknown;
        return kinds[static_cast<std::size_t>(node(index).kind)];
    }

    Read events(Place at, ValueEvents& events) final {
        std::uint32_t index = 0;
        if (!self().locate(at, index)) return Read::absent;
        std::string unescaped;
        if (!tellValue(source_.document, index, events, unescaped)) return Read::unrepresentable;
        self().pass(index);
        return Read::ok;
    }

    bool nil(Place at) final {
        std::uint32_t index = 0;
        if (!self().locate(at, index)) {
            fail(Read::absent, at, "Optional");
            return false;
        }
        if (node(index).kind != JSONKind::null) return false;
        self().pass(index);
        return true;
    }

    Read boolean(Place at, bool& out) final {
        return read(at, JSONKind::boolean, [&](const JSONNode& node) {
            out = (node.flags & JSONNode::isTrue) != 0;
            return Read::ok;
        });
    }

    Read string(Place at, std::string& out) final {
        return read(at, JSONKind::string, [&](const JSONNode& node) {
            source_.document.assignString(node, out);
            return Read::ok;
        });
    }

    Read number(Place at, double& out) final { return floatingPoint(at, out); }

    Read number(Place at, float& out) final { return floatingPoint(at, out); }

    Read integer(Place at, IntegerKind kind, std::uint64_t& out) final {
        return read(at, JSONKind::number, [&](const JSONNode& node) {
            const auto value =
                detail::parseJSONInteger(source_.document.raw(node), isPlain(node), kind.bits, kind.isSigned);
            if (!value) return Read::unrepresentable;
            out = *value;
            return Read::ok;
        });
    }

    Read date(Place at, Date& out) final {
        if (source_.settings.dateStrategy) {
            const Read result = read(at, JSONKind::string, [&](const JSONNode& node) {
                std::string unescaped;
                out = source_.settings.dateStrategy(textOf(source_.document, node, unescaped));
                return Read::ok;
            });
            if (result == Read::mismatch) fail(result, at, "String"); // what the strategy would have been given
            return result;
        }
        return read(at, JSONKind::number, [&](const JSONNode& node) {
            double seconds = 0;
            if (!detail::parseJSONNumber(source_.document.raw(node), isPlain(node), seconds)) {
                return Read::unrepresentable;
            }
            const double microseconds = std::round(seconds * 1e6);
            constexpr double limit = 9.2e18;
            if (!(std::fabs(microseconds) < limit)) return Read::unrepresentable;
            out = Date(Date::duration(static_cast<Date::rep>(microseconds)));
            return Read::ok;
        });
    }

    Read value(Place at, const DecodeOperations& operations, void* out) final {
        std::uint32_t index = 0;
        if (!self().locate(at, index)) return Read::absent;
        const JSONKind kind = node(index).kind;
        if (!fits(operations.shape, kind)) return kind == JSONKind::null ? Read::null : Read::mismatch;
        ValueDecoder child(source_, index, self().frameFor(at));
        operations.decode(child, out);
        self().pass(index);
        return Read::ok;
    }

    void fail(Read read, Place at, std::string typeName) const final {
        std::uint32_t index = 0;
        if (read == Read::absent || !self().find(at, index)) return self().failAbsent(at, std::move(typeName));
        throwFor(read, source_, index, self().frameFor(at), typeName);
    }

    void corrupted(Place at, std::string debugDescription) const final {
        throw DecodingError::dataCorrupted(
            CodingErrorContext(platform::codingPath(self().frameFor(at)), std::move(debugDescription))
        );
    }

protected:
    Readers(const Source& source, const PathFrame& frame) noexcept
        : source_(source)
        , frame_(frame) {}

    ~Readers() = default;

    [[nodiscard]] const JSONNode& node(std::uint32_t index) const noexcept { return source_.document[index]; }

    const Source& source_;
    PathFrame frame_;

private:
    [[nodiscard]] Self& self() noexcept { return static_cast<Self&>(*this); }

    [[nodiscard]] const Self& self() const noexcept { return static_cast<const Self&>(*this); }

    template <class Take>
    Read read(Place at, JSONKind kind, Take take) {
        std::uint32_t index = 0;
        if (!self().locate(at, index)) return Read::absent;
        const JSONNode& found = node(index);
        if (found.kind != kind) return found.kind == JSONKind::null ? Read::null : Read::mismatch;
        const Read result = take(found);
        if (result == Read::ok) self().pass(index);
        return result;
    }

    template <class Number>
    Read floatingPoint(Place at, Number& out) {
        return read(at, JSONKind::number, [&](const JSONNode& node) {
            return detail::parseJSONNumber(source_.document.raw(node), isPlain(node), out) ? Read::ok
                                                                                           : Read::unrepresentable;
        });
    }
};

class ObjectReader final : public Readers<ObjectReader, KeyedReader, std::string_view> {
public:
    ObjectReader(const Source& source, std::uint32_t object, const PathFrame& frame) noexcept
        : Readers(source, frame)
        , object_(object)
        , next_(object + 1) {}

    [[nodiscard]] bool contains(std::string_view key) const override {
        std::uint32_t index = 0;
        return find(key, index);
    }

    [[nodiscard]] std::vector<std::string> allKeys() const override {
        std::vector<std::string> keys;
        std::size_t cursor = 0;
        for (std::string key; nextKey(cursor, key);)
            keys.push_back(std::move(key));
        return keys;
    }

    [[nodiscard]] bool nextKey(std::size_t& cursor, std::string& key) const override {
        const std::uint32_t end = node(object_).extent;
        auto at = cursor == 0 ? object_ + 1 : static_cast<std::uint32_t>(cursor);
        for (; at != end; at = source_.document.behind(at + 1)) {
            source_.document.assignString(node(at), key);
            if (hasUniqueKeys() || source_.document.firstMember(object_, key) == at + 1) {
                given_ = at;
                cursor = source_.document.behind(at + 1);
                return true;
            }
        }
        cursor = end;
        return false;
    }

    [[nodiscard]] KeyedDecodingContainer nestedContainer(std::string_view key) override {
        const std::uint32_t index = require(key);
        requireObject(source_, index, frameFor(key));
        return KeyedDecodingContainer(std::in_place_type<ObjectReader>, source_, index, frameFor(key));
    }

    [[nodiscard]] UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view key) override;

    [[nodiscard]] std::unique_ptr<Decoder> superDecoder(std::string_view key) override {
        std::uint32_t index = 0;
        if (!locate(key, index)) index = source_.document.missing();
        return std::make_unique<ValueDecoder>(source_, index, frameFor(key));
    }

    void fields(const RecordFields& fields, void* record) override {
        const auto slots = fields.slots();
        std::array<std::uint32_t, 64> members; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
        if (slots.size() > members.size()) return KeyedReader::fields(fields, record);
        findMembers(fields, std::span(members).first(slots.size()));
        for (std::size_t i = 0; i < slots.size(); ++i) {
            const detail::FieldSlot& slot = slots[i];
            void* const member = slot.memberOf(record);
            const bool isMissing = members[i] == JSONDocument::none;
            if (isMissing && !slot.operations->isRequired && !slot.operations->hasValue(member)) continue;
            asked_ = slot.key.data();
            askedMember_ = members[i];
            slot.operations->decode(*this, slot.key, member);
        }
        asked_ = &nowhere;
    }

    bool locate(std::string_view key, std::uint32_t& index) {
        if (key.data() == asked_) {
            index = askedMember_ + 1;
            return askedMember_ != JSONDocument::none;
        }
        return search(key, index);
    }

    [[gnu::noinline]] bool search(std::string_view key, std::uint32_t& index) {
        // Wire order equal to the order of lookups costs one comparison a member.
        if (hasUniqueKeys() && next_ != node(object_).extent && source_.document.raw(node(next_)) == key) {
            index = next_ + 1;
            next_ = source_.document.behind(index);
            return true;
        }
        if (!find(key, index)) return false;
        next_ = source_.document.behind(index);
        return true;
    }

    bool find(std::string_view key, std::uint32_t& index) const {
        if (given_ != JSONDocument::none && source_.document.isKey(given_, key)) {
            index = given_ + 1;
            return true;
        }
        if (!hasUniqueKeys()) {
            index = source_.document.firstMember(object_, key);
            return index != JSONDocument::none;
        }
        if ((keyHashes_ & detail::keyHashBit(detail::keyHash(key))) == 0) return false;
        return findBetween(next_, node(object_).extent, key, index) || findBetween(object_ + 1, next_, key, index);
    }

    [[nodiscard]] PathFrame frameFor(std::string_view key) const noexcept { return PathFrame::member(frame_, key); }

    void pass(std::uint32_t /*index*/) const noexcept {}

    [[noreturn]] void failAbsent(std::string_view key, const std::string& /*typeName*/) const {
        throw DecodingError::keyNotFound(
            CodingKey(std::string(key)),
            CodingErrorContext(
                codingPath(), "No value associated with key '" + std::string(key) + "'" + place(node(object_))
            )
        );
    }

private:
    std::uint32_t require(std::string_view key) {
        std::uint32_t index = 0;
        if (!locate(key, index)) failAbsent(key, {});
        return index;
    }

    bool findBetween(std::uint32_t at, std::uint32_t end, std::string_view key, std::uint32_t& index) const noexcept {
        for (; at != end; at = source_.document.behind(at + 1)) {
            if (source_.document.raw(node(at)) == key) {
                index = at + 1;
                return true;
            }
        }
        return false;
    }

    /// Finds the members of a record's fields in one walk over the object; those that come in the order of declaration
    /// at the cost of one comparison each.
    void findMembers(const RecordFields& fields, std::span<std::uint32_t> members) const {
        std::fill(members.begin(), members.end(), JSONDocument::none);
        const auto slots = fields.slots();
        const std::uint32_t end = node(object_).extent;
        std::string unescaped;
        std::size_t expected = 0;
        for (std::uint32_t at = object_ + 1; at != end; at = source_.document.behind(at + 1)) {
            const std::string_view key = textOf(source_.document, node(at), unescaped);
            const bool isExpected = expected < slots.size() && slots[expected].key == key;
            const std::size_t field = isExpected ? expected : fields.find(key);
            if (field == slots.size()) continue;
            if (members[field] == JSONDocument::none) members[field] = at; // of a key that comes twice the first counts
            expected = field + 1;
        }
    }

    /// Whether no key comes twice, the keys are few enough to be searched one by one, and none of them has escapes.
    [[nodiscard]] bool hasUniqueKeys() const {
        if (!areKeysKnown_) lookAtKeys();
        return areKeysUnique_;
    }

    void lookAtKeys() const {
        areKeysKnown_ = true;
        areKeysUnique_ = node(object_).count <= JSONDocument::indexedFrom;
        const std::uint32_t end = node(object_).extent;
        for (std::uint32_t at = object_ + 1; areKeysUnique_ && at != end; at = source_.document.behind(at + 1)) {
            const std::string_view key = source_.document.raw(node(at));
            const std::uint64_t bit = detail::keyHashBit(detail::keyHash(key));
            std::uint32_t same = 0;
            areKeysUnique_ = (node(at).flags & JSONNode::hasEscapes) == 0 &&
                             ((keyHashes_ & bit) == 0 || !findBetween(object_ + 1, at, key, same));
            keyHashes_ |= bit;
        }
    }

    static constexpr char nowhere = 0; ///< no key stands here

    std::uint32_t object_;
    std::uint32_t next_;                               ///< the key where the next lookup starts
    mutable std::uint32_t given_ = JSONDocument::none; ///< the key that `nextKey` told last
    const char* asked_ = &nowhere; ///< where the key stands that `fields` asks for: it needs no second comparison
    std::uint32_t askedMember_ = JSONDocument::none; ///< and its member, if there is one
    mutable bool areKeysKnown_ = false;
    mutable bool areKeysUnique_ = false;  ///< see `hasUniqueKeys`
    mutable std::uint64_t keyHashes_ = 0; ///< the bits of all keys' hashes: they tell most keys that are missing
};

class ArrayReader final : public Readers<ArrayReader, UnkeyedReader, Here> {
public:
    ArrayReader(const Source& source, std::uint32_t array, const PathFrame& frame) noexcept
        : Readers(source, frame)
        , array_(array)
        , next_(array + 1) {}

    [[nodiscard]] std::optional<std::size_t> count() const override { return node(array_).count; }

    [[nodiscard]] bool isAtEnd() const override { return next_ == node(array_).extent; }

    [[nodiscard]] std::size_t currentIndex() const override { return position_; }

    // A nested container outlives this element's turn, so its frame is told before the element is passed.
    [[nodiscard]] KeyedDecodingContainer nestedContainer() override {
        const PathFrame frame = frameFor(Here{});
        const std::uint32_t index = require("Dictionary<String, Any>");
        requireObject(source_, index, frame);
        pass(index);
        return KeyedDecodingContainer(std::in_place_type<ObjectReader>, source_, index, frame);
    }

    [[nodiscard]] UnkeyedDecodingContainer nestedUnkeyedContainer() override {
        const PathFrame frame = frameFor(Here{});
        const std::uint32_t index = require("Array<Any>");
        requireArray(source_, index, frame);
        pass(index);
        return UnkeyedDecodingContainer(std::in_place_type<ArrayReader>, source_, index, frame);
    }

    [[nodiscard]] std::unique_ptr<Decoder> superDecoder() override {
        const PathFrame frame = frameFor(Here{});
        const std::uint32_t index = require("Decoder");
        pass(index);
        return std::make_unique<ValueDecoder>(source_, index, frame);
    }

    bool locate(Here /*here*/, std::uint32_t& index) noexcept { return find(Here{}, index); }

    bool find(Here /*here*/, std::uint32_t& index) const noexcept {
        index = next_;
        return !isAtEnd();
    }

    [[nodiscard]] PathFrame frameFor(Here /*here*/) const noexcept {
        return PathFrame::element(frame_, static_cast<std::int64_t>(position_));
    }

    void pass(std::uint32_t index) noexcept {
        next_ = source_.document.behind(index);
        ++position_;
    }

    [[noreturn]] void failAbsent(Here here, std::string typeName) const {
        throw DecodingError::valueNotFound(
            std::move(typeName),
            CodingErrorContext(platform::codingPath(frameFor(here)), "The list is at its end" + place(node(array_)))
        );
    }

private:
    std::uint32_t require(const char* typeName) const {
        if (isAtEnd()) failAbsent(Here{}, typeName);
        return next_;
    }

    std::uint32_t array_;
    std::uint32_t next_;
    std::size_t position_ = 0;
};

class OneValueReader final : public Readers<OneValueReader, SingleValueReader, Here> {
public:
    OneValueReader(const Source& source, std::uint32_t index, const PathFrame& frame) noexcept
        : Readers(source, frame)
        , index_(index) {}

    bool locate(Here /*here*/, std::uint32_t& index) const noexcept { return find(Here{}, index); }

    bool find(Here /*here*/, std::uint32_t& index) const noexcept {
        index = index_;
        return true;
    }

    [[nodiscard]] PathFrame frameFor(Here /*here*/) const noexcept { return frame_; }

    void pass(std::uint32_t /*index*/) const noexcept {}

    [[noreturn]] void failAbsent(Here /*here*/, std::string typeName) const {
        throw DecodingError::valueNotFound(std::move(typeName), CodingErrorContext(codingPath(), "There is no value."));
    }

private:
    std::uint32_t index_;
};

UnkeyedDecodingContainer ObjectReader::nestedUnkeyedContainer(std::string_view key) {
    const std::uint32_t index = require(key);
    requireArray(source_, index, frameFor(key));
    return UnkeyedDecodingContainer(std::in_place_type<ArrayReader>, source_, index, frameFor(key));
}

KeyedDecodingContainer ValueDecoder::container() {
    requireObject(source_, node_, frame_);
    return KeyedDecodingContainer(std::in_place_type<ObjectReader>, source_, node_, frame_);
}

UnkeyedDecodingContainer ValueDecoder::unkeyedContainer() {
    requireArray(source_, node_, frame_);
    return UnkeyedDecodingContainer(std::in_place_type<ArrayReader>, source_, node_, frame_);
}

SingleValueDecodingContainer ValueDecoder::singleValueContainer() {
    return SingleValueDecodingContainer(std::in_place_type<OneValueReader>, source_, node_, frame_);
}

} // namespace

void JSONDecoder::decode(std::string_view text, const DecodeOperations& operations, void* out) const {
    const JSONDocument document(text);
    const Source source{*this, document};
    // The top is read like any value, so that a wrong kind is told in the same words.
    OneValueReader top(source, 0, PathFrame{});
    const Read read = top.value(Here{}, operations, out);
    if (read != Read::ok) top.fail(read, Here{}, operations.typeName());
}

} // namespace platform::inline v1
