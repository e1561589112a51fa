#include "examples/tour/Report.hpp"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>

namespace examples {

namespace {

constexpr int operationWidth = 24;
constexpr int requestWidth = 46;
constexpr int nameWidth = 20;
constexpr double barCells = 40;

/// A bar of this many cells, to the eighth of a cell.
std::string bar(double cells) {
    constexpr std::string_view parts[] = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const auto eighths = static_cast<std::size_t>(std::lround(cells * 8));
    std::string text;
    for (std::size_t i = 0; i < eighths / 8; ++i) {
        text += "█";
    }
    return text.append(parts[eighths % 8]);
}

std::string shortened(std::string_view text, std::size_t width) {
    return text.size() <= width ? std::string(text) : std::string(text.substr(0, width - 3)) + "...";
}

} // namespace

void Report::chapter(std::string_view title) {
    std::cout << '\n' << title << '\n' << std::string(title.size(), '=') << '\n';
}

void Report::step(std::string_view title) {
    std::cout << '\n' << std::setw(2) << ++steps_ << "  " << title << '\n';
}

void Report::line(std::string_view name, std::string_view request, std::string_view outcome) {
    std::cout << "    " << std::left << std::setw(operationWidth) << name << ' ' << std::setw(requestWidth)
              << shortened(request, requestWidth) << ' ' << std::right << outcome << std::endl;
}

void Report::call(
    std::string_view operation, std::string_view request, int status, std::string_view outcome, int expectedStatus
) {
    ++calls_;
    ++statuses_[status];
    operations_.emplace(operation);
    line(operation, request, std::to_string(status) + " " + std::string(outcome));
    expect(status == expectedStatus, "expected status " + std::to_string(expectedStatus));
}

void Report::failedCall(std::string_view operation, std::string_view request) {
    ++calls_;
    ++failures_;
    operations_.emplace(operation);
    line(operation, request, "no answer");
}

void Report::visit(std::string_view request, int status, int expectedStatus, int times) {
    visits_ += times;
    line("(browser)", request, std::to_string(status));
    expect(status == expectedStatus, "expected status " + std::to_string(expectedStatus));
}

void Report::detail(std::string_view name, std::string_view value) {
    std::cout << "      " << std::left << std::setw(nameWidth) << name << ' ' << std::right << value << '\n';
}

void Report::bars(std::string_view title, const std::vector<std::pair<std::string, double>>& counts) {
    std::cout << "\n      " << title << '\n';
    double most = 1;
    for (const auto& [name, count] : counts) {
        most = std::max(most, count);
    }
    for (const auto& [name, count] : counts) {
        std::cout << "        " << std::left << std::setw(nameWidth - 2) << shortened(name, nameWidth - 2) << ' '
                  << std::right << std::setw(4) << count << (count > 0 ? " " : "") << bar(count / most * barCells)
                  << '\n';
    }
}

void Report::mismatch(std::string_view text) {
    ++mismatches_;
    detail("MISMATCH", text);
}

void Report::expect(bool isAsExpected, std::string_view otherwise) {
    if (!isAsExpected) mismatch(otherwise);
}

bool Report::finish(std::size_t operations) {
    expect(operations_.size() == operations, "not every operation was called");
    std::cout << '\n' << calls_ << " calls of " << operations_.size() << " operations:";
    for (const auto& [status, count] : statuses_) {
        std::cout << ' ' << count << " x " << status << ',';
    }
    std::cout << ' ' << failures_ << " without an answer; " << visits_ << " visits by browser; ";
    if (mismatches_ == 0) {
        std::cout << "all as expected." << std::endl;
    } else {
        std::cout << mismatches_ << " not as expected." << std::endl;
    }
    return mismatches_ == 0;
}

} // namespace examples
