#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// How every benchmark of this project compares: contender and peers take turns in one process, round after round, so
/// that whatever else the machine does falls on all of them alike; what is printed is the ratio of their medians.
namespace benchmarks {

/// Of at least one value.
inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The CPU time so far, in nanoseconds.
/// @param clock CLOCK_THREAD_CPUTIME_ID or CLOCK_PROCESS_CPUTIME_ID
inline double cpuNanoseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

struct Contender {
    std::string name;
    std::function<void()> run; ///< one round of the work, the same amount for every contender
};

enum class Bound { atMost, atLeast };

/// The medians of one comparison, in the contenders' order, in nanoseconds a round.
struct Comparison {
    std::vector<std::string> names;
    std::vector<double> medians;

    /// median of `name` over median of `peer`
    [[nodiscard]] double ratio(std::string_view name, std::string_view peer) const {
        return median(name) / median(peer);
    }

    [[nodiscard]] double median(std::string_view name) const {
        const auto at = std::find(names.begin(), names.end(), name);
        return medians[static_cast<std::size_t>(at - names.begin())];
    }
};

/// Runs the contenders in turn for `rounds` rounds after one uncounted round each, every round in another order: what
/// one leaves behind in the heap and the caches is no matter of who comes next to it.
inline Comparison compare(const std::vector<Contender>& contenders, int rounds = 41) {
    using Clock = std::chrono::steady_clock;
    std::vector<std::vector<double>> samples(contenders.size());
    std::vector<std::size_t> order(contenders.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::minstd_rand random(1);
    for (int round = -1; round < rounds; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const std::size_t i : order) {
            const auto start = Clock::now();
            contenders[i].run();
            const auto elapsed = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
            if (round >= 0) samples[i].push_back(elapsed);
        }
    }
    Comparison result;
    for (std::size_t i = 0; i < contenders.size(); ++i) {
        result.names.push_back(contenders[i].name);
        result.medians.push_back(median(samples[i]));
    }
    return result;
}

/// Prints one row and appends it to the table of ratios: the file named by the environment variable QUILLBEAM_RATIOS,
/// tab-separated as name, peer, ratio, bound, target. A target of 0 stands for "for information".
inline void report(std::string_view name, std::string_view peer, double ratio, Bound bound, double target) {
    const char* sign = bound == Bound::atMost ? "<=" : ">=";
    const bool met = target == 0 || (bound == Bound::atMost ? ratio <= target : ratio >= target);
    std::printf(
        "%-44.*s %-28.*s %9.3f  %s %-7.3g %s\n",
        static_cast<int>(name.size()),
        name.data(),
        static_cast<int>(peer.size()),
        peer.data(),
        ratio,
        sign,
        target,
        target == 0 ? "(information)"
        : met       ? "met"
                    : "MISSED"
    );
    std::fflush(stdout);
    if (const char* path = std::getenv("QUILLBEAM_RATIOS")) {
        if (std::FILE* file = std::fopen(path, "a")) {
            std::fprintf(
                file,
                "%.*s\t%.*s\t%.4f\t%s\t%g\n",
                static_cast<int>(name.size()),
                name.data(),
                static_cast<int>(peer.size()),
                peer.data(),
                ratio,
                sign,
                target
            );
            std::fclose(file);
        }
    }
}

/// True where the benchmarks only have to show that they run: rounds and sizes may then be cut down.
inline bool isSmokeRun() {
    return std::getenv("QUILLBEAM_BENCH_SMOKE") != nullptr;
}

} // namespace benchmarks
