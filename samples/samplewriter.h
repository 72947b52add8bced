// SPDX-License-Identifier: MIT
#pragma once

#include "samples/catalogue.h"

#include <filesystem>
#include <ostream>

namespace samples
{

/// Makes the samples folder out of the folder of sources: converted models, project folders with their
/// pictures, and the "seed.json" that the server is filled from. `folder` must not exist yet. Throws
/// std::runtime_error with words that name the file at fault.
void WriteSamples(const std::filesystem::path& sources, const std::filesystem::path& folder,
                  std::ostream& log);

} // namespace samples
