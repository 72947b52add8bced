// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace ZRIMGeometryModel
{
class CZRIMPosition;
}

namespace ZRSmartDB
{

class CZRDBNetAccess;
class IZRProject;
class IZRProjUpgrader;
class IZRSceneObject;

/// The projects on this machine and their traffic with the server.
///
/// Owned by the library. Usable from the GUI thread and one worker thread at once; operations on one project
/// are taken one after the other. `dataFolder` is the folder that holds one folder "proj_<guid>" per project.
/// Project and object pointers belong to the library and live until CloseProject, DeleteProj or RemoveSubProj
/// of that project, or FreeIDBDirector. No operation throws: failure is false or null, and GetLastError then
/// has the reason. The order of the operations is part of the contract.
class IZRDatabase
{
public:
    /// Prepares the database; `flags` is 0. Called once, after SetServer.
    virtual void SetUp(int flags) = 0;

    /// Gives the project `guid`. With an empty `dataFolder` only projects that are open already are looked
    /// at, the assigned models of an open building project among them. Otherwise it is opened from disk when
    /// it is not open yet. Null when it is not there, is no readable project or is of an older format.
    [[nodiscard]] virtual IZRProject* OpenProject(const ZRSmartFormat::SZRFTGuid& guid,
                                                  const std::wstring& dataFolder) = 0;

    /// Makes a new project on disk and opens it. `type` is "CIM" or "BIM". Null when the folder cannot be
    /// written or the project exists already; nothing is left behind then.
    [[nodiscard]] virtual IZRProject* CreateProj(const ZRSmartFormat::SZRFTGuid& guid,
                                                 const std::wstring& name, const std::wstring& type,
                                                 const ZRIMGeometryModel::CZRIMPosition& position,
                                                 const std::wstring& dataFolder) = 0;

    /// Closes the project and deletes its local data: its folder, and the folders of the models assigned to
    /// it that no other local project uses. Nothing happens when it is not open. The server's copy stays.
    virtual void DeleteProj(const ZRSmartFormat::SZRFTGuid& guid) = 0;

    /// As DeleteProj, for a project linked into a scene. The handle keeps the folder until it is dropped.
    virtual std::shared_ptr<void> RemoveSubProj(const ZRSmartFormat::SZRFTGuid& guid) = 0;

    /// Gives the projects assigned to the building project `guid`, by guid, with their type text ("MODEL",
    /// "3DTILES"). A project that is not here yet is fetched first, its own folder only. Waits for the
    /// server.
    [[nodiscard]] virtual bool
    GetAllAssignProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                     std::map<ZRSmartFormat::SZRFTGuid, std::wstring>& projects) = 0;

    /// Adds the sub projects of the scene `guid` to `projects`: those that its objects link to. Local data
    /// only.
    virtual void GetSubProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                            std::set<ZRSmartFormat::SZRFTGuid>& projects) = 0;

    /// Adds the building projects that the scene `guid` refers to without owning them. Local data only.
    virtual void GetBimProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                            std::set<ZRSmartFormat::SZRFTGuid>& projects) = 0;

    /// Makes the object list of `project` available; reads it from disk when that has not been done.
    virtual void LoadProjObjects(IZRProject* project) = 0;

    /// Fills `objects` with the objects of `project` whose text contains `filter`; empty takes all.
    virtual void GetProjObjects(IZRProject* project, std::vector<IZRSceneObject*>& objects,
                                const std::wstring& filter) = 0;

    /// Writes every change of every open project to disk, each project in one transaction. False when one
    /// could not be written; that one keeps its changes in memory.
    virtual bool SaveAll() = 0;

    /// Gives in `state` how the project stands to the server: 0 only here, 1 the same on both sides, 2
    /// changed here, 3 changed on the server, 4 changed on both. Compares the revision that the project was
    /// last equal to with the server's newest, known at most 500 ms. False when the project is not here or
    /// the server could not be asked; `state` is then unchanged.
    [[nodiscard]] virtual bool GetProjStatus(const ZRSmartFormat::SZRFTGuid& guid,
                                             const std::wstring& dataFolder, int& state) = 0;

    /// Fetches a project that is not here, a building project with its assigned models. Waits until all of it
    /// is on disk and verified; a failure or a kill leaves nothing visible.
    [[nodiscard]] virtual bool DownLoadProj(const ZRSmartFormat::SZRFTGuid& guid,
                                            const std::wstring& dataFolder) = 0;

    /// Brings a project that is here to the server's newest revision. The old or the new one stands at the
    /// end.
    [[nodiscard]] virtual bool UpdateProj(const ZRSmartFormat::SZRFTGuid& guid,
                                          const std::wstring& dataFolder) = 0;

    /// Sends a project to the server. Without `force` it fails when the server has moved on; `unused` is
    /// false.
    [[nodiscard]] virtual bool UploadProj(const ZRSmartFormat::SZRFTGuid& guid,
                                          const std::wstring& dataFolder, bool force, bool unused) = 0;

    /// Lets go of an open project; changes that were not saved are dropped. Unknown guids are no error.
    virtual void CloseProject(const ZRSmartFormat::SZRFTGuid& guid) = 0;

    /// The server queries; valid as long as the database. Never null.
    [[nodiscard]] virtual CZRDBNetAccess* GetNetAccess() = 0;

    /// The format upgrades; null before SetUp.
    [[nodiscard]] virtual IZRProjUpgrader* GetUpgrader() = 0;

    /// Gives the reason of the last failure on the calling thread's behalf: a JSON object with the integer
    /// "code" (40014: the login has expired) and the text "msg"; empty when nothing has failed.
    virtual void GetLastError(std::wstring& reason) = 0;

protected:
    ~IZRDatabase() = default;
};

} // namespace ZRSmartDB
