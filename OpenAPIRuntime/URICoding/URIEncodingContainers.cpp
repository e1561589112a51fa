#include "OpenAPIRuntime/URICoding/URIEncodingContainers.hpp"

#include <limits>
#include <string>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

namespace {

using GeneralError = URIValueToNodeEncoder::GeneralError;

/// Lends an encoder to one who wants to own it.
class BorrowedEncoder final : public platform::Encoder {
public:
    explicit BorrowedEncoder(platform::Encoder& encoder) noexcept
        : encoder_(encoder) {}

    platform::CodingPath codingPath() const override { return encoder_.codingPath(); }

    platform::KeyedEncodingContainer container() override { return encoder_.container(); }

    platform::UnkeyedEncodingContainer unkeyedContainer() override { return encoder_.unkeyedContainer(); }

    platform::SingleValueEncodingContainer singleValueContainer() override { return encoder_.singleValueContainer(); }

private:
    platform::Encoder& encoder_;
};

} // namespace

template <class Interface, class Place>
void URIEncodingContainer<Interface, Place>::unsignedInteger(Place place, std::uint64_t value) {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        throw GeneralError(GeneralError::Kind::integerOutOfRange);
    }
    put(place, static_cast<std::int64_t>(value));
}

template <class Interface, class Place>
void URIEncodingContainer<Interface, Place>::encodeChild(
    URICoderCodingKey key, const platform::EncodeOperations& operations, const void* value
) {
    encoder_->push(std::move(key), URIEncodedNode());
    operations.encode(*encoder_, value);
    encoder_->pop();
}

void URIKeyedEncodingContainer::value(
    std::string_view key, const platform::EncodeOperations& operations, const void* value
) {
    encodeChild(URICoderCodingKey(std::string(key)), operations, value);
}

platform::KeyedEncodingContainer URIKeyedEncodingContainer::nestedContainer(std::string_view /*key*/) {
    return encoder_->container();
}

platform::UnkeyedEncodingContainer URIKeyedEncodingContainer::nestedUnkeyedContainer(std::string_view /*key*/) {
    return encoder_->unkeyedContainer();
}

std::unique_ptr<platform::Encoder> URIKeyedEncodingContainer::superEncoder(std::string_view /*key*/) {
    return std::make_unique<BorrowedEncoder>(*encoder_);
}

void URIKeyedEncodingContainer::put(std::string_view key, URIEncodedNode::Primitive value) {
    encoder_->currentNode().insert(URICoderCodingKey(std::string(key)), URIEncodedNode::primitive(std::move(value)));
}

void URIUnkeyedEncodingContainer::nil(platform::Here /*place*/) {
    throw GeneralError(GeneralError::Kind::nilNotSupported);
}

void URIUnkeyedEncodingContainer::value(
    platform::Here /*place*/, const platform::EncodeOperations& operations, const void* value
) {
    encodeChild(URICoderCodingKey(static_cast<std::int64_t>(count())), operations, value);
}

std::size_t URIUnkeyedEncodingContainer::count() const {
    return std::as_const(*encoder_).currentNode().count();
}

platform::KeyedEncodingContainer URIUnkeyedEncodingContainer::nestedContainer() {
    return encoder_->container();
}

platform::UnkeyedEncodingContainer URIUnkeyedEncodingContainer::nestedUnkeyedContainer() {
    return encoder_->unkeyedContainer();
}

std::unique_ptr<platform::Encoder> URIUnkeyedEncodingContainer::superEncoder() {
    return std::make_unique<BorrowedEncoder>(*encoder_);
}

void URIUnkeyedEncodingContainer::put(platform::Here /*place*/, URIEncodedNode::Primitive value) {
    encoder_->currentNode().append(URIEncodedNode::primitive(std::move(value)));
}

void URISingleValueEncodingContainer::value(
    platform::Here /*place*/, const platform::EncodeOperations& operations, const void* value
) {
    operations.encode(*encoder_, value);
}

void URISingleValueEncodingContainer::put(platform::Here /*place*/, URIEncodedNode::Primitive value) {
    encoder_->currentNode().set(std::move(value));
}

} // namespace OpenAPIRuntime::inline v1
