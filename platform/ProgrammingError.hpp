#pragma once

#include "platform/Export.hpp"

#include <string_view>

namespace platform::inline v1 {

/// Ends the process because the calling program broke a documented precondition that leaves no sound way on.
///
/// Writes `text` and a line break to the standard error stream and terminates through `std::terminate`. It is the only
/// place in the library that writes or ends anything, and it is never reached by data from the wire: that always
/// becomes an exception.
///
/// @param text what the program did wrong, in one line
/// Thread safety: safe from any thread.
[[noreturn]] QUILLBEAM_EXPORT void stopOnProgrammingError(std::string_view text) noexcept;

} // namespace platform::inline v1
