// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace EditorCommon
{

Q_DECLARE_LOGGING_CATEGORY(editorCommonLog)

} // namespace EditorCommon
