#pragma once

#include "platform/coding/Coding.hpp"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// A coder that keeps what it is given as it is given, and knows as little as a coder may: no counts, no order of keys.
namespace recording {

using namespace platform;

struct Member;

struct Node {
    std::variant<std::monostate, std::string, std::uint64_t> leaf;
    char bracket = 0; ///< '{' or '[' for a container
    std::vector<Member> children;

    [[nodiscard]] std::string text() const;
};

struct Member {
    std::string key;
    Node node;
};

inline std::string Node::text() const {
    if (const auto* string = std::get_if<std::string>(&leaf)) return '\'' + *string + '\'';
    if (const auto* number = std::get_if<std::uint64_t>(&leaf)) return std::to_string(*number) + "u";
    std::string all;
    for (const Member& child : children) {
        if (!all.empty()) all += ' ';
        all += (bracket == '{' ? child.key + ':' : "") + child.node.text();
    }
    return bracket == '{' ? '{' + all + '}' : '[' + all + ']';
}

[[noreturn]] inline void unexpected() {
    throw std::logic_error("messages are not coded with this");
}

inline std::string keyOf(std::string_view place) {
    return std::string(place);
}

inline std::string keyOf(Here /*place*/) {
    return {};
}

class Encoder final : public platform::Encoder {
public:
    explicit Encoder(Node& node)
        : node_(node) {}

    [[nodiscard]] CodingPath codingPath() const override { return {}; }

    [[nodiscard]] KeyedEncodingContainer container() override;
    [[nodiscard]] UnkeyedEncodingContainer unkeyedContainer() override;
    [[nodiscard]] SingleValueEncodingContainer singleValueContainer() override;

private:
    Node& node_;
};

template <class Interface, class Place>
class Writer : public Interface {
public:
    explicit Writer(Node& node)
        : node_(node) {}

    [[nodiscard]] CodingPath codingPath() const override { return {}; }

    void nil(Place) override { unexpected(); }

    void boolean(Place, bool) override { unexpected(); }

    void string(Place place, std::string_view value) override { at(place).leaf = std::string(value); }

    void number(Place, double) override { unexpected(); }

    void number(Place, float) override { unexpected(); }

    void integer(Place, std::int64_t) override { unexpected(); }

    void unsignedInteger(Place place, std::uint64_t value) override { at(place).leaf = value; }

    void date(Place, Date) override { unexpected(); }

    void value(Place place, const EncodeOperations& operations, const void* value) override {
        Encoder child(at(place));
        operations.encode(child, value);
    }

protected:
    Node& at(Place place) {
        if (node_.bracket == 0) return node_;
        auto& child = node_.children.emplace_back();
        child.key = keyOf(place);
        return child.node;
    }

    Node& node_;
};

struct ObjectWriter final : Writer<KeyedWriter, std::string_view> {
    using Writer::Writer;

    KeyedEncodingContainer nestedContainer(std::string_view) override { unexpected(); }

    UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view) override { unexpected(); }

    std::unique_ptr<platform::Encoder> superEncoder(std::string_view) override { unexpected(); }
};

struct ListWriter final : Writer<UnkeyedWriter, Here> {
    using Writer::Writer;

    [[nodiscard]] std::size_t count() const override { return node_.children.size(); }

    KeyedEncodingContainer nestedContainer() override { unexpected(); }

    UnkeyedEncodingContainer nestedUnkeyedContainer() override { unexpected(); }

    std::unique_ptr<platform::Encoder> superEncoder() override { unexpected(); }
};

inline KeyedEncodingContainer Encoder::container() {
    node_.bracket = '{';
    return KeyedEncodingContainer(std::in_place_type<ObjectWriter>, node_);
}

inline UnkeyedEncodingContainer Encoder::unkeyedContainer() {
    node_.bracket = '[';
    return UnkeyedEncodingContainer(std::in_place_type<ListWriter>, node_);
}

inline SingleValueEncodingContainer Encoder::singleValueContainer() {
    return SingleValueEncodingContainer(std::in_place_type<Writer<SingleValueWriter, Here>>, node_);
}

class Decoder final : public platform::Decoder {
public:
    explicit Decoder(const Node& node)
        : node_(node) {}

    [[nodiscard]] CodingPath codingPath() const override { return {}; }

    [[nodiscard]] KeyedDecodingContainer container() override;
    [[nodiscard]] UnkeyedDecodingContainer unkeyedContainer() override;
    [[nodiscard]] SingleValueDecodingContainer singleValueContainer() override;

private:
    const Node& node_;
};

template <class Interface, class Place>
class Reader : public Interface {
public:
    explicit Reader(const Node& node)
        : node_(node) {}

    [[nodiscard]] CodingPath codingPath() const override { return {}; }

    bool nil(Place) override { unexpected(); }

    Read boolean(Place, bool&) override { unexpected(); }

    Read string(Place place, std::string& out) override { return leaf(place, out); }

    Read number(Place, double&) override { unexpected(); }

    Read number(Place, float&) override { unexpected(); }

    Read integer(Place place, IntegerKind, std::uint64_t& out) override { return leaf(place, out); }

    Read date(Place, Date&) override { unexpected(); }

    Read value(Place place, const DecodeOperations& operations, void* out) override {
        const Node* const node = at(place);
        if (node == nullptr) return Read::absent;
        Decoder child(*node);
        operations.decode(child, out);
        return Read::ok;
    }

    void fail(Read, Place, std::string) const override { throw DecodingError::dataCorrupted(CodingErrorContext()); }

    void corrupted(Place place, std::string) const override { fail(Read::mismatch, place, {}); }

protected:
    template <class T>
    Read leaf(Place place, T& out) {
        const Node* const node = at(place);
        if (node == nullptr) return Read::absent;
        if (!std::holds_alternative<T>(node->leaf)) return Read::mismatch;
        out = std::get<T>(node->leaf);
        return Read::ok;
    }

    const Node* at(Place place) {
        if constexpr (std::same_as<Place, std::string_view>) {
            const auto found = std::ranges::find(node_.children, place, &Member::key);
            return found == node_.children.end() ? nullptr : &found->node;
        } else {
            return node_.bracket == '[' ? &node_.children.at(next_++).node : &node_;
        }
    }

    const Node& node_;
    std::size_t next_ = 0;
};

struct ObjectReader final : Reader<KeyedReader, std::string_view> {
    using Reader::Reader;

    [[nodiscard]] bool contains(std::string_view) const override { unexpected(); }

    [[nodiscard]] std::vector<std::string> allKeys() const override { unexpected(); }

    KeyedDecodingContainer nestedContainer(std::string_view) override { unexpected(); }

    UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view) override { unexpected(); }

    std::unique_ptr<platform::Decoder> superDecoder(std::string_view) override { unexpected(); }

    bool nextKey(std::size_t&, std::string&) const override { unexpected(); }
};

struct ListReader final : Reader<UnkeyedReader, Here> {
    using Reader::Reader;

    [[nodiscard]] std::optional<std::size_t> count() const override { return std::nullopt; }

    [[nodiscard]] bool isAtEnd() const override { return next_ == node_.children.size(); }

    [[nodiscard]] std::size_t currentIndex() const override { return next_; }

    KeyedDecodingContainer nestedContainer() override { unexpected(); }

    UnkeyedDecodingContainer nestedUnkeyedContainer() override { unexpected(); }

    std::unique_ptr<platform::Decoder> superDecoder() override { unexpected(); }
};

inline KeyedDecodingContainer Decoder::container() {
    return KeyedDecodingContainer(std::in_place_type<ObjectReader>, node_);
}

inline UnkeyedDecodingContainer Decoder::unkeyedContainer() {
    return UnkeyedDecodingContainer(std::in_place_type<ListReader>, node_);
}

inline SingleValueDecodingContainer Decoder::singleValueContainer() {
    return SingleValueDecodingContainer(std::in_place_type<Reader<SingleValueReader, Here>>, node_);
}

template <class T>
Node encoded(const T& value) {
    Node node;
    Encoder encoder(node);
    Coding<T>::encode(encoder, value);
    return node;
}

template <class T>
T decoded(const Node& node) {
    T value;
    Decoder decoder(node);
    Coding<T>::decode(decoder, value);
    return value;
}

} // namespace recording
