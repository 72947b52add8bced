// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QtPlugin>

class QString;
class QUrl;
class QWebChannel;
class QWidget;

namespace shell
{

class PageFolder;

/// What the library with the browser engine offers the host. It lies in a library of its own because the
/// engine is large: the host loads it when the first page is to be seen, and pays nothing for it before. GUI
/// thread.
class IWebViewLibrary
{
public:
    virtual ~IWebViewLibrary() = default;

    /// Why no page can be shown on this machine, in words for the user; empty when it can.
    [[nodiscard]] virtual QString problem() const = 0;

    /// A window, not yet shown, that loads `page` of `folder` and gives it `channel`, which has to outlive
    /// it. The caller owns the window, which deletes itself when it is closed. `tell` takes words for the
    /// user when the page breaks down.
    [[nodiscard]] virtual QWidget* createWindow(const PageFolder& folder, const QUrl& page,
                                                QWebChannel* channel,
                                                std::function<void(const QString&)> tell) = 0;
};

} // namespace shell

Q_DECLARE_INTERFACE(shell::IWebViewLibrary, "torvo.shell.IWebViewLibrary/1")
