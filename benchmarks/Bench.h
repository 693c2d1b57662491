// What every benchmark does: time something and, beside it, its floor or another program, and print one line
// about both.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace kestrin::bench {

template <typename Work>
double milliseconds(Work &&work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// The smallest value that is at least as large as that share of all; `values` must not be empty.
inline double percentile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    const auto last = static_cast<double>(values.size() - 1);
    return values[static_cast<std::size_t>(share * last + 0.5)];
}

inline double median(const std::vector<double> &values) {
    return percentile(values, 0.5);
}

struct Comparison {
    double measured;
    double beside;
};

/// The median times of both in milliseconds. They take turns, so that whatever else the machine does hits
/// both alike. A first round warms up and does not count.
template <typename Work, typename Floor>
Comparison compare(int rounds, Work &&work, Floor &&floor) {
    std::vector<double> measured;
    std::vector<double> bare;
    for (int round = 0; round <= rounds; ++round) {
        const double floorTime = milliseconds(floor);
        const double workTime = milliseconds(work);
        if (round == 0)
            continue;
        bare.push_back(floorTime);
        measured.push_back(workTime);
    }
    return {median(measured), median(bare)};
}

/// Prints the measurements and remembers whether all of them met their bars.
class Report {
  public:
    /// The bar is how many times what is beside it the measured value may be.
    void ratio(const std::string &name, const char *unit, const Comparison &result, double bar) {
        print(name, unit, result, "x", bar, result.measured / result.beside <= bar);
    }

    /// The bar is a value of the same unit, and what is beside it is there to compare.
    void limit(const std::string &name, const char *unit, const Comparison &result, double bar) {
        print(name, unit, result, unit, bar, result.measured <= bar);
    }

    /// Without a bar, for whoever wants to know.
    void note(const std::string &name, const char *unit, const Comparison &result) {
        printStart(name, unit, result);
        std::puts("   no bar");
    }

    /// What a program returns from main.
    int exitCode() const { return m_missed ? 1 : 0; }

  private:
    void print(const std::string &name, const char *unit, const Comparison &result, const char *barUnit,
               double bar, bool met) {
        printStart(name, unit, result);
        std::printf("   bar %g %s   %s\n", bar, barUnit, met ? "ok" : "MISSED");
        std::fflush(stdout);
        m_missed = m_missed || !met;
    }

    static void printStart(const std::string &name, const char *unit, const Comparison &result) {
        // Nothing is a multiple of nothing.
        char ratio[32] = "-";
        if (result.beside > 0)
            std::snprintf(ratio, sizeof ratio, "%.2f x", result.measured / result.beside);
        std::printf("%-56s %9.2f %-2s   beside %9.2f %-2s %8s", name.c_str(), result.measured, unit,
                    result.beside, unit, ratio);
    }

    bool m_missed = false;
};

} // namespace kestrin::bench
