#pragma once

#include "OpenAPIRuntime/URICoding/URIValueToNodeEncoder.hpp"
#include "platform/coding/Coding.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

/// The three containers of `URIValueToNodeEncoder`. All their state lies in the encoder; they differ in where a
/// primitive or a child goes.
namespace OpenAPIRuntime::inline v1 {

/// What the three have in common: every value becomes a primitive, or a child that encodes itself.
template <class Interface, class Place>
class URIEncodingContainer : public Interface {
public:
    explicit URIEncodingContainer(URIValueToNodeEncoder& encoder) noexcept
        : encoder_(&encoder) {}

    [[nodiscard]] platform::CodingPath codingPath() const final { return encoder_->codingPath(); }

    void boolean(Place place, bool value) final { put(place, value); }

    void string(Place place, std::string_view value) final { put(place, std::string(value)); }

    void number(Place place, double value) final { put(place, value); }

    void number(Place place, float value) final { put(place, static_cast<double>(value)); }

    void integer(Place place, std::int64_t value) final { put(place, value); }

    void unsignedInteger(Place place, std::uint64_t value) final;

    void date(Place place, platform::Date value) final { put(place, value); }

protected:
    ~URIEncodingContainer() = default;

    virtual void put(Place place, URIEncodedNode::Primitive value) = 0;

    /// Lets a value encode itself into a node of its own at `key`.
    void encodeChild(URICoderCodingKey key, const platform::EncodeOperations& operations, const void* value);

    URIValueToNodeEncoder* encoder_;
};

class URIKeyedEncodingContainer final : public URIEncodingContainer<platform::KeyedWriter, std::string_view> {
public:
    using URIEncodingContainer::URIEncodingContainer;

    /// Leaves the key out.
    void nil(std::string_view /*key*/) override {}

    void value(std::string_view key, const platform::EncodeOperations& operations, const void* value) override;
    [[nodiscard]] platform::KeyedEncodingContainer nestedContainer(std::string_view key) override;
    [[nodiscard]] platform::UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view key) override;
    [[nodiscard]] std::unique_ptr<platform::Encoder> superEncoder(std::string_view key) override;

private:
    void put(std::string_view key, URIEncodedNode::Primitive value) override;
};

class URIUnkeyedEncodingContainer final : public URIEncodingContainer<platform::UnkeyedWriter, platform::Here> {
public:
    using URIEncodingContainer::URIEncodingContainer;

    /// @throws GeneralError nilNotSupported
    void nil(platform::Here place) override;

    void value(platform::Here place, const platform::EncodeOperations& operations, const void* value) override;
    [[nodiscard]] std::size_t count() const override;
    [[nodiscard]] platform::KeyedEncodingContainer nestedContainer() override;
    [[nodiscard]] platform::UnkeyedEncodingContainer nestedUnkeyedContainer() override;
    [[nodiscard]] std::unique_ptr<platform::Encoder> superEncoder() override;

private:
    void put(platform::Here place, URIEncodedNode::Primitive value) override;
};

class URISingleValueEncodingContainer final : public URIEncodingContainer<platform::SingleValueWriter, platform::Here> {
public:
    using URIEncodingContainer::URIEncodingContainer;

    /// Writes nothing.
    void nil(platform::Here /*place*/) override {}

    /// The value encodes itself into the same node.
    void value(platform::Here place, const platform::EncodeOperations& operations, const void* value) override;

private:
    void put(platform::Here place, URIEncodedNode::Primitive value) override;
};

} // namespace OpenAPIRuntime::inline v1
