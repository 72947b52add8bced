// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QWebEnginePage>

namespace shell
{

/// One page of ours, which stays where it is: it goes nowhere else, opens no window, fetches no file, and
/// gets no permission. Each refusal is a line in the log. GUI thread.
class GuardedPage final : public QWebEnginePage
{
    Q_OBJECT

public:
    /// `profile` must outlive the page.
    GuardedPage(QWebEngineProfile* profile, const QUrl& page, QWebChannel* channel, QObject* parent);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType type) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& acceptedMimeTypes) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    void restrict();
    void giveChannel(QWebChannel* channel);
    void refusePermissions();

    QUrl m_page;
};

} // namespace shell
