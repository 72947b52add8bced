// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>

namespace Fakes
{

/// What CommonConfig::getConfigInfo gives, by key. GUI thread.
[[nodiscard]] QMap<QString, QString>& Settings();

} // namespace Fakes
