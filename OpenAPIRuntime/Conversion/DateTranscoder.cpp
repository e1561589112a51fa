#include "OpenAPIRuntime/Conversion/DateTranscoder.hpp"

namespace OpenAPIRuntime::inline v1 {

DateTranscoder::~DateTranscoder() = default;

} // namespace OpenAPIRuntime::inline v1
