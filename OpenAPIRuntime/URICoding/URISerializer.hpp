#pragma once

#include "OpenAPIRuntime/URICoding/URICoderConfiguration.hpp"
#include "OpenAPIRuntime/URICoding/URIEncodedNode.hpp"
#include "platform/Export.hpp"

#include <exception>
#include <string>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// Writes a tree of flat values as URI text in one of OpenAPI's styles. A serializer writes one tree; copy a fresh one
/// for each.
///
/// | value      | form, explode | form    | simple, explode | simple  |
/// |------------|---------------|---------|-----------------|---------|
/// | "a"        | k=a           | k=a     | a               | a       |
/// | a, b       | k=a&k=b       | k=a,b   | a,b             | a,b     |
/// | x: 1, y: 2 | x=1&y=2       | k=x,1,y,2 | x=1,y=2       | x,1,y,2 |
///
/// Keys and texts are percent-encoded but for the alphanumerics of Unicode and "-._~"; maps are written in the locale's
/// order of their keys, without regard to case.
class QUILLBEAM_EXPORT URISerializer {
public:
    /// A tree is too deep: only a value, a list of values or a map of values has a text.
    class SerializationError;

    explicit URISerializer(URICoderConfiguration configuration);

    /// The text of `node` under `key`; empty for an unset node and for an empty list or map.
    /// @throws SerializationError, and what the date transcoder throws
    [[nodiscard]] std::string serializeNode(const URIEncodedNode& node, std::string_view key) &&;

private:
    void serialize(const URIEncodedNode::Array& elements, std::string_view key);
    void serialize(const URIEncodedNode::Dictionary& entries, std::string_view key);
    void appendValue(const URIEncodedNode::Primitive& value);
    void appendKeyAndSeparator(std::string_view key, char separator);
    void appendSafe(std::string_view text);

    URICoderConfiguration configuration_;
    std::string data_{};
};

class QUILLBEAM_EXPORT URISerializer::SerializationError final : public std::exception {
public:
    enum class Kind : std::uint8_t { nestedContainersNotSupported };

    explicit SerializationError(Kind kind) noexcept
        : kind_(kind) {}

    [[nodiscard]] Kind kind() const noexcept { return kind_; }

    [[nodiscard]] const char* what() const noexcept override;

    bool operator==(const SerializationError& other) const noexcept { return kind_ == other.kind_; }

private:
    Kind kind_;
};

} // namespace OpenAPIRuntime::inline v1
