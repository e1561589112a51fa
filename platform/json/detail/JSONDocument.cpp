#include "platform/json/detail/JSONDocument.hpp"

#include "platform/coding/CodingError.hpp"
#include "platform/json/detail/ByteScan.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace platform::inline v1::detail {

namespace {

constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

constexpr int hexValue(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// The value of four hexadecimal digits, or -1.
int hexQuad(const char* at) noexcept {
    int value = 0;
    for (int i = 0; i < 4; ++i) {
        const int digit = hexValue(at[i]);
        if (digit < 0) return -1;
        value = value * 16 + digit;
    }
    return value;
}

/// The length of the UTF-8 sequence at `at`, whose first byte is not ASCII; 0 where it is ill-formed (RFC 3629).
std::size_t utf8SequenceLength(const char* at, const char* end) noexcept {
    const auto byte = [at](std::size_t i) { return static_cast<unsigned char>(at[i]); };
    const auto left = static_cast<std::size_t>(end - at);
    const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
    const unsigned char first = byte(0);
    if (first >= 0xC2 && first <= 0xDF) return left >= 2 && continues(1) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        if (left < 3 || !continues(1) || !continues(2)) return 0;
        if ((first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) >= 0xA0)) return 0;
        return 3;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        if (left < 4 || !continues(1) || !continues(2) || !continues(3)) return 0;
        if ((first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) >= 0x90)) return 0;
        return 4;
    }
    return 0;
}

/// What the letter behind a backslash stands for (RFC 8259 section 7), 'u' left aside; 0 where it is none.
constexpr char escapedBy(char letter) noexcept {
    switch (letter) {
    case '"':
    case '\\':
    case '/':
        return letter;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return 0;
    }
}

/// Writes a scalar in UTF-8; returns what is behind it.
char* putUTF8(char32_t scalar, char* out) noexcept {
    const auto put = [&out](char32_t bits) { *out++ = static_cast<char>(static_cast<unsigned char>(bits)); };
    if (scalar < 0x80) {
        put(scalar);
    } else if (scalar < 0x800) {
        put(0xC0U | (scalar >> 6U));
        put(0x80U | (scalar & 0x3FU));
    } else if (scalar < 0x10000) {
        put(0xE0U | (scalar >> 12U));
        put(0x80U | ((scalar >> 6U) & 0x3FU));
        put(0x80U | (scalar & 0x3FU));
    } else {
        put(0xF0U | (scalar >> 18U));
        put(0x80U | ((scalar >> 12U) & 0x3FU));
        put(0x80U | ((scalar >> 6U) & 0x3FU));
        put(0x80U | (scalar & 0x3FU));
    }
    return out;
}

/// The scalar of one or two \u escapes, which have been checked, and what is behind them.
std::pair<char32_t, const char*> unicodeEscape(const char* at) noexcept {
    const auto first = static_cast<char32_t>(hexQuad(at + 2));
    if (first < 0xD800 || first > 0xDBFF) return {first, at + 6};
    const auto second = static_cast<char32_t>(hexQuad(at + 8));
    return {0x10000 + ((first - 0xD800) << 10U) + (second - 0xDC00), at + 12};
}

} // namespace

/// One pass over the text, without recursion.
class JSONParser {
public:
    explicit JSONParser(JSONDocument& document)
        : document_(document)
        , begin_(document.text_.data())
        , end_(begin_ + document.text_.size())
        , at_(begin_) {}

    void parse() {
        skipSpace();
        bool more = true;
        while (more) {
            value();
            more = goOn();
        }
        skipSpace();
        if (at_ != end_) fail("unexpected text behind the value", at_);
        add(JSONKind::null, end_);
    }

private:
    [[noreturn]] void fail(const char* reason, const char* where) const {
        throw DecodingError::dataCorrupted(CodingErrorContext(
            CodingPath(),
            std::string("The given data was not valid JSON: ") + reason + " (byte offset " +
                std::to_string(where - begin_) + ")."
        ));
    }

    [[nodiscard]] char peek() const {
        if (at_ == end_) fail("unexpected end of the text", at_);
        return *at_;
    }

    void skipSpace() {
        while (at_ != end_ && (*at_ == ' ' || *at_ == '\n' || *at_ == '\r' || *at_ == '\t'))
            ++at_;
    }

    std::uint32_t add(JSONKind kind, const char* start, std::size_t extent = 0, std::uint8_t flags = 0) {
        if (document_.size_ == document_.capacity_) document_.grow();
        document_.nodes_[document_.size_] =
            JSONNode{static_cast<std::uint32_t>(start - begin_), static_cast<std::uint32_t>(extent), 0, kind, flags};
        return document_.size_++;
    }

    /// Reads a value; of a container that is not empty, up to where its first child's value is expected.
    void value() {
        while (true) {
            switch (const char c = peek()) {
            case '{':
            case '[': {
                const bool isObject = c == '{';
                if (depth_ == open_.size()) fail("more than 512 containers inside one another", at_);
                open_[depth_++] = add(isObject ? JSONKind::object : JSONKind::array, at_);
                ++at_;
                skipSpace();
                if (peek() == (isObject ? '}' : ']')) return close();
                ++document_.nodes_[open_[depth_ - 1]].count;
                if (isObject) key();
                break;
            }
            case '"':
                string();
                return;
            case 't':
                return literal("true", JSONKind::boolean, JSONNode::isTrue);
            case 'f':
                return literal("false", JSONKind::boolean, 0);
            case 'n':
                return literal("null", JSONKind::null, 0);
            default:
                return number();
            }
        }
    }

    /// Behind a value: reads up to where the next value is expected; false where there is none.
    bool goOn() {
        while (depth_ > 0) {
            skipSpace();
            const std::uint32_t container = open_[depth_ - 1];
            const bool isObject = document_.nodes_[container].kind == JSONKind::object;
            const char c = peek();
            if (c == ',') {
                ++at_;
                skipSpace();
                ++document_.nodes_[container].count;
                if (isObject) key();
                return true;
            }
            if (c != (isObject ? '}' : ']')) {
                fail(isObject ? "expected ',' or '}' in an object" : "expected ',' or ']' in an array", at_);
            }
            close();
        }
        return false;
    }

    void close() {
        ++at_;
        document_.nodes_[open_[--depth_]].extent = document_.size_;
    }

    void literal(std::string_view text, JSONKind kind, std::uint8_t flags) {
        if (!std::string_view(at_, static_cast<std::size_t>(end_ - at_)).starts_with(text)) {
            fail("unexpected character", at_);
        }
        add(kind, at_, text.size(), flags);
        at_ += text.size();
    }

    void number() {
        const char* const start = at_;
        const char* at = at_;
        const auto digits = [&] {
            if (at == end_ || !isDigit(*at)) fail(at == start ? "unexpected character" : "malformed number", at);
            while (at != end_ && isDigit(*at))
                ++at;
        };
        if (*at == '-') ++at;
        if (at != end_ && *at == '0') {
            ++at;
            if (at != end_ && isDigit(*at)) fail("a number with a leading zero", start);
        } else {
            digits();
        }
        std::uint8_t flags = JSONNode::isPlainInteger;
        if (at != end_ && *at == '.') {
            flags = 0;
            ++at;
            digits();
        }
        if (at != end_ && (*at == 'e' || *at == 'E')) {
            flags = 0;
            ++at;
            if (at != end_ && (*at == '+' || *at == '-')) ++at;
            digits();
        }
        at_ = at;
        add(JSONKind::number, start, static_cast<std::size_t>(at - start), flags);
    }

    void string() {
        const char* const start = ++at_;
        std::uint8_t flags = 0;
        while (true) {
            at_ = findSpecialInString(at_, end_);
            if (at_ == end_) fail("a string without an end", start - 1);
            const auto byte = static_cast<unsigned char>(*at_);
            if (byte == '"') break;
            if (byte == '\\') {
                flags = JSONNode::hasEscapes;
                escape();
            } else if (byte < 0x20) {
                fail("a control character in a string", at_);
            } else {
                const std::size_t length = utf8SequenceLength(at_, end_);
                if (length == 0) fail("ill-formed UTF-8", at_);
                at_ += length;
            }
        }
        const auto length = static_cast<std::size_t>(at_ - start);
        ++at_;
        add(JSONKind::string, start, length, flags);
    }

    void escape() {
        const char* const start = at_;
        if (end_ - at_ < 2) fail("a string without an end", at_);
        const char c = at_[1];
        at_ += 2;
        if (c != 'u') {
            if (escapedBy(c) == 0) fail("an unknown escape", start);
            return;
        }
        const auto unit = [&] {
            const int value = end_ - at_ < 4 ? -1 : hexQuad(at_);
            if (value < 0) fail("malformed \\u escape", start);
            at_ += 4;
            return value;
        };
        const int first = unit();
        if (first < 0xD800 || first > 0xDFFF) return;
        bool isPair = first <= 0xDBFF && end_ - at_ >= 2 && at_[0] == '\\' && at_[1] == 'u';
        if (isPair) {
            at_ += 2;
            const int second = unit();
            isPair = second >= 0xDC00 && second <= 0xDFFF;
        }
        if (!isPair) fail("half a surrogate pair", start);
    }

    void key() {
        if (peek() != '"') fail("expected a key in quotes", at_);
        string();
        skipSpace();
        if (peek() != ':') fail("expected ':' behind a key", at_);
        ++at_;
        skipSpace();
    }

    JSONDocument& document_;
    const char* begin_;
    const char* end_;
    const char* at_;
    std::size_t depth_ = 0;
    /// The containers that are not closed yet. Not initialised: written before it is read.
    std::array<std::uint32_t, JSONDocument::depthLimit> open_;
};

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the nodes in place are written before they are read.
JSONDocument::JSONDocument(std::string_view text)
    : text_(text)
    , nodes_(inPlace_)
    , capacity_(static_cast<std::uint32_t>(std::size(inPlace_))) {
    if (text.size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw DecodingError::dataCorrupted(CodingErrorContext(CodingPath(), "The given data is 4 GiB or longer."));
    }
    JSONParser(*this).parse();
}

void JSONDocument::grow() {
    Room<JSONNode> larger = SpareRoom<JSONNode>::take();
    if (larger.capacity <= capacity_) {
        // Guessed from the text at first, so that an ordinary document grows once.
        const std::size_t guess = heap_.items ? 0 : text_.size() / 8;
        larger = Room<JSONNode>::of(std::max(std::size_t{capacity_} * 2, guess));
    }
    std::copy_n(nodes_, size_, larger.items.get());
    heap_ = std::move(larger);
    nodes_ = heap_.items.get();
    constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
    capacity_ = static_cast<std::uint32_t>(std::min(heap_.capacity, most));
}

void JSONDocument::assignUnescaped(const JSONNode& node, std::string& out) const {
    out.clear();
    appendUnescaped(raw(node), out);
}

std::string JSONDocument::keyText(std::uint32_t index) const {
    std::string text;
    assignString(nodes_[index], text);
    return text;
}

bool JSONDocument::isKey(std::uint32_t index, std::string_view key) const {
    const JSONNode& node = nodes_[index];
    if ((node.flags & JSONNode::hasEscapes) == 0) return raw(node) == key;
    return node.extent >= key.size() && keyText(index) == key;
}

const JSONDocument::Index& JSONDocument::indexOf(std::uint32_t object) const {
    const auto [at, isNew] = indices_.try_emplace(object);
    if (isNew) {
        std::vector<std::pair<std::string, std::uint32_t>> keys;
        keys.reserve(nodes_[object].count);
        for (std::uint32_t key = object + 1; key != nodes_[object].extent; key = behind(key + 1))
            keys.emplace_back(keyText(key), key);
        std::sort(keys.begin(), keys.end());
        for (const auto& [text, key] : keys)
            at->second.keys.push_back(key);
    }
    return at->second;
}

std::uint32_t JSONDocument::firstMember(std::uint32_t object, std::string_view key) const {
    const JSONNode& node = nodes_[object];
    if (node.count <= indexedFrom) {
        for (std::uint32_t at = object + 1; at != node.extent; at = behind(at + 1)) {
            if (isKey(at, key)) return at + 1;
        }
        return none;
    }
    const auto& keys = indexOf(object).keys;
    const auto isLess = [this](std::uint32_t at, std::string_view text) {
        if ((nodes_[at].flags & JSONNode::hasEscapes) == 0) return raw(nodes_[at]) < text;
        return std::string_view(keyText(at)) < text;
    };
    const auto found = std::lower_bound(keys.begin(), keys.end(), key, isLess);
    return found != keys.end() && isKey(*found, key) ? *found + 1 : none;
}

void appendUnescaped(std::string_view raw, std::string& out) {
    const std::size_t begin = out.size();
    out.resize(begin + raw.size()); // no escape is shorter than what it stands for
    char* to = out.data() + begin;
    const char* at = raw.data();
    const char* const end = at + raw.size();
    while (true) {
        const char* const plainEnd = copyToBackslash(to, at, end);
        to += plainEnd - at;
        at = plainEnd;
        if (at == end) break;
        if (at[1] == 'u') {
            const auto [scalar, behind] = unicodeEscape(at);
            to = putUTF8(scalar, to);
            at = behind;
        } else {
            *to++ = escapedBy(at[1]);
            at += 2;
        }
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
}

} // namespace platform::inline v1::detail
