#include "platform/json/detail/JSONTreeWriter.hpp"

#include "platform/json/detail/ByteScan.hpp"
#include "platform/text/Numbers.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace platform::inline v1::detail {

JSONTreeWriter::JSONTreeWriter(JSONWriter& writer) noexcept
    : writer_(writer)
    , depth_(writer.depth())
    , breaksLines_(writer.breaksLines())
    , further_(writer.furtherEscaped()) {}

bool JSONTreeWriter::finish() {
    flush();
    return isComplete_;
}

void JSONTreeWriter::flush() {
    writer_.text().append(buffer_, used_);
    used_ = 0;
}

/// Makes room for so many bytes, which are far fewer than the buffer has.
inline void JSONTreeWriter::reserve(std::size_t size) {
    if (used_ + size > capacity) flush();
}

inline void JSONTreeWriter::put(std::string_view text) {
    reserve(text.size());
    text.copy(buffer_ + used_, text.size());
    used_ += text.size();
}

void JSONTreeWriter::lineBreak() {
    flush();
    writer_.lineBreak(depth_);
}

inline void JSONTreeWriter::separate() {
    reserve(1);
    if (place_ == Place::further) buffer_[used_++] = ',';
    if (breaksLines_) lineBreak();
}

inline void JSONTreeWriter::beginValue() {
    if (place_ == Place::first || place_ == Place::further) separate();
    place_ = Place::further;
}

inline void JSONTreeWriter::begin(char bracket) {
    beginValue();
    reserve(1);
    buffer_[used_++] = bracket;
    place_ = Place::first;
    ++depth_;
}

inline void JSONTreeWriter::end(char bracket) {
    --depth_;
    if (breaksLines_ && place_ != Place::first) lineBreak();
    reserve(1);
    buffer_[used_++] = bracket;
    place_ = Place::further;
}

inline void JSONTreeWriter::quoted(std::string_view value) {
    constexpr std::size_t longest = capacity / 2;
    if (value.size() <= longest) {
        reserve(value.size() + 2);
        char* const out = buffer_ + used_;
        if (copyPlainInString(out + 1, value.data(), value.size(), further_)) {
            out[0] = '"';
            out[value.size() + 1] = '"';
            used_ += value.size() + 2;
            return;
        }
    }
    flush();
    writer_.string(value);
}

void JSONTreeWriter::null() {
    beginValue();
    put("null");
}

void JSONTreeWriter::boolean(bool value) {
    beginValue();
    put(value ? "true" : "false");
}

void JSONTreeWriter::integer(std::int64_t value) {
    beginValue();
    constexpr std::size_t longest = 20;
    reserve(longest);
    char* const out = buffer_ + used_;
    used_ += static_cast<std::size_t>(std::to_chars(out, out + longest, value).ptr - out);
}

void JSONTreeWriter::number(double value) {
    beginValue();
    if (!std::isfinite(value)) {
        isComplete_ = false;
        return;
    }
    numberText_.clear();
    appendJSONNumber(numberText_, value);
    put(numberText_);
}

void JSONTreeWriter::string(std::string_view value) {
    beginValue();
    quoted(value);
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
    quoted(key);
    reserve(2);
    buffer_[used_++] = ':';
    if (breaksLines_) buffer_[used_++] = ' ';
    place_ = Place::behindKey;
}

void JSONTreeWriter::endObject() {
    end('}');
}

} // namespace platform::inline v1::detail
