// SPDX-License-Identifier: MIT
#include "core/corelog.h"

namespace TorvoEditor
{

Q_LOGGING_CATEGORY(lcCore, "torvo.core")

} // namespace TorvoEditor
