// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <filesystem>
#include <string>
#include <variant>

namespace gltf
{

/// Why a model file cannot be read, in words for a person.
struct Unreadable {
    std::string reason;
};

/// Reads a binary glTF 2.0 file. Every number in the file that points somewhere is checked, so that a damaged
/// or hostile file gives words and nothing else. Files above 1 GiB are refused. Any thread.
[[nodiscard]] std::variant<Model, Unreadable> ReadModel(const std::filesystem::path& file);

} // namespace gltf
