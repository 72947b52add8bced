// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>
#include <string>

/// How many faults a test makes, and when. Each run draws anew; TORVO_SEED repeats the one whose seed was
/// printed. TORVO_FAULTS says how many faults all tests make together, 200 unless told.
class FaultPlan
{
public:
    /// `share`: of 200.
    explicit FaultPlan(int share);

    [[nodiscard]] int count() const { return m_count; }

    /// From 0 to less than `limit`, which is more than 0.
    [[nodiscard]] std::uint64_t below(std::uint64_t limit);
    /// Words for the findings after the fault of this number, with what is needed to see them again.
    [[nodiscard]] std::string told(int number, const std::string& moment, const std::string& findings) const;

    [[nodiscard]] bool coin() { return below(2) == 1; }

private:
    int m_count;
    unsigned m_seed;
    std::mt19937_64 m_random;
};
