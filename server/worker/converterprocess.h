// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace server
{

/// How a conversion has ended.
struct ConverterEnd {
    enum class How {
        done,
        failed, ///< the converter says why
        killed, ///< something has ended the converter, which says nothing of the model
        stopped,
    };

    How how = How::killed;
    std::string reason;
};

/// Runs the converter to its end. `goOn` is asked with the percentage every second and whenever something has
/// ended a wait, and stops the converter with false. The converter ends with this process.
[[nodiscard]] ConverterEnd RunConverter(const std::vector<std::string>& command,
                                        const std::function<bool(double)>& goOn);

} // namespace server
