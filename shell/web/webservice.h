// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostwebservice.h"
#include "shell/web/pagefolder.h"

#include <functional>
#include <map>
#include <vector>

#include <QObject>
#include <QPluginLoader>
#include <QPointer>
#include <QRectF>
#include <QString>
#include <QWidget>

namespace shell
{

class IWebViewLibrary;

/// The host's web views: a window for each page that is asked for. To the screens it is "webViewMgr". Until
/// the first page is asked for, no part of the browser engine is in the process. GUI thread.
class WebService final : public QObject, public TorvoSDK::IHostWebService
{
    Q_OBJECT

public:
    using Tell = std::function<void(const QString&)>;

    /// `tell` takes words for the user when a page cannot be shown; `library` is the file with the engine.
    WebService(PageFolder folder, const QString& library, Tell tell);
    ~WebService() override;

    /// The file with the engine as it is deployed.
    [[nodiscard]] static QString libraryOfTheProgram();

    void ContributeContext(QQmlContext* context) override;
    void AddWebObserver(TorvoSDK::IWebObserver* observer) override;

    /// Opens a window of that size on a page of ours, in the middle of the screen and no larger than it. A
    /// page that has a window already gets that one brought to the front.
    Q_INVOKABLE void openWeb(const QString& url, const QRectF& rect);

    /// The window of a page; null when there is none.
    [[nodiscard]] QWidget* window(const QString& file) const;

    /// Closes all windows, whatever they hold, and forgets the observers, who are about to go.
    void close();

private:
    [[nodiscard]] IWebViewLibrary* library();
    [[nodiscard]] bool isAllowed(const QString& address, const QString& file) const;
    QWidget* open(const QString& file);

    PageFolder m_folder;
    QPluginLoader m_loader;
    Tell m_tell;
    std::vector<TorvoSDK::IWebObserver*> m_observers;
    std::map<QString, QPointer<QWidget>> m_windows; ///< by the page's file
};

} // namespace shell
