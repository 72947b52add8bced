// SPDX-License-Identifier: MIT
#include "tabs/tabmgr.h"

#include "ZRSmartDB/zrproject.h"
#include "core/framewindow.h"
#include "core/homeapp.h"
#include "native/nativewindow.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "tabs/tabmessages.h"
#include "view/context/editorcontrol/editorcontrol.h"

#include <cstdio>

#include <QCoreApplication>
#include <QDebug>
#include <QJsonDocument>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>

namespace TorvoEditor
{

CTabMgr::CTabMgr(QObject* parent)
    : QObject(parent)
{
}

void CTabMgr::Init()
{
    m_ipc = std::make_unique<CIPC>();
    m_process = std::make_unique<CProcessControl>();
    m_tab = std::make_unique<CTab>();
    if (auto* projectMgr = CHomeApp::instance().GetMgr<CProjectMgr>()) {
        connect(projectMgr, &CProjectMgr::beforeUpload, this, &CTabMgr::onBeforeUpload);
        connect(projectMgr, &CProjectMgr::afterUpload, this, &CTabMgr::onAfterUpload);
    }
}

void CTabMgr::UnInit()
{
    sendToAll(OperatorMessage(QStringLiteral("quit")));
    m_tabWindows.clear();
    m_ipc.reset();
    m_process.reset();
    m_tab.reset();
}

void CTabMgr::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("tabMgr"), this);
    context->setContextProperty(QStringLiteral("tab"), m_tab.get());
}

void CTabMgr::OnViewReady()
{
    connect(m_ipc.get(), &CIPC::readyRead, this, &CTabMgr::onReadyReay);
    connect(m_ipc.get(), &CIPC::disconnected, this, &CTabMgr::onSocketDisconnected);
    if (auto* editorControl = CHomeApp::instance().GetMgr<CEditorControl>())
        connect(m_process.get(), &CProcessControl::sigFinished, editorControl,
                &CEditorControl::slotProcessFinsh);
}

void CTabMgr::SetFrameWindow(CFrameWindow* view)
{
    m_frame = view;
    m_lastState = view->windowState();
    connect(view, &QWindow::visibleChanged, this, &CTabMgr::syncVisible);
    connect(view, &QWindow::windowStateChanged, this, &CTabMgr::onWindowStateChanged);
    connect(view, &CFrameWindow::moved, this, &CTabMgr::syncPos);
    connect(view, &CFrameWindow::resized, this, &CTabMgr::syncSize);
    connect(view, &CFrameWindow::beforeClosing, this, &CTabMgr::syncClosing);
    connect(view->engine(), &QQmlEngine::quit, QCoreApplication::instance(), &QCoreApplication::quit);
}

void CTabMgr::openTab(const QString& name)
{
    if (name != mainTabName && !m_tabWindows.contains(name))
        StartTab(name);
    SwitchTab(name);
}

void CTabMgr::StartTab(const QString& name)
{
    const auto& app = CHomeApp::instance();
    StartInfo info;
    info.tabName = name;
    info.ipcServer = m_ipc->serverName();
    info.subProjects = app.GetMgr<CLocalProjectInfoMgr>()->GetSubProjects(name);
    if (auto* project = app.GetMgr<CProjectMgr>()->GetProject(name))
        info.projMode = QString::fromStdWString(project->GetType());
    info.contentRect = ContentRect();

    m_process->Start(QCoreApplication::applicationDirPath() + QStringLiteral("/TorvoEditorTab.exe"),
                     {QString::fromUtf8(MessageBytes(StartMessage(info)))}, name);
    m_tabWindows[name] = 0;
    m_tab->addTab(name);
}

void CTabMgr::SwitchTab(const QString& name)
{
    const QString current = m_tab->currentTab();
    if (name == current)
        return;
    if (current != mainTabName)
        sendTo(current, OperatorMessage(QStringLiteral("hide")));
    // A child that has just been started is not connected yet: it shows itself.
    if (name != mainTabName)
        sendTo(name, OperatorMessage(QStringLiteral("show")));
    m_tab->setCurrentTab(name);
}

void CTabMgr::closeTab(const QString& name)
{
    if (name != mainTabName)
        sendTo(name, OperatorMessage(QStringLiteral("quitRequest")));
}

void CTabMgr::SendError(const QString& text, const QString& tabName)
{
    sendTo(tabName, TextMessage(QStringLiteral("error"), text));
}

void CTabMgr::SendInfo(const QString& text, const QString& tabName)
{
    sendTo(tabName, TextMessage(QStringLiteral("info"), text));
}

void CTabMgr::SendWarn(const QString& text, const QString& tabName)
{
    sendTo(tabName, TextMessage(QStringLiteral("warn"), text));
}

void CTabMgr::syncSize()
{
    const auto* title = findItem(QStringLiteral("titleRect"));
    sendToAll(ResizeMessage(ContentRect(), title != nullptr ? title->height() : 0.0));
}

void CTabMgr::syncPos()
{
    sendToAll(OperatorMessage(QStringLiteral("move")));
}

void CTabMgr::syncVisible()
{
    if (!m_frame->isVisible())
        sendToAll(OperatorMessage(QStringLiteral("hide")));
}

void CTabMgr::onWindowStateChanged(Qt::WindowState state)
{
    if (state == Qt::WindowMinimized || !m_frame->isMinimizing())
        syncWindowState(state);
}

void CTabMgr::syncWindowState(Qt::WindowState state)
{
    if (m_lastState == Qt::WindowMinimized && state != Qt::WindowMinimized && m_frame->wasMaxed()) {
        disconnect(m_frame, &QWindow::windowStateChanged, this, &CTabMgr::onWindowStateChanged);
        m_frame->showMaximized();
        connect(m_frame, &QWindow::windowStateChanged, this, &CTabMgr::onWindowStateChanged);
    }
    if (state == Qt::WindowNoState && m_lastState == Qt::WindowMinimized)
        sendTo(m_tab->currentTab(), OperatorMessage(QStringLiteral("showNormal")));
    const bool wasShown = m_lastState == Qt::WindowNoState || m_lastState == Qt::WindowMaximized;
    if (state == Qt::WindowMinimized && wasShown)
        sendToAll(OperatorMessage(QStringLiteral("showMinimized")));
    m_lastState = state;
}

void CTabMgr::syncClosing(bool bSaveProj)
{
    auto message = OperatorMessage(QStringLiteral("mainQuit"));
    message.insert(QStringLiteral("bSaveProj"), bSaveProj);
    sendToAll(message);
}

void CTabMgr::showMenu()
{
    sendTo(m_tab->currentTab(), OperatorMessage(QStringLiteral("showMenu")));
}

void CTabMgr::hideMenu()
{
    sendTo(m_tab->currentTab(), OperatorMessage(QStringLiteral("hideMenu")));
}

void CTabMgr::showHelp()
{
    sendTo(m_tab->currentTab(), OperatorMessage(QStringLiteral("showHelp")));
}

void CTabMgr::onReadyReay(const QString& socketName, const QByteArray& data)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(data, &error);
    if (document.isNull()) {
        qWarning() << "parseError " << error.errorString();
        return;
    }
    const auto message = document.object();
    const auto keys = message.keys();
    for (const auto& key : keys)
        takeReport(socketName, key, message.value(key));
}

void CTabMgr::takeReport(const QString& socketName, const QString& key, const QJsonValue& value)
{
    if (key == QLatin1String("winid")) {
        embedWindow(socketName, value.toString());
    } else if (key == QLatin1String("ReOpenProj")) {
        reopenProject(value.toString());
    } else if (key == QLatin1String("quitResponse")) {
        m_tab->removeTab(value.toString());
        sendTo(value.toString(), OperatorMessage(QStringLiteral("quit")));
    } else if (key == QLatin1String("dialogShow")) {
        emit dialogShow(value.toBool());
        qInfo() << "dialogShow" << value.toBool();
    } else if (key == QLatin1String("convertstate")) {
        emit isConvertingChanged(value.toBool());
    } else if (key == QLatin1String("CreateBimProj")) {
        openTab(mainTabName);
        emit sigCreateBimProj();
    }
}

void CTabMgr::embedWindow(const QString& socketName, const QString& windowId)
{
    const quint64 window = windowId.toULongLong();
    qWarning() << "received winid" << window;
    m_tabWindows[socketName] = window;
    if (!Native::SetParent(window, m_frame->winId())) {
        const std::string reason = Native::LastErrorText();
        std::printf("%s\n", reason.empty() ? "errorMessageID is 0" : reason.c_str());
        std::fflush(stdout);
        return;
    }
    const auto* content = findItem(QStringLiteral("contentRect"));
    const auto* title = findItem(QStringLiteral("titleRect"));
    if (content == nullptr || title == nullptr)
        return;
    // Items are measured in device-independent pixels, windows in those of the device.
    const double scale = m_frame->devicePixelRatio();
    Native::MoveWindow(window, static_cast<int>(content->x() * scale),
                       static_cast<int>(title->height() * scale), static_cast<int>(content->width() * scale),
                       static_cast<int>(content->height() * scale), true);
}

void CTabMgr::reopenProject(const QString& guid)
{
    const auto& app = CHomeApp::instance();
    app.GetMgr<CProjectMgr>()->CloseProject(guid);
    app.GetMgr<CEditorControl>()->UpdateProjectState(guid);
}

void CTabMgr::onSocketDisconnected(const QString& socketName)
{
    if (socketName == m_tab->currentTab())
        SwitchTab(mainTabName);
    m_tabWindows.remove(socketName);
    m_tab->removeTab(socketName);
}

void CTabMgr::onBeforeUpload(const QString& guid)
{
    m_uploading.insert(guid);
    emit uploadCountChanged(static_cast<int>(m_uploading.size()));
}

void CTabMgr::onAfterUpload(const QString& guid)
{
    m_uploading.erase(guid);
    emit uploadCountChanged(static_cast<int>(m_uploading.size()));
}

QQuickItem* CTabMgr::findItem(const QString& objectName) const
{
    const auto* root = m_frame->rootObject();
    return root != nullptr ? root->findChild<QQuickItem*>(objectName) : nullptr;
}

QRect CTabMgr::ContentRect() const
{
    const auto* item = findItem(QStringLiteral("contentRect"));
    if (item == nullptr)
        return {};
    return {m_frame->mapToGlobal(item->position().toPoint()),
            QSize(static_cast<int>(item->width()), static_cast<int>(item->height()))};
}

void CTabMgr::sendTo(const QString& tabName, const QJsonObject& message)
{
    m_ipc->Send(tabName, MessageBytes(message));
}

void CTabMgr::sendToAll(const QJsonObject& message)
{
    m_ipc->SendAll(MessageBytes(message));
}

} // namespace TorvoEditor
