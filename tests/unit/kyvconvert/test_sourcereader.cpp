// SPDX-License-Identifier: MIT
#include "kyvconvert/sourcereader.h"

#include "gltf/modelwriter.h"
#include "models.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace
{

/// A square and a line, in the oldest and plainest of the formats.
const QByteArray squareAndLine = "o square\n"
                                 "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\n"
                                 "f 1 2 3 4\n"
                                 "o line\n"
                                 "l 1 3\n";

/// A building in millimetres: a lower storey, and an upper one, three metres above, with a box in it and a
/// room, which is no matter.
const QByteArray building = R"(ISO-10303-21;
HEADER;
FILE_DESCRIPTION((''),'2;1');
FILE_NAME('','',(''),(''),'','','');
FILE_SCHEMA(('IFC2X3'));
ENDSEC;
DATA;
#1=IFCPERSON($,'a',$,$,$,$,$,$);
#2=IFCORGANIZATION($,'b',$,$,$);
#3=IFCPERSONANDORGANIZATION(#1,#2,$);
#4=IFCAPPLICATION(#2,'1','c','d');
#5=IFCOWNERHISTORY(#3,#4,$,.ADDED.,$,$,$,0);
#6=IFCCARTESIANPOINT((0.,0.,0.));
#7=IFCDIRECTION((0.,0.,1.));
#8=IFCDIRECTION((1.,0.,0.));
#9=IFCAXIS2PLACEMENT3D(#6,#7,#8);
#10=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-05,#9,$);
#11=IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.);
#12=IFCSIUNIT(*,.PLANEANGLEUNIT.,$,.RADIAN.);
#13=IFCUNITASSIGNMENT((#11,#12));
#14=IFCPROJECT('0000000000000000000001',#5,'Project',$,$,$,$,(#10),#13);
#15=IFCLOCALPLACEMENT($,#9);
#16=IFCBUILDING('0000000000000000000002',#5,'House',$,$,#15,$,$,.ELEMENT.,$,$,$);
#17=IFCBUILDINGSTOREY('0000000000000000000003',#5,'Ground',$,$,#15,$,$,.ELEMENT.,0.);
#18=IFCCARTESIANPOINT((0.,0.,3000.));
#19=IFCAXIS2PLACEMENT3D(#18,#7,#8);
#20=IFCLOCALPLACEMENT(#15,#19);
#21=IFCBUILDINGSTOREY('0000000000000000000004',#5,'Upper',$,$,#20,$,$,.ELEMENT.,3000.);
#22=IFCLOCALPLACEMENT(#20,#9);
#23=IFCCARTESIANPOINT((0.,0.));
#24=IFCAXIS2PLACEMENT2D(#23,$);
#25=IFCRECTANGLEPROFILEDEF(.AREA.,$,#24,4000.,2000.);
#26=IFCEXTRUDEDAREASOLID(#25,#9,#7,1000.);
#27=IFCSHAPEREPRESENTATION(#10,'Body','SweptSolid',(#26));
#28=IFCPRODUCTDEFINITIONSHAPE($,$,(#27));
#29=IFCBUILDINGELEMENTPROXY('0000000000000000000005',#5,'Box',$,$,#22,#28,$,$);
#30=IFCSPACE('0000000000000000000006',#5,'Room',$,$,#22,#28,$,.ELEMENT.,.INTERNAL.,$);
#31=IFCRELAGGREGATES('0000000000000000000007',#5,$,$,#14,(#16));
#32=IFCRELAGGREGATES('0000000000000000000008',#5,$,$,#16,(#21,#17));
#33=IFCRELCONTAINEDINSPATIALSTRUCTURE('0000000000000000000009',#5,$,$,(#29,#30),#21);
ENDSEC;
END-ISO-10303-21;
)";

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
    void storeysOfABuildingAreFloorsFromTheLowestUp();
    void buildingIsInMetresWithYUp();
    void elementsOfABuildingHaveTheirOwnNames();
    void roomsAreNoMatter();
    void progressRunsFromNothingToAllAtMost();
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
    const auto source = read(write("square.obj", squareAndLine));
    QCOMPARE(source.model.indices.size(), std::size_t(6));
    QCOMPARE(source.model.vertices.size(), std::size_t(4));
    QCOMPARE(source.model.vertices.at(0).normal, (gltf::Vector3{0, 0, 1}));
}

void TestSourceReader::linesAreCountedAsDropped()
{
    const auto source = read(write("square.obj", squareAndLine));
    QCOMPARE(source.droppedPrimitives, std::size_t(1));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
}

void TestSourceReader::picturesOnSurfacesAreCountedAsDropped()
{
    (void)write("look.mtl", "newmtl brick\nKd 0.5 0.25 0.125\nmap_Kd brick.png\n");
    const auto source =
        read(write("brick.obj", "mtllib look.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl brick\nf 1 2 3\n"));
    QCOMPARE(source.droppedTextures, std::size_t(1));
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

void TestSourceReader::storeysOfABuildingAreFloorsFromTheLowestUp()
{
    const auto floors = read(write("building.ifc", building)).floors;
    QCOMPARE(floors.size(), std::size_t(2));
    QCOMPARE(floors.at(0).name, std::string("Ground"));
    QCOMPARE(floors.at(0).elevation, 0.0);
    QCOMPARE(floors.at(1).name, std::string("Upper"));
    QVERIFY(qAbs(floors.at(1).elevation - 3.0) < 1e-4);
}

void TestSourceReader::buildingIsInMetresWithYUp()
{
    const auto bounds = read(write("building.ifc", building)).model.bounds;
    const gltf::Vector3 low{-2, 3, -1};
    const gltf::Vector3 high{2, 4, 1};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        QVERIFY(qAbs(bounds.low[axis] - low[axis]) < 1e-4F);
        QVERIFY(qAbs(bounds.high[axis] - high[axis]) < 1e-4F);
    }
}

void TestSourceReader::elementsOfABuildingHaveTheirOwnNames()
{
    const auto paths = PathsOf(read(write("building.ifc", building)).model);
    QVERIFY2(paths.contains("/House/Upper/Box"), qPrintable(paths.join('\n')));
    QVERIFY2(paths.contains("/House/Ground"), qPrintable(paths.join('\n')));
}

void TestSourceReader::roomsAreNoMatter()
{
    const auto source = read(write("building.ifc", building));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
    QVERIFY(PathsOf(source.model).filter("Room").isEmpty());
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
