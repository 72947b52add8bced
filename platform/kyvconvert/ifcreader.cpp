// SPDX-License-Identifier: MIT
#include "kyvconvert/ifcreader.h"

#include "kyvconvert/nodereader.h"

namespace kyvconvert
{

Read ReadIfc(const std::filesystem::path& file, const OnPercent& onPercent)
{
    return ReadByNode("ifcreader.mjs", "IFC", file, onPercent);
}

} // namespace kyvconvert
