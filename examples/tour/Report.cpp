#include "examples/tour/Report.hpp"

#include <iomanip>
#include <iostream>

namespace examples {

namespace {

constexpr int operationWidth = 14;
constexpr int requestWidth = 38;
constexpr int nameWidth = 14;

} // namespace

void Report::step(std::string_view title) {
    std::cout << '\n' << std::setw(2) << ++steps_ << "  " << title << '\n';
}

void Report::callLine(std::string_view operation, std::string_view request, std::string_view outcome) {
    ++calls_;
    operations_.emplace(operation);
    std::cout << "    " << std::left << std::setw(operationWidth) << operation << ' ' << std::setw(requestWidth)
              << request << ' ' << std::right << outcome << std::endl;
}

void Report::call(
    std::string_view operation, std::string_view request, int status, std::string_view outcome, int expectedStatus
) {
    ++statuses_[status];
    callLine(operation, request, std::to_string(status) + " " + std::string(outcome));
    if (status != expectedStatus) mismatch("expected status " + std::to_string(expectedStatus));
}

void Report::failedCall(std::string_view operation, std::string_view request) {
    ++failures_;
    callLine(operation, request, "no answer");
}

void Report::detail(std::string_view name, std::string_view value) {
    std::cout << "      " << std::left << std::setw(nameWidth) << name << std::right << value << '\n';
}

void Report::mismatch(std::string_view text) {
    ++mismatches_;
    detail("MISMATCH", text);
}

bool Report::finish() {
    std::cout << '\n' << calls_ << " calls of " << operations_.size() << " operations:";
    for (const auto& [status, count] : statuses_) {
        std::cout << ' ' << count << " x " << status << ',';
    }
    std::cout << ' ' << failures_ << " without an answer; ";
    if (mismatches_ == 0) {
        std::cout << "all as expected." << std::endl;
    } else {
        std::cout << mismatches_ << " not as expected." << std::endl;
    }
    return mismatches_ == 0;
}

} // namespace examples
