// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace ZRSmartDB
{

Q_DECLARE_LOGGING_CATEGORY(smartdbLog)

} // namespace ZRSmartDB
