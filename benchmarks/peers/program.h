// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace bench
{

/// What a program has cost that has run to its end.
struct ProgramCost {
    double seconds = 0;
    double processor = 0; ///< seconds of user and system, of what it has started too
    double memory = 0;    ///< bytes that the largest of its processes has had resident
};

/// Runs a program, found as a shell finds it, with its standard output thrown away, after the disk has been
/// waited for. Ends this program when it fails.
[[nodiscard]] ProgramCost RunProgram(const std::vector<std::string>& words);

/// The middle value of each figure.
[[nodiscard]] ProgramCost MedianOf(const std::vector<ProgramCost>& costs);

/// Says it for a person.
void Tell(const char* what, const ProgramCost& cost);

} // namespace bench
