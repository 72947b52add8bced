// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <filesystem>
#include <span>
#include <string>
#include <variant>

namespace gltf
{

/// Why a model file cannot be read, in words for a person.
struct Unreadable {
    std::string reason;
};

/// Reads a binary glTF 2.0 file. Every number in the file that points somewhere is checked, so that a damaged
/// or hostile file gives words and nothing else. Files above 1 GiB are refused. Coarser levels are left out:
/// what comes is all there is to see. Any thread.
[[nodiscard]] std::variant<Model, Unreadable> ReadModel(const std::filesystem::path& file);

/// The same from bytes in memory.
[[nodiscard]] std::variant<Model, Unreadable> ReadModel(std::span<const unsigned char> bytes);

} // namespace gltf
