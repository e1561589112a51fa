#include "sandbox/UserAgent.hpp"

#include <span>

namespace sandbox {

namespace {

struct Mark {
    std::string_view text;
    std::string_view meaning;
};

// Browsers name those that they are like, and systems those that they descend from: the first mark found holds.
constexpr Mark browsers[] = {
    {"Edg", "Edge"},
    {"OPR/", "Opera"},
    {"SamsungBrowser/", "Samsung Internet"},
    {"Firefox/", "Firefox"},
    {"FxiOS/", "Firefox"},
    {"CriOS/", "Chrome"},
    {"Chrome/", "Chrome"},
    {"Safari/", "Safari"},
    {"curl/", "curl"},
};

constexpr Mark systems[] = {
    {"iPhone", "iOS"},
    {"iPad", "iOS"},
    {"Android", "Android"},
    {"Windows", "Windows"},
    {"CrOS", "ChromeOS"},
    {"Mac OS X", "macOS"},
    {"Linux", "Linux"},
};

constexpr Mark devices[] = {
    {"iPad", "Tablet"},
    {"Tablet", "Tablet"},
    {"Mobile", "Mobile"},
    {"iPhone", "Mobile"},
    {"Android", "Tablet"},
    {"Windows", "Desktop"},
    {"CrOS", "Desktop"},
    {"Mac OS X", "Desktop"},
    {"Linux", "Desktop"},
};

std::string_view meaningOf(std::string_view text, std::span<const Mark> marks) {
    for (const Mark& mark : marks) {
        if (text.find(mark.text) != std::string_view::npos) return mark.meaning;
    }
    return "Other";
}

} // namespace

UserAgent UserAgent::read(std::string_view text) {
    return UserAgent{meaningOf(text, devices), meaningOf(text, browsers), meaningOf(text, systems)};
}

} // namespace sandbox
