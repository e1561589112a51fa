#include "sandbox/HostName.hpp"

#include "sandbox/Problem.hpp"

#include <algorithm>

namespace sandbox {

namespace {

constexpr std::size_t longestName = 253;
constexpr std::size_t longestLabel = 63;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return c >= 'a' && c <= 'z';
}

[[noreturn]] void refuse(std::string_view name, const std::string& reason) {
    throw Problem::badRequest("\"" + std::string(name) + "\" is not a host name: " + reason);
}

void checkLabel(std::string_view name, std::string_view label) {
    if (label.empty()) refuse(name, "it has an empty label.");
    if (label.size() > longestLabel) refuse(name, "a label is longer than 63 characters.");
    if (label.front() == '-' || label.back() == '-') refuse(name, "a label begins or ends with a hyphen.");
    for (const char c : label) {
        if (isLetter(c) || isDigit(c) || c == '-') continue;
        if (static_cast<unsigned char>(c) >= 0x80) refuse(name, "write international labels in their \"xn--\" form.");
        refuse(name, "labels hold only letters, digits and hyphens.");
    }
}

} // namespace

std::string checkedHostName(std::string_view text) {
    std::string name(text);
    std::transform(name.begin(), name.end(), name.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    if (name.empty()) refuse(text, "it is empty.");
    if (name.size() > longestName) refuse(text, "it is longer than 253 characters.");
    std::string_view label;
    std::size_t labels = 0;
    for (std::size_t start = 0; start <= name.size(); start += label.size() + 1) {
        label = std::string_view(name).substr(start, name.find('.', start) - start);
        checkLabel(text, label);
        ++labels;
    }
    if (labels < 2) refuse(text, "it needs at least two labels.");
    // Tells host names from dotted addresses: a top-level domain is never all digits.
    if (std::all_of(label.begin(), label.end(), isDigit)) refuse(text, "its last label is a number.");
    return name;
}

HostNameParts partsOfHostName(std::string_view name) {
    const std::size_t lastDot = name.rfind('.');
    const std::size_t zoneDot =
        lastDot == 0 || lastDot == std::string_view::npos ? lastDot : name.rfind('.', lastDot - 1);
    if (zoneDot == std::string_view::npos) return {std::string(name), ""};
    return {std::string(name.substr(zoneDot + 1)), std::string(name.substr(0, zoneDot))};
}

} // namespace sandbox
