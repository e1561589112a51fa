#include "sandbox/Identifiers.hpp"

#include <random>

namespace sandbox {

namespace {

void appendRandom(std::string& out, std::size_t count, std::string_view characters) {
    std::random_device source;
    std::uniform_int_distribution<std::size_t> position(0, characters.size() - 1);
    for (std::size_t i = 0; i < count; ++i) {
        out += characters[position(source)];
    }
}

} // namespace

std::string makeIdentifier(std::string_view prefix, std::size_t bytes) {
    std::string result(prefix);
    result += '_';
    appendRandom(result, 2 * bytes, "0123456789abcdef");
    return result;
}

std::string makeSlug() {
    constexpr std::size_t length = 7;
    std::string result;
    appendRandom(result, length, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return result;
}

} // namespace sandbox
