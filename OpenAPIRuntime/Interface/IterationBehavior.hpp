#pragma once

#include <cstdint>

namespace OpenAPIRuntime::inline v1 {

/// How often a sequence can be iterated.
enum class IterationBehavior : std::uint8_t {
    single,  ///< once: iterating consumes it
    multiple ///< any number of times, at once or in turn
};

} // namespace OpenAPIRuntime::inline v1
