#include "sandbox/Identifiers.hpp"

#include <random>

namespace sandbox {

std::string makeIdentifier(std::string_view prefix, int bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::random_device source;
    std::uniform_int_distribution<std::size_t> digit(0, digits.size() - 1);
    std::string result(prefix);
    result += '_';
    for (int i = 0; i < 2 * bytes; ++i) {
        result += digits[digit(source)];
    }
    return result;
}

std::string makeSlug() {
    constexpr std::string_view characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr std::size_t length = 7;
    std::random_device source;
    std::uniform_int_distribution<std::size_t> character(0, characters.size() - 1);
    std::string result;
    while (result.size() < length) {
        result += characters[character(source)];
    }
    return result;
}

} // namespace sandbox
