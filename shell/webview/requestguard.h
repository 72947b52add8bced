// SPDX-License-Identifier: MIT
#pragma once

#include "shell/web/pagefolder.h"

#include <QWebEngineUrlRequestInterceptor>

namespace shell
{

/// Lets through what a page loads from our folder, and nothing else. GUI thread.
class RequestGuard final : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    RequestGuard(PageFolder folder, QObject* parent);

    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    PageFolder m_folder;
};

} // namespace shell
