#pragma once

#include "OpenAPIRuntime/URICoding/URICoderCodingKey.hpp"
#include "platform/Export.hpp"
#include "platform/date/Date.hpp"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// A value on its way to URI text: a tree of primitives, lists and maps, built from the top while the value encodes
/// itself.
class QUILLBEAM_EXPORT URIEncodedNode {
public:
    /// A value without parts: bool, text, integer, double or date.
    using Primitive = std::variant<bool, std::string, std::int64_t, double, platform::Date>;
    using Array = std::vector<URIEncodedNode>;

    struct Entry;
    /// One entry a key, in ascending order of the keys' bytes.
    using Dictionary = std::vector<Entry>;

    /// What went wrong while a tree was built: the value mixed kinds of containers in one place.
    class InsertionError;

    /// A node that nothing was written to.
    URIEncodedNode() noexcept;
    // Defined where Entry is complete: a list of entries cannot be destroyed before.
    URIEncodedNode(const URIEncodedNode& other);
    URIEncodedNode(URIEncodedNode&& other) noexcept;
    URIEncodedNode& operator=(const URIEncodedNode& other);
    URIEncodedNode& operator=(URIEncodedNode&& other) noexcept;
    ~URIEncodedNode();

    [[nodiscard]] static URIEncodedNode primitive(Primitive value);
    [[nodiscard]] static URIEncodedNode array(Array elements);
    /// Where a key comes twice, its last value stays.
    [[nodiscard]] static URIEncodedNode dictionary(Dictionary entries);

    [[nodiscard]] bool isUnset() const noexcept { return std::holds_alternative<std::monostate>(content_); }

    /// The primitive; null where this is none.
    [[nodiscard]] const Primitive* getPrimitive() const noexcept { return std::get_if<Primitive>(&content_); }

    /// The list; null where this is none.
    [[nodiscard]] const Array* getArray() const noexcept { return std::get_if<Array>(&content_); }

    /// The map; null where this is none.
    [[nodiscard]] const Dictionary* getDictionary() const noexcept { return std::get_if<Dictionary>(&content_); }

    /// Makes an unset node this primitive.
    /// @throws InsertionError settingPrimitiveValueAgain, settingValueOnAContainer
    void set(Primitive value);

    /// Puts `child` at the end of the list that this node is, or becomes where it is unset.
    /// @throws InsertionError appendingToNonArrayContainer
    void append(URIEncodedNode child);

    /// Puts `child` at a key: into a map, replacing what was there, or at the end of a list, whose length the key then
    /// tells. An unset node becomes the one that the key asks for.
    /// @throws InsertionError insertingChildValueIntoNonContainer, insertingChildValueIntoArrayUsingNonIntValueKey
    void insert(const URICoderCodingKey& key, URIEncodedNode child);

    /// The length of the list; 0 for an unset node.
    /// @throws InsertionError appendingToNonArrayContainer
    [[nodiscard]] std::size_t count() const;

    bool operator==(const URIEncodedNode& other) const;

private:
    std::variant<std::monostate, Primitive, Array, Dictionary> content_;
};

struct URIEncodedNode::Entry {
    std::string key{};
    URIEncodedNode value{};

    Entry() = default;

    Entry(std::string key_, URIEncodedNode value_)
        : key(std::move(key_))
        , value(std::move(value_)) {}

    bool operator==(const Entry&) const = default;
};

class QUILLBEAM_EXPORT URIEncodedNode::InsertionError final : public std::exception {
public:
    enum class Kind : std::uint8_t {
        settingPrimitiveValueAgain,
        settingValueOnAContainer,
        appendingToNonArrayContainer,
        insertingChildValueIntoNonContainer,
        insertingChildValueIntoArrayUsingNonIntValueKey, ///< or using one that is not the next position
    };

    explicit InsertionError(Kind kind) noexcept
        : kind_(kind) {}

    [[nodiscard]] Kind kind() const noexcept { return kind_; }

    [[nodiscard]] const char* what() const noexcept override;

    bool operator==(const InsertionError& other) const noexcept { return kind_ == other.kind_; }

private:
    Kind kind_;
};

} // namespace OpenAPIRuntime::inline v1
