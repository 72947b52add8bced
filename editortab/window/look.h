// SPDX-License-Identifier: MIT
#pragma once

class QApplication;

namespace editortab
{

/// Gives the program the editor's dark look.
void ApplyLook(QApplication& app);

} // namespace editortab
