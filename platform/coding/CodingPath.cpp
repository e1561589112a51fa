#include "platform/coding/CodingPath.hpp"

#include <algorithm>

namespace platform::inline v1 {

CodingPath CodingPath::appending(CodingKey key) const {
    CodingPath path = *this;
    path.keys_.push_back(std::move(key));
    return path;
}

std::string CodingPath::description() const {
    std::string text;
    for (const CodingKey& key : keys_) {
        if (&key != &keys_.front()) text += '/';
        text += key.stringValue();
    }
    return text;
}

CodingPath codingPath(const PathFrame& frame) {
    std::vector<CodingKey> keys;
    for (const PathFrame* at = &frame; at != nullptr; at = at->parent) {
        if (at->index == PathFrame::isKey) {
            keys.emplace_back(std::string(at->key));
        } else if (at->index >= 0) {
            keys.emplace_back(at->index);
        }
    }
    std::reverse(keys.begin(), keys.end());
    return CodingPath(std::move(keys));
}

} // namespace platform::inline v1
