// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace TorvoEditor
{

/// What the tabs have to say beside their fixed lines.
Q_DECLARE_LOGGING_CATEGORY(lcTabs)

} // namespace TorvoEditor
