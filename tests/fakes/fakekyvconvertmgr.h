// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace Fakes
{

/// Lets every engine on this machine say that a conversion has entered `state`. Engines do nothing by
/// themselves but write down what is called.
void TellConversion(const QString& uid, const QString& file, int state);

} // namespace Fakes
