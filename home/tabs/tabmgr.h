// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"
#include "tabs/ipc.h"
#include "tabs/processcontrol.h"
#include "tabs/tab.h"

#include <memory>
#include <set>

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QRect>
#include <QString>

class QQuickItem;

namespace TorvoEditor
{

class CFrameWindow;

/// Keeps one child process per opened project, its native window laid over the content area of the home
/// window, and keeps the children in step with that window. Published as "tabMgr". GUI thread.
class CTabMgr : public QObject, public IMgrObj
{
    Q_OBJECT

public:
    explicit CTabMgr(QObject* parent = nullptr);

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;
    void OnViewReady() override;

    /// Follows `view` from now on. Called once, when its screens are loaded.
    void SetFrameWindow(CFrameWindow* view);

    /// Shows the tab; starts its child first when it has none. `name` is a project's guid, or "main".
    Q_INVOKABLE void openTab(const QString& name);

    /// Asks the child of the tab to close; the tab goes when its connection goes.
    Q_INVOKABLE void closeTab(const QString& name);

    void SendError(const QString& text, const QString& tabName);
    void SendInfo(const QString& text, const QString& tabName);
    void SendWarn(const QString& text, const QString& tabName);

    /// Null before Init and after UnInit.
    [[nodiscard]] CTab* tab() const { return m_tab.get(); }

public slots:
    void syncSize();
    void syncPos();
    void syncVisible();
    void syncWindowState(Qt::WindowState state);
    void syncClosing(bool bSaveProj);
    void showMenu();
    void hideMenu();
    void showHelp();

signals:
    /// A child shows or hides a modal dialog.
    void dialogShow(bool isShown);
    void uploadCountChanged(int count);
    void isConvertingChanged(bool converting);
    /// A child wants the dialog for a new building project.
    void sigCreateBimProj();

private slots:
    void onWindowStateChanged(Qt::WindowState state);
    void onReadyReay(const QString& socketName, const QByteArray& data);
    void onSocketDisconnected(const QString& socketName);
    void onBeforeUpload(const QString& guid);
    void onAfterUpload(const QString& guid);

private:
    [[nodiscard]] QQuickItem* findItem(const QString& objectName) const;
    [[nodiscard]] QRect ContentRect() const;
    void StartTab(const QString& name);
    void SwitchTab(const QString& name);
    void takeReport(const QString& socketName, const QString& key, const QJsonValue& value);
    void embedWindow(const QString& socketName, const QString& windowId);
    void reopenProject(const QString& guid);
    void sendTo(const QString& tabName, const QJsonObject& message);
    void sendToAll(const QJsonObject& message);

    std::unique_ptr<CTab> m_tab;
    std::unique_ptr<CProcessControl> m_process;
    std::unique_ptr<CIPC> m_ipc;
    CFrameWindow* m_frame = nullptr;      ///< not owned
    QHash<QString, quint64> m_tabWindows; ///< native window of each started tab; 0 until its child reports it
    Qt::WindowState m_lastState = Qt::WindowNoState;
    std::set<QString> m_uploading; ///< guids of running uploads
};

} // namespace TorvoEditor
