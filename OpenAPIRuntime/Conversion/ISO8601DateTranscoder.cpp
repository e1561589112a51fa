#include "OpenAPIRuntime/Conversion/ISO8601DateTranscoder.hpp"

#include "platform/coding/CodingError.hpp"

#include <optional>

namespace OpenAPIRuntime::inline v1 {

std::shared_ptr<const DateTranscoder> ISO8601DateTranscoder::iso8601() {
    return std::make_shared<const ISO8601DateTranscoder>();
}

std::shared_ptr<const DateTranscoder> ISO8601DateTranscoder::iso8601WithFractionalSeconds() {
    return std::make_shared<const ISO8601DateTranscoder>(platform::ISO8601Format::internetDateTimeWithFractionalSeconds
    );
}

std::string ISO8601DateTranscoder::encode(platform::Date date) const {
    return platform::formatDate(date, options_);
}

platform::Date ISO8601DateTranscoder::decode(std::string_view text) const {
    const std::optional<platform::Date> date = platform::parseDate(text, options_);
    if (!date) {
        throw platform::DecodingError::dataCorrupted(
            platform::CodingErrorContext(platform::CodingPath(), "Expected date string to be ISO8601-formatted.")
        );
    }
    return *date;
}

} // namespace OpenAPIRuntime::inline v1
