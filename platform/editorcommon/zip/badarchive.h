// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace EditorCommon::Zip
{

/// Why an archive is not unpacked, or a folder not packed. Never leaves CZip.
class BadArchive : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace EditorCommon::Zip
