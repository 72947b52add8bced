// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace server
{

// Files that arrive and leave in portions.

/// Whether what is written is to be there still when the machine has failed.
enum class Keeping { always, whileItRuns };

/// Writes bytes into a file, which is made when it is missing. Those to be kept always are on the disk then.
/// Throws DiskFull, and std::runtime_error.
void WritePortion(const std::filesystem::path& file, std::uint64_t offset, std::string_view bytes,
                  Keeping keeping);

/// The bytes from `offset` on, `most` at most. Throws std::runtime_error when the file cannot be read.
[[nodiscard]] std::string ReadPortion(const std::filesystem::path& file, std::uint64_t offset,
                                      std::size_t most);

} // namespace server
