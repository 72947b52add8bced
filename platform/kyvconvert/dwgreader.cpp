// SPDX-License-Identifier: MIT
#include "kyvconvert/dwgreader.h"

#include "kyvconvert/nodereader.h"

namespace kyvconvert
{

Read ReadDwg(const std::filesystem::path& file, const OnPercent& onPercent)
{
    return ReadByNode("dwgreader.mjs", "DWG", file, onPercent);
}

} // namespace kyvconvert
