// SPDX-License-Identifier: MIT
#include "ZRIMGeometryModel/zrimposition.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"
#include "convert/bimmgr.h"
#include "core/filefunctions.h"
#include "project/guidtext.h"
#include "ratio.h"
#include "smartdb/data/projectfile.h"

#include <functional>
#include <string>
#include <vector>

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>

// The models of a building: the list that its card shows, against the bare query for the same records, and
// the way of a converted model into the project, against a copy of its files.

namespace
{

using namespace TorvoEditor;

constexpr int models = 1000;
constexpr int runs = 15;
constexpr int imports = 5;
constexpr qint64 modelBytes = 500LL << 20;
const QString building = QStringLiteral("b0000000-0000-4000-8000-000000000000");

QString ModelOf(int number)
{
    return QStringLiteral("%1-0000-4000-8000-00000000000a").arg(number, 8, 16, QLatin1Char('0'));
}

ZRSmartDB::IZRDatabase& Database()
{
    return *ZRSmartDB::GetIDBDirector()->GetDatabase();
}

ZRSmartDB::IZRProject* OpenBuilding()
{
    return Database().OpenProject(KeyOf(building), DataDir().toStdWString());
}

std::filesystem::path FolderOf(const QString& guid)
{
    return ZRSmartDB::ProjectFolder(DataDir().toStdString(), guid.toStdString());
}

bool MakeBuilding()
{
    QDir(DataDir()).removeRecursively();
    QDir().mkpath(DataDir());
    if (!ZRSmartDB::GetIDBDirector()->SetServer(L"http://127.0.0.1:1"))
        return false;
    Database().SetUp(0);
    if (Database().CreateProj(KeyOf(building), L"楼", L"BIM", {}, DataDir().toStdWString()) == nullptr)
        return false;
    ZRSmartDB::ProjectChange change;
    for (int i = 0; i < models; ++i)
        change.putModels.push_back({ModelOf(i).toStdString(),
                                    "模型 " + std::to_string(i),
                                    "MODEL",
                                    {{"editor_import_source_type", "FBX"}}});
    ZRSmartDB::ProjectFile(FolderOf(building)).write(change);
    return true;
}

/// Opens the database, and takes the texts of all records.
std::size_t QueryBare()
{
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    const auto file = ZRSmartDB::DatabaseIn(FolderOf(building)).string();
    sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(database, "SELECT guid, name, type, attributes FROM models ORDER BY rowid", -1,
                       &statement, nullptr);
    std::vector<std::vector<std::string>> records;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        auto& record = records.emplace_back();
        for (int column = 0; column < 4; ++column)
            record.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)));
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return records.size();
}

void MeasureList(bench::Report& report)
{
    CBimMgr mgr;
    std::vector<double> ours;
    std::vector<double> bare;
    for (int run = 0; run < runs; ++run) {
        // As the card finds it: the project is open, and nobody has asked for its models.
        mgr.cancle(building);
        static_cast<void>(OpenBuilding());
        ours.push_back(bench::SecondsOf([&] { mgr.syncProjList(building); }));
        bare.push_back(bench::SecondsOf([&] {
            if (QueryBare() != models)
                std::abort();
        }));
        if (mgr.projList().size() != models)
            std::abort();
    }
    std::fprintf(stderr, "ours %.2f ms, bare %.2f ms (medians of %d)\n", bench::MedianOf(ours) * 1000,
                 bench::MedianOf(bare) * 1000, runs);
    report.ratio("list of a building with 1,000 models", bench::MedianOf(ours) / bench::MedianOf(bare), 2.0,
                 "the bare SQLite query for the same records");
}

/// A converted model of 500 MB.
bool MakeModel(const QString& folder)
{
    QDir().mkpath(folder);
    QFile geometry(folder + "/model.glb");
    QFile facts(folder + "/model.json");
    if (!geometry.open(QIODevice::WriteOnly) || !facts.open(QIODevice::WriteOnly))
        return false;
    const QByteArray piece(1 << 20, 'g');
    for (qint64 written = 0; written < modelBytes; written += piece.size()) {
        if (geometry.write(piece) != piece.size())
            return false;
    }
    return facts.write(R"({"name": "模型", "type": "MODEL"})") > 0;
}

void Copy(const QString& from, const QString& to)
{
    if (QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), from, to}) != 0)
        std::abort();
}

/// The engine's step included: a model is made elsewhere and moved to where it is taken in from.
void Import(const QString& made, const QString& guid)
{
    const QString target = QString::fromStdString(FolderOf(guid).string());
    if (!QDir().rename(made, target) ||
        !OpenBuilding()->GetModelStore()->ImportModelProj(KeyOf(guid), DataDir().toStdWString()))
        std::abort();
}

bool MeasureImport(bench::Report& report)
{
    const QString made = DataDir() + "/made";
    const QString copied = DataDir() + "/copied";
    std::vector<double> ours;
    std::vector<double> copies;
    for (int run = 0; run < imports; ++run) {
        if (!MakeModel(made))
            return false;
        copies.push_back(bench::SecondsOf([&] { Copy(made, copied); }));
        QDir(copied).removeRecursively();
        const QString guid = ModelOf(models + run);
        ours.push_back(bench::SecondsOf([&] { Import(made, guid); }));
        OpenBuilding()->GetModelStore()->RemoveModelProj(KeyOf(guid));
    }
    std::fprintf(stderr, "ours %.1f ms, copy %.1f ms (medians of %d)\n", bench::MedianOf(ours) * 1000,
                 bench::MedianOf(copies) * 1000, imports);
    report.ratio("import of a model of 500 MB", bench::MedianOf(ours) / bench::MedianOf(copies), 1.2,
                 "cp -r of its files");
    return true;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argumentCount, arguments);
    if (!MakeBuilding())
        return 2;
    bench::Report report;
    MeasureList(report);
    const bool isMeasured = MeasureImport(report);
    QDir(DataDir()).removeRecursively();
    return isMeasured ? report.exitCode() : 2;
}
