// SPDX-License-Identifier: MIT
#include "EditorCommon/zip.h"
#include "fakes/logbook.h"
#include "rawarchive.h"
#include "zipsuite.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

using EditorCommon::CZip;
using Files = QMap<QString, QByteArray>;

namespace
{

constexpr quint32 Mode(quint32 mode)
{
    return mode << 16U;
}

RawEntry WithMode(RawEntry entry, quint32 mode)
{
    entry.attributes = Mode(mode);
    return entry;
}

QByteArray Noise(int size)
{
    QRandomGenerator random(7);
    QByteArray bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random.generate());
    return bytes;
}

/// An entry whose directory tells something else than is true.
template<class Change>
RawEntry Lying(Change change)
{
    auto entry = Deflated("a.zrg", QByteArray(5000, 'a'));
    change(entry);
    return entry;
}

std::vector<RawEntry> Many(int count)
{
    std::vector<RawEntry> entries;
    for (int number = 0; number < count; ++number)
        entries.push_back(Stored(QByteArray::number(number), ""));
    return entries;
}

} // namespace

class TestBadArchives : public QObject
{
    Q_OBJECT

private slots:
    void isRefusedWithAReason_data();
    void isRefusedWithAReason();
    void missingArchiveIsRefused();
    void folderIsNoArchive();
    void cutArchiveIsRefusedWhereverItIsCut();
    void changedByteNeverBringsOtherContents();
    void fourGigabytesOfZerosAreRefusedAtOnce();
    void zerosThatAreToldSmallAreStopped();
    void hundredThousandEntriesAreRefusedAtOnce();
    void whatWasUnpackedBeforeTheFaultIsRemoved();
    void foldersThatWereThereStay();
};

void TestBadArchives::isRefusedWithAReason_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const std::vector<RawEntry>& entries, const char* reason,
                        const RawEnd& end = {}) {
        QTest::newRow(name) << RawArchive(entries, end) << QString(reason);
    };
    QTest::newRow("empty file") << QByteArray() << "no zip archive";
    QTest::newRow("noise") << Noise(100000) << "no zip archive";
    QTest::newRow("the beginning of one") << QByteArray("PK\3\4") << "no zip archive";

    row("climbing", {Stored("../a", "x")}, "a path that climbs");
    row("climbing inside", {Stored("b/../../a", "x")}, "a path that climbs");
    row("climbing with backslashes", {Stored("..\\..\\a", "x")}, "a path that climbs");
    row("climbing and coming back", {Stored("b/../a", "x")}, "a path that climbs");
    row("a dot", {Stored("./a", "x")}, "a path that climbs");
    row("absolute", {Stored("/a", "x")}, "an empty or an overlong name");
    row("absolute with a backslash", {Stored("\\a", "x")}, "an empty or an overlong name");
    row("of a drive", {Stored("C:\\a", "x")}, "a colon");
    row("of a share", {Stored("\\\\host\\a", "x")}, "an empty or an overlong name");
    row("no name", {Stored("", "x")}, "an empty or an overlong path");
    row("overlong", {Stored(QByteArray(300, 'a'), "x")}, "an overlong name");
    row("line break in the name", {Stored("a\nb", "x")}, "a control character");
    row("zero in the name", {Stored(QByteArray("a\0b", 3), "x")}, "a control character");
    row("marked as UTF-8 and none", {Stored("\xD0\xCD", "x")}, "no encoding that is known");

    row("link", {WithMode(Stored("a", "/etc/passwd"), 0120777)}, "a link or a device");
    row("device", {WithMode(Stored("a", ""), 0060666)}, "a link or a device");
    row("character device", {WithMode(Stored("a", ""), 0020666)}, "a link or a device");
    row("pipe", {WithMode(Stored("a", ""), 0010666)}, "a link or a device");
    row("socket", {WithMode(Stored("a", ""), 0140666)}, "a link or a device");
    row("folder that is told to be a link", {WithMode(Stored("a/", ""), 0120777)}, "a link or a device");

    row("twice", {Stored("a", "x"), Stored("a", "y")}, "two entries of the archive have one name");
    row("twice in another case", {Stored("a", "x"), Stored("A", "y")},
        "two entries of the archive have one name");
    row("twice with other slashes", {Stored("b/a", "x"), Stored("b\\a", "y")},
        "two entries of the archive have one name");
    row("file, then folder", {Stored("a", "x"), Stored("a/b", "y")}, "a file and a folder");
    row("folder, then file", {Stored("a/b", "x"), Stored("a", "y")},
        "two entries of the archive have one name");
    row("folder with contents", {WithMode(Stored("a/", "x"), 0040755)}, "a folder of the archive has");

    row("locked", {Lying([](auto& entry) { entry.flags |= 1U; })}, "a password");
    row("larger than told", {Lying([](auto& entry) { entry.size = 4999; })},
        "another size than the archive says");
    row("smaller than told", {Lying([](auto& entry) { entry.size = 5001; })},
        "another size than the archive says");
    row("other checksum", {Lying([](auto& entry) { entry.crc ^= 1U; })}, "entry of the archive");
    row("damaged bytes", {Lying([](auto& entry) { entry.packed.fill('\xFF'); })}, "entry of the archive");
    row("unknown packing", {Lying([](auto& entry) { entry.method = 77; })}, "entry of the archive");
    row("stored with two sizes", {Lying([](auto& entry) { entry.method = 0; })}, "has two sizes");
    row("two names", {Lying([](auto& entry) { entry.localName = "b.zrg"; })}, "two names");

    auto sharing = Stored("b.zrg", "one");
    sharing.localName = "a.zrg";
    sharing.sharesWith = 0;
    row("two entries over the same bytes", {Stored("a.zrg", "one"), sharing}, "share bytes");

    RawEnd fewer;
    fewer.toldEntries = 1;
    row("more entries than told", {Stored("a", "x"), Stored("b", "y")}, "more entries than it says", fewer);
    RawEnd more;
    more.toldEntries = 3;
    row("fewer entries than told", {Stored("a", "x")}, "cut off", more);
    RawEnd part;
    part.disk = 1;
    row("one of several parts", {Stored("a", "x")}, "several parts", part);
}

void TestBadArchives::isRefusedWithAReason()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const ZipPlace place;
    QVERIFY(place.write(place.archive(), bytes));
    Fakes::LogBook log;
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    const auto lines = log.take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains(reason), qPrintable(lines.first()));
    QCOMPARE(place.files(place.path()), (Files{{"house.kyv", bytes}}));
    QVERIFY(!QFileInfo::exists(place.target()));
}

void TestBadArchives::missingArchiveIsRefused()
{
    const ZipPlace place;
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    QVERIFY(!QFileInfo::exists(place.target()));
}

void TestBadArchives::folderIsNoArchive()
{
    const ZipPlace place;
    QVERIFY(!CZip::unZip(place.path(), place.target()));
}

void TestBadArchives::cutArchiveIsRefusedWhereverItIsCut()
{
    const auto whole = RawArchive({Stored("a.zrg", Noise(20000)), Deflated("b.zrim", QByteArray(90000, 'b')),
                                   Stored("parts/c.hsf", Noise(100))});
    for (int percent = 0; percent < 100; ++percent) {
        const ZipPlace place;
        QVERIFY(place.write(place.archive(), whole.left(whole.size() * percent / 100)));
        QVERIFY2(!CZip::unZip(place.archive(), place.target()), qPrintable(QString::number(percent)));
        QVERIFY(!QFileInfo::exists(place.target()));
    }
}

/// Whatever a changed byte does, files of other contents never come out of it.
void TestBadArchives::changedByteNeverBringsOtherContents()
{
    const auto whole = RawArchive({Stored("a.zrg", "one"), Deflated("b", QByteArray(500, 'b'))});
    const QSet<QByteArray> contents{"one", QByteArray(500, 'b')};
    int refused = 0;
    for (int at = 0; at < whole.size(); ++at) {
        auto changed = whole;
        changed[at] = static_cast<char>(changed.at(at) ^ 0x11);
        const ZipPlace place;
        QVERIFY(place.write(place.archive(), changed));
        if (!CZip::unZip(place.archive(), place.target())) {
            ++refused;
            QVERIFY(!QFileInfo::exists(place.target()));
            continue;
        }
        for (const auto& bytes : place.files(place.target()))
            QVERIFY2(contents.contains(bytes), qPrintable(QString::number(at)));
    }
    QVERIFY2(refused > whole.size() / 2, qPrintable(QString::number(refused)));
}

void TestBadArchives::fourGigabytesOfZerosAreRefusedAtOnce()
{
    const ZipPlace place;
    auto zeros = Zeros("a.zrg", 4ULL << 30U);
    zeros.hasLargeNumbers = true;
    QVERIFY(place.write(place.archive(), RawArchive({zeros})));
    QVERIFY(QFileInfo(place.archive()).size() < 5 << 20);
    QElapsedTimer time;
    time.start();
    Fakes::LogBook log;
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    QVERIFY2(time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(log.linesWith("too many times its size").size(), 1);
}

void TestBadArchives::zerosThatAreToldSmallAreStopped()
{
    const ZipPlace place;
    auto zeros = Zeros("a.zrg", 1ULL << 30U);
    zeros.size = 1000;
    QVERIFY(place.write(place.archive(), RawArchive({zeros})));
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    QVERIFY(!QFileInfo::exists(place.target()));
}

void TestBadArchives::hundredThousandEntriesAreRefusedAtOnce()
{
    const ZipPlace place;
    RawEnd end;
    end.isLarge = true;
    QVERIFY(place.write(place.archive(), RawArchive(Many(100000), end)));
    QElapsedTimer time;
    time.start();
    Fakes::LogBook log;
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    QVERIFY2(time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(log.linesWith("more entries than may be unpacked").size(), 1);
}

void TestBadArchives::whatWasUnpackedBeforeTheFaultIsRemoved()
{
    const ZipPlace place;
    auto bad = Stored("z", "bad");
    bad.crc ^= 1U;
    QVERIFY(
        place.write(place.archive(), RawArchive({Stored("a", "one"), Stored("parts/deep/b", "two"), bad})));
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    QVERIFY(!QFileInfo::exists(place.target()));
}

void TestBadArchives::foldersThatWereThereStay()
{
    const ZipPlace place;
    QVERIFY(place.write(place.target() + "/parts/mine", "mine"));
    auto bad = Stored("z", "bad");
    bad.crc ^= 1U;
    QVERIFY(place.write(place.archive(), RawArchive({Stored("parts/a", "one"), bad})));
    QVERIFY(!CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{"parts/mine", "mine"}}));
}

QTEST_GUILESS_MAIN(TestBadArchives)
#include "test_badarchives.moc"
