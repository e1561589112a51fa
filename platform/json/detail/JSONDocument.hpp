#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace platform::inline v1::detail {

enum class JSONKind : std::uint8_t { null, boolean, number, string, array, object };

/// One value, or one key, of a document. The nodes of a document lie flat in the order of its text; a container's
/// children follow it, an object's as key and value in turn.
struct JSONNode {
    static constexpr std::uint8_t isTrue = 1;         ///< of a boolean
    static constexpr std::uint8_t hasEscapes = 1;     ///< of a string
    static constexpr std::uint8_t isPlainInteger = 1; ///< of a number: digits and a sign only
    static constexpr std::uint8_t mayRepeatKeys = 1;  ///< of an object of at most `indexedFrom` members

    std::uint32_t offset; ///< of the first byte in the text; of a string, behind its quote
    std::uint32_t extent; ///< of a container, the index of the node behind it; of others, the length in bytes
    std::uint32_t count;  ///< of a container, how many elements or members; of a key, its hash
    JSONKind kind;
    std::uint8_t flags;
};

static_assert(sizeof(JSONNode) == 16);

/// What tells most keys of one object apart at the price of a comparison of numbers. Reads three bytes, as keys are
/// short and mostly differ there or in their lengths.
[[nodiscard]] inline std::uint32_t jsonKeyHash(std::string_view key) noexcept {
    if (key.empty()) return 0;
    const auto byte = [key](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(key[i])); };
    return byte(0) * 5 + byte(key.size() - 1) * 11 + byte(key.size() / 2) * 23 +
           static_cast<std::uint32_t>(key.size()) * 3;
}

/// The bit of a hash in a set of 64 of them: what is not in it is not in the object.
[[nodiscard]] inline std::uint64_t jsonKeyBit(std::uint32_t hash) noexcept {
    return std::uint64_t{1} << (hash % 64);
}

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
    void assignString(const JSONNode& node, std::string& out) const;

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

    [[nodiscard]] std::string keyText(std::uint32_t index) const;
    [[nodiscard]] const Index& indexOf(std::uint32_t object) const;
    void grow();

    std::string_view text_;
    JSONNode* nodes_;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_;
    std::unique_ptr<JSONNode[]> heap_{};
    mutable std::unordered_map<std::uint32_t, Index> indices_{};
    JSONNode inPlace_[64]; ///< small documents allocate nothing
};

/// Appends what the inside of a JSON string stands for; `raw` has been checked.
void appendUnescaped(std::string_view raw, std::string& out);

} // namespace platform::inline v1::detail
