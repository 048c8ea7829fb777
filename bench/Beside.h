// A figure beside its limit, measured in turn in one run, printed as a ratio.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace kintar::bench {

inline double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

/// Prints one row: what, measured, limit, their ratio, the aim, and whether it is met.
inline void printRow(const std::string& what, double measured, double limit, double ratio,
                     const std::string& aim, bool met) {
    std::printf("%-58s %12.6f s %12.6f s  ratio %6.3f  aim %-10s %s\n", what.c_str(), measured,
                limit, ratio, aim.c_str(), met ? "met" : "MISSED");
    std::fflush(stdout);
}

/// Times `subject` and `limit` in turn, `rounds` times after one warm-up each. The ratio is the
/// median of the rounds' own ratios, so that a slow moment of the machine does not count.
inline double beside(const std::string& what, int rounds, const std::function<void()>& subject,
                     const std::function<void()>& limit, double aimAtMost) {
    subject();
    limit();
    std::vector<double> measured;
    std::vector<double> limits;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        measured.push_back(secondsOf(subject));
        limits.push_back(secondsOf(limit));
        ratios.push_back(measured.back() / limits.back());
    }
    const double ratio = median(ratios);
    char aim[32];
    std::snprintf(aim, sizeof aim, "<= %.2f", aimAtMost);
    printRow(what, median(measured), median(limits), ratio, aim, ratio <= aimAtMost);
    return ratio;
}

/// The exit status of a benchmark program: 1 where its measurement throws, after saying what.
inline int runBench(const char* program, const std::function<void()>& measure) {
    try {
        measure();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program, error.what());
        return 1;
    }
    return 0;
}

} // namespace kintar::bench
