// SPDX-License-Identifier: MIT
#pragma once

#include "core/mgrobj.h"
#include "view/context/editorcontrol/actionrules.h"

#include <memory>

#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>

namespace ZRSmartDB
{
class IZRProject;
}

namespace TorvoEditor
{

class CAdministrativeRegion;
class CGridViewController;
class CPanelModel;
class CProjectMgr;
struct SProjectInfoRecord;

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
    /// Makes a new project of what the new-project dialog has entered in CProjectInfo.
    void slotCreateProject();
    /// Sends a project to the server. A project whose last upload failed there is sent after a question.
    void slotUploadProject(const QString& projGuid, bool bForceUpdate = false);
    /// Brings a project to the server's version. `var` is its guid.
    void slotSyncProject(const QVariant& var);
    /// Brings the data of a project to the current format.
    void upgradeProj(const QString& projGuid);
    /// Writes what the info card holds to its project.
    void slotProjectInfoUpdate();
    /// Takes a project out of the grid. Its files stay, unless they are all that there is of it.
    void slotRemoveProject(const QVariant& var);
    /// Deletes a project's files on this machine. `var` is its guid.
    void slotDeleteProject(const QVariant& var);
    /// Gives a tree item another name.
    void updateProjName(const QString& projGuid, const QString& projName);
    /// Shows the project's page on the server in the browser.
    void openWebProj(const QString& projGuid);
    /// Shows the account's page on the server in the browser.
    void openWebConsole();
    /// Reads the server's list again and builds the tree anew.
    void reflushProjTree();
    /// The child of an opened project has ended.
    void slotProcessFinsh(int exitCode);

    // Ends of the long operations: a worker's signal

    void onDownloadFinished(const QString& strGuid, bool ret, const QString& errorString);
    void onUploadFinished(const QString& strGuid, bool ret, const QString& errorString);
    void onUpdateFinished(const QString& strGuid, bool ret, const QString& errorString);
    void onUpgradeFinished(const QString& strGuid, bool ret, const QString& errorString);
    /// The end of a CDemoDownLoadWorker: `strCloneGuid` takes the place of `strGuid`.
    void onDownloadDemoFinished(const QString& strGuid, const QString& strCloneGuid, bool ret,
                                const QString& errorString);

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
    using EndSlot = void (CEditorControl::*)(const QString& strGuid, bool ret, const QString& errorString);

    void loadList();
    void refreshAll();
    /// Starts the worker of `jobType`, whose end comes to `end`.
    void startJob(int jobType, const QString& guid, ProjOperateEnum operation, EndSlot end);
    /// True when another operation runs, which is then said twice.
    [[nodiscard]] bool refuseWhileBusy();
    void startUpload(const QString& guid, bool isForced);
    /// Whether the server takes a new scene of this application; a refusal is shown.
    [[nodiscard]] bool canUploadNewScene();
    /// Whether there is something to update, and the server lets it.
    [[nodiscard]] bool canUpdate(const QString& guid, int serverState);
    /// Whether a project can be removed or deleted: it is here.
    [[nodiscard]] bool isActionOnProject(const QString& guid) const;
    void writeProject(ZRSmartDB::IZRProject& project, const SProjectInfoRecord& record);
    void tellHostOfUpload(const QString& guid, bool isDone);
    void showErrorMsg(const QString& msg, const QString& errCode);
    void showTip(const QString& text);

    CGridViewController* m_gridViewController = nullptr; ///< not owned
    CPanelModel* m_panelModel = nullptr;
    CProjectMgr* m_projectMgr = nullptr; ///< not owned
    std::unique_ptr<CAdministrativeRegion> m_regionModel;
    int m_appVer = -1;
    bool m_isBimSdk = false;
    bool m_bInOperation = false; ///< a worker is running; stops the periodic refresh
    QTimer m_timer{this};
    ProjOperateEnum m_eCurOperation = PO_None;
};

} // namespace TorvoEditor
