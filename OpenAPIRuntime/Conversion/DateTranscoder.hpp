#pragma once

#include "platform/Export.hpp"
#include "platform/date/Date.hpp"

#include <string>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// Turns dates into text and back, wherever a message holds one: JSON bodies, header fields, paths and queries.
///
/// Thread safety: one transcoder serves any number of calls at once, from different threads.
class QUILLBEAM_EXPORT DateTranscoder {
public:
    virtual ~DateTranscoder();

    /// The text of `date`. Whatever it throws passes out as the failure of the conversion.
    [[nodiscard]] virtual std::string encode(platform::Date date) const = 0;

    /// The date that `text` tells. Throws where it tells none; `platform::DecodingError` (dataCorrupted) is the usual
    /// type.
    [[nodiscard]] virtual platform::Date decode(std::string_view text) const = 0;

protected:
    DateTranscoder() = default;
    DateTranscoder(const DateTranscoder&) = default;
    DateTranscoder& operator=(const DateTranscoder&) = default;
};

} // namespace OpenAPIRuntime::inline v1
