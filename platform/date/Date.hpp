#pragma once

#include <chrono>

namespace platform::inline v1 {

/// An instant in Coordinated Universal Time, in microseconds since 1970-01-01T00:00:00Z, leap seconds not counted. Wide
/// enough for every year from 0001 to 9999.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

} // namespace platform::inline v1
