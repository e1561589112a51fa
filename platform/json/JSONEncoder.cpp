#include "platform/json/JSONEncoder.hpp"

#include "platform/json/detail/JSONDocument.hpp"
#include "platform/json/detail/JSONTreeWriter.hpp"
#include "platform/json/detail/JSONWriter.hpp"

#include <chrono>
#include <cmath>

namespace platform::inline v1 {

namespace {

using detail::JSONWriter;

class ValueEncoder final : public Encoder {
public:
    ValueEncoder(JSONWriter& writer, JSONWriter::LevelIndex level, const PathFrame& frame) noexcept
        : writer_(writer)
        , level_(level)
        , frame_(frame) {}

    [[nodiscard]] CodingPath codingPath() const override { return platform::codingPath(frame_); }

    [[nodiscard]] const UserInfo& userInfo() const override { return writer_.settings().userInfo; }

    [[nodiscard]] KeyedEncodingContainer container() override;
    [[nodiscard]] UnkeyedEncodingContainer unkeyedContainer() override;
    [[nodiscard]] SingleValueEncodingContainer singleValueContainer() override;

private:
    JSONWriter& writer_;
    JSONWriter::LevelIndex level_;
    PathFrame frame_;
};

[[noreturn]] void throwInvalid(AnyValue value, const PathFrame& frame, std::string reason) {
    throw EncodingError::invalidValue(std::move(value), CodingErrorContext(codingPath(frame), std::move(reason)));
}

[[noreturn]] void throwSecondValue(const PathFrame& frame) {
    throwInvalid(AnyValue(), frame, "A value is already encoded here, in another form.");
}

/// As deep as the decoder reads.
void requireDepth(const JSONWriter& writer, JSONWriter::LevelIndex level, const PathFrame& frame) {
    constexpr std::size_t limit = detail::JSONDocument::depthLimit;
    if (writer.depth(level) < limit) return;
    throwInvalid(AnyValue(), frame, "More than " + std::to_string(limit) + " containers inside one another.");
}

void requireObject(JSONWriter& writer, JSONWriter::LevelIndex level, const PathFrame& frame) {
    requireDepth(writer, level, frame);
    if (!writer.becomeObject(level)) throwSecondValue(frame);
}

void requireArray(JSONWriter& writer, JSONWriter::LevelIndex level, const PathFrame& frame) {
    requireDepth(writer, level, frame);
    if (!writer.becomeArray(level)) throwSecondValue(frame);
}

/// The writers of all three containers. `Self` starts a value at a place (`begin`) and tells its frame (`frameFor`).
template <class Self, class Interface, class Place>
class Writers : public Interface {
public:
    Writers(JSONWriter& writer, JSONWriter::LevelIndex level, const PathFrame& frame) noexcept
        : writer_(writer)
        , level_(level)
        , frame_(frame) {}

    [[nodiscard]] CodingPath codingPath() const final { return platform::codingPath(frame_); }

    void nil(Place at) final {
        begin(at);
        writer_.null();
    }

    void boolean(Place at, bool value) final {
        begin(at);
        writer_.boolean(value);
    }

    void string(Place at, std::string_view value) final {
        begin(at);
        writer_.string(value);
    }

    void number(Place at, double value) final { floatingPoint(at, value); }

    void number(Place at, float value) final { floatingPoint(at, value); }

    void integer(Place at, std::int64_t value) final {
        begin(at);
        writer_.integer(value);
    }

    void unsignedInteger(Place at, std::uint64_t value) final {
        begin(at);
        writer_.unsignedInteger(value);
    }

    void date(Place at, Date value) final {
        if (const auto& strategy = writer_.settings().dateStrategy) {
            string(at, strategy(value));
        } else {
            number(at, static_cast<double>(value.time_since_epoch().count()) / 1e6);
        }
    }

    bool events(Place at, void (*tell)(ValueEvents& events, const void* value), const void* value) final {
        const JSONWriter::Mark mark = writer_.mark();
        try {
            begin(at);
            detail::JSONTreeWriter tree(writer_);
            tell(tree, value);
            if (tree.isComplete()) return true;
        } catch (const detail::JSONTreeWriter::TooDeep&) { // the slower way tells where
        } catch (...) {
            writer_.undo(mark);
            throw;
        }
        writer_.undo(mark);
        return false;
    }

    void value(Place at, const EncodeOperations& operations, const void* value) override {
        const PathFrame frame = self().frameFor(at);
        const JSONWriter::Mark mark = writer_.mark();
        try {
            begin(at);
            ValueEncoder child(writer_, writer_.open(), frame);
            operations.encode(child, value);
            writer_.close();
        } catch (...) { // one may encode something else instead
            writer_.undo(mark);
            throw;
        }
    }

protected:
    ~Writers() = default;

    void begin(Place at) {
        if (!writer_.isTop(level_)) {
            throwInvalid(AnyValue(), frame_, "A value is encoded here while one inside it is not complete.");
        }
        self().start(at);
    }

    JSONWriter& writer_;
    JSONWriter::LevelIndex level_;
    PathFrame frame_;

private:
    [[nodiscard]] Self& self() noexcept { return static_cast<Self&>(*this); }

    template <class Number>
    void floatingPoint(Place at, Number value) {
        if (!std::isfinite(value)) {
            throwInvalid(
                AnyValue(value), self().frameFor(at), "Unable to encode " + diagnosticText(value) + " directly in JSON."
            );
        }
        begin(at);
        writer_.number(value);
    }
};

class ObjectWriter final : public Writers<ObjectWriter, KeyedWriter, std::string_view> {
public:
    using Writers::Writers;

    [[nodiscard]] bool prefersSortedKeys() const override { return writer_.sortsKeys(); }

    [[nodiscard]] KeyedEncodingContainer nestedContainer(std::string_view key) override {
        const PathFrame frame = frameFor(key);
        begin(key);
        JSONWriter& nested = writer_.deferred();
        requireObject(nested, 0, frame);
        return KeyedEncodingContainer(std::in_place_type<ObjectWriter>, nested, 0U, frame);
    }

    [[nodiscard]] UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view key) override;

    [[nodiscard]] std::unique_ptr<Encoder> superEncoder(std::string_view key) override {
        begin(key);
        return std::make_unique<ValueEncoder>(writer_.deferred(), 0U, frameFor(key));
    }

    void start(std::string_view key) { writer_.beginMember(key); }

    [[nodiscard]] PathFrame frameFor(std::string_view key) const noexcept { return PathFrame::member(frame_, key); }
};

class ArrayWriter final : public Writers<ArrayWriter, UnkeyedWriter, Here> {
public:
    using Writers::Writers;

    [[nodiscard]] std::size_t count() const override { return writer_.count(level_); }

    [[nodiscard]] KeyedEncodingContainer nestedContainer() override {
        const PathFrame frame = frameFor(Here{});
        begin(Here{});
        JSONWriter& nested = writer_.deferred();
        requireObject(nested, 0, frame);
        return KeyedEncodingContainer(std::in_place_type<ObjectWriter>, nested, 0U, frame);
    }

    [[nodiscard]] UnkeyedEncodingContainer nestedUnkeyedContainer() override {
        const PathFrame frame = frameFor(Here{});
        begin(Here{});
        JSONWriter& nested = writer_.deferred();
        requireArray(nested, 0, frame);
        return UnkeyedEncodingContainer(std::in_place_type<ArrayWriter>, nested, 0U, frame);
    }

    [[nodiscard]] std::unique_ptr<Encoder> superEncoder() override {
        const PathFrame frame = frameFor(Here{});
        begin(Here{});
        return std::make_unique<ValueEncoder>(writer_.deferred(), 0U, frame);
    }

    void start(Here /*here*/) { writer_.beginElement(); }

    /// Of the element that comes next.
    [[nodiscard]] PathFrame frameFor(Here /*here*/) const noexcept {
        return PathFrame::element(frame_, static_cast<std::int64_t>(count()));
    }
};

class OneValueWriter final : public Writers<OneValueWriter, SingleValueWriter, Here> {
public:
    using Writers::Writers;

    /// The value writes itself where this one would stand: it may be an object or a list.
    void value(Here /*here*/, const EncodeOperations& operations, const void* value) override {
        const JSONWriter::Mark mark = writer_.mark();
        try {
            ValueEncoder same(writer_, level_, frame_);
            operations.encode(same, value);
        } catch (...) {
            writer_.undo(mark);
            throw;
        }
    }

    void start(Here /*here*/) {
        if (!writer_.becomeSingle(level_)) throwSecondValue(frame_);
    }

    [[nodiscard]] PathFrame frameFor(Here /*here*/) const noexcept { return frame_; }
};

UnkeyedEncodingContainer ObjectWriter::nestedUnkeyedContainer(std::string_view key) {
    const PathFrame frame = frameFor(key);
    begin(key);
    JSONWriter& nested = writer_.deferred();
    requireArray(nested, 0, frame);
    return UnkeyedEncodingContainer(std::in_place_type<ArrayWriter>, nested, 0U, frame);
}

KeyedEncodingContainer ValueEncoder::container() {
    requireObject(writer_, level_, frame_);
    return KeyedEncodingContainer(std::in_place_type<ObjectWriter>, writer_, level_, frame_);
}

UnkeyedEncodingContainer ValueEncoder::unkeyedContainer() {
    requireArray(writer_, level_, frame_);
    return UnkeyedEncodingContainer(std::in_place_type<ArrayWriter>, writer_, level_, frame_);
}

SingleValueEncodingContainer ValueEncoder::singleValueContainer() {
    return SingleValueEncodingContainer(std::in_place_type<OneValueWriter>, writer_, level_, frame_);
}

} // namespace

bool JSONEncoder::encode(const EncodeOperations& operations, const void* value, std::string& text) const {
    JSONWriter writer(*this, 0);
    ValueEncoder top(writer, 0, PathFrame{});
    operations.encode(top, value);
    if (!writer.finish()) return false;
    text = writer.text().view();
    return true;
}

void JSONEncoder::failOnNothingEncoded(AnyValue value, const std::string& typeName) {
    throw EncodingError::invalidValue(
        std::move(value), CodingErrorContext(CodingPath(), "Top-level " + typeName + " did not encode any values.")
    );
}

} // namespace platform::inline v1
