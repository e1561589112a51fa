#pragma once

#include <stdexcept>
#include <string>

namespace sandbox {

struct Options {
    std::string host = "127.0.0.1";

    /// 0 lets the system choose a free one.
    int port = 3000;

    /// A file, or SQLite's name for a database in memory.
    std::string database = ":memory:";

    bool help = false;
};

class OptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads `--name VALUE` and `--name=VALUE`.
/// @throws OptionError with a text for the user.
Options parseOptions(int count, const char* const* arguments);

extern const char* const helpText;

} // namespace sandbox
