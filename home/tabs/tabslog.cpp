// SPDX-License-Identifier: MIT
#include "tabs/tabslog.h"

namespace TorvoEditor
{

Q_LOGGING_CATEGORY(lcTabs, "torvo.tabs")

} // namespace TorvoEditor
