#include "platform/TypeName.hpp"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string_view>

namespace platform::inline v1 {

std::string typeName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free
    );
    return name ? name.get() : type.name();
}

std::string unqualifiedTypeName(const std::type_info& type) {
    const std::string name = typeName(type);
    std::size_t start = 0;
    int depth = 0; // of <>, () and {}: what stands within them belongs to a name, it does not qualify one
    for (std::size_t i = 0; i + 1 < name.size(); ++i) {
        const char c = name[i];
        if (c == '<' || c == '(' || c == '{') ++depth;
        if (c == '>' || c == ')' || c == '}') --depth;
        if (depth == 0 && c == ':' && name[i + 1] == ':') start = i + 2;
    }
    return name.substr(start);
}

} // namespace platform::inline v1
