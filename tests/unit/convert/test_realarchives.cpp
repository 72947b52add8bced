// SPDX-License-Identifier: MIT
// Chosen archives of every kind, repackaged by the real packer.
#include "EditorCommon/zip.h"
#include "convert/kyvrepackageworker.h"
#include "convert/kyvuploadtask.h"
#include "rawarchive.h"
#include "zipsuite.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;
using Files = QMap<QString, QByteArray>;

namespace
{

QByteArray Noise(int size)
{
    QRandomGenerator random(11);
    QByteArray bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random.generate());
    return bytes;
}

RawEntry Locked()
{
    auto entry = Deflated("a.zrg", "geometry");
    entry.flags |= 1U;
    return entry;
}

RawEntry NamedInGbk()
{
    auto entry = Stored("\xC4\xA3\xD0\xCD.zrg", "geometry");
    entry.flags = 0;
    entry.madeBy = 0x0014;
    return entry;
}

QByteArray ManyEntries()
{
    std::vector<RawEntry> entries;
    for (int number = 0; number < 100000; ++number)
        entries.push_back(Stored(QByteArray::number(number) + ".zrg", ""));
    RawEnd end;
    end.isLarge = true;
    return RawArchive(entries, end);
}

} // namespace

class TestRealArchives : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void modelFilesAreRepackaged_data();
    void modelFilesAreRepackaged();
    void badArchiveIsAFailureAndLeavesNothing_data();
    void badArchiveIsAFailureAndLeavesNothing();
    void archiveWithoutAModelFileIsAFailure();

private:
    /// Repackages an archive of these bytes. True when the worker says that it is done.
    [[nodiscard]] bool repackage(const QByteArray& bytes) const;

    std::unique_ptr<ZipPlace> m_place;
};

void TestRealArchives::init()
{
    m_place = std::make_unique<ZipPlace>();
    QVERIFY(QDir().mkpath(KyvUploadFolder()));
}

void TestRealArchives::cleanup()
{
    QDir(KyvUploadFolder()).removeRecursively();
}

bool TestRealArchives::repackage(const QByteArray& bytes) const
{
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    if (!ZipPlace::write(m_place->archive(), bytes))
        return false;
    worker.OnStartRepackage("alias", m_place->archive());
    return ends.count() == 1 && ends.first().at(1).toBool();
}

void TestRealArchives::modelFilesAreRepackaged_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Files>("files");
    QTest::newRow("with ballast") << RawArchive({Deflated("a.zrg", QByteArray(9000, 'g')),
                                                 Stored("a.zrim", "index"), Stored("a.rvt", Noise(50000))})
                                  << Files{{"a.zrg", QByteArray(9000, 'g')}, {"a.zrim", "index"}};
    QTest::newRow("with a part of noise")
        << RawArchive({Stored("a.zrg", Noise(70000))}) << Files{{"a.zrg", Noise(70000)}};
    QTest::newRow("with names in GBK") << RawArchive({NamedInGbk()}) << Files{{"模型.zrg", "geometry"}};
}

void TestRealArchives::modelFilesAreRepackaged()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(repackage(bytes));
    QVERIFY(EditorCommon::CZip::unZip(KyvWorkFolder("alias") + "/house.kyv", m_place->target()));
    QTEST(m_place->files(m_place->target()), "files");
}

void TestRealArchives::badArchiveIsAFailureAndLeavesNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto good = RawArchive({Deflated("a.zrg", QByteArray(9000, 'g')), Stored("b.zrim", Noise(2000))});
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no zip") << Noise(30000);
    QTest::newRow("locked") << RawArchive({Locked()});
    QTest::newRow("100,000 entries") << ManyEntries();
    QTest::newRow("climbing") << RawArchive({Stored("../a.zrg", "x")});
    for (int percent = 1; percent < 100; ++percent)
        QTest::addRow("cut at %d %%", percent) << good.left(good.size() * percent / 100);
    auto zeros = Zeros("a.zrg", 4ULL << 30U);
    zeros.hasLargeNumbers = true;
    QTest::newRow("4 GB of zeros") << RawArchive({zeros});
}

void TestRealArchives::badArchiveIsAFailureAndLeavesNothing()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!repackage(bytes));
    QCOMPARE(m_place->files(KyvUploadFolder()), Files());
    QCOMPARE(m_place->files(m_place->path()).keys(), QStringList("house.kyv"));
}

void TestRealArchives::archiveWithoutAModelFileIsAFailure()
{
    QVERIFY(!repackage(RawArchive({Stored("readme.txt", "text"), Stored("inner/a.zrg", "geometry")})));
    QVERIFY(!QFileInfo::exists(KyvWorkFolder("alias") + "/house.kyv"));
}

QTEST_GUILESS_MAIN(TestRealArchives)
#include "test_realarchives.moc"
