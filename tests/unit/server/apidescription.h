// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <vector>

/// A request that server/openapi.yaml describes.
struct Operation {
    std::string method; ///< "GET"
    std::string path;   ///< behind /api/v1, with its {placeholders}
    bool wantsToken = true;
    std::set<unsigned> statuses;

    [[nodiscard]] std::string name() const { return method + ' ' + path; }
};

/// Reads the paths of an OpenAPI description in the block form of ours: two blanks a level, a line for each
/// path, method and status. Throws std::runtime_error for a line that it does not know, so that nothing is
/// passed over. Those that workers ask, or all others.
[[nodiscard]] std::vector<Operation> ReadOperations(const std::string& file, bool areForWorkers);
