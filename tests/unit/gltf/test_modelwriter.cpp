// SPDX-License-Identifier: MIT
#include "gltf/modelwriter.h"

#include "filesizelimit.h"
#include "models.h"

#include <rapidcheck.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

namespace
{

rc::Gen<gltf::Vector3> AnyVector()
{
    const auto number = rc::gen::map(rc::gen::inRange(-1000000, 1000000),
                                     [](int value) { return static_cast<float>(value) / 1024.0F; });
    return rc::gen::container<gltf::Vector3>(number);
}

/// A model whose nodes hang together in any way and whose parts share corners in any way.
rc::Gen<gltf::Model> AnyModel()
{
    return rc::gen::exec([] {
        gltf::Model model;
        const int nodeCount = *rc::gen::inRange(1, 12);
        for (int i = 0; i < nodeCount; ++i)
            model.nodes.push_back({"n" + std::to_string(i), *rc::gen::inRange(-1, i)});
        const auto points = *rc::gen::nonEmpty(rc::gen::container<std::vector<gltf::Vector3>>(AnyVector()));
        for (const auto& point : points) {
            model.vertices.push_back({point, {0, 1, 0}});
            model.bounds.include(point);
        }
        const int partCount = *rc::gen::inRange(1, 8);
        for (int i = 0; i < partCount; ++i) {
            gltf::Part part;
            part.node = static_cast<std::uint32_t>(*rc::gen::inRange(0, nodeCount));
            part.firstIndex = static_cast<std::uint32_t>(model.indices.size());
            part.isLines = *rc::gen::arbitrary<bool>();
            part.indexCount = static_cast<std::uint32_t>(*rc::gen::inRange(1, 4)) * part.cornersPerPiece();
            part.color[3] = static_cast<float>(*rc::gen::inRange(0, 5)) / 4.0F;
            part.isDoubleSided = *rc::gen::arbitrary<bool>();
            for (std::uint32_t corner = 0; corner < part.indexCount; ++corner)
                model.indices.push_back(
                    *rc::gen::inRange<std::uint32_t>(0, static_cast<std::uint32_t>(model.vertices.size())));
            model.parts.push_back(part);
        }
        return model;
    });
}

} // namespace

class TestModelWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void surfacesComeBack();
    void linesComeBackAmongSurfaces();
    void linesAreWrittenWithoutNormals();
    void treeComesBackWithItsNames();
    void boundsComeBack();
    void whatIsKnownOfANodeComesBack();
    void coarserLevelsAreNamedByTheirNodesAndDoNotComeBack();
    void cornersOfSmallPartsAreNumberedInTwoBytes();
    void cornersOfLargePartsAreNumberedInFourBytes();
    void anyModelComesBack();
    void partsOfOneLookShareAMaterial();
    void translucentPartsAreBlended();
    void fileNamesWhoMadeIt();
    void fileSaysWhereTheCornersOfAPartEnd();
    void chunksAndViewsStartAtMultiplesOfFour();
    void fileThatStoodThereIsReplaced();
    void modelWithoutTrianglesIsNotWritten();
    void missingFolderIsAFailure();
    void nothingIsLeftWhereAFolderStandsInTheWay();
    void fileThatDoesNotFitIsAFailureAndLeavesTheOldOne();

private:
    [[nodiscard]] std::string file() const { return m_folder->filePath("model.glb").toStdString(); }
    [[nodiscard]] gltf::Model readBack() const;
    [[nodiscard]] QJsonObject description() const;
    [[nodiscard]] QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestModelWriter::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

gltf::Model TestModelWriter::readBack() const
{
    auto read = gltf::ReadModel(file());
    auto* model = std::get_if<gltf::Model>(&read);
    return model != nullptr ? std::move(*model) : gltf::Model();
}

/// The JSON in the file.
QJsonObject TestModelWriter::description() const
{
    QFile source(QString::fromStdString(file()));
    if (!source.open(QIODevice::ReadOnly))
        return {};
    const auto bytes = source.readAll();
    const auto size = static_cast<int>(qFromLittleEndian<quint32>(bytes.constData() + 12));
    return QJsonDocument::fromJson(bytes.mid(20, size)).object();
}

void TestModelWriter::surfacesComeBack()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    const auto model = readBack();
    QCOMPARE(Surfaces(model), Surfaces(House()));
    QCOMPARE(model.vertices.size(), House().vertices.size());
}

void TestModelWriter::linesComeBackAmongSurfaces()
{
    auto house = House();
    AddLine(house, 2, {0, 0, 0}, {0, 0, 5});
    AddLine(house, 3, {1, 2, 3}, {4, 5, 6});
    QVERIFY(gltf::WriteModel(house, file(), "test"));
    const auto model = readBack();
    QVERIFY(IsSound(model));
    QCOMPARE(Surfaces(model), Surfaces(house));
    QCOMPARE(Surfaces(model).filter("lines").size(), 2);
    QCOMPARE(model.bounds.high, (gltf::Vector3{4, 6, 6}));
}

void TestModelWriter::linesAreWrittenWithoutNormals()
{
    gltf::Model drawing;
    drawing.nodes = {{"drawing", -1}};
    AddLine(drawing, 0, {0, 0, 0}, {1, 0, 0});
    QVERIFY(gltf::WriteModel(drawing, file(), "test"));
    const auto mesh = description()["meshes"].toArray().at(0).toObject();
    const auto primitive = mesh["primitives"].toArray().at(0).toObject();
    QCOMPARE(primitive["mode"].toInt(), 1);
    QCOMPARE(primitive["attributes"].toObject().keys(), QStringList{"POSITION"});
}

void TestModelWriter::treeComesBackWithItsNames()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    QCOMPARE(PathsOf(readBack()), QStringList({"/房子", "/房子/一层", "/房子/一层/墙", "/房子/二层",
                                               "/房子/二层/墙", "/房子/二层/窗"}));
}

void TestModelWriter::boundsComeBack()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    const auto bounds = readBack().bounds;
    QVERIFY(!bounds.isEmpty);
    QCOMPARE(bounds.low, (gltf::Vector3{0, 0, -1}));
    QCOMPARE(bounds.high, (gltf::Vector3{3, 6, 0}));
}

void TestModelWriter::anyModelComesBack()
{
    const bool holds = rc::check("written and read", [this] {
        const auto model = *AnyModel();
        RC_ASSERT(gltf::WriteModel(model, file(), "test"));
        const auto back = readBack();
        RC_ASSERT(Surfaces(back) == Surfaces(model));
        auto paths = PathsOf(back);
        auto expected = PathsOf(model);
        paths.sort();
        expected.sort();
        RC_ASSERT(paths == expected);
    });
    QVERIFY(holds);
}

void TestModelWriter::partsOfOneLookShareAMaterial()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    QCOMPARE(description().value("materials").toArray().size(), 2);
}

void TestModelWriter::translucentPartsAreBlended()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    const auto materials = description().value("materials").toArray();
    QVERIFY(materials.at(0).toObject().value("alphaMode").toString("OPAQUE") == "OPAQUE");
    QCOMPARE(materials.at(1).toObject().value("alphaMode").toString(), QStringLiteral("BLEND"));
    QVERIFY(materials.at(1).toObject().value("doubleSided").toBool());
}

void TestModelWriter::fileNamesWhoMadeIt()
{
    QVERIFY(gltf::WriteModel(House(), file(), "a test of ours"));
    const auto asset = description().value("asset").toObject();
    QCOMPARE(asset.value("generator").toString(), QStringLiteral("a test of ours"));
    QCOMPARE(asset.value("version").toString(), QStringLiteral("2.0"));
}

void TestModelWriter::fileSaysWhereTheCornersOfAPartEnd()
{
    gltf::Model model;
    model.nodes = {{"wall", -1}};
    AddTriangle(model, 0, {-1, 2, 3}, 4);
    QVERIFY(gltf::WriteModel(model, file(), "test"));
    const auto positions = description().value("accessors").toArray().at(0).toObject();
    QCOMPARE(positions.value("min").toArray(), QJsonArray({-1, 2, 3}));
    QCOMPARE(positions.value("max").toArray(), QJsonArray({3, 6, 3}));
}

void TestModelWriter::chunksAndViewsStartAtMultiplesOfFour()
{
    QVERIFY(gltf::WriteModel(House(), file(), "a name that makes the text longer by an odd number"));
    QVERIFY(QFileInfo(QString::fromStdString(file())).size() % 4 == 0);
    const auto views = description().value("bufferViews").toArray();
    QVERIFY(views.size() >= 3);
    for (const auto& view : views)
        QCOMPARE(view.toObject().value("byteOffset").toInt() % 4, 0);
}

void TestModelWriter::fileThatStoodThereIsReplaced()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    gltf::Model model;
    model.nodes = {{"wall", -1}};
    AddTriangle(model, 0, {0, 0, 0}, 1);
    QVERIFY(gltf::WriteModel(model, file(), "test"));
    QCOMPARE(readBack().nodes.size(), std::size_t(1));
    QCOMPARE(files(), QStringList("model.glb"));
}

void TestModelWriter::modelWithoutTrianglesIsNotWritten()
{
    gltf::Model model;
    model.nodes = {{"nothing", -1}};
    QVERIFY(!gltf::WriteModel(model, file(), "test"));
    QCOMPARE(files(), QStringList());
}

void TestModelWriter::missingFolderIsAFailure()
{
    const auto missing = m_folder->filePath("not/there.glb");
    QVERIFY(!gltf::WriteModel(House(), missing.toStdString(), "test"));
    QVERIFY(!QFile::exists(m_folder->filePath("not")));
}

void TestModelWriter::nothingIsLeftWhereAFolderStandsInTheWay()
{
    QVERIFY(QDir(m_folder->path()).mkpath("model.glb/inside"));
    QVERIFY(!gltf::WriteModel(House(), file(), "test"));
    QCOMPARE(files(), QStringList());
    QVERIFY(QFile::exists(m_folder->filePath("model.glb/inside")));
}

void TestModelWriter::fileThatDoesNotFitIsAFailureAndLeavesTheOldOne()
{
    gltf::Model model;
    model.nodes = {{"wall", -1}};
    AddTriangle(model, 0, {0, 0, 0}, 1);
    QVERIFY(gltf::WriteModel(model, file(), "test"));
    {
        const FileSizeLimit limit(1024);
        QVERIFY(!gltf::WriteModel(House(), file(), "test"));
    }
    QCOMPARE(files(), QStringList("model.glb"));
    QCOMPARE(readBack().nodes.size(), std::size_t(1));
}

void TestModelWriter::whatIsKnownOfANodeComesBack()
{
    auto house = House();
    house.nodes.at(2).type = "IfcWall";
    house.nodes.at(2).id = "3rPX_Juz59peXXY6wDJl18";
    house.nodes.at(2).properties = {{"Pset_WallCommon", {{"防火等级", "F90"}, {"IsExternal", "true"}}},
                                    {"Material", {{"Material", "砖"}}}};
    QVERIFY(gltf::WriteModel(house, file(), "test"));
    const auto read = gltf::ReadModel(file());
    QVERIFY(std::get<gltf::Model>(read).nodes == house.nodes);
}

void TestModelWriter::coarserLevelsAreNamedByTheirNodesAndDoNotComeBack()
{
    auto house = House();
    house.nodes.at(2).type = "IfcWall";
    auto coarser = house.parts.at(0);
    coarser.level = 1;
    coarser.coverage = 0.25;
    house.coarser = {coarser};
    QVERIFY(gltf::WriteModel(house, file(), "test"));
    const auto json = description();
    const auto wall = json.value("nodes").toArray().at(2).toObject();
    QCOMPARE(wall.value("extensions").toObject().value("MSFT_lod").toObject().value("ids").toArray(),
             QJsonArray{6});
    QCOMPARE(wall.value("extras").toObject().value("MSFT_screencoverage").toArray(), QJsonArray({0.25, 0}));
    QCOMPARE(wall.value("extras").toObject().value("type").toString(), QStringLiteral("IfcWall"));
    QCOMPARE(json.value("extensionsUsed").toArray(), QJsonArray{"MSFT_lod"});
    QVERIFY(json.value("nodes").toArray().at(6).toObject().contains("mesh"));
    QCOMPARE(json.value("scenes").toArray().at(0).toObject().value("nodes").toArray(), QJsonArray{0});
    const auto read = gltf::ReadModel(file());
    QCOMPARE(Surfaces(std::get<gltf::Model>(read)), Surfaces(House()));
}

void TestModelWriter::cornersOfSmallPartsAreNumberedInTwoBytes()
{
    QVERIFY(gltf::WriteModel(House(), file(), "test"));
    int narrow = 0;
    for (const auto& accessor : description().value("accessors").toArray())
        narrow += accessor.toObject().value("componentType").toInt() == 5123 ? 1 : 0;
    QCOMPARE(narrow, 3);
}

void TestModelWriter::cornersOfLargePartsAreNumberedInFourBytes()
{
    gltf::Model large;
    large.nodes = {{"large", -1}};
    for (int i = 0; i < 22000; ++i)
        AddTriangle(large, 0, {static_cast<float>(i), 0, 0}, 1);
    auto whole = large.parts.front();
    whole.indexCount = static_cast<std::uint32_t>(large.indices.size());
    large.parts = {whole};
    QVERIFY(gltf::WriteModel(large, file(), "test"));
    int wide = 0;
    for (const auto& accessor : description().value("accessors").toArray())
        wide += accessor.toObject().value("componentType").toInt() == 5125 ? 1 : 0;
    QCOMPARE(wide, 1);
    const auto read = gltf::ReadModel(file());
    QCOMPARE(std::get<gltf::Model>(read).indices, large.indices);
}

QTEST_GUILESS_MAIN(TestModelWriter)
#include "test_modelwriter.moc"
