#pragma once

#include "platform/Export.hpp"
#include "platform/coding/CodingKey.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform::inline v1 {

/// The way from the top of what is coded to one value in it: a list of keys. Empty for the top itself.
///
/// Thread safety: distinct objects: safe.
class QUILLBEAM_EXPORT CodingPath {
public:
    CodingPath() = default;

    explicit CodingPath(std::vector<CodingKey> keys)
        : keys_(std::move(keys)) {}

    [[nodiscard]] const std::vector<CodingKey>& keys() const noexcept { return keys_; }

    [[nodiscard]] bool empty() const noexcept { return keys_.empty(); }

    /// This path with one more key at its end.
    [[nodiscard]] CodingPath appending(CodingKey key) const;

    /// The keys' texts, joined by "/": "links/0/domain".
    [[nodiscard]] std::string description() const;

    bool operator==(const CodingPath&) const = default;

private:
    std::vector<CodingKey> keys_{};
};

/// One link of a coding path while coding goes on: coders chain these on the stack and copy them into a `CodingPath`
/// only when somebody asks for it.
struct PathFrame {
    static constexpr std::int64_t isRoot = -2;
    static constexpr std::int64_t isKey = -1;

    const PathFrame* parent = nullptr; ///< must outlive this frame
    std::string_view key{};            ///< with `index == isKey`; what it views must outlive this frame
    std::int64_t index = isRoot;       ///< the position of an element, `isKey` or `isRoot`

    [[nodiscard]] static PathFrame member(const PathFrame& parent, std::string_view key) noexcept {
        return {&parent, key, isKey};
    }

    [[nodiscard]] static PathFrame element(const PathFrame& parent, std::int64_t index) noexcept {
        return {&parent, {}, index};
    }
};

/// Copies a chain of frames, the root's end first.
[[nodiscard]] QUILLBEAM_EXPORT CodingPath codingPath(const PathFrame& frame);

} // namespace platform::inline v1
