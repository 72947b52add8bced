// SPDX-License-Identifier: MIT
#include "EditorCommon/zip.h"
#include "fakes/logbook.h"
#include "zip/blockline.h"
#include "zipsuite.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

using EditorCommon::CZip;
using namespace EditorCommon::Zip;
using Files = QMap<QString, QByteArray>;

namespace
{

QByteArray Noise(int size, quint32 seed = 7)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random.generate());
    return bytes;
}

/// Numbers as geometry has them: packable, and nowhere the same.
QByteArray Geometry(int size)
{
    QByteArray bytes;
    QRandomGenerator random(9);
    while (bytes.size() < size)
        bytes += QByteArray::number(random.bounded(1000000)) + ',';
    return bytes.left(size);
}

/// What another program reads of an archive: the packing of each name. Empty when it finds a fault.
QMap<QString, int> ReadByOthers(const QString& archive)
{
    QProcess python;
    python.start("python3", {"-c",
                             "import sys, json, zipfile\n"
                             "z = zipfile.ZipFile(sys.argv[1])\n"
                             "assert z.testzip() is None\n"
                             "print(json.dumps({i.filename: i.compress_type for i in z.infolist()}))",
                             archive});
    if (!python.waitForFinished(60000) || python.exitCode() != 0)
        return {};
    QMap<QString, int> found;
    const auto object = QJsonDocument::fromJson(python.readAllStandardOutput()).object();
    for (auto entry = object.begin(); entry != object.end(); ++entry)
        found.insert(entry.key(), entry->toInt());
    return found;
}

QByteArray AllOf(BlockLine& line, std::size_t files)
{
    QByteArray bytes;
    while (files > 0) {
        const auto block = line.take();
        bytes += block.bytes;
        files -= block.isLast ? 1 : 0;
    }
    return bytes;
}

} // namespace

class TestZip : public QObject
{
    Q_OBJECT

private slots:
    void filesComeBackAsTheyWere();
    void otherProgramsReadIt();
    void packedFilesAreStored();
    void packedFileWithAPlainHeaderIsStored();
    void largeFileGoesThroughInBlocks();
    void manySmallFilesGoThrough();
    void folderWithoutFilesIsRefused();
    void missingFolderIsRefused();
    void linksAreLeftOut();
    void olderArchiveIsReplaced();
    void archiveInsideTheFolderIsNotPackedIntoItself();
    void archiveThatCannotBeMadeIsToldAndLeavesNothing();
    void numberOfThreadsChangesNoByte();
    void lineTellsOfAFileThatIsGone();
};

void TestZip::filesComeBackAsTheyWere()
{
    const ZipPlace place;
    const Files files{{"a.zrg", Geometry(100000)}, {"模型/b.zrim", "two"}, {"empty", ""}, {".hidden", "h"}};
    for (auto file = files.begin(); file != files.end(); ++file)
        QVERIFY(place.write(place.source() + '/' + file.key(), file.value()));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), files);
}

void TestZip::otherProgramsReadIt()
{
    const ZipPlace place;
    QVERIFY(place.write(place.source() + "/模型/a.zrg", Geometry(3500000)));
    QVERIFY(place.write(place.source() + "/b.zrim", Geometry(1 << 20)));
    QVERIFY(place.write(place.source() + "/c", ""));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QCOMPARE(ReadByOthers(place.archive()), (QMap<QString, int>{{"模型/a.zrg", 8}, {"b.zrim", 8}, {"c", 0}}));
}

void TestZip::packedFilesAreStored()
{
    const ZipPlace place;
    QVERIFY(place.write(place.source() + "/packed.zrg", Noise(2000000)));
    QVERIFY(place.write(place.source() + "/plain.zrg", Geometry(2000000)));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QCOMPARE(ReadByOthers(place.archive()), (QMap<QString, int>{{"packed.zrg", 0}, {"plain.zrg", 8}}));
}

void TestZip::packedFileWithAPlainHeaderIsStored()
{
    const ZipPlace place;
    QVERIFY(place.write(place.source() + "/a.zrg", QByteArray(300000, ' ') + Noise(2000000)));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QCOMPARE(ReadByOthers(place.archive()), (QMap<QString, int>{{"a.zrg", 0}}));
}

void TestZip::largeFileGoesThroughInBlocks()
{
    const ZipPlace place;
    const auto large = Geometry(20 << 20);
    QVERIFY(place.write(place.source() + "/a.zrg", large));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QVERIFY(QFileInfo(place.archive()).size() < large.size() * 6 / 10);
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QVERIFY(place.files(place.target()).value("a.zrg") == large);
}

void TestZip::manySmallFilesGoThrough()
{
    const ZipPlace place;
    Files files;
    for (int number = 0; number < 500; ++number) {
        const auto name = QString::number(number) + ".zrg";
        files.insert(name, Geometry(100 + number * 13));
        QVERIFY(place.write(place.source() + '/' + name, files.value(name)));
    }
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QVERIFY(place.files(place.target()) == files);
}

void TestZip::folderWithoutFilesIsRefused()
{
    const ZipPlace place;
    QVERIFY(QDir().mkpath(place.source() + "/inner"));
    QVERIFY(!CZip::zip(place.source(), place.archive()));
    QVERIFY(!QFileInfo::exists(place.archive()));
}

void TestZip::missingFolderIsRefused()
{
    const ZipPlace place;
    QVERIFY(!CZip::zip(place.source(), place.archive()));
    QVERIFY(!QFileInfo::exists(place.archive()));
}

void TestZip::linksAreLeftOut()
{
    const ZipPlace place;
    QVERIFY(place.write(place.source() + "/a", "one"));
    QVERIFY(place.write(place.path() + "/secret", "secret"));
    QVERIFY(QFile::link(place.path() + "/secret", place.source() + "/b"));
    QVERIFY(QFile::link(place.path(), place.source() + "/c"));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QCOMPARE(ReadByOthers(place.archive()).keys(), QStringList("a"));
}

void TestZip::olderArchiveIsReplaced()
{
    const ZipPlace place;
    QVERIFY(place.write(place.archive(), Noise(50000)));
    QVERIFY(place.write(place.source() + "/a", "one"));
    QVERIFY(CZip::zip(place.source(), place.archive()));
    QCOMPARE(ReadByOthers(place.archive()).keys(), QStringList("a"));
}

void TestZip::archiveInsideTheFolderIsNotPackedIntoItself()
{
    const ZipPlace place;
    const auto archive = place.source() + "/all.kyv";
    QVERIFY(place.write(place.source() + "/a", "one"));
    QVERIFY(CZip::zip(place.source(), archive));
    QVERIFY(CZip::zip(place.source(), archive));
    QCOMPARE(ReadByOthers(archive).keys(), QStringList("a"));
}

void TestZip::archiveThatCannotBeMadeIsToldAndLeavesNothing()
{
    const ZipPlace place;
    QVERIFY(place.write(place.source() + "/a", Geometry(100000)));
    Fakes::LogBook log;
    QVERIFY(!CZip::zip(place.source(), place.path() + "/missing/house.kyv"));
    QCOMPARE(log.linesWith("packing").size(), 1);
    QCOMPARE(place.files(place.path()).keys(), QStringList("source/a"));
}

void TestZip::numberOfThreadsChangesNoByte()
{
    const ZipPlace place;
    const QStringList paths{place.path() + "/a", place.path() + "/b", place.path() + "/c"};
    QVERIFY(place.write(paths[0], Geometry(5 << 20)) && place.write(paths[1], "") &&
            place.write(paths[2], Geometry(1 << 20)));
    BlockLine alone(paths, 1);
    BlockLine together(paths, 8);
    QVERIFY(AllOf(alone, 3) == AllOf(together, 3));
}

void TestZip::lineTellsOfAFileThatIsGone()
{
    const ZipPlace place;
    BlockLine line({place.path() + "/gone"}, 2);
    QVERIFY_EXCEPTION_THROWN(static_cast<void>(line.take()), std::exception);
}

QTEST_GUILESS_MAIN(TestZip)
#include "test_zip.moc"
