// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/projectrecords.h"

#include <map>
#include <string>
#include <vector>

#include <QMap>
#include <QString>

namespace TorvoSDK
{

/// The host's books about projects.
///
/// One object, owned by the host, alive from before TorvoHomePlugin::Init until after
/// TorvoHomePlugin::UnInit. Every operation may be called on the GUI thread; GetProjectRecord and GetOrgTree
/// also on a worker thread while a long project job runs. None throws.
class IProjectHost
{
public:
    /// Replaces what the host knows of the local projects by `records`.
    virtual void SetProjectRecords(const std::vector<SLocalProjectRecord>& records) = 0;

    /// Registers one project, or replaces the record with the same guid.
    virtual void AddProjectRecord(const SLocalProjectRecord& record) = 0;

    /// Fills `record` for the project `guid` from the local records, else from the server's list.
    /// An unknown guid leaves `record` as it is.
    virtual void GetProjectRecord(const std::wstring& guid, SLocalProjectRecord& record) = 0;

    /// Forgets the local record of `guid`; an unknown guid is no error.
    virtual void RemoveProjectRecord(const std::wstring& guid) = 0;

    /// Fetches the projects that the account sees on the server, in the server's order.
    /// `note` takes a text of the server for the whole list, may stay empty.
    /// Returns false when the server could not be asked; `records` is then empty. Waits for the server.
    virtual bool GetServerProjects(std::vector<SServerProjectRecord>& records, std::wstring& note) = 0;

    /// Gives the organisation tree of the account in `root`.
    /// Returns true when the account belongs to an organisation, which also selects the department form of a
    /// project's extended attributes; false leaves `root` as it is. Answers from what the login brought.
    virtual bool GetOrgTree(SOrgNode& root) = 0;

    /// An upload of `record` with its sub projects has ended, well or badly.
    virtual void NotifyUploaded(const SLocalProjectRecord& record,
                                const std::vector<std::wstring>& subProjects, bool success) = 0;

    /// The texts that the objects of the uploaded project `guid` carry, by object guid.
    virtual void SetSubProjNames(const std::wstring& guid, const QMap<QString, QString>& names) = 0;

    /// A download of `guid` has ended, well or badly.
    virtual void NotifyDownloaded(const std::wstring& guid, bool success) = 0;

    /// An update of `guid` has ended, well or badly.
    virtual void NotifyUpdated(const std::wstring& guid, bool success) = 0;

protected:
    ~IProjectHost() = default;
};

} // namespace TorvoSDK
