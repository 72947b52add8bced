// SPDX-License-Identifier: MIT
#include "binaryfile.h"
#include "gltf/modelreader.h"
#include "gltf/modelwriter.h"
#include "models.h"

#include <random>

#include <QTemporaryDir>
#include <QTest>

/// Files that are cut, damaged or made to do harm: words and nothing else.
class TestBadModels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void fileCutShortIsToldAtEvery64thByte();
    void noiseIsTold();
    void changedBytesNeverGiveAModelThatPointsToNothing();
    void fileThatAsksForWhatIsNotThereIsTold_data();
    void fileThatAsksForWhatIsNotThereIsTold();
    void treeTooDeepIsTold();
    void emptyFileIsTold();
    void missingFileIsNamed();
    void folderInPlaceOfAFileIsTold();
    void fileThatWantsAnotherFileIsTold();

private:
    std::variant<gltf::Model, gltf::Unreadable> read(const QByteArray& bytes);

    QTemporaryDir m_folder;
    QByteArray m_good;
};

void TestBadModels::initTestCase()
{
    const auto file = m_folder.filePath("good.glb");
    QVERIFY(gltf::WriteModel(House(), file.toStdString(), "test"));
    QFile source(file);
    QVERIFY(source.open(QIODevice::ReadOnly));
    m_good = source.readAll();
    QCOMPARE(ReasonOf(read(m_good)), QString());
}

std::variant<gltf::Model, gltf::Unreadable> TestBadModels::read(const QByteArray& bytes)
{
    const auto file = m_folder.filePath("model.glb");
    if (!WriteBytes(file, bytes))
        qFatal("the test cannot write %s", qPrintable(file));
    return gltf::ReadModel(file.toStdString());
}

void TestBadModels::fileCutShortIsToldAtEvery64thByte()
{
    QVERIFY(m_good.size() > 1000);
    for (int size = 0; size < m_good.size(); size += 64)
        QVERIFY2(!ReasonOf(read(m_good.left(size))).isEmpty(), qPrintable(QString::number(size)));
}

void TestBadModels::noiseIsTold()
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        QByteArray noise(static_cast<int>(random() % 4096), '\0');
        for (char& byte : noise)
            byte = static_cast<char>(random());
        // Every other one looks like a model file at its front.
        if (round % 2 == 0)
            noise.replace(0, qMin(20, noise.size()), m_good.left(20));
        QVERIFY(!ReasonOf(read(noise)).isEmpty());
    }
}

void TestBadModels::changedBytesNeverGiveAModelThatPointsToNothing()
{
    std::mt19937 random(11);
    int readable = 0;
    for (int round = 0; round < 2000; ++round) {
        auto bytes = m_good;
        for (auto changes = random() % 4 + 1; changes > 0; --changes)
            bytes[static_cast<int>(random() % static_cast<unsigned>(bytes.size()))] =
                static_cast<char>(random());
        const auto result = read(bytes);
        if (const auto* model = std::get_if<gltf::Model>(&result)) {
            ++readable;
            QVERIFY(IsSound(*model));
        } else {
            QVERIFY(!ReasonOf(result).isEmpty());
        }
    }
    QVERIFY2(readable > 100 && readable < 1900, "both ways are walked");
}

void TestBadModels::fileThatAsksForWhatIsNotThereIsTold_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const char* from, const char* to, const char* words) {
        QTest::newRow(name) << QByteArray(from) << QByteArray(to) << QString::fromLatin1(words);
    };
    row("a node below itself", R"("name": "wall")", R"("children": [0])", "runs in a circle");
    row("a child that is not there", R"("name": "wall")", R"("children": [7])", "node that is not there");
    row("a child before the first", R"("name": "wall")", R"("children": [-7])", "node that is not there");
    row("a mesh that is not there", R"("mesh": 0)", R"("mesh": 9)", "mesh that is not there");
    row("corners that are not there", R"("POSITION": 0)", R"("POSITION": 9)", "data that is not there");
    row("a view that is not there", R"("bufferView": 0)", R"("bufferView": 9)", "not read");
    row("a buffer that is not there", R"("buffer": 0)", R"("buffer": 9)", "buffer that is not there");
    row("more corners than data", R"("count": 3)", R"("count": 6)", "shorter than it says");
    row("a great many corners", R"("count": 3)", R"("count": 4000000000)", "shorter than it says");
    row("data behind the end", R"("byteOffset": 0)", R"("byteOffset": 4000000000)", "shorter than it says");
    row("triangles of other corners", R"("max": [2])", R"("byteOffset": 12)", "corners that are not there");
    row("corners of another shape", R"("VEC3")", R"("VEC2")", "not read");
    row("corners of whole numbers", R"("componentType": 5126)", R"("componentType": 5125)", "not read");
    row("triangles numbered by fractions", R"("componentType": 5125)", R"("componentType": 5126)",
        "not read");
    row("no scene", R"("scenes": [{"nodes": [0]}])", R"("scenes": [])", "no scene");
    row("a scene that is not there", R"("scene": 0)", R"("scene": 3)", "no scene");
    row("no surface", R"("mesh": 0, )", "", "no surfaces");
}

void TestBadModels::fileThatAsksForWhatIsNotThereIsTold()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QString, words);
    const auto data =
        BytesOf<float>({0, 0, 0, 1, 0, 0, 0, 2, 0}) + BytesOf<std::uint32_t>({0, 1, 2, 9, 9, 9});
    QByteArray json = R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"mesh": 0, "name": "wall"}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
        "buffers": [{"byteLength": 60}],
        "bufferViews": [{"buffer": 0, "byteLength": 36}, {"buffer": 0, "byteOffset": 36, "byteLength": 24}],
        "accessors": [
            {"bufferView": 0, "byteOffset": 0, "componentType": 5126, "count": 3, "type": "VEC3"},
            {"bufferView": 1, "max": [2], "componentType": 5125, "count": 3, "type": "SCALAR"}]})";
    QCOMPARE(ReasonOf(read(BinaryFile(json, data))), QString());
    const int place = json.indexOf(from);
    QVERIFY(place >= 0);
    json.replace(place, from.size(), to);
    const auto reason = ReasonOf(read(BinaryFile(json, data)));
    QVERIFY2(reason.contains(words), qPrintable(reason));
}

void TestBadModels::treeTooDeepIsTold()
{
    QByteArray nodes;
    constexpr int depth = 1000;
    for (int i = 1; i < depth; ++i)
        nodes += R"({"children": [)" + QByteArray::number(i) + "]},";
    const auto json = R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [)" +
                      nodes + R"({"name": "deepest"}], "buffers": [{"byteLength": 4}]})";
    const auto reason = ReasonOf(read(BinaryFile(json, QByteArray(4, '\0'))));
    QVERIFY2(reason.contains("too deep"), qPrintable(reason));
}

void TestBadModels::emptyFileIsTold()
{
    QVERIFY(!ReasonOf(read({})).isEmpty());
}

void TestBadModels::missingFileIsNamed()
{
    const auto read = gltf::ReadModel(m_folder.filePath("gone.glb").toStdString());
    QCOMPARE(ReasonOf(read), QStringLiteral("the file gone.glb is missing"));
}

void TestBadModels::folderInPlaceOfAFileIsTold()
{
    QVERIFY(!ReasonOf(gltf::ReadModel(m_folder.path().toStdString())).isEmpty());
}

void TestBadModels::fileThatWantsAnotherFileIsTold()
{
    const auto corners = BytesOf<float>({0, 0, 0, 1, 0, 0, 0, 2, 0});
    QVERIFY(WriteBytes(m_folder.filePath("other.bin"), corners));
    const QByteArray json = R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"mesh": 0}], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
        "buffers": [{"byteLength": 36, "uri": "other.bin"}], "bufferViews": [{"buffer": 0, "byteLength": 36}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3"}]})";
    QVERIFY(!ReasonOf(read(BinaryFile(json, corners))).isEmpty());
}

QTEST_GUILESS_MAIN(TestBadModels)
#include "test_badmodels.moc"
