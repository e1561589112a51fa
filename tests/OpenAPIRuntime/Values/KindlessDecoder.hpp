#pragma once

#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"
#include "platform/coding/Coding.hpp"

/// Decodes from a value, as a coder whose form does not tell the kinds of values: what is asked for fits or it does
/// not.
namespace kindless {

using namespace platform;
using OpenAPIRuntime::OpenAPIArrayContainer;
using OpenAPIRuntime::OpenAPIObjectContainer;
using OpenAPIRuntime::OpenAPIValueContainer;

class Decoder final : public platform::Decoder {
public:
    explicit Decoder(const OpenAPIValueContainer& value)
        : value_(value) {}

    [[nodiscard]] CodingPath codingPath() const override { return {}; }

    [[nodiscard]] KeyedDecodingContainer container() override;
    [[nodiscard]] UnkeyedDecodingContainer unkeyedContainer() override;
    [[nodiscard]] SingleValueDecodingContainer singleValueContainer() override;

private:
    const OpenAPIValueContainer& value_;
};

[[noreturn]] inline void mismatch() {
    throw DecodingError::typeMismatch("", CodingErrorContext());
}

template <class Interface, class Place>
class Reader : public Interface {
public:
    explicit Reader(const OpenAPIValueContainer& value)
        : value_(value) {}

    [[nodiscard]] CodingPath codingPath() const override { return {}; }

    bool nil(Place place) override { return at(place).hasValue() ? false : pass(); }

    Read boolean(Place place, bool& out) override { return read<bool>(place, out); }

    Read string(Place place, std::string& out) override { return read<std::string>(place, out); }

    Read number(Place place, double& out) override { return read<double>(place, out); }

    Read number(Place, float&) override { mismatch(); }

    Read integer(Place place, IntegerKind, std::uint64_t& out) override { return read<std::int64_t>(place, out); }

    Read date(Place, Date&) override { mismatch(); }

    Read value(Place place, const DecodeOperations& operations, void* out) override {
        Decoder child(at(place));
        operations.decode(child, out);
        pass();
        return Read::ok;
    }

    void fail(Read, Place, std::string) const override { mismatch(); }

    void corrupted(Place, std::string text) const override {
        throw DecodingError::dataCorrupted(CodingErrorContext({}, std::move(text)));
    }

protected:
    [[nodiscard]] const OpenAPIValueContainer& at(Place place) const {
        if constexpr (std::same_as<Place, std::string_view>) return value_[place];
        if constexpr (std::derived_from<Interface, UnkeyedReader>) return value_[next_];
        return value_;
    }

    bool pass() {
        ++next_;
        return true;
    }

    template <class T>
    Read read(Place place, auto& out) {
        const auto* const found = at(place).template getIf<T>();
        if (found == nullptr) return Read::mismatch;
        out = static_cast<std::remove_reference_t<decltype(out)>>(*found);
        pass();
        return Read::ok;
    }

    const OpenAPIValueContainer& value_;
    std::size_t next_ = 0;
};

struct ObjectReader final : Reader<KeyedReader, std::string_view> {
    using Reader::Reader;

    [[nodiscard]] bool contains(std::string_view) const override { mismatch(); }

    [[nodiscard]] std::vector<std::string> allKeys() const override { mismatch(); }

    KeyedDecodingContainer nestedContainer(std::string_view) override { mismatch(); }

    UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view) override { mismatch(); }

    std::unique_ptr<platform::Decoder> superDecoder(std::string_view) override { mismatch(); }

    bool nextKey(std::size_t& cursor, std::string& key) const override {
        const auto& members = value_.getIf<OpenAPIObjectContainer>()->value();
        if (cursor < members.size()) key = members[cursor].first;
        return cursor++ < members.size();
    }
};

struct ListReader final : Reader<UnkeyedReader, Here> {
    using Reader::Reader;

    [[nodiscard]] std::optional<std::size_t> count() const override { return std::nullopt; }

    [[nodiscard]] bool isAtEnd() const override { return next_ == value_.getIf<OpenAPIArrayContainer>()->size(); }

    [[nodiscard]] std::size_t currentIndex() const override { return next_; }

    KeyedDecodingContainer nestedContainer() override { mismatch(); }

    UnkeyedDecodingContainer nestedUnkeyedContainer() override { mismatch(); }

    std::unique_ptr<platform::Decoder> superDecoder() override { mismatch(); }
};

inline KeyedDecodingContainer Decoder::container() {
    if (!value_.is<OpenAPIObjectContainer>()) mismatch();
    return KeyedDecodingContainer(std::in_place_type<ObjectReader>, value_);
}

inline UnkeyedDecodingContainer Decoder::unkeyedContainer() {
    if (!value_.is<OpenAPIArrayContainer>()) mismatch();
    return UnkeyedDecodingContainer(std::in_place_type<ListReader>, value_);
}

inline SingleValueDecodingContainer Decoder::singleValueContainer() {
    return SingleValueDecodingContainer(std::in_place_type<Reader<SingleValueReader, Here>>, value_);
}

} // namespace kindless
