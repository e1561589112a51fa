#pragma once

#include "platform/json/JSONEncoder.hpp"
#include "platform/json/detail/TextBuffer.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform::inline v1::detail {

/// The text that an encoder fills, front to back, in one buffer.
///
/// A *level* is a value that is being written; levels stand in a stack, and only the topmost is written to. What has to
/// be kept open while its surroundings go on (a nested container, a super encoder) gets a writer of its own, whose text
/// is put in when the level it stands in ends. Members that did not arrive in order are put in order when their object
/// ends.
class JSONWriter {
public:
    using LevelIndex = std::uint32_t;

    /// Starts with one level.
    /// @param depth how many containers stand around it
    JSONWriter(const JSONEncoder& settings, std::uint32_t depth);
    JSONWriter(const JSONWriter&) = delete;
    JSONWriter& operator=(const JSONWriter&) = delete;

    [[nodiscard]] const JSONEncoder& settings() const noexcept { return settings_; }

    [[nodiscard]] bool sortsKeys() const noexcept {
        return (settings_.outputFormatting & JSONEncoder::sortedKeys) != 0;
    }

    /// Make a level an object, a list or a single value; false where it is something else already.
    [[nodiscard]] bool becomeObject(LevelIndex level);
    [[nodiscard]] bool becomeArray(LevelIndex level);
    [[nodiscard]] bool becomeSingle(LevelIndex level);

    [[nodiscard]] std::size_t count(LevelIndex level) const noexcept { return levels_[level].count; }

    /// Whether a level is written to, and not one inside it.
    [[nodiscard]] bool isTop(LevelIndex level) const noexcept { return level + 1 == levels_.size(); }

    /// Start a member, or an element, of the topmost level; its value comes next.
    void beginMember(std::string_view key);
    void beginElement();

    /// How many containers stand around a level.
    [[nodiscard]] std::size_t depth(LevelIndex level) const noexcept { return depth_ + level; }

    /// How many containers stand around what comes next.
    [[nodiscard]] std::size_t depth() const noexcept { return depth_ + levels_.size() - 1 + isInside(); }

    /// Where lines are broken, begins one inside so many containers.
    void lineBreak(std::size_t depth) {
        if (!breaksLines_) return;
        const std::size_t length = 1 + 2 * depth;
        char* const out = text_.room(length);
        std::memset(out, ' ', length);
        *out = '\n';
        text_.setEnd(out + length);
    }

    /// What stands between a key's quote and its value.
    void keyEnd() {
        char* const out = text_.room(2);
        out[0] = ':';
        out[1] = ' ';
        text_.setEnd(out + (breaksLines_ ? 2 : 1));
    }

    void null() { text_.append("null"); }

    void boolean(bool value) { text_.append(value ? "true" : "false"); }

    void string(std::string_view value);
    void number(double value); ///< must be finite
    void number(float value);  ///< must be finite
    void integer(std::int64_t value);
    void unsignedInteger(std::uint64_t value);

    /// What is undone to when a value fails in its middle.
    struct Mark;

    [[nodiscard]] Mark mark() const noexcept;
    void undo(const Mark& mark) noexcept;

    /// Opens a level for the value that comes next, and ends the topmost one. What wrote nothing becomes {}.
    LevelIndex open();
    void close();

    /// A writer of its own for the value that comes next.
    JSONWriter& deferred();

    /// Ends the first level. False where it wrote nothing.
    [[nodiscard]] bool finish();

    [[nodiscard]] TextBuffer& text() noexcept { return text_; }

private:
    enum class Form : std::uint8_t { nothing, single, array, object };

    struct Level {
        std::size_t start = 0; ///< of its text
        std::uint32_t firstMember = 0;
        std::uint32_t firstSplice = 0;
        std::uint32_t count = 0; ///< of members or elements
        Form form = Form::nothing;
        bool isAscending = true; ///< its keys came in ascending order so far, each once
        bool hasEscapedKeys = false;
    };

    /// Where one member of an open object stands. Kept for the levels of the stack one behind the other.
    struct Member {
        std::uint64_t prefix;   ///< the first eight bytes of the key, the first one most significant
        std::size_t start;      ///< of its text, behind the comma
        std::uint32_t keyStart; ///< of the key in the text, behind its quote, from `start`
        std::uint32_t keyLength;
    };

    /// A value that is written elsewhere and belongs at a place of the text.
    struct Splice {
        std::size_t place;
        std::unique_ptr<JSONWriter> writer;
    };

    [[nodiscard]] std::string_view keyText(const Member& member) const noexcept;

    [[nodiscard]] bool isInside() const noexcept {
        return levels_.back().form == Form::array || levels_.back().form == Form::object;
    }

    void escapedString(std::string_view value);
    void shortestNumber(auto value);
    void separate();
    void endLevel();
    void putIn(const Level& level);
    void arrange(const Level& level);

    const JSONEncoder& settings_;
    std::uint32_t depth_;
    bool breaksLines_;
    char furtherEscaped_; ///< in strings, beside what must be; the quote, which must be, where there is none
    TextBuffer text_{};
    std::string digits_{}; ///< of the number that is written
    std::vector<Level> levels_{};
    std::vector<Member> members_{};
    std::vector<Splice> splices_{};
};

struct JSONWriter::Mark {
    std::size_t text, members, splices, levels;
    Level top;
};

} // namespace platform::inline v1::detail
