// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace BIZCOMMON
{

Q_DECLARE_LOGGING_CATEGORY(bizcommonLog)

} // namespace BIZCOMMON
