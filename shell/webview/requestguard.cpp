// SPDX-License-Identifier: MIT
#include "shell/webview/requestguard.h"

#include "shell/webview/weblog.h"

#include <utility>

namespace shell
{

RequestGuard::RequestGuard(PageFolder folder, QObject* parent)
    : QWebEngineUrlRequestInterceptor(parent)
    , m_folder(std::move(folder))
{
}

void RequestGuard::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    if (m_folder.holds(info.requestUrl()) && info.requestMethod() == "GET")
        return;
    info.block(true);
    qCWarning(lcWeb) << "refused, a page asked for" << LogText(info.requestUrl());
}

} // namespace shell
