// SPDX-License-Identifier: MIT
#include "kyvconvert/dwgreader.h"

#include "drawings.h"
#include "kyvconvert/sourcereader.h"
#include "models.h"

#include <cmath>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using kyvconvert::SourceModel;

/// Drawings that writedrawings.mjs has written, read again.
class TestDwgReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void everyVersionIsRead_data();
    void everyVersionIsRead();
    void entityIsDrawn_data();
    void entityIsDrawn();
    void filledSurfaceLeavesItsHolesFree_data();
    void filledSurfaceLeavesItsHolesFree();
    void unitBecomesMetres_data();
    void unitBecomesMetres();
    void drawingLiesOnTheGround();
    void linesAreNodesOfTheirLayers();
    void colorIsThatOfTheEntityItsLayerOrItsBlock();
    void hiddenLayersAreLeftOutAndCounted();
    void blockOnALayerThatIsOffShowsItsOtherLayers();
    void blocksAreNestedScaledTurnedAndMirrored();
    void arrayOfBlocksIsRepeated();
    void attributesAreProperties();
    void textIsAComponentThatTellsWhatItSays();
    void paragraphTellsAllItsLines();
    void codesInTextsBecomeLetters();
    void dimensionTellsWhatItMeasures();
    void meshIsAComponent();
    void surfacesHaveNormals();
    void bodiesAreCountedAndNamed();
    void whatIsNotDrawnIsCountedByItsKind();
    void entityWithoutNumbersIsLeftOutAndCounted();
    void blockThatHoldsItselfEnds();
    void drawingThatGrowsBeyondMeasureIsRefused_data();
    void drawingThatGrowsBeyondMeasureIsRefused();
    void drawingFarAwayIsMovedAndToldFromWhere();
    void drawingHasNoFloors();
    void modelIsOfTheTypeOfDrawings();
    void progressRunsFromNothingToAllAtMost();
    void whatCannotBeReadIsTold_data();
    void whatCannotBeReadIsTold();
    void foundDrawingsAreRead_data();
    void foundDrawingsAreRead();

private:
    [[nodiscard]] std::string path(const QString& name) const
    {
        return m_folder.filePath(name + ".dwg").toStdString();
    }
    [[nodiscard]] SourceModel read(const QString& name) const;
    [[nodiscard]] QString reasonOf(const std::string& file) const;

    QTemporaryDir m_folder;
};

void TestDwgReader::initTestCase()
{
    QProcess writer;
    writer.start("node", {TORVO_WRITE_DRAWINGS, TORVO_ROOT, m_folder.path()});
    QVERIFY(writer.waitForFinished(240000));
    QVERIFY2(writer.exitCode() == 0, writer.readAllStandardError().constData());
}

SourceModel TestDwgReader::read(const QString& name) const
{
    auto result = kyvconvert::ReadDwg(path(name), [](int) {});
    if (const auto* failure = std::get_if<kyvconvert::Failure>(&result))
        qWarning("%s", failure->reason.c_str());
    auto* source = std::get_if<SourceModel>(&result);
    return source != nullptr ? std::move(*source) : SourceModel();
}

QString TestDwgReader::reasonOf(const std::string& file) const
{
    const auto result = kyvconvert::ReadDwg(file, [](int) {});
    const auto* failure = std::get_if<kyvconvert::Failure>(&result);
    return failure != nullptr ? QString::fromStdString(failure->reason) : QString();
}

void TestDwgReader::everyVersionIsRead_data()
{
    QTest::addColumn<QString>("version");
    for (const char* version : {"AC1014", "AC1015", "AC1018", "AC1021", "AC1024", "AC1027", "AC1032"})
        QTest::newRow(version) << version;
}

void TestDwgReader::everyVersionIsRead()
{
    QFETCH(QString, version);
    const auto source = read("plan-" + version);
    QVERIFY(IsSound(source.model));
    auto paths = PathsOf(source.model);
    paths.sort();
    QStringList expected = {"/墙体", "/墙体/门",     "/墙体/门",  "/墙体/门",
                            "/说明", "/说明/主卧室", "/说明/厨房"};
    expected.sort();
    QCOMPARE(paths, expected);
    // Four lines, two circles of 48, the frames of two texts, three doors of one line.
    QCOMPARE(PiecesOf(source.model, true), std::size_t(4 + 2 * 48 + 2 * 4 + 3));
    QCOMPARE(PiecesOf(source.model, false), std::size_t(0));
    QVERIFY(source.dropped.kinds.empty());
    QCOMPARE(source.dropped.components, std::size_t(0));
}

void TestDwgReader::entityIsDrawn_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("triangles");
    QTest::addColumn<QVector<float>>("bounds");
    const auto row = [](const char* kind, int lines, int triangles, const QVector<float>& bounds) {
        QTest::newRow(kind) << QString(kind) << lines << triangles << bounds;
    };
    row("line", 1, 0, {0, 0, -3, 4, 12, 0});
    row("raisedLine", 0, 2, {0, 0, 0, 4, 3, 0});
    row("circle", 48, 0, {-1, 0, -4, 3, 0, 0});
    row("tiltedCircle", 48, 0, {5, -2, -2, 5, 2, 2});
    row("arc", 12, 0, {0, 0, -2, 2, 0, 0});
    row("arcOverZero", 24, 0, {0, 0, -2, 2, 0, 2});
    row("ellipse", 48, 0, {-2, 0, -4, 2, 0, 4});
    row("spline", 8, 0, {0, 0, -2, 4, 0, 0});
    row("polyline", 2, 0, {0, 2, -3, 4, 2, 0});
    row("closedPolyline", 3, 0, {0, 0, -3, 4, 0, 0});
    row("bulge", 24, 0, {0, 0, 0, 4, 0, 2});
    row("oldPolyline", 2, 0, {0, 0, -3, 4, 0, 0});
    row("spatialPolyline", 2, 0, {0, 0, -5, 4, 6, 0});
    row("face", 0, 2, {0, 0, 0, 4, 3, 0});
    row("triangle", 0, 1, {0, 0, 0, 4, 3, 0});
    row("solid", 0, 2, {0, 0, -3, 4, 0, 0});
    row("raisedSolid", 0, 12, {0, 0, -3, 4, 2, 0});
    row("hatch", 0, 2, {0, 0, -4, 4, 0, 0});
    row("pattern", 4, 0, {0, 0, -4, 4, 0, 0});
    row("polyface", 0, 2, {0, 0, -3, 4, 0, 0});
    row("polygonMesh", 0, 4, {0, 0, -3, 4, 0, 0});
    row("mesh", 0, 3, {0, 0, -4, 4, 0, 0});
    row("leader", 2, 0, {0, 0, -2, 4, 0, 0});
    row("text", 4, 0, {2, 0, -3, 7.6F, 0, -1});
    row("turnedText", 4, 0, {-2, 0, -5.6F, 0, 0, 0});
    row("ideographs", 4, 0, {0, 0, -2, 4.4F, 0, 0});
    row("paragraph", 4, 0, {0, 0, 0, 2.1F, 0, 2.6F});
    row("centredParagraph", 4, 0, {-1.05F, 0, -0.5F, 1.05F, 0, 0.5F});
}

void TestDwgReader::entityIsDrawn()
{
    QFETCH(QString, kind);
    QFETCH(int, lines);
    QFETCH(int, triangles);
    QFETCH(QVector<float>, bounds);
    const auto source = read("kind-" + kind);
    QVERIFY(IsSound(source.model));
    QCOMPARE(PiecesOf(source.model, true), static_cast<std::size_t>(lines));
    QCOMPARE(PiecesOf(source.model, false), static_cast<std::size_t>(triangles));
    const auto& found = source.model.bounds;
    QVERIFY2(IsAt(found.low, {bounds[0], bounds[1], bounds[2]}) &&
                 IsAt(found.high, {bounds[3], bounds[4], bounds[5]}),
             qPrintable(QStringLiteral("%1 %2 %3, %4 %5 %6")
                            .arg(found.low[0])
                            .arg(found.low[1])
                            .arg(found.low[2])
                            .arg(found.high[0])
                            .arg(found.high[1])
                            .arg(found.high[2])));
    QVERIFY(source.dropped.kinds.empty());
}

void TestDwgReader::filledSurfaceLeavesItsHolesFree_data()
{
    QTest::addColumn<QString>("drawing");
    QTest::addColumn<double>("area");
    QTest::newRow("none") << "kind-hatch" << 16.0;
    QTest::newRow("a hole") << "kind-hatchWithHole" << 12.0;
    QTest::newRow("an island in a hole") << "kind-hatchWithIsland" << 100.0 - 64.0 + 4.0;
}

void TestDwgReader::filledSurfaceLeavesItsHolesFree()
{
    QFETCH(QString, drawing);
    QFETCH(double, area);
    QCOMPARE(AreaOf(read(drawing).model), area);
}

void TestDwgReader::unitBecomesMetres_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<float>("length");
    QTest::newRow("none told: millimetres") << 0 << 1.0F;
    QTest::newRow("inches") << 1 << 25.4F;
    QTest::newRow("feet") << 2 << 304.8F;
    QTest::newRow("millimetres") << 4 << 1.0F;
    QTest::newRow("centimetres") << 5 << 10.0F;
    QTest::newRow("metres") << 6 << 1000.0F;
    QTest::newRow("decimetres") << 14 << 100.0F;
}

void TestDwgReader::unitBecomesMetres()
{
    QFETCH(int, unit);
    QFETCH(float, length);
    QCOMPARE(read(QStringLiteral("units-%1").arg(unit)).model.bounds.high[0], length);
}

void TestDwgReader::drawingLiesOnTheGround()
{
    const auto model = read("kind-line").model;
    QCOMPARE(model.vertices.size(), std::size_t(2));
    QCOMPARE(model.vertices[0].position, (gltf::Vector3{0, 0, 0}));
    QCOMPARE(model.vertices[1].position, (gltf::Vector3{4, 12, -3}));
}

void TestDwgReader::linesAreNodesOfTheirLayers()
{
    const auto model = read("plan-AC1032").model;
    const auto* layer = NodeOfType(model, "Layer");
    QVERIFY(layer != nullptr);
    QCOMPARE(layer->name, std::string("墙体"));
    QCOMPARE(layer->parent, -1);
    QVERIFY(!layer->id.empty());
    const auto lines = std::count_if(model.parts.begin(), model.parts.end(),
                                     [](const auto& part) { return part.node == 0; });
    QCOMPARE(lines, 1);
}

void TestDwgReader::colorIsThatOfTheEntityItsLayerOrItsBlock()
{
    const auto model = read("colors").model;
    std::vector<std::array<float, 4>> colors;
    for (const auto& part : model.parts)
        colors.push_back(part.color);
    const std::vector<std::array<float, 4>> expected = {
        {0, 0, 1, 1}, {1, 0, 0, 1}, {0, 1, 0, 1}, {1, 1, 0, 1}};
    QVERIFY(colors == expected);
}

void TestDwgReader::hiddenLayersAreLeftOutAndCounted()
{
    const auto source = read("hidden");
    // A line on a layer that is off and one that is invisible, a text and a block on a layer that is frozen,
    // and of the block on the layer that is off the line that has no layer of its own.
    QCOMPARE(source.dropped.kinds, (std::map<std::string, std::size_t>{{"hidden", 5}}));
    QCOMPARE(source.model.bounds.high[0], 3.0F);
    QVERIFY(NodeOfType(source.model, "Text") == nullptr);
}

void TestDwgReader::blockOnALayerThatIsOffShowsItsOtherLayers()
{
    const auto model = read("hidden").model;
    QCOMPARE(PiecesOf(model, true), std::size_t(2));
    QVERIFY(PathsOf(model).contains("/off/mixed"));
}

void TestDwgReader::blocksAreNestedScaledTurnedAndMirrored()
{
    const auto model = read("nested").model;
    QCOMPARE(PiecesOf(model, true), std::size_t(1));
    QVERIFY(IsAt(model.vertices[model.indices[0]].position, {110, 0, -2}));
    QVERIFY(IsAt(model.vertices[model.indices[1]].position, {110, 0, 0}));
}

void TestDwgReader::arrayOfBlocksIsRepeated()
{
    const auto model = read("array").model;
    QCOMPARE(PiecesOf(model, true), std::size_t(6));
    QVERIFY(IsAt(model.bounds.low, {-10, 0, -41}));
    QVERIFY(IsAt(model.bounds.high, {0, 0, 0}));
}

void TestDwgReader::attributesAreProperties()
{
    const auto model = read("attributes").model;
    const auto* door = NodeOfType(model, "Insert");
    QCOMPARE(Told(door, "Drawing", "Block"), std::string("门"));
    QCOMPARE(Told(door, "Attributes", "编号"), std::string("M-101"));
    QCOMPARE(Told(door, "Attributes", "HIDDEN"), std::string("secret"));
    // The line of the door and the frame of the attribute that is shown.
    QCOMPARE(PiecesOf(model, true), std::size_t(5));
}

void TestDwgReader::textIsAComponentThatTellsWhatItSays()
{
    const auto model = read("kind-ideographs").model;
    const auto* text = NodeOfType(model, "Text");
    QVERIFY(text != nullptr);
    QCOMPARE(text->name, std::string("墙体"));
    QCOMPARE(Told(text, "Drawing", "Text"), std::string("墙体"));
    QCOMPARE(Told(text, "Drawing", "Layer"), std::string("0"));
}

void TestDwgReader::paragraphTellsAllItsLines()
{
    const auto model = read("kind-paragraph").model;
    const auto* text = NodeOfType(model, "Text");
    QVERIFY(text != nullptr);
    QCOMPARE(text->name, std::string("one"));
    QCOMPARE(Told(text, "Drawing", "Text"), std::string("one\ntwo"));
}

void TestDwgReader::codesInTextsBecomeLetters()
{
    const auto model = read("codes").model;
    QCOMPARE(Told(NodeOfType(model, "Text"), "Drawing", "Text"), std::string("墙 Ø20 ±0.5 45°"));
}

void TestDwgReader::dimensionTellsWhatItMeasures()
{
    const auto source = read("kind-dimension");
    QCOMPARE(Told(NodeOfType(source.model, "Dimension"), "Drawing", "Text"), std::string("4.00"));
    QVERIFY(PiecesOf(source.model, true) >= 5);
    QVERIFY(source.dropped.kinds.empty());
}

void TestDwgReader::meshIsAComponent()
{
    for (const char* kind : {"kind-mesh", "kind-polyface", "kind-polygonMesh"}) {
        const auto model = read(kind).model;
        const auto* mesh = NodeOfType(model, "Mesh");
        QVERIFY2(mesh != nullptr, kind);
        QCOMPARE(mesh->parent, 0);
    }
}

void TestDwgReader::surfacesHaveNormals()
{
    const auto model = read("kind-face").model;
    for (const auto& vertex : model.vertices)
        QVERIFY(IsAt(vertex.normal, {0, 0, 1}));
    QVERIFY(model.parts.at(0).isDoubleSided);
}

void TestDwgReader::bodiesAreCountedAndNamed()
{
    const auto source = read("lost");
    QCOMPARE(source.dropped.components, std::size_t(2));
    QCOMPARE(source.dropped.names.size(), std::size_t(2));
    QVERIFY(QString::fromStdString(source.dropped.names[0]).startsWith("3DSOLID "));
    QVERIFY(QString::fromStdString(source.dropped.names[1]).startsWith("REGION "));
}

void TestDwgReader::whatIsNotDrawnIsCountedByItsKind()
{
    const auto source = read("lost");
    QCOMPARE(source.dropped.kinds,
             (std::map<std::string, std::size_t>{{"POINT", 1}, {"RAY", 1}, {"onPaper", 1}}));
    QCOMPARE(source.model.bounds.high[0], 1.0F);
}

void TestDwgReader::entityWithoutNumbersIsLeftOutAndCounted()
{
    const auto source = read("noNumbers");
    QCOMPARE(source.dropped.kinds, (std::map<std::string, std::size_t>{{"LINE", 1}}));
    QCOMPARE(PiecesOf(source.model, true), std::size_t(1));
}

void TestDwgReader::blockThatHoldsItselfEnds()
{
    const auto source = read("circle");
    QCOMPARE(PiecesOf(source.model, true), std::size_t(1));
    QCOMPARE(source.dropped.kinds, (std::map<std::string, std::size_t>{{"nestedInThemselves", 1}}));
}

void TestDwgReader::drawingThatGrowsBeyondMeasureIsRefused_data()
{
    QTest::addColumn<QString>("drawing");
    QTest::newRow("a block a billion times") << "billion";
    QTest::newRow("ten blocks in each of ten, twelve deep") << "bomb";
}

void TestDwgReader::drawingThatGrowsBeyondMeasureIsRefused()
{
    QFETCH(QString, drawing);
    QCOMPARE(reasonOf(path(drawing)),
             QStringLiteral("the file cannot be read: its blocks are repeated more often than can be shown"));
}

void TestDwgReader::drawingFarAwayIsMovedAndToldFromWhere()
{
    const auto source = read("far");
    QVERIFY(std::abs(source.origin[0] - 450000) <= 20 && std::abs(source.origin[2] + 3300000) <= 20);
    QCOMPARE(source.origin[1], 0.0);
    QCOMPARE(source.model.bounds.high[0] - source.model.bounds.low[0], 10.0F);
    QCOMPARE(source.model.bounds.high[2] - source.model.bounds.low[2], 20.0F);
}

void TestDwgReader::drawingHasNoFloors()
{
    QVERIFY(read("plan-AC1032").floors.empty());
}

void TestDwgReader::modelIsOfTheTypeOfDrawings()
{
    const auto result = kyvconvert::ReadSource(path("plan-AC1032"), [](int) {});
    const auto* source = std::get_if<SourceModel>(&result);
    QVERIFY(source != nullptr);
    QCOMPARE(source->type, std::string("DWG"));
    QCOMPARE(source->attributes, (std::map<std::string, std::string>{{"editor_import_source_type", "DWG"}}));
}

void TestDwgReader::progressRunsFromNothingToAllAtMost()
{
    std::vector<int> percents;
    const auto result =
        kyvconvert::ReadDwg(path("plan-AC1032"), [&](int percent) { percents.push_back(percent); });
    QVERIFY(std::holds_alternative<SourceModel>(result));
    QVERIFY(percents.size() > 1);
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));
    QVERIFY(percents.front() >= 0 && percents.back() <= 100);
}

void TestDwgReader::whatCannotBeReadIsTold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");
    QFile file(m_folder.filePath("plan-AC1032.dwg"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto whole = file.readAll();
    QFile empty(m_folder.filePath("empty.dwg"));
    QVERIFY(empty.open(QIODevice::ReadOnly));
    QTest::newRow("nothing") << QByteArray() << "it is no DWG file";
    QTest::newRow("another kind") << QByteArray("PK\3\4 and more") << "it is no DWG file";
    QTest::newRow("an older version")
        << QByteArray(whole).replace(0, 6, "AC1009") << "it is of the version AC1009, and those from AC1014";
    QTest::newRow("a newer version") << QByteArray(whole).replace(0, 6, "AC1099") << "version AC1099";
    QTest::newRow("the front alone") << whole.left(100) << "it is damaged";
    QTest::newRow("cut in the middle") << whole.left(whole.size() / 2) << "it is damaged";
    QTest::newRow("nothing to see") << empty.readAll() << "no surfaces";
}

void TestDwgReader::whatCannotBeReadIsTold()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    QFile file(m_folder.filePath("a.dwg"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    const auto reason = reasonOf(file.fileName().toStdString());
    QVERIFY2(reason.contains(words), qPrintable(reason));
}

/// Drawings of whoever runs the tests.
void TestDwgReader::foundDrawingsAreRead_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder(qEnvironmentVariable("TORVO_TEST_DATA"));
    if (!qEnvironmentVariableIsEmpty("TORVO_TEST_DATA")) {
        for (const auto& name : folder.entryList({"*.dwg"}, QDir::Files))
            QTest::newRow(qPrintable(name)) << folder.filePath(name);
    }
    if (folder.entryList({"*.dwg"}, QDir::Files).isEmpty() || qEnvironmentVariableIsEmpty("TORVO_TEST_DATA"))
        QTest::newRow("none") << QString();
}

void TestDwgReader::foundDrawingsAreRead()
{
    QFETCH(QString, file);
    if (file.isEmpty())
        QSKIP("TORVO_TEST_DATA names no folder with drawings");
    const auto result = kyvconvert::ReadDwg(file.toStdString(), [](int) {});
    const auto* source = std::get_if<SourceModel>(&result);
    QVERIFY2(source != nullptr, qPrintable(reasonOf(file.toStdString())));
    QVERIFY(IsSound(source->model));
}

QTEST_GUILESS_MAIN(TestDwgReader)
#include "test_dwgreader.moc"
