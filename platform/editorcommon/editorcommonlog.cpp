// SPDX-License-Identifier: MIT
#include "editorcommonlog.h"

namespace EditorCommon
{

Q_LOGGING_CATEGORY(editorCommonLog, "torvo.editorcommon")

} // namespace EditorCommon
