// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/document/floors.h"
#include "editortab/home/startmessage.h"

#include <vector>

#include <QObject>
#include <QString>
#include <QVector3D>

namespace ZRSmartDB
{
class IZRDatabase;
class IZRProject;
} // namespace ZRSmartDB

namespace editortab
{

/// A model of the opened project, or of a project linked into it.
struct ModelEntry {
    QString name;
    QString file;     ///< of its geometry
    int building = 0; ///< index in Document::buildings
    QString guid;
    std::vector<BIZCOMMON::FLOORINFO::ModelFloor> floors; ///< the model's own, lowest first
};

/// A building project that is shown: the opened one, or one that an opened scene places.
struct Building {
    QString name;
    QVector3D place; ///< metres from the opened project: east, up, south
};

/// The opened project. GUI thread.
class Document : public QObject
{
    Q_OBJECT

public:
    explicit Document(const StartMessage& start, QObject* parent = nullptr);
    ~Document() override;

    /// Opens the project and what is linked into it. Gives words for the user when that fails, else nothing.
    [[nodiscard]] QString open();

    /// Reads models and floors anew: somebody else has changed the project. True when there are others now.
    /// Unsaved changes stay, and hold it up.
    [[nodiscard]] bool reload();

    [[nodiscard]] QString guid() const { return m_start.tabName; }
    [[nodiscard]] QString type() const;
    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] QString note() const { return m_note; }
    [[nodiscard]] QString position() const;
    [[nodiscard]] const std::vector<Building>& buildings() const { return m_buildings; }
    [[nodiscard]] const std::vector<ModelEntry>& models() const { return m_models; }
    /// Building by building, from the lowest up.
    [[nodiscard]] const std::vector<FloorEntry>& floors() const { return m_floors; }

    void setName(const QString& name);
    void setNote(const QString& note);

    [[nodiscard]] bool isModified() const { return m_isModified; }

    /// Writes the changes into the project. False leaves them unsaved; problem() then has words for the user.
    [[nodiscard]] bool save();
    [[nodiscard]] QString problem() const { return m_problem; }

signals:
    void modifiedChanged();
    void saved();

private:
    [[nodiscard]] ZRSmartDB::IZRProject* openProject(const QString& guid);
    [[nodiscard]] bool openAll();
    void addBuilding(ZRSmartDB::IZRProject& project);
    void setModified(bool isModified);

    StartMessage m_start;
    ZRSmartDB::IZRDatabase* m_database = nullptr;
    ZRSmartDB::IZRProject* m_project = nullptr; ///< owned by the database
    std::vector<Building> m_buildings;
    std::vector<ModelEntry> m_models;
    std::vector<FloorEntry> m_floors;
    QString m_name;
    QString m_note;
    QString m_problem;
    bool m_isModified = false;
};

} // namespace editortab
