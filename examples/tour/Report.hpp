#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace examples {

/// Prints the calls as aligned lines, and keeps count of what was called and of what was not as expected.
class Report {
public:
    /// Opens a chapter.
    void chapter(std::string_view title);

    /// Opens a step: what is tried, in words.
    void step(std::string_view title);

    /// One call and its answer.
    /// @param request its method and path
    /// @param outcome the answer's case, such as "ok"
    void call(
        std::string_view operation, std::string_view request, int status, std::string_view outcome, int expectedStatus
    );

    /// One call without an answer, which is what was expected of it.
    void failedCall(std::string_view operation, std::string_view request);

    /// A request that is no operation: what a browser sends.
    void visit(std::string_view request, int status, int expectedStatus, int times = 1);

    /// One line of a result below its call.
    void detail(std::string_view name, std::string_view value);

    /// A list of counts, drawn as bars.
    void bars(std::string_view title, const std::vector<std::pair<std::string, double>>& counts);

    /// Notes something that should not have happened.
    void mismatch(std::string_view text);

    /// The same unless `isAsExpected`.
    void expect(bool isAsExpected, std::string_view otherwise);

    /// Prints the line that sums up.
    /// @param operations how many different ones should have been called
    /// @return whether everything was as expected.
    bool finish(std::size_t operations);

private:
    void line(std::string_view name, std::string_view request, std::string_view outcome);

    int steps_ = 0;
    int calls_ = 0;
    int visits_ = 0;
    int mismatches_ = 0;
    int failures_ = 0;
    std::set<std::string, std::less<>> operations_{};
    std::map<int, int> statuses_{};
};

} // namespace examples
