// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/home/startmessage.h"
#include "smartdb/data/projectfile.h"

#include <filesystem>
#include <fstream>

#include <QCoreApplication>
#include <QDir>

using ZRSmartDB::ProjectFile;

// Projects beside the test program, where the real project database looks for them.

inline const std::string scene = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
inline const std::string house = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a02";
inline const std::string tower = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a03";
inline const std::string walls = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a04";
inline const std::string roof = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a05";

inline QString DataFolder()
{
    return QCoreApplication::applicationDirPath() + "/data";
}

inline std::filesystem::path FolderOf(const std::string& guid)
{
    return DataFolder().toStdString() + "/proj_" + guid;
}

inline void Create(const std::string& guid, const std::string& name, const std::string& type, double x,
                   double y, double z)
{
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = name;
    head.type = type;
    head.longitude = x;
    head.latitude = y;
    head.height = z;
    ProjectFile::create(FolderOf(guid), head);
}

/// What another program finds in the project afterwards.
inline ZRSmartDB::ProjectHead HeadOf(const std::string& guid)
{
    return ProjectFile(FolderOf(guid)).readHead();
}

/// The floors of a model, as the converter leaves them.
inline void WriteFloors(const std::string& guid, const std::string& json)
{
    std::ofstream(FolderOf(guid) / "floors.json") << json;
}

inline editortab::StartMessage Start(const std::string& guid, const QStringList& subProjects = {})
{
    editortab::StartMessage start;
    start.tabName = QString::fromStdString(guid);
    start.ipcServer = "home";
    start.subProjects = subProjects;
    return start;
}
