// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/optimise.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace kyvconvert
{

enum class Problem {
    none,
    source, ///< the source cannot be read
    disk,   ///< the model cannot be written
};

struct Outcome {
    Problem problem = Problem::none;
    std::string reason;
};

/// What is to be made out of what.
struct Order {
    std::filesystem::path source;
    std::filesystem::path folder; ///< of the model; made
    std::string name;
    std::string only; ///< keep only what stands at or below the nodes of this name; empty for all
    std::filesystem::path picture; ///< empty for none
    std::filesystem::path cache;   ///< empty for none
    std::uintmax_t cacheLimit = 0; ///< bytes that the cache may hold
    Mode mode = Mode::staticModel;
};

/// Converts a model file into a model folder. One call at a time in a process.
[[nodiscard]] Outcome Convert(const Order& order, const OnPercent& onPercent);

} // namespace kyvconvert
