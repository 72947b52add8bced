// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/projectrecords.h"
#include "core/mgrobj.h"

#include <memory>
#include <string>
#include <vector>

#include <QHash>
#include <QJsonArray>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVariantMap>

namespace ZRSmartDB
{
class IZRDatabase;
class IZRProject;
} // namespace ZRSmartDB

namespace TorvoEditor
{

struct SProjectInfoRecord;

/// The server's own view of a project.
enum ServerProjState {
    SS_Normal = 0,       ///< the project is on the server
    SS_UploadFailed = 1, ///< the last upload failed
    SS_Uploading = 2,    ///< an upload is running
    SS_None = 3,         ///< the server does not have the project
    SS_Converting = 4,   ///< the server is converting the project
};

/// The one place that talks to the project database about projects: state, server queries, long operations.
///
/// Status queries, region queries and DownloadProjFile wait for the server on the calling thread.
/// The long operations run on a worker. Everything else is for the GUI thread.
class CProjectMgr : public QObject, public IMgrObj
{
    Q_OBJECT

public:
    explicit CProjectMgr(QObject* parent = nullptr);

    void Init() override;
    void UnInit() override;

    // State of a project

    /// Gives the state of a project, a number of CGridViewData::StateTypeEnum. False when it cannot be told;
    /// `state` is then unchanged.
    bool GetProjStatus(const QString& guid, int& state);
    /// The same; reads as "only here" when it cannot be told.
    [[nodiscard]] int GetProjStatus(const QString& guid);
    /// The picture of that state.
    [[nodiscard]] QString GetProjStatusIcon(const QString& guid);
    /// Gives the server's view, a ServerProjState. False when the server cannot be asked.
    bool GetServerProjStatus(const QString& guid, int& state);
    /// The same; SS_None when the server cannot be asked.
    [[nodiscard]] int GetServerProjStatus(const QString& guid);
    [[nodiscard]] bool NeedUpgrade(const QString& guid) const;

    // Projects

    /// The project, opened when it is not open yet, or null.
    [[nodiscard]] ZRSmartDB::IZRProject* GetProject(const QString& guid) const;
    void CloseProject(const QString& guid);
    /// The server's record of a project; one with an empty guid when the server's list does not have it.
    [[nodiscard]] TorvoSDK::SServerProjectRecord GetServerProject(const QString& guid) const;
    [[nodiscard]] QString GetProjectImagePath(const QString& guid) const;
    /// Makes a new project on this machine, saves it and tells the host. Null when the database makes none.
    [[nodiscard]] ZRSmartDB::IZRProject* CreateProject(const SProjectInfoRecord& record);
    /// Saves what was changed in all open projects.
    bool CommitProject();
    /// Deletes the local data of a project and of the projects that it links to, and takes it from the local
    /// list.
    bool RemoveLocalData(const QString& guid);
    /// Tells the host that a project is gone from this machine.
    void NotifyProjectRemoved(const QString& guid);
    /// Gives what the objects of a project carry as text, by the object's guid, and closes the project. False
    /// when it cannot be opened.
    [[nodiscard]] bool GetSubProjNames(const QString& guid, QMap<QString, QString>& names);
    /// The text of a new unique key, upper case.
    [[nodiscard]] static std::wstring NewGuid();

    // What a project says of itself. No project is no error.

    /// Gives the six fields of the administrative region. False when the project is no scene or has none.
    bool ReadBelongsRegion(const ZRSmartDB::IZRProject* project, SProjectInfoRecord& record) const;
    /// Writes them; scenes only.
    void WriteBelongsRegion(ZRSmartDB::IZRProject* project, const SProjectInfoRecord& record);
    /// Adds the department, or the application, of a project to `attributes`.
    void GetProjExtAttrs(const ZRSmartDB::IZRProject* project, QMap<QString, QString>& attributes) const;
    /// Writes the department; only for an account with an organisation.
    void WriteExtendedAttr(ZRSmartDB::IZRProject* project, const QMap<QString, QString>& attributes);

    // Server queries

    /// The type text of a project; null when the server reports an error. Throws Concurrency::task_canceled.
    [[nodiscard]] QString GetProjType(const QString& guid);
    [[nodiscard]] bool CanAppIdUpload(const QString& appId, QString& msg);
    /// Throws Concurrency::task_canceled.
    [[nodiscard]] bool GetCountryId(QString& id);
    /// Throws Concurrency::task_canceled.
    [[nodiscard]] bool GetAdministrativeRegion(const QString& id, QJsonArray& regions);
    /// Fetches one file of a project's folder on the server. Throws Concurrency::task_canceled.
    bool DownloadProjFile(const QString& guid, const QString& fileName, const QString& localPath);
    /// Reads the server's project list anew.
    bool RefreshServerList();
    /// The database's reason of its last failure, JSON text or empty.
    [[nodiscard]] QString GetLastError() const;

    // Long operations, on a worker thread. Each ends at the first failure; what was done before stays done.

    /// Fetches a project with all that belongs to it and enters it in the local list. What arrived before a
    /// failure stays; the caller cleans up.
    [[nodiscard]] bool DownLoadProj(const QString& guid);
    /// Sends a project that is open, and after it those of a scene's sub projects that are new or changed
    /// here. `force` goes over what the server has. Emits afterUpload on every way out.
    [[nodiscard]] bool UploadProject(const QString& guid, const bool& force);
    /// Brings a scene's sub projects, then the changed building projects that it refers to, then the project
    /// itself to the server's version.
    [[nodiscard]] bool UpdateProject(const QString& guid);
    /// Brings a project and its sub projects to the current format, after the server's version of each.
    [[nodiscard]] bool UpgradeProject(const QString& guid);

    // Rows of the project tree

    [[nodiscard]] static QVariantMap MakeOrgRow(const TorvoSDK::SOrgNode& node);
    [[nodiscard]] static QVariantMap MakeProjectRow(const TorvoSDK::SServerProjectRecord& record);

    [[nodiscard]] const std::vector<TorvoSDK::SServerProjectRecord>& serverProjects() const
    {
        return m_serverProjects;
    }
    [[nodiscard]] const TorvoSDK::SOrgNode& orgRoot() const { return m_orgRoot; }

signals:
    /// Declared for whoever counts running uploads; nothing emits it.
    void beforeUpload(const QString& guid);
    /// An upload has ended, well or badly. Emitted on the worker thread.
    void afterUpload(const QString& guid);

private:
    [[nodiscard]] bool readProjStatus(const QString& guid, int& state);
    [[nodiscard]] bool readServerProjStatus(const QString& guid, int& state);
    [[nodiscard]] bool DownLoadBimProj(ZRSmartDB::IZRDatabase& database, const QString& guid);
    [[nodiscard]] bool uploadSubProjects(const QString& guid, const QString& name, const bool& force);
    [[nodiscard]] bool updateSubProjects(const QString& guid);
    [[nodiscard]] bool updateBimProjects(const QString& guid);
    [[nodiscard]] bool upgradeOne(const QString& guid);
    void fillNewProject(ZRSmartDB::IZRProject& project, const SProjectInfoRecord& record);
    [[nodiscard]] QSet<QString> bimSet(const QString& guid) const;
    [[nodiscard]] bool hasUpdatedBimProject(const QString& guid);

    QString m_dataPath;
    ZRSmartDB::IZRDatabase* m_projectDB = nullptr; ///< not owned; null until Init
    QString m_serverListNote;
    std::vector<TorvoSDK::SServerProjectRecord> m_serverProjects;
    QHash<QString, int> m_serverProjectByGuid; ///< index of the first record of each guid
    TorvoSDK::SOrgNode m_orgRoot;
};

/// True when the account has no organisation.
[[nodiscard]] bool IsEmptyOrgNode(const TorvoSDK::SOrgNode& node);

} // namespace TorvoEditor
