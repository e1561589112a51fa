#pragma once

#include "platform/coding/ValueEvents.hpp"
#include "platform/json/detail/JSONWriter.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform::inline v1::detail {

/// Writes a value that is told to it, straight to the text: without the levels, members and marks of the writer, since
/// its members come in order and nothing in it fails half-way.
class JSONTreeWriter final : public ValueEvents {
public:
    /// The value stands where the writer is; the text gets what was told by `finish`.
    explicit JSONTreeWriter(JSONWriter& writer) noexcept;
    JSONTreeWriter(const JSONTreeWriter&) = delete;
    JSONTreeWriter& operator=(const JSONTreeWriter&) = delete;
    ~JSONTreeWriter() = default;

    /// Ends the value. False where a number had no text: what the writer got is then to be undone.
    [[nodiscard]] bool finish();

    void null() override;
    void boolean(bool value) override;
    void integer(std::int64_t value) override;
    void number(double value) override;
    void string(std::string_view value) override;
    void beginList(std::size_t count) override;
    void endList() override;
    void beginObject(std::size_t count) override;
    void key(std::string_view key) override;
    void endObject() override;

private:
    enum class Place : std::uint8_t { top, first, further, behindKey };

    static constexpr std::size_t capacity = 4096;

    void flush();
    void reserve(std::size_t size);
    void put(std::string_view text);
    void separate();
    void beginValue();
    void begin(char bracket);
    void end(char bracket);
    void lineBreak();
    void quoted(std::string_view value);

    JSONWriter& writer_;
    std::size_t depth_;
    std::size_t used_ = 0;
    Place place_ = Place::top;
    bool breaksLines_;
    bool isComplete_ = true;
    char further_; ///< what is escaped besides what must be
    std::string numberText_{};
    char buffer_[capacity]; ///< what comes next in the text, in larger pieces than values are
};

} // namespace platform::inline v1::detail
