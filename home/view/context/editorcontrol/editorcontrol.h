// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace TorvoEditor
{

class CGridViewController;
class CPanelModel;
class CProjectMgr;

/// The long operation that is running.
enum ProjOperateEnum { PO_None = 0, PO_Download = 1, PO_Upload = 2, PO_Update = 3, PO_Upgrade = 4 };

/// The controller behind the project screens: every action on a project comes in here. It lets one long
/// operation run at a time and keeps tree and grid in step with the store. Published as "editorControl". GUI
/// thread.
class CEditorControl : public QObject, public IMgrObj
{
    Q_OBJECT
    Q_PROPERTY(int appVer READ appVer NOTIFY appVerChanged)
    Q_PROPERTY(bool isBimSdk READ isBimSdk WRITE setIsBimSdk NOTIFY isBimSdkChanged)
    Q_PROPERTY(QString loginName READ getLoginName NOTIFY loginNameChanged)

public:
    explicit CEditorControl(QObject* parent = nullptr);
    ~CEditorControl() override;

    void Init() override;
    void UnInit() override;
    void RegisterContext(QQmlContext* context) override;

    /// The variant of the host: 0 "Lite", 1 "Normal", -1 any other.
    [[nodiscard]] int appVer() const { return m_appVer; }
    [[nodiscard]] bool isBimSdk() const { return m_isBimSdk; }
    void setIsBimSdk(bool isBimSdk);

    /// The version of the installed program, from "updateConfig.json" beside it.
    Q_INVOKABLE QString getVersion() const;

public slots:
    /// Brings a project of the tree into the grid, downloading it when it is not here.
    void slotTreeDblClick(const QString& projGuid);
    /// Opens a project in its tab.
    void slotProjectDblClick(const QString& projGuid);
    /// Reads the server's list again and builds the tree anew.
    void reflushProjTree();
    /// The child of an opened project has ended.
    void slotProcessFinsh(int exitCode);
    void onDownloadFinished(const QString& strGuid, bool ret, const QString& errorString);
    /// Reads the tree item and the card of a project anew.
    void UpdateProjectState(const QString& strGuid);
    [[nodiscard]] QString getLoginName() const;

signals:
    void appVerChanged();
    void loginNameChanged();
    /// Declared for the screens; nothing emits it.
    void simplyProjInfoChanged();
    void isBimSdkChanged();

private:
    void loadList();
    void refreshAll();
    void showErrorMsg(const QString& msg, const QString& errCode);
    void showTip(const QString& text);

    CGridViewController* m_gridViewController = nullptr; ///< not owned
    CPanelModel* m_panelModel = nullptr;
    CProjectMgr* m_projectMgr = nullptr; ///< not owned
    int m_appVer = -1;
    bool m_isBimSdk = false;
    bool m_bInOperation = false; ///< a worker is running; stops the periodic refresh
    QTimer m_timer{this};
    ProjOperateEnum m_eCurOperation = PO_None;
};

} // namespace TorvoEditor
