// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/projectrecords.h"
#include "core/mgrobj.h"

#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

/// Remembers which projects exist on this machine, in "ProjectConfig.json" beside the program.
///
/// The file is a JSON array in which every key and every text is Base64 over UTF-8. The projects' contents
/// are the database library's. GUI thread; GetSubProjects and AddProject also on the worker of a long project
/// job, of which there is one at a time.
class CLocalProjectInfoMgr : public IMgrObj
{
public:
    CLocalProjectInfoMgr();

    /// Load.
    void Init() override;
    /// Save.
    void UnInit() override;

    /// Reads the list, keeps of it the projects that can be opened or need an upgrade, and tells the host.
    void Load();

    /// Writes the list, also the entries that Load did not keep.
    void Save();

    /// Enters a project, as the host knows it, and writes the list. Nothing happens when it is listed
    /// already.
    void AddProject(const QString& guid);

    /// Takes a project from the list and writes it; the project's files stay.
    void RemoveProject(const QString& guid);

    [[nodiscard]] bool ContainsProject(const QString& guid) const;

    /// The guids of the projects that the scene `guid` links to, each once, in the order of its objects.
    [[nodiscard]] QStringList GetSubProjects(const QString& guid) const;

    [[nodiscard]] const std::vector<TorvoSDK::SLocalProjectRecord>& projectRecords() const
    {
        return m_projectRecords;
    }
    [[nodiscard]] const QStringList& projectGuids() const { return m_projectGuids; }

private:
    QString m_configPath;
    QString m_dataPath;
    QJsonArray m_projectArray; ///< in clear text, in file order; what is written back
    std::vector<TorvoSDK::SLocalProjectRecord> m_projectRecords;
    QStringList m_projectGuids; ///< in step with the records
};

} // namespace TorvoEditor
