// SPDX-License-Identifier: MIT
#include "shell/webview/weblog.h"

namespace shell
{

Q_LOGGING_CATEGORY(lcWeb, "torvo.web")

QString LogText(const QUrl& url)
{
    constexpr int longest = 200;
    const QString text = url.toString();
    return text.size() > longest ? text.left(longest) + QStringLiteral("…") : text;
}

} // namespace shell
