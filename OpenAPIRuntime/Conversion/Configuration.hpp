#pragma once

#include "platform/Export.hpp"

#include <memory>

namespace OpenAPIRuntime::inline v1 {

class DateTranscoder;

/// What a client's conversions can be told to do differently.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
struct QUILLBEAM_EXPORT Configuration {
    /// Turns dates into text and back everywhere; never null.
    std::shared_ptr<const DateTranscoder> dateTranscoder;

    /// Dates without fractional seconds (`ISO8601DateTranscoder::iso8601`).
    Configuration();

    explicit Configuration(std::shared_ptr<const DateTranscoder> dateTranscoder);
};

} // namespace OpenAPIRuntime::inline v1
