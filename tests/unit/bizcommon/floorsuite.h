// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"
#include "ZRIMGeometryModel/zrimposition.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"
#include "fakes/floortexts.h"
#include "fakes/logbook.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A data folder with one building project in the real project database, and models with floors.
class FloorSurroundings
{
public:
    static constexpr auto bim = "11111111-2c3d-4e5f-8a9b-0c1d2e3f4001";
    static constexpr auto first = "22222222-2c3d-4e5f-8a9b-0c1d2e3f4002";
    static constexpr auto second = "33333333-2c3d-4e5f-8a9b-0c1d2e3f4003";

    FloorSurroundings()
    {
        auto* director = ZRSmartDB::GetIDBDirector();
        if (!director->SetServer(L"http://127.0.0.1:1"))
            qFatal("no database");
        director->GetDatabase()->SetUp(0);
        if (director->GetDatabase()->CreateProj(key(bim), L"楼", L"BIM", {}, dataDir().toStdWString()) ==
            nullptr)
            qFatal("no project");
    }
    FloorSurroundings(const FloorSurroundings&) = delete;
    FloorSurroundings& operator=(const FloorSurroundings&) = delete;
    ~FloorSurroundings() { ZRSmartDB::FreeIDBDirector(); }

    [[nodiscard]] static ZRSmartFormat::SZRFTGuid key(const QString& guid)
    {
        return ZRSmartFormat::GuidFromText(guid.toStdWString());
    }
    [[nodiscard]] QString dataDir() const { return m_folder.path(); }
    [[nodiscard]] QString file(const QString& guid, const QString& name = "floors.json") const
    {
        return QString("%1/proj_%2/%3").arg(dataDir(), guid, name);
    }
    [[nodiscard]] static ZRSmartDB::IZRModelStore& models()
    {
        return *ZRSmartDB::GetIDBDirector()->GetDatabase()->OpenProject(key(bim), {})->GetModelStore();
    }

    void write(const QString& path, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile output(path);
        if (!output.open(QIODevice::WriteOnly) || output.write(bytes) != bytes.size())
            qFatal("no file");
    }
    [[nodiscard]] static QByteArray read(const QString& path)
    {
        QFile input(path);
        return input.open(QIODevice::ReadOnly) ? input.readAll() : QByteArray();
    }

    /// A converted model with this "floors.json"; an empty text makes none.
    void convert(const QString& model, const QByteArray& floors) const
    {
        write(file(model, "model.json"), R"({"name": "模型"})");
        if (!floors.isEmpty())
            write(file(model), floors);
    }
    /// The same, taken into the project.
    void import(const QString& model, const QByteArray& floors) const
    {
        convert(model, floors);
        if (!models().ImportModelProj(key(model), dataDir().toStdWString()))
            qFatal("no model");
    }

    [[nodiscard]] BIZCOMMON::FLOORINFO::CFloorInfo floors() const { return {bim, dataDir()}; }

private:
    QTemporaryDir m_folder;
};
