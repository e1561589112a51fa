#include "platform/json/detail/JSONWriter.hpp"

#include "platform/json/detail/ByteScan.hpp"
#include "platform/json/detail/JSONDocument.hpp"
#include "platform/text/Numbers.hpp"
#include "platform/text/UTF8.hpp"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace platform::inline v1::detail {

namespace {

std::uint64_t prefixOf(std::string_view key) noexcept {
    std::uint64_t prefix = 0;
    if (key.size() >= 8) {
        std::memcpy(&prefix, key.data(), 8);
        if constexpr (std::endian::native == std::endian::little) prefix = __builtin_bswap64(prefix);
        return prefix;
    }
    for (std::size_t i = 0; i < key.size(); ++i)
        prefix |= std::uint64_t{static_cast<unsigned char>(key[i])} << (56 - 8 * i);
    return prefix;
}

template <class Integer>
void appendInteger(TextBuffer& text, Integer value) {
    constexpr std::size_t longest = 20;
    char* const out = text.room(longest);
    text.setEnd(std::to_chars(out, out + longest, value).ptr);
}

/// The letter that stands behind a backslash for a byte (RFC 8259 section 7), or 0.
constexpr char escapeLetter(char c) noexcept {
    switch (c) {
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    case '"':
    case '\\':
    case '/':
        return c;
    default:
        return 0;
    }
}

void appendEscape(TextBuffer& text, char c) {
    static constexpr std::string_view digits = "0123456789abcdef";
    if (const char letter = escapeLetter(c); letter != 0) {
        text.append('\\');
        text.append(letter);
        return;
    }
    text.append("\\u00");
    text.append(digits[static_cast<unsigned char>(c) >> 4U]);
    text.append(digits[static_cast<unsigned char>(c) & 0xFU]);
}

} // namespace

JSONWriter::JSONWriter(const JSONEncoder& settings, std::uint32_t depth)
    : settings_(settings)
    , depth_(depth)
    , breaksLines_((settings.outputFormatting & JSONEncoder::prettyPrinted) != 0)
    , furtherEscaped_((settings.outputFormatting & JSONEncoder::withoutEscapingSlashes) != 0 ? '"' : '/') {
    levels_.emplace_back();
}

bool JSONWriter::becomeObject(LevelIndex level) {
    Level& at = levels_[level];
    if (at.form == Form::nothing) {
        at.form = Form::object;
        text_.append('{');
        return true;
    }
    return at.form == Form::object;
}

bool JSONWriter::becomeArray(LevelIndex level) {
    Level& at = levels_[level];
    if (at.form == Form::nothing) {
        at.form = Form::array;
        text_.append('[');
        return true;
    }
    return at.form == Form::array;
}

bool JSONWriter::becomeSingle(LevelIndex level) {
    Level& at = levels_[level];
    if (at.form != Form::nothing) return false;
    at.form = Form::single;
    return true;
}

void JSONWriter::separate() {
    if (levels_.back().count++ > 0) text_.append(',');
}

std::string_view JSONWriter::keyText(const Member& member) const noexcept {
    return {text_.view().data() + member.start + member.keyStart, member.keyLength};
}

void JSONWriter::beginMember(std::string_view key) {
    separate();
    Level& level = levels_.back();
    const std::size_t start = text_.size();
    lineBreak(depth_ + levels_.size());
    const std::size_t quote = text_.size();
    string(key);
    const auto length = static_cast<std::uint32_t>(text_.size() - quote - 2);
    Member member{prefixOf(key), start, static_cast<std::uint32_t>(quote + 1 - start), length};
    if (length != key.size()) {
        level.hasEscapedKeys = true;
        level.isAscending = false;
    } else if (level.count > 1 && level.isAscending) {
        const Member& last = members_.back();
        level.isAscending = last.prefix < member.prefix || (last.prefix == member.prefix && keyText(last) < key);
    }
    members_.push_back(member);
    keyEnd();
}

void JSONWriter::beginElement() {
    separate();
    lineBreak(depth_ + levels_.size());
}

void JSONWriter::string(std::string_view value) {
    char* const out = text_.room(value.size() + 2);
    *out = '"';
    if (copyPlainInString(out + 1, value.data(), value.size(), furtherEscaped_)) {
        out[value.size() + 1] = '"';
        text_.setEnd(out + value.size() + 2);
    } else {
        escapedString(value);
    }
}

void JSONWriter::escapedString(std::string_view value) {
    text_.append('"');
    const char* at = value.data();
    const char* end = at + value.size();
    std::string repaired;
    bool isChecked = false;
    while (true) {
        char* const out = text_.room(static_cast<std::size_t>(end - at));
        const char* const stop = copyToSpecial(out, at, end, furtherEscaped_);
        text_.setEnd(out + (stop - at));
        at = stop;
        if (at == end) break;
        if (static_cast<unsigned char>(*at) < 0x80) {
            appendEscape(text_, *at++);
            continue;
        }
        if (!isChecked) {
            isChecked = true;
            const std::string_view rest(at, static_cast<std::size_t>(end - at));
            if (!isValidUTF8(rest)) {
                repaired = repairedUTF8(rest);
                at = repaired.data();
                end = at + repaired.size();
            }
        }
        const char* const run = at;
        while (at != end && static_cast<unsigned char>(*at) >= 0x80)
            ++at;
        text_.append(std::string_view(run, static_cast<std::size_t>(at - run)));
    }
    text_.append('"');
}

void JSONWriter::shortestNumber(auto value) {
    digits_.clear();
    appendJSONNumber(digits_, value);
    text_.append(digits_);
}

void JSONWriter::number(double value) {
    // Whole numbers, which most numbers are, need no search for the shortest digits.
    constexpr double exact = 9007199254740992.0; // 2^53
    if (std::fabs(value) < exact && value == std::trunc(value) && (value != 0 || !std::signbit(value))) {
        appendInteger(text_, static_cast<std::int64_t>(value));
    } else {
        shortestNumber(value);
    }
}

void JSONWriter::number(float value) {
    shortestNumber(value);
}

void JSONWriter::integer(std::int64_t value) {
    appendInteger(text_, value);
}

void JSONWriter::unsignedInteger(std::uint64_t value) {
    appendInteger(text_, value);
}

JSONWriter::Mark JSONWriter::mark() const noexcept {
    return {text_.size(), members_.size(), splices_.size(), levels_.size(), levels_.back()};
}

void JSONWriter::undo(const Mark& mark) noexcept {
    levels_.resize(mark.levels);
    levels_.back() = mark.top;
    text_.truncate(mark.text);
    members_.erase(members_.begin() + static_cast<std::ptrdiff_t>(mark.members), members_.end());
    splices_.erase(splices_.begin() + static_cast<std::ptrdiff_t>(mark.splices), splices_.end());
}

JSONWriter::LevelIndex JSONWriter::open() {
    Level level;
    level.start = text_.size();
    level.firstMember = static_cast<std::uint32_t>(members_.size());
    level.firstSplice = static_cast<std::uint32_t>(splices_.size());
    levels_.push_back(level);
    return static_cast<LevelIndex>(levels_.size() - 1);
}

void JSONWriter::close() {
    if (levels_.back().form == Form::nothing) text_.append("{}");
    endLevel();
    levels_.pop_back();
}

JSONWriter& JSONWriter::deferred() {
    const auto depth = static_cast<std::uint32_t>(depth_ + levels_.size());
    splices_.push_back({text_.size(), std::make_unique<JSONWriter>(settings_, depth)});
    return *splices_.back().writer;
}

bool JSONWriter::finish() {
    if (levels_.front().form == Form::nothing) return false;
    endLevel();
    return true;
}

void JSONWriter::endLevel() {
    const Level& level = levels_.back();
    if (splices_.size() > level.firstSplice) putIn(level);
    if (level.form == Form::object && !level.isAscending) arrange(level);
    if (level.form == Form::object || level.form == Form::array) {
        if (level.count > 0) lineBreak(depth_ + levels_.size() - 1);
        text_.append(level.form == Form::object ? '}' : ']');
    }
    members_.erase(members_.begin() + static_cast<std::ptrdiff_t>(level.firstMember), members_.end());
}

void JSONWriter::putIn(const Level& level) {
    const std::string_view text = text_.view();
    TextBuffer whole;
    std::size_t taken = 0;
    auto member = members_.begin() + static_cast<std::ptrdiff_t>(level.firstMember);
    std::size_t moved = 0;
    for (auto splice = splices_.begin() + static_cast<std::ptrdiff_t>(level.firstSplice); splice != splices_.end();
         ++splice) {
        for (; member != members_.end() && member->start < splice->place; ++member)
            member->start += moved;
        whole.append(text.substr(taken, splice->place - taken));
        taken = splice->place;
        const std::string_view value = splice->writer->finish() ? splice->writer->text_.view() : "{}";
        whole.append(value);
        moved += value.size();
    }
    for (; member != members_.end(); ++member)
        member->start += moved;
    whole.append(text.substr(taken));
    text_.swap(whole);
    splices_.erase(splices_.begin() + static_cast<std::ptrdiff_t>(level.firstSplice), splices_.end());
}

/// Puts the members of an object that ends in the order of their keys, where keys are sorted, and drops all but the
/// last of those with the same key.
void JSONWriter::arrange(const Level& level) {
    struct Piece {
        std::string_view key, text;
        std::size_t position;
    };

    const auto first = members_.begin() + static_cast<std::ptrdiff_t>(level.firstMember);
    const auto count = static_cast<std::size_t>(members_.end() - first);
    std::vector<std::string> unescaped(level.hasEscapedKeys ? count : 0);
    std::vector<Piece> pieces;
    pieces.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Member& member = first[static_cast<std::ptrdiff_t>(i)];
        const std::size_t end = i + 1 < count ? (&member + 1)->start - 1 : text_.size();
        std::string_view key = keyText(member);
        if (level.hasEscapedKeys) {
            appendUnescaped(key, unescaped[i]);
            key = unescaped[i];
        }
        pieces.push_back({key, text_.view().substr(member.start, end - member.start), i});
    }
    std::sort(pieces.begin(), pieces.end(), [](const Piece& a, const Piece& b) {
        const int order = a.key.compare(b.key);
        return order == 0 ? a.position < b.position : order < 0;
    });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (i + 1 == count || pieces[i].key != pieces[i + 1].key) pieces[kept++] = pieces[i];
    }
    pieces.resize(kept);
    if (!sortsKeys()) {
        if (kept == count) return;
        std::sort(pieces.begin(), pieces.end(), [](const Piece& a, const Piece& b) { return a.position < b.position; });
    }
    std::string arranged;
    arranged.reserve(text_.size() - level.start);
    for (const Piece& piece : pieces) {
        if (!arranged.empty()) arranged += ',';
        arranged += piece.text;
    }
    text_.truncate(level.start + 1);
    text_.append(arranged);
}

} // namespace platform::inline v1::detail
