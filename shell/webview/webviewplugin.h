// SPDX-License-Identifier: MIT
#pragma once

#include "shell/web/webviewlibrary.h"

#include <QObject>

namespace shell
{

/// The browser engine, as the host loads it. GUI thread.
class WebViewPlugin final : public QObject, public IWebViewLibrary
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "torvo.shell.IWebViewLibrary/1")
    Q_INTERFACES(shell::IWebViewLibrary)

public:
    [[nodiscard]] QString problem() const override;
    [[nodiscard]] QWidget* createWindow(const PageFolder& folder, const QUrl& page, QWebChannel* channel,
                                        std::function<void(const QString&)> tell) override;
};

} // namespace shell
