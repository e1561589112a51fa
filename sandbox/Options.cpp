#include "sandbox/Options.hpp"

#include <charconv>
#include <string_view>

namespace sandbox {

const char* const helpText = R"(Usage: quillbeam-sandbox [OPTIONS]

Serves a stand-in of the link-shortening service, for development.

  --port N         port to listen on; 0 picks a free one (default 3000)
  --host HOST      address to listen on (default 127.0.0.1)
  --database FILE  keep the data in FILE instead of in memory
  --help           this text

Prints its address and a first API key, one line each, and serves until SIGINT or SIGTERM.
)";

namespace {

int portOf(const std::string& text) {
    int port = -1;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc() || rest != end || port < 0 || port > 65535) {
        throw OptionError("--port takes a number from 0 to 65535, not '" + text + "'");
    }
    return port;
}

} // namespace

Options parseOptions(int count, const char* const* arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help") {
            options.help = true;
            continue;
        }
        const std::size_t equals = argument.find('=');
        const std::string name(argument.substr(0, equals));
        if (name != "--port" && name != "--host" && name != "--database") {
            throw OptionError("unknown option '" + std::string(argument) + "'");
        }
        std::string value;
        if (equals != std::string_view::npos) {
            value = argument.substr(equals + 1);
        } else if (i + 1 < count) {
            value = arguments[++i];
        }
        if (value.empty()) throw OptionError(name + " takes a value");
        if (name == "--port") {
            options.port = portOf(value);
        } else if (name == "--host") {
            options.host = std::move(value);
        } else {
            options.database = std::move(value);
        }
    }
    return options;
}

} // namespace sandbox
