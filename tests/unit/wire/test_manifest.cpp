// SPDX-License-Identifier: MIT
// moc cannot read the standard headers behind these.
#ifndef Q_MOC_RUN
#include "wire/manifest.h"
#endif

#include <algorithm>
#include <set>

#include <QTest>

#include <rapidcheck.h>

using namespace wire;

namespace
{

FileEntry File(const std::string& path, const std::vector<std::uint32_t>& sizes)
{
    FileEntry file;
    file.path = path;
    file.content = DigestOf(path);
    for (const auto size : sizes) {
        file.pieces.push_back({DigestOf(path + std::to_string(file.pieces.size())), size});
        file.size += size;
    }
    return file;
}

/// Any manifest that is in order.
rc::Gen<Manifest> AnyManifest()
{
    return rc::gen::exec([] {
        Manifest manifest;
        const auto names = *rc::gen::container<std::set<std::string>>(
            rc::gen::nonEmpty(rc::gen::container<std::string>(rc::gen::inRange('a', 'z'))));
        for (const auto& name : names) {
            auto file =
                File(name.substr(0, 200), *rc::gen::container<std::vector<std::uint32_t>>(
                                              rc::gen::inRange<std::uint32_t>(1, maximumPieceSize + 1)));
            file.mode = *rc::gen::element(0644U, 0755U);
            file.cutting = *rc::gen::element(Cutting::contentDefined, Cutting::pages);
            if (manifest.files.empty() || manifest.files.back().path != file.path)
                manifest.files.push_back(std::move(file));
        }
        return manifest;
    });
}

bool IsRefused(const std::string& bytes)
{
    return std::holds_alternative<Refusal>(DecodeManifest(bytes));
}

Manifest Small()
{
    return {{File("a/b.bin", {3, 5}), File("project.db", {4096}), File("z", {})}};
}

} // namespace

class TestManifest : public QObject
{
    Q_OBJECT

private slots:
    void everyManifestSurvivesItsBytes();
    void manifestCutAtAnyByteIsRefused();
    void manifestWithBytesBehindItIsRefused();
    void anyChangedByteIsRefusedOrGivesAnotherManifest();
    void noiseIsRefused();
    void countBeyondTheEndIsRefused();
    void unsafePathIsRefused_data();
    void unsafePathIsRefused();
    void safePathIsTaken_data();
    void safePathIsTaken();
    void filesOutOfOrderAreRefused();
    void filesTwiceAreRefused();
    void namesThatDifferOnlyInCaseAreRefused();
    void sizesThatDoNotAddUpAreRefused();
    void pieceOfAnImpossibleSizeIsRefused();
    void rootDependsOnEverything();
    void contentIsNamedByCuttingAndPieces();
    void contentIsTheSameUnderAnotherPathAndMode();
    void runsSurviveTheirBytes();
    void runBeyondItsFileIsRefused_data();
    void runBeyondItsFileIsRefused();
    void runsCutAtAnyByteAreRefused();
};

void TestManifest::everyManifestSurvivesItsBytes()
{
    QVERIFY(rc::check([] {
        const auto manifest = *AnyManifest();
        const auto decoded = DecodeManifest(EncodeManifest(manifest));
        RC_ASSERT(std::holds_alternative<Manifest>(decoded));
        RC_ASSERT(std::get<Manifest>(decoded) == manifest);
    }));
}

void TestManifest::manifestCutAtAnyByteIsRefused()
{
    const auto bytes = EncodeManifest(Small());
    for (std::size_t length = 0; length < bytes.size(); ++length)
        QVERIFY2(IsRefused(bytes.substr(0, length)), qPrintable(QString::number(length)));
}

void TestManifest::manifestWithBytesBehindItIsRefused()
{
    QVERIFY(IsRefused(EncodeManifest(Small()) + '\0'));
}

void TestManifest::anyChangedByteIsRefusedOrGivesAnotherManifest()
{
    const auto good = EncodeManifest(Small());
    for (std::size_t i = 0; i < good.size(); ++i) {
        auto bytes = good;
        bytes[i] = static_cast<char>(bytes[i] ^ 0x20);
        const auto decoded = DecodeManifest(bytes);
        QVERIFY(std::holds_alternative<Refusal>(decoded) || !(std::get<Manifest>(decoded) == Small()));
    }
}

void TestManifest::noiseIsRefused()
{
    QVERIFY(rc::check([] {
        const auto noise = *rc::gen::arbitrary<std::string>();
        RC_ASSERT(IsRefused(noise) || noise == EncodeManifest({}));
        RC_ASSERT(IsRefused("TVM1" + noise) || "TVM1" + noise == EncodeManifest({}));
    }));
}

void TestManifest::countBeyondTheEndIsRefused()
{
    // Four thousand million files in eight bytes: refused, and nothing is set aside for them.
    QVERIFY(IsRefused(std::string("TVM1\xff\xff\xff\xff", 8)));
}

void TestManifest::unsafePathIsRefused_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("upwards") << QByteArray("../x");
    QTest::newRow("upwards inside") << QByteArray("a/../x");
    QTest::newRow("upwards at the end") << QByteArray("a/..");
    QTest::newRow("itself") << QByteArray("./a");
    QTest::newRow("absolute") << QByteArray("/etc/passwd");
    QTest::newRow("an empty name") << QByteArray("a//b");
    QTest::newRow("a slash at the end") << QByteArray("a/");
    QTest::newRow("a backslash") << QByteArray("a\\b");
    QTest::newRow("a drive") << QByteArray("c:x");
    QTest::newRow("a line feed") << QByteArray("a\nb");
    QTest::newRow("a null") << QByteArray("a\0b", 3);
    QTest::newRow("a dot at the end") << QByteArray("a.");
    QTest::newRow("a blank at the end") << QByteArray("a ");
    QTest::newRow("no UTF-8") << QByteArray("a\xff");
    QTest::newRow("half a sign") << QByteArray("a\xe5\xb7");
    QTest::newRow("a long name") << QByteArray(256, 'a');
    QTest::newRow("a long path") << (QByteArray(250, 'a') + '/').repeated(5) + "a";
}

void TestManifest::unsafePathIsRefused()
{
    QFETCH(QByteArray, path);
    QVERIFY(!PathRefusal(path.toStdString()).empty());
    QVERIFY(IsRefused(EncodeManifest({{File(path.toStdString(), {1})}})));
}

void TestManifest::safePathIsTaken_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("a name") << QByteArray("project.db");
    QTest::newRow("of another script") << QByteArray("图纸/首层.glb");
    QTest::newRow("hidden") << QByteArray(".hidden");
    QTest::newRow("dots inside") << QByteArray("a..b/c...d");
    QTest::newRow("the longest name") << QByteArray(255, 'a');
}

void TestManifest::safePathIsTaken()
{
    QFETCH(QByteArray, path);
    QCOMPARE(PathRefusal(path.toStdString()), std::string());
    QVERIFY(!IsRefused(EncodeManifest({{File(path.toStdString(), {1})}})));
}

void TestManifest::filesOutOfOrderAreRefused()
{
    QVERIFY(IsRefused(EncodeManifest({{File("b", {1}), File("a", {1})}})));
}

void TestManifest::filesTwiceAreRefused()
{
    QVERIFY(IsRefused(EncodeManifest({{File("a", {1}), File("a", {1})}})));
}

void TestManifest::namesThatDifferOnlyInCaseAreRefused()
{
    QVERIFY(IsRefused(EncodeManifest({{File("A", {1}), File("a", {1})}})));
}

void TestManifest::sizesThatDoNotAddUpAreRefused()
{
    auto manifest = Small();
    ++manifest.files[0].size;
    QVERIFY(IsRefused(EncodeManifest(manifest)));
}

void TestManifest::pieceOfAnImpossibleSizeIsRefused()
{
    for (const std::uint32_t size : {0U, maximumPieceSize + 1, 0xffffffffU})
        QVERIFY(IsRefused(EncodeManifest({{File("a", {size})}})));
}

void TestManifest::rootDependsOnEverything()
{
    const auto root = RootOf(Small());
    QVERIFY(root == RootOf(Small()));
    const auto changed = [&](const std::function<void(Manifest&)>& change) {
        auto manifest = Small();
        change(manifest);
        return !(RootOf(manifest) == root);
    };
    QVERIFY(changed([](Manifest& manifest) { manifest.files[0].path += "x"; }));
    QVERIFY(changed([](Manifest& manifest) { manifest.files[0].mode = 0755; }));
    QVERIFY(changed([](Manifest& manifest) { manifest.files[0].content = DigestOf("other"); }));
    QVERIFY(changed([](Manifest& manifest) { manifest.files.pop_back(); }));
}

void TestManifest::contentIsNamedByCuttingAndPieces()
{
    const auto file = File("a", {3, 5});
    const auto changed = [&](auto change) {
        auto other = file;
        change(other);
        return ContentOf(other) != ContentOf(file);
    };
    QVERIFY(changed([](FileEntry& other) { other.cutting = Cutting::pages; }));
    QVERIFY(changed([](FileEntry& other) { other.pieces[1].name = DigestOf("other"); }));
    QVERIFY(changed([](FileEntry& other) { other.pieces[1].size = 6; }));
    QVERIFY(changed([](FileEntry& other) { other.pieces.pop_back(); }));
    QVERIFY(changed([](FileEntry& other) { std::swap(other.pieces[0], other.pieces[1]); }));
}

void TestManifest::contentIsTheSameUnderAnotherPathAndMode()
{
    const auto file = File("a", {3, 5});
    auto other = file;
    other.path = "b";
    other.mode = 0755;
    QVERIFY(ContentOf(other) == ContentOf(file));
}

void TestManifest::runsSurviveTheirBytes()
{
    const std::vector<PieceRun> runs = {{0, 0, 2}, {0, 1, 1}, {1, 0, 1}};
    const auto decoded = DecodeRuns(EncodeRuns(runs), Small());
    QVERIFY(std::holds_alternative<std::vector<PieceRun>>(decoded));
    QVERIFY(std::get<std::vector<PieceRun>>(decoded) == runs);
}

void TestManifest::runBeyondItsFileIsRefused_data()
{
    QTest::addColumn<quint32>("file");
    QTest::addColumn<quint32>("first");
    QTest::addColumn<quint32>("count");
    QTest::newRow("empty") << 0U << 0U << 0U;
    QTest::newRow("one too many") << 0U << 0U << 3U;
    QTest::newRow("behind the last") << 0U << 2U << 1U;
    QTest::newRow("of an empty file") << 2U << 0U << 1U;
    QTest::newRow("no such file") << 3U << 0U << 1U;
    QTest::newRow("a sum that wraps") << 0U << 1U << 0xffffffffU;
}

void TestManifest::runBeyondItsFileIsRefused()
{
    QFETCH(quint32, file);
    QFETCH(quint32, first);
    QFETCH(quint32, count);
    const std::vector<PieceRun> runs = {{file, first, count}};
    QVERIFY(std::holds_alternative<Refusal>(DecodeRuns(EncodeRuns(runs), Small())));
}

void TestManifest::runsCutAtAnyByteAreRefused()
{
    const std::vector<PieceRun> runs = {{0, 0, 2}};
    const auto bytes = EncodeRuns(runs);
    for (std::size_t length = 1; length < bytes.size(); ++length)
        QVERIFY2(std::holds_alternative<Refusal>(DecodeRuns(bytes.substr(0, length), Small())),
                 qPrintable(QString::number(length)));
}

QTEST_APPLESS_MAIN(TestManifest)
#include "test_manifest.moc"
