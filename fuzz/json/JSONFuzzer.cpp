#include "tests/platform/json/SimdjsonReferee.hpp"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string difference = referee::difference({reinterpret_cast<const char*>(data), size});
    if (!difference.empty()) {
        std::fprintf(stderr, "%s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
