#include "platform/json/detail/JSONTreeWriter.hpp"

#include "platform/json/detail/JSONDocument.hpp"

#include <cmath>

namespace platform::inline v1::detail {

JSONTreeWriter::JSONTreeWriter(JSONWriter& writer) noexcept
    : writer_(writer)
    , depth_(writer.depth()) {}

inline void JSONTreeWriter::separate() {
    if (place_ == Place::further) writer_.text().append(',');
    writer_.lineBreak(depth_);
}

inline void JSONTreeWriter::beginValue() {
    if (place_ == Place::first || place_ == Place::further) separate();
    place_ = Place::further;
}

inline void JSONTreeWriter::begin(char bracket) {
    if (depth_ == JSONDocument::depthLimit) throw TooDeep();
    beginValue();
    writer_.text().append(bracket);
    place_ = Place::first;
    ++depth_;
}

inline void JSONTreeWriter::end(char bracket) {
    --depth_;
    if (place_ != Place::first) writer_.lineBreak(depth_);
    writer_.text().append(bracket);
    place_ = Place::further;
}

void JSONTreeWriter::null() {
    beginValue();
    writer_.null();
}

void JSONTreeWriter::boolean(bool value) {
    beginValue();
    writer_.boolean(value);
}

void JSONTreeWriter::integer(std::int64_t value) {
    beginValue();
    writer_.integer(value);
}

void JSONTreeWriter::number(double value) {
    beginValue();
    if (std::isfinite(value)) {
        writer_.number(value);
    } else {
        isComplete_ = false;
    }
}

void JSONTreeWriter::string(std::string_view value) {
    beginValue();
    writer_.string(value);
}

void JSONTreeWriter::beginList(std::size_t /*count*/) {
    begin('[');
}

void JSONTreeWriter::endList() {
    end(']');
}

void JSONTreeWriter::beginObject(std::size_t /*count*/) {
    begin('{');
}

void JSONTreeWriter::key(std::string_view key) {
    separate();
    writer_.string(key);
    writer_.keyEnd();
    place_ = Place::behindKey;
}

void JSONTreeWriter::endObject() {
    end('}');
}

} // namespace platform::inline v1::detail
