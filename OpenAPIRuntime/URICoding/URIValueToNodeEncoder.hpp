#pragma once

#include "OpenAPIRuntime/URICoding/URICoderCodingKey.hpp"
#include "OpenAPIRuntime/URICoding/URIEncodedNode.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"

#include <cstdint>
#include <exception>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// Lets a value encode itself into a tree of `URIEncodedNode`.
///
/// One node is current; the containers write to it. To encode a child that encodes itself, a new current node is
/// pushed, and popped into its parent when the child is done. Containers that are made without a push (nested ones,
/// those of a super encoder) therefore write to the current node too.
///
/// Thread safety: one thread at a time.
class QUILLBEAM_EXPORT URIValueToNodeEncoder final : public platform::Encoder {
public:
    /// What the URI form cannot take.
    class GeneralError;

    URIValueToNodeEncoder() = default;
    URIValueToNodeEncoder(const URIValueToNodeEncoder&) = delete;
    URIValueToNodeEncoder& operator=(const URIValueToNodeEncoder&) = delete;

    /// The tree of a value; unset where the value writes nothing. The encoder is as new afterwards, also on failure.
    /// @throws URIEncodedNode::InsertionError, GeneralError, and what the value's own encoding throws
    template <class T>
    [[nodiscard]] URIEncodedNode encodeValue(const T& value) {
        return encodeValue(platform::detail::encodeOperations<T>, &value);
    }

    [[nodiscard]] URIEncodedNode encodeValue(const platform::EncodeOperations& operations, const void* value);

    [[nodiscard]] platform::CodingPath codingPath() const override;
    [[nodiscard]] platform::KeyedEncodingContainer container() override;
    [[nodiscard]] platform::UnkeyedEncodingContainer unkeyedContainer() override;
    [[nodiscard]] platform::SingleValueEncodingContainer singleValueContainer() override;

    /// The node that containers write to.
    [[nodiscard]] URIEncodedNode& currentNode() noexcept { return currentStackEntry_.storage; }

    [[nodiscard]] const URIEncodedNode& currentNode() const noexcept { return currentStackEntry_.storage; }

    /// Makes a new node current.
    void push(URICoderCodingKey key, URIEncodedNode storage);

    /// Puts the current node into its parent, which is current again. Only after a push.
    void pop();

private:
    struct CodingStackEntry {
        URICoderCodingKey key{};
        URIEncodedNode storage{};
    };

    std::vector<CodingStackEntry> codingPath_{};
    CodingStackEntry currentStackEntry_{};
};

class QUILLBEAM_EXPORT URIValueToNodeEncoder::GeneralError final : public std::exception {
public:
    enum class Kind : std::uint8_t { nilNotSupported, dataNotSupported, integerOutOfRange };

    explicit GeneralError(Kind kind) noexcept
        : kind_(kind) {}

    [[nodiscard]] Kind kind() const noexcept { return kind_; }

    [[nodiscard]] const char* what() const noexcept override;

    bool operator==(const GeneralError& other) const noexcept { return kind_ == other.kind_; }

private:
    Kind kind_;
};

} // namespace OpenAPIRuntime::inline v1
