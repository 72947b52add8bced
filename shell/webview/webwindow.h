// SPDX-License-Identifier: MIT
#pragma once

#include "shell/web/pagefolder.h"

#include <functional>

#include <QTimer>
#include <QWebEngineProfile>
#include <QWidget>

class QWebChannel;
class QWebEngineView;

namespace shell
{

class GuardedPage;

/// The window of one page. Nothing of what the page does is kept on the disk. GUI thread.
///
/// A page that defines a function `pageMayClose` is asked before the window closes: true lets it go, false
/// says that the page asks the user itself and will call `window.close` or not.
class WebWindow final : public QWidget
{
    Q_OBJECT

public:
    using Tell = std::function<void(const QString&)>;

    WebWindow(const PageFolder& folder, const QUrl& page, QWebChannel* channel, Tell tell);
    ~WebWindow() override;

    [[nodiscard]] GuardedPage& page() { return *m_page; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void refuseDownloads();
    void watchPage(const QUrl& address);
    void askPage();
    void closeForGood();

    QWebEngineProfile m_profile; ///< outlives the page
    QWebEngineView* m_view;
    GuardedPage* m_page;
    Tell m_tell;
    QTimer m_patience; ///< runs while the page is asked whether the window may close
    bool m_mayClose = false;
};

} // namespace shell
