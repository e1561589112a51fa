#include "OpenAPIRuntime/URICoding/URISerializer.hpp"

#include "platform/text/Comparison.hpp"
#include "platform/text/Numbers.hpp"
#include "platform/text/PercentEncoding.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

namespace {

const URIEncodedNode::Primitive& primitive(const URIEncodedNode& node) {
    using Error = URISerializer::SerializationError;
    const URIEncodedNode::Primitive* const value = node.getPrimitive();
    if (value == nullptr) throw Error(Error::Kind::nestedContainersNotSupported);
    return *value;
}

} // namespace

URISerializer::URISerializer(URICoderConfiguration configuration)
    : configuration_(std::move(configuration)) {}

std::string URISerializer::serializeNode(const URIEncodedNode& node, std::string_view key) && {
    if (const auto* const value = node.getPrimitive()) {
        if (configuration_.style == URICoderConfiguration::Style::form) appendKeyAndSeparator(key, '=');
        appendValue(*value);
    } else if (const auto* const elements = node.getArray()) {
        serialize(*elements, key);
    } else if (const auto* const entries = node.getDictionary()) {
        serialize(*entries, key);
    }
    return std::move(data_);
}

void URISerializer::serialize(const URIEncodedNode::Array& elements, std::string_view key) {
    const bool isForm = configuration_.style == URICoderConfiguration::Style::form;
    const bool hasKeyEach = isForm && configuration_.explode;
    bool isFirst = true;
    for (const URIEncodedNode& element : elements) {
        const URIEncodedNode::Primitive& value = primitive(element);
        if (!isFirst) data_ += hasKeyEach ? '&' : ',';
        if (hasKeyEach || (isForm && isFirst)) appendKeyAndSeparator(key, '=');
        appendValue(value);
        isFirst = false;
    }
}

void URISerializer::serialize(const URIEncodedNode::Dictionary& entries, std::string_view key) {
    std::vector<const URIEncodedNode::Entry*> sorted;
    sorted.reserve(entries.size());
    for (const URIEncodedNode::Entry& entry : entries) {
        sorted.push_back(&entry);
    }
    // Keys that the comparison takes for equal keep their order, which is that of their addresses.
    std::sort(sorted.begin(), sorted.end(), [](const auto* left, const auto* right) {
        const auto order = platform::localizedCaseInsensitiveCompare(left->key, right->key);
        return order == 0 ? left < right : order < 0;
    });
    const bool isForm = configuration_.style == URICoderConfiguration::Style::form;
    const char joint = isForm && configuration_.explode ? '&' : ',';
    bool isFirst = true;
    for (const URIEncodedNode::Entry* const entry : sorted) {
        const URIEncodedNode::Primitive& value = primitive(entry->value);
        if (!isFirst) data_ += joint;
        if (isFirst && isForm && !configuration_.explode) appendKeyAndSeparator(key, '=');
        appendKeyAndSeparator(entry->key, configuration_.explode ? '=' : ',');
        appendValue(value);
        isFirst = false;
    }
}

void URISerializer::appendValue(const URIEncodedNode::Primitive& value) {
    struct Appender {
        URISerializer& serializer;

        void operator()(bool flag) const { serializer.data_ += flag ? "true" : "false"; }

        void operator()(const std::string& text) const { serializer.appendSafe(text); }

        void operator()(std::int64_t number) const { serializer.data_ += std::to_string(number); }

        void operator()(double number) const { serializer.data_ += platform::shortestText(number); }

        void operator()(platform::Date date) const {
            serializer.appendSafe(serializer.configuration_.dateTranscoder->encode(date));
        }
    };

    std::visit(Appender{*this}, value);
}

void URISerializer::appendKeyAndSeparator(std::string_view key, char separator) {
    appendSafe(key);
    data_ += separator;
}

void URISerializer::appendSafe(std::string_view text) {
    if (configuration_.spaceEscapingCharacter == URICoderConfiguration::SpaceEscapingCharacter::percentEncoded) {
        return platform::appendPercentEncoded(data_, text, "-._~");
    }
    // A literal "+" is escaped before a space becomes one, so the two stay apart.
    const auto start = static_cast<std::ptrdiff_t>(data_.size());
    platform::appendPercentEncoded(data_, text, "-._~ ");
    std::replace(data_.begin() + start, data_.end(), ' ', '+');
}

const char* URISerializer::SerializationError::what() const noexcept {
    return "URI encoding: lists and objects inside lists or objects have no text form.";
}

} // namespace OpenAPIRuntime::inline v1
