#pragma once

#include "platform/json/detail/SpareRoom.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace platform::inline v1::detail {

enum class JSONKind : std::uint8_t { null, boolean, number, string, array, object };

/// One value, or one key, of a document. The nodes of a document lie flat in the order of its text; a container's
/// children follow it, an object's as key and value in turn.
struct JSONNode {
    static constexpr std::uint8_t isTrue = 1;         ///< of a boolean
    static constexpr std::uint8_t hasEscapes = 1;     ///< of a string
    static constexpr std::uint8_t isPlainInteger = 1; ///< of a number: digits and a sign only

    std::uint32_t offset; ///< of the first byte in the text; of a string, behind its quote
    std::uint32_t extent; ///< of a container, the index of the node behind it; of others, the length in bytes
    std::uint32_t count;  ///< of a container, how many elements or members
    JSONKind kind;
    std::uint8_t flags;
};

static_assert(sizeof(JSONNode) == 16);

/// A parsed text: checked as a whole (RFC 8259, UTF-8 included), its numbers and strings still as they stand there.
class JSONDocument {
public:
    static constexpr std::size_t depthLimit = 512;
    static constexpr std::uint32_t indexedFrom = 64; ///< objects of more members get an index
    static constexpr std::uint32_t none = 0;         ///< no node: the root is nobody's child

    /// @param text lent for the life of the document
    /// @throws DecodingError of the data-corrupted kind where it is malformed
    explicit JSONDocument(std::string_view text);
    JSONDocument(const JSONDocument&) = delete;
    JSONDocument& operator=(const JSONDocument&) = delete;

    ~JSONDocument() { SpareRoom<JSONNode>::give(std::move(heap_)); }

    [[nodiscard]] const JSONNode& operator[](std::uint32_t index) const noexcept { return nodes_[index]; }

    /// The index of a null that stands for what is missing.
    [[nodiscard]] std::uint32_t missing() const noexcept { return size_ - 1; }

    /// The index behind a value and all its children.
    [[nodiscard]] std::uint32_t behind(std::uint32_t index) const noexcept {
        const JSONNode& node = nodes_[index];
        return node.kind >= JSONKind::array ? node.extent : index + 1;
    }

    /// The text of a number or string, as it stands in the document.
    [[nodiscard]] std::string_view raw(const JSONNode& node) const noexcept {
        return {text_.data() + node.offset, node.extent};
    }

    /// The text of a string.
    void assignString(const JSONNode& node, std::string& out) const {
        if ((node.flags & JSONNode::hasEscapes) == 0) {
            out.assign(raw(node));
        } else {
            assignUnescaped(node, out);
        }
    }

    /// Whether the key at `index` is `key`.
    [[nodiscard]] bool isKey(std::uint32_t index, std::string_view key) const;

    /// The value of the first member of an object with a key, or `none`, found by walking or by the index.
    [[nodiscard]] std::uint32_t firstMember(std::uint32_t object, std::string_view key) const;

private:
    friend class JSONParser;

    /// Where the keys of a large object are: the positions of its keys' nodes in ascending order of their texts, equal
    /// ones in the order of the document.
    struct Index {
        std::vector<std::uint32_t> keys;
    };

    void assignUnescaped(const JSONNode& node, std::string& out) const;
    [[nodiscard]] std::string keyText(std::uint32_t index) const;
    [[nodiscard]] const Index& indexOf(std::uint32_t object) const;
    void grow();

    std::string_view text_;
    JSONNode* nodes_;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_;
    Room<JSONNode> heap_{};
    mutable std::unordered_map<std::uint32_t, Index> indices_{};
    JSONNode inPlace_[64]; ///< small documents allocate nothing
};

/// Appends what the inside of a JSON string stands for; `raw` has been checked.
void appendUnescaped(std::string_view raw, std::string& out);

} // namespace platform::inline v1::detail
