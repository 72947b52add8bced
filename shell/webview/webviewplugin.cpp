// SPDX-License-Identifier: MIT
#include "shell/webview/webviewplugin.h"

#include "shell/webview/sandbox.h"
#include "shell/webview/webwindow.h"

#include <utility>

namespace shell
{

QString WebViewPlugin::problem() const
{
    return SandboxProblem();
}

QWidget* WebViewPlugin::createWindow(const PageFolder& folder, const QUrl& page, QWebChannel* channel,
                                     std::function<void(const QString&)> tell)
{
    ChooseSandbox();
    return new WebWindow(folder, page, channel, std::move(tell));
}

} // namespace shell
