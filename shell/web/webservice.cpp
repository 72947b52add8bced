// SPDX-License-Identifier: MIT
#include "shell/web/webservice.h"

#include "shell/web/webviewlibrary.h"

#include <utility>

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlContext>
#include <QScreen>
#include <QUrl>
#include <QWebChannel>
#include <QWindow>

namespace shell
{

namespace
{

Q_LOGGING_CATEGORY(log, "torvo.web")

/// The screen on which the user has just asked for the page.
QScreen* CurrentScreen()
{
    const auto* window = QGuiApplication::focusWindow();
    return window != nullptr ? window->screen() : QGuiApplication::primaryScreen();
}

void PlaceInTheMiddle(QWidget& window, QSize size)
{
    const QRect screen = CurrentScreen()->availableGeometry();
    QRect place(QPoint(), size.boundedTo(screen.size()));
    place.moveCenter(screen.center());
    window.setGeometry(place);
}

void BringToFront(QWidget& window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

WebService::WebService(PageFolder folder, const QString& library, Tell tell)
    : m_folder(std::move(folder))
    , m_loader(library)
    , m_tell(std::move(tell))
{
}

WebService::~WebService()
{
    close();
}

QString WebService::libraryOfTheProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/libTorvoWebView.so");
}

void WebService::ContributeContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("webViewMgr"), this);
}

void WebService::AddWebObserver(TorvoSDK::IWebObserver* observer)
{
    m_observers.push_back(observer);
}

void WebService::openWeb(const QString& url, const QRectF& rect)
{
    const QString file = PageFolder::fileOf(url);
    if (!isAllowed(url, file))
        return;
    auto* page = window(file);
    if (page == nullptr) {
        page = open(file);
        if (page == nullptr)
            return;
        PlaceInTheMiddle(*page, rect.size().toSize());
    }
    BringToFront(*page);
}

QWidget* WebService::window(const QString& file) const
{
    const auto found = m_windows.find(QFileInfo(file).canonicalFilePath());
    return found == m_windows.end() ? nullptr : found->second.data();
}

void WebService::close()
{
    m_observers.clear();
    for (const auto& [file, window] : std::exchange(m_windows, {}))
        delete window.data();
}

bool WebService::isAllowed(const QString& address, const QString& file) const
{
    if (!m_folder.covers(file)) {
        qCWarning(log) << "refused, not a page of ours:" << address;
        return false;
    }
    if (!QFileInfo(file).isFile()) {
        qCWarning(log) << "missing page:" << file;
        m_tell(QStringLiteral("找不到页面文件：%1。请重新安装程序。").arg(file));
        return false;
    }
    if (!m_folder.holds(file)) {
        qCWarning(log) << "refused, a link out of our folder:" << file;
        return false;
    }
    return true;
}

IWebViewLibrary* WebService::library()
{
    auto* library = qobject_cast<IWebViewLibrary*>(m_loader.instance());
    QString problem;
    if (library == nullptr) {
        qCWarning(log) << "no web view:" << m_loader.errorString();
        problem = QStringLiteral("网页组件无法加载：%1。请重新安装程序。").arg(m_loader.fileName());
    } else {
        problem = library->problem();
    }
    if (problem.isEmpty())
        return library;
    m_tell(problem);
    return nullptr;
}

QWidget* WebService::open(const QString& file)
{
    auto* views = library();
    if (views == nullptr)
        return nullptr;
    auto* channel = new QWebChannel(this);
    for (auto* observer : m_observers)
        observer->OnWebChannel(channel);
    auto* window = views->createWindow(m_folder, QUrl::fromLocalFile(file), channel, m_tell);
    connect(window, &QObject::destroyed, channel, &QObject::deleteLater);
    m_windows[QFileInfo(file).canonicalFilePath()] = window;
    return window;
}

} // namespace shell
