// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace TorvoEditor
{

/// What the core has to say beside its fixed lines.
Q_DECLARE_LOGGING_CATEGORY(lcCore)

} // namespace TorvoEditor
