// SPDX-License-Identifier: MIT
#include "EditorCommon/zip.h"
#include "rawarchive.h"
#include "zipsuite.h"

#include <QTest>

using EditorCommon::CZip;
using Files = QMap<QString, QByteArray>;

class TestUnzip : public QObject
{
    Q_OBJECT

private slots:
    void filesComeBackAsTheyWere();
    void folderIsMadeWhenItIsMissing();
    void filesOfTheSameNameAreReplaced();
    void filesBesideStay();
    void archiveWithoutEntriesUnpacksToNothing();
    void archiveWithACommentIsUnpacked();
    void largeNumbersAreRead();
    void namesAreReadInTheirEncoding_data();
    void namesAreReadInTheirEncoding();
    void backslashesPartFolders();
    void smallArchiveMayUnfoldManyTimes();
};

void TestUnzip::filesComeBackAsTheyWere()
{
    const ZipPlace place;
    const QByteArray long1(3 << 20, 'x');
    QVERIFY(
        place.write(place.archive(), RawArchive({Stored("a.zrg", "one"), Deflated("parts/b.zrim", long1),
                                                 Stored("empty.txt", ""), Stored("parts/deep/c", "three")})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(
        place.files(place.target()),
        (Files{{"a.zrg", "one"}, {"parts/b.zrim", long1}, {"empty.txt", ""}, {"parts/deep/c", "three"}}));
}

void TestUnzip::folderIsMadeWhenItIsMissing()
{
    const ZipPlace place;
    auto folder = Stored("kept/", "");
    folder.attributes = 0x41ED0010;
    QVERIFY(place.write(place.archive(), RawArchive({folder})));
    QVERIFY(CZip::unZip(place.archive(), place.target() + "/deep/deeper"));
    QVERIFY(QFileInfo(place.target() + "/deep/deeper/kept").isDir());
}

void TestUnzip::filesOfTheSameNameAreReplaced()
{
    const ZipPlace place;
    QVERIFY(place.write(place.target() + "/a.zrg", "a longer text of an earlier time"));
    QVERIFY(place.write(place.archive(), RawArchive({Stored("a.zrg", "new")})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{"a.zrg", "new"}}));
}

void TestUnzip::filesBesideStay()
{
    const ZipPlace place;
    QVERIFY(place.write(place.target() + "/mine", "mine"));
    QVERIFY(place.write(place.archive(), RawArchive({Stored("a.zrg", "new")})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{"a.zrg", "new"}, {"mine", "mine"}}));
}

void TestUnzip::archiveWithoutEntriesUnpacksToNothing()
{
    const ZipPlace place;
    QVERIFY(place.write(place.archive(), RawArchive({})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), Files());
}

void TestUnzip::archiveWithACommentIsUnpacked()
{
    const ZipPlace place;
    RawEnd end;
    end.comment = "PK\5\6 is how the end begins";
    QVERIFY(place.write(place.archive(), RawArchive({Stored("a", "one")}, end)));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{"a", "one"}}));
}

void TestUnzip::largeNumbersAreRead()
{
    const ZipPlace place;
    auto first = Deflated("a", QByteArray(1000, 'a'));
    auto second = Stored("b", "two");
    first.hasLargeNumbers = true;
    second.hasLargeNumbers = true;
    RawEnd end;
    end.isLarge = true;
    QVERIFY(place.write(place.archive(), RawArchive({first, second}, end)));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{"a", QByteArray(1000, 'a')}, {"b", "two"}}));
}

void TestUnzip::namesAreReadInTheirEncoding_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("madeBy");
    QTest::addColumn<QString>("name");
    constexpr int utf8 = 0x0800;
    constexpr int onDos = 0x0014;
    constexpr int onUnix = 0x0314;
    QTest::newRow("UTF-8, marked") << QByteArray("模型.zrg") << utf8 << onDos << "模型.zrg";
    QTest::newRow("UTF-8 of a Unix, not marked") << QByteArray("模型.zrg") << 0 << onUnix << "模型.zrg";
    QTest::newRow("GBK") << QByteArray("\xC4\xA3\xD0\xCD.zrg") << 0 << onDos << "模型.zrg";
    QTest::newRow("GBK of a Unix") << QByteArray("\xC4\xA3\xD0\xCD.zrg") << 0 << onUnix << "模型.zrg";
    // 誠 ends in the byte of a backslash.
    QTest::newRow("GBK with a backslash's byte") << QByteArray("\xD5\x5C") << 0 << onDos << "誠";
    QTest::newRow("four bytes of GB18030") << QByteArray("\x95\x32\x82\x36") << 0 << onDos << "𠀀";
    QTest::newRow("plain") << QByteArray("model.zrg") << 0 << onDos << "model.zrg";
}

void TestUnzip::namesAreReadInTheirEncoding()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, flags);
    QFETCH(int, madeBy);
    QFETCH(QString, name);
    auto entry = Stored(bytes, "one");
    entry.flags = static_cast<quint16>(flags);
    entry.madeBy = static_cast<quint16>(madeBy);
    const ZipPlace place;
    QVERIFY(place.write(place.archive(), RawArchive({entry})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{name, "one"}}));
}

void TestUnzip::backslashesPartFolders()
{
    const ZipPlace place;
    auto folder = Stored("parts\\", "");
    folder.madeBy = 0x0014;
    QVERIFY(place.write(place.archive(), RawArchive({folder, Stored("parts\\a.zrg", "one")})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(place.files(place.target()), (Files{{"parts/a.zrg", "one"}}));
}

void TestUnzip::smallArchiveMayUnfoldManyTimes()
{
    const ZipPlace place;
    QVERIFY(place.write(place.archive(), RawArchive({Zeros("a", 64U << 20U)})));
    QVERIFY(CZip::unZip(place.archive(), place.target()));
    QCOMPARE(QFileInfo(place.target() + "/a").size(), 64LL << 20U);
}

QTEST_GUILESS_MAIN(TestUnzip)
#include "test_unzip.moc"
