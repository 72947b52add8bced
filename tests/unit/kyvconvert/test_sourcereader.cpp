// SPDX-License-Identifier: MIT
#include "kyvconvert/sourcereader.h"

#include "building.h"
#include "gltf/modelwriter.h"
#include "kyvconvert/optimise.h"
#include "models.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>

namespace
{

/// A square and a line, in the oldest and plainest of the formats.
const QByteArray squareAndLine = "o square\n"
                                 "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\n"
                                 "f 1 2 3 4\n"
                                 "o line\n"
                                 "l 1 3\n";

} // namespace

class TestSourceReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void modelFileIsReadWithItsSurfaces();
    void squareIsTwoTriangles();
    void linesAreCountedAsDropped();
    void picturesOnSurfacesAreCountedAsDropped();
    void mirroredSurfaceKeepsItsFrontOutside();
    void nodeWithoutASurfaceIsLeftOut();
    void progressRunsFromNothingToAllAtMost();
    void modelTellsWhatItWasImportedAs();
    void missingFileIsNamed();
    void fileThatCannotBeReadIsTold_data();
    void fileThatCannotBeReadIsTold();
    void fileWithoutASurfaceIsTold();

    void onlyWhatStandsBelowANodeIsKept();
    void keptSurfacesLookAsBefore();
    void keepingAnUnknownNodeChangesNothing();

private:
    [[nodiscard]] QString write(const QString& name, const QByteArray& bytes) const;
    [[nodiscard]] kyvconvert::SourceModel read(const QString& file) const;
    [[nodiscard]] static QString reasonOf(const QString& file);

    QTemporaryDir m_folder;
};

QString TestSourceReader::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the test cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

kyvconvert::SourceModel TestSourceReader::read(const QString& file) const
{
    auto result = kyvconvert::ReadSource(file.toStdString(), [](int) {});
    if (const auto* failure = std::get_if<kyvconvert::Failure>(&result))
        qWarning("%s", failure->reason.c_str());
    auto* source = std::get_if<kyvconvert::SourceModel>(&result);
    return source != nullptr ? std::move(*source) : kyvconvert::SourceModel();
}

QString TestSourceReader::reasonOf(const QString& file)
{
    const auto result = kyvconvert::ReadSource(file.toStdString(), [](int) {});
    const auto* failure = std::get_if<kyvconvert::Failure>(&result);
    return failure != nullptr ? QString::fromStdString(failure->reason) : QString();
}

void TestSourceReader::modelFileIsReadWithItsSurfaces()
{
    const auto file = m_folder.filePath("house.glb");
    QVERIFY(gltf::WriteModel(House(), file.toStdString(), "test"));
    const auto source = read(file);
    QCOMPARE(Surfaces(source.model), Surfaces(House()));
    QCOMPARE(PathsOf(source.model), PathsOf(House()));
    QVERIFY(IsSound(source.model));
    QCOMPARE(source.model.bounds.high, House().bounds.high);
    QCOMPARE(source.floors.size(), std::size_t(0));
}

void TestSourceReader::squareIsTwoTriangles()
{
    auto source = read(write("square.obj", squareAndLine));
    QCOMPARE(source.model.indices.size(), std::size_t(6));
    // They share two corners as soon as the model is put in order.
    kyvconvert::Optimise(source, kyvconvert::Mode::staticModel);
    QCOMPARE(source.model.vertices.size(), std::size_t(4));
    QCOMPARE(source.model.vertices.at(0).normal, (gltf::Vector3{0, 0, 1}));
}

void TestSourceReader::linesAreCountedAsDropped()
{
    const auto source = read(write("square.obj", squareAndLine));
    QCOMPARE(source.dropped.primitives, std::size_t(1));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
}

void TestSourceReader::picturesOnSurfacesAreCountedAsDropped()
{
    (void)write("look.mtl", "newmtl brick\nKd 0.5 0.25 0.125\nmap_Kd brick.png\n");
    const auto source =
        read(write("brick.obj", "mtllib look.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl brick\nf 1 2 3\n"));
    QCOMPARE(source.dropped.textures, std::size_t(1));
    QCOMPARE(source.model.parts.at(0).color, (std::array<float, 4>{0.5F, 0.25F, 0.125F, 1.0F}));
}

void TestSourceReader::mirroredSurfaceKeepsItsFrontOutside()
{
    const QByteArray corners = QByteArray::fromHex("000000000000000000000000"   // 0 0 0
                                                   "0000803f0000000000000000"   // 1 0 0
                                                   "000000000000803f00000000"); // 0 1 0
    const auto source =
        read(write("mirror.gltf", R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
            "nodes": [{"mesh": 0, "scale": [-1, 1, 1]}],
            "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
            "buffers": [{"byteLength": 36, "uri": "data:application/octet-stream;base64,)" +
                                      corners.toBase64() + R"("}],
            "bufferViews": [{"buffer": 0, "byteLength": 36}],
            "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                           "min": [0, 0, 0], "max": [1, 1, 0]}]})"));
    const auto& model = source.model;
    QCOMPARE(model.indices.size(), std::size_t(3));
    const auto& a = model.vertices.at(model.indices[0]).position;
    const auto& b = model.vertices.at(model.indices[1]).position;
    const auto& c = model.vertices.at(model.indices[2]).position;
    const float turn = (b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1]);
    QVERIFY2(turn > 0, "the corners run against the clock when seen from the front");
    QCOMPARE(model.bounds.low[0], -1.0F);
}

void TestSourceReader::nodeWithoutASurfaceIsLeftOut()
{
    auto house = House();
    house.nodes.push_back({"空", 0});
    const auto file = m_folder.filePath("house.glb");
    QVERIFY(gltf::WriteModel(house, file.toStdString(), "test"));
    QCOMPARE(PathsOf(read(file).model), PathsOf(House()));
}

void TestSourceReader::progressRunsFromNothingToAllAtMost()
{
    const auto file = write("building.ifc", building);
    std::vector<int> percents;
    const auto result = kyvconvert::ReadSource(file.toStdString(), [&](int p) { percents.push_back(p); });
    QVERIFY(std::holds_alternative<kyvconvert::SourceModel>(result));
    QVERIFY(!percents.empty());
    for (int percent : percents)
        QVERIFY(percent >= 0 && percent <= 100);
}

void TestSourceReader::modelTellsWhatItWasImportedAs()
{
    const auto house = m_folder.filePath("house.glb").toStdString();
    QVERIFY(gltf::WriteModel(House(), house, "test"));
    Assimp::Importer importer;
    Assimp::Exporter exporter;
    const auto* scene = importer.ReadFile(house, aiProcess_Triangulate);
    const auto file = m_folder.filePath("house.FBX");
    QVERIFY(scene != nullptr && exporter.Export(scene, "fbxa", file.toStdString()) == AI_SUCCESS);
    const auto imported = read(file);
    QCOMPARE(imported.type, std::string("MODEL"));
    QCOMPARE(imported.attributes, (std::map<std::string, std::string>{{"editor_import_source_type", "FBX"}}));
    const auto plain = read(write("square.obj", squareAndLine));
    QCOMPARE(plain.type, std::string("MODEL"));
    QVERIFY(plain.attributes.empty());
}

void TestSourceReader::missingFileIsNamed()
{
    const auto file = m_folder.filePath("gone.obj");
    QCOMPARE(reasonOf(file), "there is no file " + file);
}

void TestSourceReader::fileThatCannotBeReadIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("an empty model file") << "a.glb" << QByteArray();
    QTest::newRow("no model file") << "b.glb" << QByteArray("glTF and then nothing that is any");
    QTest::newRow("no JSON") << "c.gltf" << QByteArray("{\"asset\": ");
    QTest::newRow("half a building") << "d.ifc" << building.left(400);
    QTest::newRow("an unknown kind of file") << "e.docx" << QByteArray("PK");
    QTest::newRow("no building") << "f.ifc" << QByteArray("ISO-10303-21;\nEND-ISO-10303-21;\n");
}

void TestSourceReader::fileThatCannotBeReadIsTold()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const auto reason = reasonOf(write(name, bytes));
    QVERIFY2(reason.startsWith("the file cannot be read: ") && reason.size() > 30, qPrintable(reason));
}

void TestSourceReader::fileWithoutASurfaceIsTold()
{
    QCOMPARE(reasonOf(write("lines.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n")),
             QStringLiteral("the file has no surfaces"));
}

void TestSourceReader::onlyWhatStandsBelowANodeIsKept()
{
    auto model = House();
    QVERIFY(kyvconvert::KeepOnly(model, "二层"));
    QCOMPARE(PathsOf(model), QStringList({"/房子", "/房子/二层", "/房子/二层/墙", "/房子/二层/窗"}));
    QCOMPARE(model.vertices.size(), std::size_t(6));
    QCOMPARE(model.bounds.low, (gltf::Vector3{0, 3, -1}));
    QVERIFY(IsSound(model));
}

void TestSourceReader::keptSurfacesLookAsBefore()
{
    auto model = House();
    QVERIFY(kyvconvert::KeepOnly(model, "墙"));
    QCOMPARE(Surfaces(model), Surfaces(House()).filter("/墙"));
    QCOMPARE(model.parts.size(), std::size_t(2));
}

void TestSourceReader::keepingAnUnknownNodeChangesNothing()
{
    auto model = House();
    QVERIFY(!kyvconvert::KeepOnly(model, "三层"));
    QCOMPARE(Surfaces(model), Surfaces(House()));
}

QTEST_GUILESS_MAIN(TestSourceReader)
#include "test_sourcereader.moc"
