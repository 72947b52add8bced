// SPDX-License-Identifier: MIT
#include "gltf/modelreader.h"

#include "binaryfile.h"
#include "models.h"

#include <QTemporaryDir>
#include <QTest>

namespace
{

/// One triangle in the plane Z = 0, its right angle at the origin, the legs 1 and 2 long.
const QByteArray corners = BytesOf<float>({0, 0, 0, 1, 0, 0, 0, 2, 0});

/// A file with one mesh of these primitives, drawn at these nodes; each is JSON. The first accessor holds
/// three corners of the data, the others are as given.
QByteArray FileOf(const QByteArray& nodes, const QByteArray& primitives, const QByteArray& moreAccessors = {},
                  const QByteArray& moreData = {}, const QByteArray& moreTables = {})
{
    const auto data = corners + moreData;
    return BinaryFile(R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": )" +
                          nodes + R"(, "meshes": [{"primitives": )" + primitives +
                          R"(}], "buffers": [{"byteLength": )" + QByteArray::number(data.size()) +
                          R"(}], "bufferViews": [{"buffer": 0, "byteLength": 36},
                             {"buffer": 0, "byteOffset": 36, "byteLength": )" +
                          QByteArray::number(data.size() - 36) +
                          R"(}], "accessors": [
                             {"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3"})" +
                          moreAccessors + "]" + moreTables + "}",
                      data);
}

const QByteArray oneNode = R"([{"mesh": 0, "name": "wall"}])";
const QByteArray onePrimitive = R"([{"attributes": {"POSITION": 0}}])";

} // namespace

class TestModelReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void trianglesWithoutIndicesAreTakenInTheirOrder();
    void indicesOfAnyWidthAreRead_data();
    void indicesOfAnyWidthAreRead();
    void cornersThatMakeNoWholeTriangleAreLeftOut();
    void linesAreReadEndByEnd();
    void cornersAmongOtherDataAreFound();
    void missingNormalsAreComputed();
    void normalsOfTheWrongNumberAreComputed();
    void placeTurnAndSizeOfANodeAreApplied();
    void matrixOfANodeIsApplied();
    void childStandsWhereItsParentPutsIt();
    void normalsStandUprightUnderUnevenSizes();
    void meshDrawnTwiceIsThereTwice();
    void colorIsTheOneOfTheMaterial();
    void opacityOfAnOpaqueMaterialIsNotRegarded();
    void surfaceWithoutAMaterialIsGrey();
    void pointsAndStripsAreLeftOut();
    void nodeWithoutASurfaceStaysInTheTree();
    void numbersThatAreNoneBecomeZero();

private:
    gltf::Model read(const QByteArray& bytes);

    QTemporaryDir m_folder;
};

gltf::Model TestModelReader::read(const QByteArray& bytes)
{
    const auto file = m_folder.filePath("model.glb");
    if (!WriteBytes(file, bytes))
        return {};
    auto result = gltf::ReadModel(file.toStdString());
    if (const auto reason = ReasonOf(result); !reason.isEmpty())
        qWarning("%s", qPrintable(reason));
    auto* model = std::get_if<gltf::Model>(&result);
    return model != nullptr ? std::move(*model) : gltf::Model();
}

void TestModelReader::trianglesWithoutIndicesAreTakenInTheirOrder()
{
    const auto model = read(FileOf(oneNode, onePrimitive));
    QCOMPARE(model.indices, std::vector<std::uint32_t>({0, 1, 2}));
    QCOMPARE(model.vertices.at(2).position, (gltf::Vector3{0, 2, 0}));
}

void TestModelReader::indicesOfAnyWidthAreRead_data()
{
    QTest::addColumn<QByteArray>("componentType");
    QTest::addColumn<QByteArray>("indices");
    QTest::newRow("8 bits") << QByteArray("5121") << BytesOf<std::uint8_t>({2, 0, 1});
    QTest::newRow("16 bits") << QByteArray("5123") << BytesOf<std::uint16_t>({2, 0, 1});
    QTest::newRow("32 bits") << QByteArray("5125") << BytesOf<std::uint32_t>({2, 0, 1});
}

void TestModelReader::indicesOfAnyWidthAreRead()
{
    QFETCH(QByteArray, componentType);
    QFETCH(QByteArray, indices);
    const auto model = read(FileOf(oneNode, R"([{"attributes": {"POSITION": 0}, "indices": 1}])",
                                   R"(, {"bufferView": 1, "componentType": )" + componentType +
                                       R"(, "count": 3, "type": "SCALAR"})",
                                   indices));
    QCOMPARE(model.indices, std::vector<std::uint32_t>({2, 0, 1}));
}

void TestModelReader::cornersThatMakeNoWholeTriangleAreLeftOut()
{
    const auto model =
        read(FileOf(oneNode, R"([{"attributes": {"POSITION": 0}, "indices": 1}])",
                    R"(, {"bufferView": 1, "componentType": 5121, "count": 5, "type": "SCALAR"})",
                    BytesOf<std::uint8_t>({2, 0, 1, 1, 0})));
    QCOMPARE(model.parts.at(0).indexCount, 3U);
}

void TestModelReader::linesAreReadEndByEnd()
{
    const auto model =
        read(FileOf(oneNode, R"([{"mode": 1, "attributes": {"POSITION": 0}, "indices": 1}])",
                    R"(, {"bufferView": 1, "componentType": 5121, "count": 5, "type": "SCALAR"})",
                    BytesOf<std::uint8_t>({2, 0, 1, 2, 0})));
    QCOMPARE(model.parts.size(), std::size_t(1));
    QVERIFY(model.parts.at(0).isLines);
    QCOMPARE(model.indices, std::vector<std::uint32_t>({2, 0, 1, 2}));
}

void TestModelReader::cornersAmongOtherDataAreFound()
{
    // A number of no interest stands behind each corner.
    const auto data = BytesOf<float>({0, 0, 0, 7, 1, 0, 0, 7, 0, 2, 0, 7});
    const auto model =
        read(BinaryFile(R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"mesh": 0}], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
        "buffers": [{"byteLength": 48}],
        "bufferViews": [{"buffer": 0, "byteLength": 48, "byteStride": 16, "target": 34962}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3"}]})",
                        data));
    QCOMPARE(model.vertices.at(1).position, (gltf::Vector3{1, 0, 0}));
    QCOMPARE(model.vertices.at(2).position, (gltf::Vector3{0, 2, 0}));
}

void TestModelReader::missingNormalsAreComputed()
{
    const auto model = read(FileOf(oneNode, onePrimitive));
    for (const auto& vertex : model.vertices)
        QCOMPARE(vertex.normal, (gltf::Vector3{0, 0, 1}));
}

void TestModelReader::normalsOfTheWrongNumberAreComputed()
{
    const auto model =
        read(FileOf(oneNode, R"([{"attributes": {"POSITION": 0, "NORMAL": 1}}])",
                    R"(, {"bufferView": 1, "componentType": 5126, "count": 1, "type": "VEC3"})",
                    BytesOf<float>({1, 0, 0})));
    QCOMPARE(model.vertices.at(0).normal, (gltf::Vector3{0, 0, 1}));
}

void TestModelReader::placeTurnAndSizeOfANodeAreApplied()
{
    // Twice as large, a quarter turn about the upright axis, then ten to the east.
    const auto model = read(FileOf(R"([{"mesh": 0, "scale": [2, 2, 2], "translation": [10, 0, 0],
                                        "rotation": [0, 0.70710678118654752, 0, 0.70710678118654752]}])",
                                   onePrimitive));
    const auto& end = model.vertices.at(1).position; // was at 1, 0, 0
    QVERIFY(qAbs(end[0] - 10.0F) < 1e-5F && qAbs(end[1]) < 1e-5F && qAbs(end[2] + 2.0F) < 1e-5F);
    const auto& normal = model.vertices.at(1).normal; // was 0, 0, 1
    QVERIFY(qAbs(normal[0] - 1.0F) < 1e-5F);
}

void TestModelReader::matrixOfANodeIsApplied()
{
    const auto model = read(FileOf(
        R"([{"mesh": 0, "matrix": [0, 3, 0, 0,  3, 0, 0, 0,  0, 0, 3, 0,  1, 2, 3, 1]}])", onePrimitive));
    QCOMPARE(model.vertices.at(0).position, (gltf::Vector3{1, 2, 3}));
    QCOMPARE(model.vertices.at(1).position, (gltf::Vector3{1, 5, 3}));
    QCOMPARE(model.vertices.at(2).position, (gltf::Vector3{7, 2, 3}));
    QCOMPARE(model.bounds.low, (gltf::Vector3{1, 2, 3}));
    QCOMPARE(model.bounds.high, (gltf::Vector3{7, 5, 3}));
}

void TestModelReader::childStandsWhereItsParentPutsIt()
{
    const auto model = read(FileOf(R"([{"name": "house", "translation": [0, 5, 0], "children": [1]},
                                       {"name": "wall", "mesh": 0, "translation": [2, 0, 0]}])",
                                   onePrimitive));
    QCOMPARE(model.vertices.at(0).position, (gltf::Vector3{2, 5, 0}));
    QCOMPARE(PathsOf(model), QStringList({"/house", "/house/wall"}));
}

void TestModelReader::normalsStandUprightUnderUnevenSizes()
{
    // A slope of 45 degrees, drawn ten times as long: flat, with a normal that points nearly up.
    const auto model = read(
        FileOf(R"([{"mesh": 0, "scale": [10, 1, 1]}])", R"([{"attributes": {"POSITION": 0, "NORMAL": 1}}])",
               R"(, {"bufferView": 1, "componentType": 5126, "count": 3, "type": "VEC3"})",
               BytesOf<float>({1, 1, 0, 1, 1, 0, 1, 1, 0})));
    const auto& normal = model.vertices.at(0).normal;
    QVERIFY(qAbs(normal[0] - 0.0995037F) < 1e-5F && qAbs(normal[1] - 0.9950372F) < 1e-5F);
}

void TestModelReader::meshDrawnTwiceIsThereTwice()
{
    const auto model = read(
        FileOf(R"([{"mesh": 0, "children": [1]}, {"mesh": 0, "translation": [5, 0, 0]}])", onePrimitive));
    QCOMPARE(model.parts.size(), std::size_t(2));
    QCOMPARE(model.parts.at(1).node, 1U);
    QCOMPARE(model.vertices.at(3).position, (gltf::Vector3{5, 0, 0}));
}

void TestModelReader::colorIsTheOneOfTheMaterial()
{
    const auto model = read(FileOf(oneNode, R"([{"attributes": {"POSITION": 0}, "material": 0}])", {}, {},
                                   R"(, "materials": [{"alphaMode": "BLEND", "doubleSided": true,
                            "pbrMetallicRoughness": {"baseColorFactor": [0.25, 0.5, 0.75, 0.5]}}])"));
    QCOMPARE(model.parts.at(0).color, (std::array<float, 4>{0.25F, 0.5F, 0.75F, 0.5F}));
    QVERIFY(model.parts.at(0).isDoubleSided);
}

void TestModelReader::opacityOfAnOpaqueMaterialIsNotRegarded()
{
    const auto model =
        read(FileOf(oneNode, R"([{"attributes": {"POSITION": 0}, "material": 0}])", {}, {},
                    R"(, "materials": [{"pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 0]}}])"));
    QCOMPARE(model.parts.at(0).color, (std::array<float, 4>{1, 0, 0, 1}));
}

void TestModelReader::surfaceWithoutAMaterialIsGrey()
{
    const auto model = read(FileOf(oneNode, onePrimitive));
    QCOMPARE(model.parts.at(0).color, (std::array<float, 4>{0.8F, 0.8F, 0.8F, 1.0F}));
    QVERIFY(!model.parts.at(0).isDoubleSided);
}

void TestModelReader::pointsAndStripsAreLeftOut()
{
    const auto model = read(FileOf(oneNode, R"([{"attributes": {"POSITION": 0}, "mode": 0},
                                                {"attributes": {"POSITION": 0}, "mode": 3},
                                                {"attributes": {"POSITION": 0}, "mode": 5},
                                                {"attributes": {"POSITION": 0}, "mode": 4}])"));
    QCOMPARE(model.parts.size(), std::size_t(1));
}

void TestModelReader::nodeWithoutASurfaceStaysInTheTree()
{
    const auto model =
        read(FileOf(R"([{"mesh": 0, "name": "house", "children": [1]}, {"name": "empty"}])", onePrimitive));
    QCOMPARE(PathsOf(model), QStringList({"/house", "/house/empty"}));
}

void TestModelReader::numbersThatAreNoneBecomeZero()
{
    const auto model =
        read(FileOf(oneNode, R"([{"attributes": {"POSITION": 1}}])",
                    R"(, {"bufferView": 1, "componentType": 5126, "count": 3, "type": "VEC3"})",
                    BytesOf<float>({std::numeric_limits<float>::quiet_NaN(), 1, 2, 3,
                                    std::numeric_limits<float>::infinity(), 5, 6, 7, 8})));
    QCOMPARE(model.vertices.at(0).position, (gltf::Vector3{0, 1, 2}));
    QCOMPARE(model.vertices.at(1).position, (gltf::Vector3{3, 0, 5}));
}

QTEST_GUILESS_MAIN(TestModelReader)
#include "test_modelreader.moc"
