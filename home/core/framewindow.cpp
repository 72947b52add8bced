// SPDX-License-Identifier: MIT
#include "core/framewindow.h"

#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "core/restartscript.h"
#include "core/tools.h"
#include "native/nativewindow.h"
#include "tabs/tabmgr.h"

#include <cstdlib>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlContext>
#include <QQmlEngine>

namespace TorvoEditor
{

namespace
{

QObject* MakeTools(QQmlEngine* /*engine*/, QJSEngine* /*scriptEngine*/)
{
    return new Tools;
}

/// Under X11 a maximized window loses that state first and is iconified then, by a window manager that
/// reports both.
bool HasStationsOnTheWay()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

/// Writes the restart script beside the program and starts it. A file that cannot be written is logged; the
/// start then finds nothing, and the process ends all the same.
void StartRestartScript()
{
    const QString applicationDir = QDir(QCoreApplication::applicationDirPath()).absolutePath();
    const QString host = HostPath(applicationDir);
#ifdef Q_OS_WIN
    const QString script = applicationDir + QStringLiteral("/logout.bat");
    WriteBytesFile(script, RestartBatchText(host).toUtf8());
    QProcess::startDetached(script, QStringList());
#else
    const QString script = applicationDir + QStringLiteral("/logout.sh");
    WriteBytesFile(script, RestartShellText(host, QCoreApplication::applicationPid()).toUtf8());
    QProcess::startDetached(QStringLiteral("/bin/sh"), {script});
#endif
}

} // namespace

CFrameWindow::CFrameWindow(QWindow* parent)
    : QQuickView(parent)
    , m_wasMaxed(windowState() == Qt::WindowMaximized)
{
    qmlRegisterSingletonType<Tools>("Tools", 1, 0, "Tools", MakeTools);
    rootContext()->setContextProperty(QStringLiteral("rootView"), this);
    CHomeApp::instance().RegisterContext(rootContext());
    setResizeMode(QQuickView::SizeRootObjectToView);
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setFlag(Qt::WindowStaysOnTopHint, false);
    connect(this, &QWindow::windowStateChanged, this, &CFrameWindow::onWindowStateChanged);
    connect(this, &QQuickView::statusChanged, this, &CFrameWindow::onStatusChanged);
    setSource(QUrl(QStringLiteral("qrc:/qmls/main.qml")));
}

void CFrameWindow::onStatusChanged(QQuickView::Status status)
{
    if (status == QQuickView::Ready) {
        if (auto* tabMgr = CHomeApp::instance().GetMgr<CTabMgr>())
            tabMgr->SetFrameWindow(this);
        CHomeApp::instance().OnViewReady();
    } else if (status == QQuickView::Error) {
        const auto problems = errors();
        for (const auto& problem : problems)
            qDebug() << problem.description();
        std::exit(-1);
    }
}

void CFrameWindow::onWindowStateChanged(Qt::WindowState state)
{
    // The first report is the echo of our own request, the next one comes from the window manager.
    if (state == Qt::WindowMinimized && !m_isAskingToMinimize)
        m_isMinimizing = false;
}

void CFrameWindow::setMaxed(bool isMaxed)
{
    if (m_isMaxed == isMaxed)
        return;
    m_isMaxed = isMaxed;
    emit isMaxedChanged();
}

void CFrameWindow::showMaximized()
{
    m_isMinimizing = false;
    QWindow::showMaximized();
    if (m_sizeKnown) {
        setWidth(m_maxWidth);
        setHeight(m_maxHeight);
    }
    setMaxed(true);
}

void CFrameWindow::showMinimized()
{
    m_wasMaxed = windowState() == Qt::WindowMaximized;
    m_isMinimizing = m_wasMaxed && HasStationsOnTheWay();
    m_isAskingToMinimize = true;
    QWindow::showMinimized();
    m_isAskingToMinimize = false;
    setMaxed(false);
}

void CFrameWindow::showNormal()
{
    m_isMinimizing = false;
    QWindow::showNormal();
    if (m_sizeKnown) {
        setWidth(m_normalWidth);
        setHeight(m_normalHeight);
    }
    setMaxed(false);
    if (m_restoreToCursor) {
        m_restoreToCursor = false;
        placeUnderCursor();
    }
}

void CFrameWindow::placeUnderCursor()
{
    const int x = (m_maxWidth - m_normalWidth) / 2;
    const int y = (m_maxHeight - m_normalHeight) / 2;
    setX(x);
    setY(y);
    // Across, the pointer keeps its share of the window's width; down, it moves along with the window.
    const int cursorX = m_maxWidth > 0 ? m_normalWidth * m_cursorPos.x() / m_maxWidth + x : x;
    const int cursorY = m_cursorPos.y() + y;
    const double scale = devicePixelRatio();
    Native::SetCursorPos(static_cast<int>(cursorX * scale), static_cast<int>(cursorY * scale));
}

void CFrameWindow::changeSize()
{
    if (!m_sizeKnown) {
        m_maxWidth = width();
        m_maxHeight = height();
        m_sizeKnown = true;
        m_normalWidth = static_cast<int>(m_maxWidth * m_normalWidthRatio);
        m_normalHeight = static_cast<int>(m_maxHeight * m_normalHeightRatio);
    }
    m_restoreToCursor = true;
    Native::Point cursor;
    if (Native::GetCursorPos(cursor)) {
        const double scale = devicePixelRatio();
        m_cursorPos = QPoint(static_cast<int>(cursor.x / scale), static_cast<int>(cursor.y / scale));
    }
    showNormal();
}

void CFrameWindow::move(double xOffset, double yOffset)
{
    setX(static_cast<int>(x() + xOffset));
    setY(static_cast<int>(y() + yOffset));
}

void CFrameWindow::close(bool bSaveProj)
{
    emit beforeClosing(bSaveProj);
    QWindow::close();
}

void CFrameWindow::logout(bool bSaveProj)
{
    StartRestartScript();
    close(bSaveProj);
}

void CFrameWindow::resizeEvent(QResizeEvent* event)
{
    QQuickView::resizeEvent(event);
    emit resized();
}

void CFrameWindow::moveEvent(QMoveEvent* event)
{
    QQuickView::moveEvent(event);
    emit moved();
}

} // namespace TorvoEditor
