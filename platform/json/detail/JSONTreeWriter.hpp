#pragma once

#include "platform/coding/ValueEvents.hpp"
#include "platform/json/detail/JSONWriter.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform::inline v1::detail {

/// Writes a value that is told to it, straight to the text: without the levels, members and marks of the writer, since
/// its members come in order and nothing in it fails half-way.
class JSONTreeWriter final : public ValueEvents {
public:
    /// Thrown on the way into too many containers inside one another: what the writer got is then to be undone.
    struct TooDeep {};

    /// The value stands where the writer is.
    explicit JSONTreeWriter(JSONWriter& writer) noexcept;
    JSONTreeWriter(const JSONTreeWriter&) = delete;
    JSONTreeWriter& operator=(const JSONTreeWriter&) = delete;
    ~JSONTreeWriter() = default;

    /// False where a number had no text: what the writer got is then to be undone.
    [[nodiscard]] bool isComplete() const noexcept { return isComplete_; }

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

    void separate();
    void beginValue();
    void begin(char bracket);
    void end(char bracket);

    JSONWriter& writer_;
    std::size_t depth_;
    Place place_ = Place::top;
    bool isComplete_ = true;
};

} // namespace platform::inline v1::detail
