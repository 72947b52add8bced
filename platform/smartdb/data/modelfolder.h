// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/data/projectdata.h"

#include <filesystem>
#include <string>

namespace ZRSmartDB
{

/// Takes a converted model in `dataFolder` for a building project: makes its folder a project of type "MODEL"
/// when it is not one yet, and gives what the building project is to know of it.
///
/// Name, type and attributes come from "model.json": the texts "name" and "type" and the object of texts
/// "attributes", each of which may be missing. Throws Failure when no converted model stands there.
[[nodiscard]] ModelData AdoptModel(const std::filesystem::path& dataFolder, const std::string& guid);

} // namespace ZRSmartDB
