// SPDX-License-Identifier: MIT
#include "smartdb/log.h"

namespace ZRSmartDB
{

Q_LOGGING_CATEGORY(smartdbLog, "torvo.smartdb")

} // namespace ZRSmartDB
