// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>
#include <string>

namespace kyvconvert
{

inline constexpr const char* modelFiles[] = {"model.glb", "model.json", "floors.json"};

/// Writes a converted model into a folder: "model.glb", "model.json" (name, source, bounds in metres, counts,
/// what was dropped) and "floors.json". The folder is made; nothing of it is left when something goes wrong.
/// Gives the reason, or the empty text.
[[nodiscard]] std::string WriteModelFolder(const SourceModel& source, const std::string& name,
                                           const std::string& sourceName,
                                           const std::filesystem::path& folder);

/// Gives a model folder another name and source. False when it is none.
[[nodiscard]] bool RenameModel(const std::filesystem::path& folder, const std::string& name,
                               const std::string& sourceName);

} // namespace kyvconvert
