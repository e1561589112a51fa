#include "platform/loading/detail/ResponseHead.hpp"

#include "platform/loading/detail/FieldText.hpp"
#include "platform/text/Latin1.hpp"

#include <charconv>

namespace platform::inline v1::detail {

namespace {

// A message head may hold this many fields; a server that sends more is not to be trusted with our memory.
constexpr std::size_t maximumFieldCount = 65'534;

} // namespace

void ResponseHead::reset() noexcept {
    fields_.clear();
    defect_ = {};
    contentLength_.reset();
    statusCode_ = 0;
    http2_ = chunked_ = complete_ = false;
}

HTTPURLResponse::HeaderFields ResponseHead::takeFields() noexcept {
    return std::exchange(fields_, {});
}

ResponseHead::Progress ResponseHead::refuse(std::string_view defect) noexcept {
    defect_ = defect;
    return Progress::invalid;
}

ResponseHead::Progress ResponseHead::statusLine(std::string_view line) {
    reset();
    http2_ = line.starts_with("HTTP/2");
    const auto space = line.find(' ');
    const auto digits = space == std::string_view::npos ? std::string_view() : line.substr(space + 1);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), statusCode_);
    const bool ended = error == std::errc() && (end == digits.data() + digits.size() || *end == ' ');
    if (!ended || end - digits.data() != 3) return refuse("the status code is not a number of three digits");
    return Progress::more;
}

ResponseHead::Progress ResponseHead::consume(std::string_view line) {
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.remove_suffix(1);
    if (line.starts_with("HTTP/")) return statusLine(line);
    if (complete_) return Progress::trailer;
    if (line.empty()) {
        if (statusCode_ < 200) {
            reset();
            return Progress::more;
        }
        complete_ = true;
        return Progress::complete;
    }
    if (line.front() == ' ' || line.front() == '\t') {
        // A folded line goes on with the value before it (RFC 9112 section 5.2).
        if (!fields_.empty()) fields_.back().second.append(" ").append(textFromLatin1(trimmingFieldWhitespace(line)));
        return Progress::more;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return refuse("a header line has no colon");
    const auto name = line.substr(0, colon);
    const auto value = trimmingFieldWhitespace(line.substr(colon + 1));
    if (equalFieldNames(name, "content-length")) {
        std::int64_t length = -1;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), length);
        const bool valid = error == std::errc() && end == value.data() + value.size() && length >= 0;
        if (!valid) return refuse("the content length is not a number");
        if (contentLength_ && *contentLength_ != length) return refuse("two content lengths contradict each other");
        contentLength_ = length;
    } else if (equalFieldNames(name, "transfer-encoding")) {
        chunked_ = true;
    }
    if (fields_.size() == maximumFieldCount) return refuse("the head has too many fields");
    fields_.emplace_back(textFromLatin1(name), textFromLatin1(value));
    return Progress::more;
}

std::optional<std::string_view> ResponseHead::field(std::string_view name) const noexcept {
    for (const auto& [fieldName, value] : fields_) {
        if (equalFieldNames(fieldName, name)) return value;
    }
    return std::nullopt;
}

std::optional<std::int64_t> ResponseHead::contentLength() const noexcept {
    return chunked_ ? std::nullopt : contentLength_;
}

} // namespace platform::inline v1::detail
