// SPDX-License-Identifier: MIT
#include "kyvconvert/scratchfolder.h"

#include <cstdlib>
#include <string>

namespace kyvconvert
{

ScratchFolder::ScratchFolder()
{
    std::error_code error;
    auto pattern = (std::filesystem::temp_directory_path(error) / "kyv-XXXXXX").string();
    if (!error && mkdtemp(pattern.data()) != nullptr)
        m_path = pattern;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code error;
    if (!m_path.empty())
        std::filesystem::remove_all(m_path, error);
}

} // namespace kyvconvert
