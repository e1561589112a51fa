#include "OpenAPIRuntime/URICoding/URIEncodedNode.hpp"

#include <algorithm>

namespace OpenAPIRuntime::inline v1 {

namespace {

using Kind = URIEncodedNode::InsertionError::Kind;

void put(URIEncodedNode::Dictionary& entries, const std::string& key, URIEncodedNode child) {
    // Most values offer their members in order, so the place is mostly the end.
    const auto at = std::lower_bound(
        entries.begin(),
        entries.end(),
        key,
        [](const URIEncodedNode::Entry& entry, const std::string& wanted) { return entry.key < wanted; }
    );
    if (at != entries.end() && at->key == key) {
        at->value = std::move(child);
    } else {
        entries.emplace(at, key, std::move(child));
    }
}

} // namespace

URIEncodedNode::URIEncodedNode() noexcept = default;
URIEncodedNode::URIEncodedNode(const URIEncodedNode& other) = default;
URIEncodedNode::URIEncodedNode(URIEncodedNode&& other) noexcept = default;
URIEncodedNode& URIEncodedNode::operator=(const URIEncodedNode& other) = default;
URIEncodedNode& URIEncodedNode::operator=(URIEncodedNode&& other) noexcept = default;
URIEncodedNode::~URIEncodedNode() = default;

URIEncodedNode URIEncodedNode::primitive(Primitive value) {
    URIEncodedNode node;
    node.content_ = std::move(value);
    return node;
}

URIEncodedNode URIEncodedNode::array(Array elements) {
    URIEncodedNode node;
    node.content_ = std::move(elements);
    return node;
}

URIEncodedNode URIEncodedNode::dictionary(Dictionary entries) {
    URIEncodedNode node;
    auto& sorted = node.content_.emplace<Dictionary>();
    for (Entry& entry : entries) {
        put(sorted, entry.key, std::move(entry.value));
    }
    return node;
}

void URIEncodedNode::set(Primitive value) {
    if (getPrimitive() != nullptr) throw InsertionError(Kind::settingPrimitiveValueAgain);
    if (!isUnset()) throw InsertionError(Kind::settingValueOnAContainer);
    content_ = std::move(value);
}

void URIEncodedNode::append(URIEncodedNode child) {
    if (isUnset()) content_.emplace<Array>();
    auto* const elements = std::get_if<Array>(&content_);
    if (elements == nullptr) throw InsertionError(Kind::appendingToNonArrayContainer);
    elements->push_back(std::move(child));
}

void URIEncodedNode::insert(const URICoderCodingKey& key, URIEncodedNode child) {
    if (getPrimitive() != nullptr) throw InsertionError(Kind::insertingChildValueIntoNonContainer);
    if (auto* const entries = std::get_if<Dictionary>(&content_))
        return put(*entries, key.stringValue, std::move(child));
    if (isUnset() && !key.intValue) {
        put(content_.emplace<Dictionary>(), key.stringValue, std::move(child));
        return;
    }
    if (!key.intValue || *key.intValue != static_cast<std::int64_t>(count())) {
        throw InsertionError(Kind::insertingChildValueIntoArrayUsingNonIntValueKey);
    }
    append(std::move(child));
}

std::size_t URIEncodedNode::count() const {
    if (isUnset()) return 0;
    if (const Array* const elements = getArray()) return elements->size();
    throw InsertionError(Kind::appendingToNonArrayContainer);
}

bool URIEncodedNode::operator==(const URIEncodedNode& other) const {
    return content_ == other.content_;
}

const char* URIEncodedNode::InsertionError::what() const noexcept {
    switch (kind_) {
    case Kind::settingPrimitiveValueAgain:
        return "URI encoding: a single value was encoded twice in one place.";
    case Kind::settingValueOnAContainer:
        return "URI encoding: a single value was encoded where a list or an object already is.";
    case Kind::appendingToNonArrayContainer:
        return "URI encoding: an element was added to something that is no list.";
    case Kind::insertingChildValueIntoNonContainer:
        return "URI encoding: a child was added to a single value.";
    case Kind::insertingChildValueIntoArrayUsingNonIntValueKey:
        break;
    }
    return "URI encoding: an element was added to a list under a key that is not its next position.";
}

} // namespace OpenAPIRuntime::inline v1
