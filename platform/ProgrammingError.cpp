#include "platform/ProgrammingError.hpp"

#include <cstdio>
#include <exception>

namespace platform::inline v1 {

void stopOnProgrammingError(std::string_view text) noexcept {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    std::terminate();
}

} // namespace platform::inline v1
