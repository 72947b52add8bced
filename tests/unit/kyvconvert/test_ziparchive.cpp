// SPDX-License-Identifier: MIT
#include "kyvconvert/ziparchive.h"

#include "archives.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using kyvconvert::BadArchive;
using kyvconvert::ZipReader;

/// What others put into a zip file.
class TestZipArchive : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void filesComeBackInTheOrderOfTheirNames();
    void bytesComeBack();
    void entryThatLeavesTheFolderIsRefused_data();
    void entryThatLeavesTheFolderIsRefused();
    void harmlessNamesAreTaken_data();
    void harmlessNamesAreTaken();
    void linkIsRefused();
    void lockedEntryIsRefused();
    void twoFilesOfOneNameAreRefused();
    void smallArchiveOfALargeFileIsRefused();
    void sizeThatIsALieIsTold_data();
    void sizeThatIsALieIsTold();
    void changedByteIsTold();
    void archiveThatIsCutShortIsRefused();
    void whatIsNoArchiveIsRefused();
    void missingPartIsTold();

private:
    [[nodiscard]] QString file() const { return m_folder->filePath("a.zip"); }
    [[nodiscard]] std::filesystem::path zip() const { return file().toStdString(); }
    [[nodiscard]] QString refusal() const;
    void change(const std::function<void(QByteArray&)>& change) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestZipArchive::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

/// The words with which the archive is refused; empty when it is not.
QString TestZipArchive::refusal() const
{
    try {
        const ZipReader reader(zip());
        for (const auto& name : reader.namesEndingWith(""))
            (void)reader.read(name);
    } catch (const BadArchive& bad) {
        return bad.what();
    }
    return {};
}

void TestZipArchive::change(const std::function<void(QByteArray&)>& change) const
{
    QFile archive(file());
    QVERIFY(archive.open(QIODevice::ReadWrite));
    auto bytes = archive.readAll();
    change(bytes);
    QVERIFY(archive.resize(0) && archive.seek(0));
    QCOMPARE(archive.write(bytes), qint64(bytes.size()));
}

void TestZipArchive::filesComeBackInTheOrderOfTheirNames()
{
    {
        ArchiveMaker archive(file());
        archive.add("b.zrg", "2");
        archive.add("folder/", "");
        archive.add("folder/a.zrg", "3");
        archive.add("a.zrg", "1");
        archive.add("a.zrim", "4");
    }
    const ZipReader reader(zip());
    QCOMPARE(reader.namesEndingWith(".zrg"), std::vector<std::string>({"a.zrg", "b.zrg", "folder/a.zrg"}));
    QCOMPARE(reader.namesEndingWith(".zrim"), std::vector<std::string>{"a.zrim"});
}

void TestZipArchive::bytesComeBack()
{
    const auto bytes = QByteArray("kyv\0\xff", 5).repeated(10000);
    {
        ArchiveMaker archive(file());
        archive.add("a", bytes);
        archive.add("b", "");
    }
    const ZipReader reader(zip());
    const auto read = reader.read("a");
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(read.data()), static_cast<int>(read.size())), bytes);
    QVERIFY(reader.read("b").empty());
}

void TestZipArchive::entryThatLeavesTheFolderIsRefused_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("up") << QByteArray("../a");
    QTest::newRow("up in the middle") << QByteArray("a/../../b");
    QTest::newRow("up at the end") << QByteArray("a/..");
    QTest::newRow("from the root") << QByteArray("/etc/passwd");
    QTest::newRow("with backslashes") << QByteArray("..\\a");
    QTest::newRow("with a drive") << QByteArray("C:a");
}

void TestZipArchive::entryThatLeavesTheFolderIsRefused()
{
    QFETCH(QByteArray, name);
    {
        ArchiveMaker archive(file());
        archive.add("good", "1");
        archive.add(name, "2");
    }
    QVERIFY2(refusal().contains("outside"), qPrintable(refusal()));
}

void TestZipArchive::harmlessNamesAreTaken_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("dots in a name") << QByteArray("a..b/..c/d..");
    QTest::newRow("Chinese") << QByteArray("楼层/一层.zrg");
    QTest::newRow("a code of old") << QByteArray("\xd2\xbb\xb2\xe3.zrg");
}

void TestZipArchive::harmlessNamesAreTaken()
{
    QFETCH(QByteArray, name);
    {
        ArchiveMaker archive(file());
        archive.add(name, "1");
    }
    QCOMPARE(refusal(), QString());
    QCOMPARE(ZipReader(zip()).namesEndingWith("").size(), std::size_t(1));
}

void TestZipArchive::linkIsRefused()
{
    {
        ArchiveMaker archive(file());
        archive.makeLink(archive.add("a.zrg", "/etc/passwd"));
    }
    QVERIFY2(refusal().contains("link"), qPrintable(refusal()));
}

void TestZipArchive::lockedEntryIsRefused()
{
    {
        ArchiveMaker archive(file());
        archive.lock(archive.add("a.zrg", "1"));
    }
    QVERIFY2(refusal().contains("password"), qPrintable(refusal()));
}

void TestZipArchive::twoFilesOfOneNameAreRefused()
{
    {
        ArchiveMaker archive(file());
        archive.add("a.zrg", "1");
        archive.add("b.zrg", "2");
    }
    change([](QByteArray& bytes) { bytes.replace("b.zrg", "a.zrg"); });
    QVERIFY(!refusal().isEmpty());
}

void TestZipArchive::smallArchiveOfALargeFileIsRefused()
{
    {
        ArchiveMaker archive(file());
        archive.add("a.zrg", QByteArray(64 << 20, '\0'));
    }
    QVERIFY2(refusal().contains("larger than can be meant"), qPrintable(refusal()));
}

void TestZipArchive::sizeThatIsALieIsTold_data()
{
    QTest::addColumn<quint32>("size");
    QTest::newRow("less than there is") << 40000U;
    QTest::newRow("more than there is") << 60000U;
    QTest::newRow("far more than there is") << 0x7fffffffU;
}

void TestZipArchive::sizeThatIsALieIsTold()
{
    QFETCH(quint32, size);
    {
        ArchiveMaker archive(file());
        archive.add("a.zrg", QByteArray("0123456789").repeated(5000));
    }
    // Where the two headers of the file tell its unpacked size.
    QByteArray told(4, '\0');
    qToLittleEndian(size, told.data());
    change([&](QByteArray& bytes) {
        bytes.replace(22, 4, told);
        bytes.replace(bytes.indexOf("PK\1\2") + 24, 4, told);
    });
    QVERIFY(!refusal().isEmpty());
}

void TestZipArchive::changedByteIsTold()
{
    {
        ArchiveMaker archive(file());
        archive.add("a.zrg", QByteArray("0123456789").repeated(5000));
    }
    change([](QByteArray& bytes) { bytes[60] = static_cast<char>(bytes[60] ^ 4); });
    QVERIFY2(refusal().contains("a.zrg is damaged"), qPrintable(refusal()));
}

void TestZipArchive::archiveThatIsCutShortIsRefused()
{
    {
        ArchiveMaker archive(file());
        archive.add("a.zrg", QByteArray("0123456789").repeated(5000));
    }
    change([](QByteArray& bytes) { bytes.chop(30); });
    QVERIFY(!refusal().isEmpty());
}

void TestZipArchive::whatIsNoArchiveIsRefused()
{
    QFile archive(file());
    QVERIFY(archive.open(QIODevice::WriteOnly) && archive.write("no archive") > 0);
    archive.close();
    QVERIFY2(refusal().contains("no archive"), qPrintable(refusal()));
}

void TestZipArchive::missingPartIsTold()
{
    {
        ArchiveMaker archive(file());
        archive.add("a.zrg", "1");
    }
    const ZipReader reader(zip());
    QVERIFY_EXCEPTION_THROWN((void)reader.read("b.zrg"), BadArchive);
}

QTEST_GUILESS_MAIN(TestZipArchive)
#include "test_ziparchive.moc"
