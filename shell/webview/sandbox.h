// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace shell
{

/// Why the engine cannot shut its processes off on this machine, in words for the user; empty when it can. To
/// be asked first: the engine ends the whole host over it.
[[nodiscard]] QString SandboxProblem();

/// Lets the engine run without that as root, and only then. To be called before the engine starts.
void ChooseSandbox();

} // namespace shell
