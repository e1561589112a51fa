#include "OpenAPIRuntime/Conversion/Configuration.hpp"

#include "OpenAPIRuntime/Conversion/ISO8601DateTranscoder.hpp"

#include <utility>

namespace OpenAPIRuntime::inline v1 {

Configuration::Configuration()
    : Configuration(ISO8601DateTranscoder::iso8601()) {}

Configuration::Configuration(std::shared_ptr<const DateTranscoder> dateTranscoder_)
    : dateTranscoder(std::move(dateTranscoder_)) {}

} // namespace OpenAPIRuntime::inline v1
