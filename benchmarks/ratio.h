// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

/// What every benchmark prints: a figure of ours over the same figure of something that is not ours, both
/// measured in the same run, with the limit that it must keep.
namespace bench
{

/// Seconds that `work` takes.
template<class Work>
double SecondsOf(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The middle value; for an even number of values the mean of the two middle ones. `values` must not be
/// empty.
inline double MedianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const auto middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// Collects the figures of one benchmark program.
class Report
{
public:
    /// Prints one line and remembers whether the limit was kept.
    void ratio(const char* name, double ratio, double limit, const char* against)
    {
        std::printf("%s: ratio %.2f (at most %.2f) against %s\n", name, ratio, limit, against);
        std::fflush(stdout);
        m_kept = m_kept && ratio <= limit;
    }

    /// The program's exit code: 0 when every limit was kept.
    [[nodiscard]] int exitCode() const { return m_kept ? 0 : 1; }

private:
    bool m_kept = true;
};

} // namespace bench
