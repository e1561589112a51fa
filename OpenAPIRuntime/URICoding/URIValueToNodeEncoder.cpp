#include "OpenAPIRuntime/URICoding/URIValueToNodeEncoder.hpp"

#include "OpenAPIRuntime/URICoding/URIEncodingContainers.hpp"

#include <utility>

namespace OpenAPIRuntime::inline v1 {

URIEncodedNode URIValueToNodeEncoder::encodeValue(const platform::EncodeOperations& operations, const void* value) {
    struct Reset {
        URIValueToNodeEncoder& encoder;

        ~Reset() {
            encoder.codingPath_.clear();
            encoder.currentStackEntry_ = CodingStackEntry();
        }
    };

    const Reset reset{*this};
    operations.encode(*this, value);
    return std::move(currentStackEntry_.storage);
}

platform::CodingPath URIValueToNodeEncoder::codingPath() const {
    // The bottom entry's key stands for no step.
    std::vector<platform::CodingKey> keys;
    for (std::size_t i = 1; i < codingPath_.size(); ++i) {
        keys.push_back(codingPath_[i].key.codingKey());
    }
    keys.push_back(currentStackEntry_.key.codingKey());
    return platform::CodingPath(std::move(keys));
}

platform::KeyedEncodingContainer URIValueToNodeEncoder::container() {
    return platform::KeyedEncodingContainer(std::in_place_type<URIKeyedEncodingContainer>, *this);
}

platform::UnkeyedEncodingContainer URIValueToNodeEncoder::unkeyedContainer() {
    return platform::UnkeyedEncodingContainer(std::in_place_type<URIUnkeyedEncodingContainer>, *this);
}

platform::SingleValueEncodingContainer URIValueToNodeEncoder::singleValueContainer() {
    return platform::SingleValueEncodingContainer(std::in_place_type<URISingleValueEncodingContainer>, *this);
}

void URIValueToNodeEncoder::push(URICoderCodingKey key, URIEncodedNode storage) {
    codingPath_.push_back(std::exchange(currentStackEntry_, CodingStackEntry{std::move(key), std::move(storage)}));
}

void URIValueToNodeEncoder::pop() {
    CodingStackEntry finished = std::exchange(currentStackEntry_, std::move(codingPath_.back()));
    codingPath_.pop_back();
    currentNode().insert(finished.key, std::move(finished.storage));
}

const char* URIValueToNodeEncoder::GeneralError::what() const noexcept {
    switch (kind_) {
    case Kind::nilNotSupported:
        return "URI encoding: a list cannot hold an absent value.";
    case Kind::dataNotSupported:
        return "URI encoding: bytes have no text form.";
    case Kind::integerOutOfRange:
        break;
    }
    return "URI encoding: an integer is beyond the signed 64-bit range.";
}

} // namespace OpenAPIRuntime::inline v1
