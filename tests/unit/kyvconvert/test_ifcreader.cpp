// SPDX-License-Identifier: MIT
#include "kyvconvert/ifcreader.h"

#include "building.h"
#include "kyvconvert/nodereader.h"
#include "models.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace
{

/// Lines before the end of the building.
QByteArray With(const QByteArray& lines)
{
    return QByteArray(building).replace("ENDSEC;\nEND-ISO", lines + "ENDSEC;\nEND-ISO");
}

const QByteArray propertiesOfTheBox =
    "#50=IFCPROPERTYSINGLEVALUE('FireRating',$,IFCLABEL('F90'),$);\n"
    "#51=IFCPROPERTYSINGLEVALUE('IsExternal',$,IFCBOOLEAN(.T.),$);\n"
    "#52=IFCPROPERTYSET('0000000000000000000010',#5,'Pset_Box',$,(#50,#51));\n"
    "#53=IFCRELDEFINESBYPROPERTIES('0000000000000000000011',#5,$,$,(#29),#52);\n"
    "#54=IFCMATERIAL('\\X2\\94A2\\X0\\');\n"
    "#55=IFCRELASSOCIATESMATERIAL('0000000000000000000012',#5,$,$,(#29),#54);\n";

/// A profile whose outline is no outline, and an element made of it.
const QByteArray unbuildable =
    "#60=IFCARBITRARYCLOSEDPROFILEDEF(.AREA.,$,#61);\n"
    "#61=IFCPOLYLINE((#23));\n"
    "#62=IFCEXTRUDEDAREASOLID(#60,#9,#7,1000.);\n"
    "#63=IFCSHAPEREPRESENTATION(#10,'Body','SweptSolid',(#62));\n"
    "#64=IFCPRODUCTDEFINITIONSHAPE($,$,(#63));\n"
    "#65=IFCBUILDINGELEMENTPROXY('0000000000000000000020',#5,'Lost',$,$,#22,#64,$,$);\n"
    "#66=IFCRELCONTAINEDINSPATIALSTRUCTURE('0000000000000000000021',#5,$,$,(#65),#21);\n";

} // namespace

class TestIfcReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void storeysAreFloorsFromTheLowestUp();
    void elevationsAreInMetresWhateverTheUnit_data();
    void elevationsAreInMetresWhateverTheUnit();
    void storeysThatAreNotPlacedStandWhereTheySayTheyDo();
    void surfacesAreInMetresWithYUp();
    void surfacesLookOutwards();
    void elementsStandInTheTreeOfTheBuilding();
    void elementsHaveTypesAndIds();
    void namesThatAreWrittenInCodesAreRead();
    void propertiesAndMaterialAreRead();
    void elementThatStandsNowhereStandsAtTheTop();
    void elementsInACircleEndAndAreKept();
    void roomsAreNoMatter();
    void elementThatCannotBeBuiltIsCountedAndNamed();
    void buildingFarAwayIsMovedAndToldFromWhere();
    void newerVersionsAreRead_data();
    void newerVersionsAreRead();
    void progressRunsFromNothingToAllAtMost();
    void whatCannotBeReadIsTold_data();
    void whatCannotBeReadIsTold();
    void missingReaderIsTold();
    void resultThatLiesIsRefused_data();
    void resultThatLiesIsRefused();

private:
    [[nodiscard]] kyvconvert::SourceModel read(const QByteArray& bytes) const;
    [[nodiscard]] QString reasonOf(const QByteArray& bytes) const;
    [[nodiscard]] QString write(const QString& name, const QByteArray& bytes) const;

    QTemporaryDir m_folder;
};

QString TestIfcReader::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the test cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

kyvconvert::SourceModel TestIfcReader::read(const QByteArray& bytes) const
{
    auto result = kyvconvert::ReadIfc(write("a.ifc", bytes).toStdString(), [](int) {});
    if (const auto* failure = std::get_if<kyvconvert::Failure>(&result))
        qWarning("%s", failure->reason.c_str());
    auto* source = std::get_if<kyvconvert::SourceModel>(&result);
    return source != nullptr ? std::move(*source) : kyvconvert::SourceModel();
}

QString TestIfcReader::reasonOf(const QByteArray& bytes) const
{
    const auto result = kyvconvert::ReadIfc(write("a.ifc", bytes).toStdString(), [](int) {});
    const auto* failure = std::get_if<kyvconvert::Failure>(&result);
    return failure != nullptr ? QString::fromStdString(failure->reason) : QString();
}

void TestIfcReader::storeysAreFloorsFromTheLowestUp()
{
    const std::vector<kyvconvert::Floor> expected = {{"Ground", 0.0}, {"Upper", 3.0}};
    QVERIFY(read(building).floors == expected);
}

void TestIfcReader::elevationsAreInMetresWhateverTheUnit_data()
{
    QTest::addColumn<QByteArray>("unit");
    QTest::addColumn<double>("elevation");
    QTest::newRow("millimetres") << QByteArray("IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.)") << 3.0;
    QTest::newRow("centimetres") << QByteArray("IFCSIUNIT(*,.LENGTHUNIT.,.CENTI.,.METRE.)") << 30.0;
    QTest::newRow("metres") << QByteArray("IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)") << 3000.0;
    QTest::newRow("feet") << QByteArray("IFCCONVERSIONBASEDUNIT(#71,.LENGTHUNIT.,'FOOT',#70);\n"
                                        "#70=IFCMEASUREWITHUNIT(IFCLENGTHMEASURE(0.3048),#72);\n"
                                        "#71=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n"
                                        "#72=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)")
                          << 914.4;
}

void TestIfcReader::elevationsAreInMetresWhateverTheUnit()
{
    QFETCH(QByteArray, unit);
    QFETCH(double, elevation);
    const auto source = read(QByteArray(building).replace("IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.)", unit));
    QCOMPARE(source.floors.size(), std::size_t(2));
    QVERIFY2(qAbs(source.floors.at(1).elevation - elevation) < 1e-6,
             qPrintable(QString::number(source.floors.at(1).elevation)));
    QVERIFY(qAbs(source.model.bounds.low[1] - elevation) < 1e-3);
}

void TestIfcReader::storeysThatAreNotPlacedStandWhereTheySayTheyDo()
{
    const auto floors =
        read(QByteArray(building).replace("$,$,#20,$,$,.ELEMENT.,3000.", "$,$,#15,$,$,.ELEMENT.,3200."))
            .floors;
    const std::vector<kyvconvert::Floor> expected = {{"Ground", 0.0}, {"Upper", 3.2}};
    QVERIFY(floors == expected);
}

void TestIfcReader::surfacesAreInMetresWithYUp()
{
    const auto bounds = read(building).model.bounds;
    const gltf::Vector3 low{-2, 3, -1};
    const gltf::Vector3 high{2, 4, 1};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        QVERIFY(qAbs(bounds.low[axis] - low[axis]) < 1e-4F);
        QVERIFY(qAbs(bounds.high[axis] - high[axis]) < 1e-4F);
    }
}

void TestIfcReader::surfacesLookOutwards()
{
    const auto model = read(building).model;
    QVERIFY(!model.vertices.empty());
    const gltf::Vector3 middle{0, 3.5F, 0};
    for (const auto& vertex : model.vertices) {
        float outwards = 0.0F;
        for (std::size_t axis = 0; axis < 3; ++axis)
            outwards += (vertex.position[axis] - middle[axis]) * vertex.normal[axis];
        QVERIFY(outwards > 0.0F);
    }
}

void TestIfcReader::elementsStandInTheTreeOfTheBuilding()
{
    const auto paths = PathsOf(read(building).model);
    QCOMPARE(QStringList(paths).filter("/House").size(), paths.size());
    QVERIFY2(paths.contains("/House/Upper/Box"), qPrintable(paths.join('\n')));
    QVERIFY2(paths.contains("/House/Ground"), qPrintable(paths.join('\n')));
}

void TestIfcReader::elementsHaveTypesAndIds()
{
    const auto source = read(building);
    const auto& box = source.model.nodes.at(source.model.parts.at(0).node);
    QCOMPARE(box.type, std::string("IfcBuildingElementProxy"));
    QCOMPARE(box.id, std::string("0000000000000000000005"));
}

void TestIfcReader::namesThatAreWrittenInCodesAreRead()
{
    const auto paths = PathsOf(read(QByteArray(building).replace("'Box'", "'\\X2\\67F1\\X0\\-1'")).model);
    QVERIFY2(paths.contains(QStringLiteral("/House/Upper/柱-1")), qPrintable(paths.join('\n')));
}

void TestIfcReader::propertiesAndMaterialAreRead()
{
    const auto source = read(With(propertiesOfTheBox));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
    const gltf::Properties expected = {{"Pset_Box", {{"FireRating", "F90"}, {"IsExternal", "true"}}},
                                       {"Material", {{"Material", "钢"}}}};
    QVERIFY(source.model.nodes.at(source.model.parts.at(0).node).properties == expected);
}

void TestIfcReader::elementThatStandsNowhereStandsAtTheTop()
{
    const auto paths =
        PathsOf(read(QByteArray(building).replace("$,$,(#29,#30),#21", "$,$,(#30),#21")).model);
    QVERIFY2(paths.contains("/Box"), qPrintable(paths.join('\n')));
}

void TestIfcReader::elementsInACircleEndAndAreKept()
{
    const auto source = read(With("#80=IFCRELAGGREGATES('0000000000000000000030',#5,$,$,#29,(#21));\n"));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
    QVERIFY(IsSound(source.model));
}

void TestIfcReader::roomsAreNoMatter()
{
    const auto source = read(building);
    QCOMPARE(source.model.parts.size(), std::size_t(1));
    QVERIFY(PathsOf(source.model).filter("Room").isEmpty());
    QCOMPARE(source.dropped.components, std::size_t(0));
}

void TestIfcReader::elementThatCannotBeBuiltIsCountedAndNamed()
{
    const auto source = read(With(unbuildable));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
    QCOMPARE(source.dropped.components, std::size_t(1));
    QCOMPARE(source.dropped.names, std::vector<std::string>{"Lost"});
}

void TestIfcReader::buildingFarAwayIsMovedAndToldFromWhere()
{
    const auto source = read(QByteArray(building).replace(
        "#6=IFCCARTESIANPOINT((0.,0.,0.))", "#6=IFCCARTESIANPOINT((450000000.,3300000000.,0.))"));
    QVERIFY(source.origin[0] >= 450000 && source.origin[2] <= -3300000);
    QCOMPARE(source.origin[1], 0.0);
    for (std::size_t axis = 0; axis < 3; ++axis)
        QVERIFY(qAbs(source.model.bounds.low[axis]) < 20 && qAbs(source.model.bounds.high[axis]) < 20);
    QVERIFY(qAbs(source.model.bounds.high[0] - source.model.bounds.low[0] - 4.0F) < 1e-3F);
}

void TestIfcReader::newerVersionsAreRead_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::newRow("2x3") << QByteArray("IFC2X3");
    QTest::newRow("4") << QByteArray("IFC4");
    QTest::newRow("4x3") << QByteArray("IFC4X3");
}

void TestIfcReader::newerVersionsAreRead()
{
    QFETCH(QByteArray, version);
    const auto source = read(QByteArray(building).replace("IFC2X3", version));
    QCOMPARE(source.model.parts.size(), std::size_t(1));
    QCOMPARE(source.floors.size(), std::size_t(2));
}

void TestIfcReader::progressRunsFromNothingToAllAtMost()
{
    std::vector<int> percents;
    const auto result = kyvconvert::ReadIfc(write("a.ifc", building).toStdString(),
                                            [&](int percent) { percents.push_back(percent); });
    QVERIFY(std::holds_alternative<kyvconvert::SourceModel>(result));
    QVERIFY(percents.size() > 1);
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));
    QVERIFY(percents.front() >= 0 && percents.back() <= 100);
}

void TestIfcReader::whatCannotBeReadIsTold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");
    QTest::newRow("empty") << QByteArray() << "no IFC file";
    QTest::newRow("another kind") << QByteArray("PK\3\4") << "no IFC file";
    QTest::newRow("an older version") << QByteArray(building).replace("IFC2X3", "IFC1.5") << "no IFC file";
    QTest::newRow("cut short") << building.left(building.size() / 2) << "ends before its end";
    QTest::newRow("nothing to see") << QByteArray(building).replace("#22,#28,$,$)", "#22,$,$,$)")
                                    << "no surfaces";
}

void TestIfcReader::whatCannotBeReadIsTold()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    const auto reason = reasonOf(bytes);
    QVERIFY2(reason.contains(words), qPrintable(reason));
}

void TestIfcReader::missingReaderIsTold()
{
    const auto before = qgetenv("TORVO_READERS");
    qputenv("TORVO_READERS", m_folder.filePath("none").toUtf8());
    const auto reason = reasonOf(building);
    qputenv("TORVO_READERS", before);
    QCOMPARE(reason,
             QStringLiteral("the file cannot be read: the reader of IFC files has ended before its time"));
}

void TestIfcReader::resultThatLiesIsRefused_data()
{
    QTest::addColumn<QByteArray>("parts");
    QTest::newRow("more corners than there are")
        << QByteArray(R"({"node":0,"offset":0,"vertexCount":4,"indexCount":3,"color":[1,1,1,1]})");
    QTest::newRow("an offset behind the end")
        << QByteArray(R"({"node":0,"offset":999,"vertexCount":3,"indexCount":3,"color":[1,1,1,1]})");
    QTest::newRow("half a triangle") << QByteArray(
        R"({"node":0,"offset":0,"vertexCount":3,"indexCount":2,"color":[1,1,1,1]})");
    QTest::newRow("corners that are not there")
        << QByteArray(R"({"node":0,"offset":0,"vertexCount":2,"indexCount":3,"color":[1,1,1,1]})");
    QTest::newRow("more than fits into memory")
        << QByteArray(R"({"node":0,"offset":0,"vertexCount":99999999999,"indexCount":3,"color":[1,1,1,1]})");
    QTest::newRow("a node that is not there")
        << QByteArray(R"({"node":7,"offset":0,"vertexCount":3,"indexCount":3,"color":[1,1,1,1]})");
    QTest::newRow("no colour") << QByteArray(R"({"node":0,"offset":0,"vertexCount":3,"indexCount":3})");
    QTest::newRow("no part") << QByteArray("7");
}

void TestIfcReader::resultThatLiesIsRefused()
{
    QFETCH(QByteArray, parts);
    const QByteArray index =
        R"({"nodes":[{"parent":-1,"type":"","name":"a","id":"","properties":{}}],"floors":[],)"
        R"("origin":[0,0,0],"lostComponents":0,"lostNames":[],"lostFaces":0,)"
        R"("lostTriangles":0,"parts":[)";
    // Three corners, and one triangle whose corners are of the value that their bytes have.
    QByteArray geometry(3 * 24 + 12, '\0');
    geometry.replace(0, 3 * 24, QByteArray::fromHex("0000803f").repeated(18));
    geometry[3 * 24 + 4] = 1;
    geometry[3 * 24 + 8] = 2;
    (void)write("geometry.bin", geometry);
    (void)write("index.json",
                index + R"({"node":0,"offset":0,"vertexCount":3,"indexCount":3,"color":[1,1,1,1]}]})");
    const auto honest = kyvconvert::ReadNodeResult(m_folder.path().toStdString());
    QVERIFY(std::holds_alternative<kyvconvert::SourceModel>(honest));
    (void)write("index.json", index + parts + "]}");
    const auto lying = kyvconvert::ReadNodeResult(m_folder.path().toStdString());
    QVERIFY(std::holds_alternative<kyvconvert::Failure>(lying));
    QVERIFY(QString::fromStdString(std::get<kyvconvert::Failure>(lying).reason)
                .startsWith("the file cannot be read: "));
}

QTEST_GUILESS_MAIN(TestIfcReader)
#include "test_ifcreader.moc"
