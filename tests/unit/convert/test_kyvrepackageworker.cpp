// SPDX-License-Identifier: MIT
#include "convert/kyvrepackageworker.h"

#include "uploadsuite.h"

#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

class TestKyvRepackageWorker : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void archiveIsUnpackedIntoTheWorkFolderAndPackedUnderItsName();
    void onlyModelFilesArePacked_data();
    void onlyModelFilesArePacked();
    void modelFilesInFoldersStayBehind();
    void whatIsNotPackedStaysInTheWorkFolder();
    void nothingIsToldOfAMissingArchive();
    void archiveThatCannotBeUnpackedIsAFailure();
    void archiveThatCannotBePackedIsAFailure();
    void archiveWithoutModelFilesEndsAsThePackingSays_data();
    void archiveWithoutModelFilesEndsAsThePackingSays();
    void fileThatCannotBeMovedIsLeftOut();
    void workerIsFreeWhenItTellsTheEnd();
    void workerRunsWhileItWorks();

private:
    std::unique_ptr<UploadSurroundings> around;
};

namespace
{

bool UnpackTo(const QString& folder, const QStringList& names)
{
    for (const auto& name : names) {
        QFile file(folder + '/' + name);
        if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly))
            return false;
    }
    return true;
}

void UnpacksTo(const QStringList& names)
{
    Fakes::SetZipScript(
        {[names](const QString&, const QString& folder) { return UnpackTo(folder, names); }, {}});
}

QByteArray Read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void TestKyvRepackageWorker::init()
{
    around = std::make_unique<UploadSurroundings>();
    QVERIFY(QDir().mkpath(KyvUploadFolder()));
}

void TestKyvRepackageWorker::archiveIsUnpackedIntoTheWorkFolderAndPackedUnderItsName()
{
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    worker.OnStartRepackage("alias", around->archive("别墅.kyv"));
    QCOMPARE(ends, (QList<QVariantList>{{"alias", true}}));
    QCOMPARE(Fakes::Calls(), QStringList({"unZip(别墅.kyv)", "zip(别墅.kyv)"}));
    QCOMPARE(Read(KyvWorkFolder("alias") + "/别墅.kyv"), QByteArray("别墅.ZRIM 别墅.zrg"));
}

void TestKyvRepackageWorker::onlyModelFilesArePacked_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isModel");
    QTest::newRow("geometry") << "a.zrg" << true;
    QTest::newRow("index") << "a.zrim" << true;
    QTest::newRow("scene") << "a.hsf" << true;
    QTest::newRow("upper case") << "A.HSF" << true;
    QTest::newRow("text") << "a.txt" << false;
    QTest::newRow("an archive") << "a.kyv" << false;
    QTest::newRow("longer ending") << "a.zrgx" << false;
    QTest::newRow("no ending") << "zrg" << false;
}

void TestKyvRepackageWorker::onlyModelFilesArePacked()
{
    QFETCH(QString, name);
    QFETCH(bool, isModel);
    UnpacksTo({"always.zrg", name});
    CKyvRepackageWorker worker;
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    const auto packed = QString::fromUtf8(Read(KyvWorkFolder("alias") + "/house.kyv")).split(' ');
    QCOMPARE(packed.contains(name), isModel);
    QVERIFY(packed.contains("always.zrg"));
}

void TestKyvRepackageWorker::modelFilesInFoldersStayBehind()
{
    UnpacksTo({"a.zrg", "inner/b.zrg"});
    CKyvRepackageWorker worker;
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QCOMPARE(Read(KyvWorkFolder("alias") + "/house.kyv"), QByteArray("a.zrg"));
}

void TestKyvRepackageWorker::whatIsNotPackedStaysInTheWorkFolder()
{
    CKyvRepackageWorker worker;
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QCOMPARE(QDir(KyvWorkFolder("alias")).entryList(QDir::Files, QDir::Name),
             QStringList({"ballast.txt", "house.kyv"}));
    QCOMPARE(QDir(KyvWorkFolder("alias") + "/kyvunzip").entryList(QDir::Files, QDir::Name),
             QStringList({"house.ZRIM", "house.zrg"}));
}

void TestKyvRepackageWorker::nothingIsToldOfAMissingArchive()
{
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    worker.OnStartRepackage("alias", around->missingArchive());
    QCOMPARE(ends.count(), 0);
    QCOMPARE(Fakes::Calls(), QStringList());
    QVERIFY(!QFileInfo::exists(KyvWorkFolder("alias")));
    QVERIFY(!worker.isRunning());
}

void TestKyvRepackageWorker::archiveThatCannotBeUnpackedIsAFailure()
{
    Fakes::SetZipScript({[](const QString&, const QString&) { return false; }, {}});
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QCOMPARE(ends, (QList<QVariantList>{{"alias", false}}));
    QCOMPARE(Fakes::Calls(), QStringList("unZip(house.kyv)"));
    QVERIFY(QFileInfo(KyvWorkFolder("alias")).isDir());
}

void TestKyvRepackageWorker::archiveThatCannotBePackedIsAFailure()
{
    Fakes::SetZipScript({{}, [](const QString&, const QString&) { return false; }});
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QCOMPARE(ends, (QList<QVariantList>{{"alias", false}}));
}

void TestKyvRepackageWorker::archiveWithoutModelFilesEndsAsThePackingSays_data()
{
    QTest::addColumn<bool>("isPacked");
    QTest::newRow("packed") << true;
    QTest::newRow("refused") << false;
}

void TestKyvRepackageWorker::archiveWithoutModelFilesEndsAsThePackingSays()
{
    QFETCH(bool, isPacked);
    QStringList packedFolder;
    Fakes::SetZipScript({[](const QString&, const QString& folder) { return UnpackTo(folder, {"a.txt"}); },
                         [&](const QString& folder, const QString&) {
                             packedFolder = QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
                             return QDir(folder).exists() && isPacked;
                         }});
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QCOMPARE(ends, (QList<QVariantList>{{"alias", isPacked}}));
    QCOMPARE(packedFolder, QStringList());
}

void TestKyvRepackageWorker::fileThatCannotBeMovedIsLeftOut()
{
    UnpacksTo({"a.zrg", "b.zrg", "kyvunzip/a.zrg/taken"});
    CKyvRepackageWorker worker;
    QSignalSpy ends(&worker, &CKyvRepackageWorker::sigRepackageFinished);
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QCOMPARE(ends, (QList<QVariantList>{{"alias", true}}));
    QCOMPARE(Read(KyvWorkFolder("alias") + "/house.kyv"), QByteArray("b.zrg"));
    QVERIFY(QFileInfo::exists(KyvWorkFolder("alias") + "/a.zrg"));
}

void TestKyvRepackageWorker::workerIsFreeWhenItTellsTheEnd()
{
    CKyvRepackageWorker worker;
    bool isRunning = true;
    connect(&worker, &CKyvRepackageWorker::sigRepackageFinished, this,
            [&] { isRunning = worker.isRunning(); });
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    QVERIFY(!isRunning);
}

void TestKyvRepackageWorker::workerRunsWhileItWorks()
{
    CKyvRepackageWorker worker;
    QList<bool> running{worker.isRunning()};
    Fakes::SetZipScript({[&](const QString& archive, const QString& folder) {
                             running.append(worker.isRunning());
                             return Fakes::UnpackSample(archive, folder);
                         },
                         {}});
    worker.OnStartRepackage("alias", around->archive("house.kyv"));
    running.append(worker.isRunning());
    QCOMPARE(running, (QList<bool>{false, true, false}));
}

QTEST_GUILESS_MAIN(TestKyvRepackageWorker)
#include "test_kyvrepackageworker.moc"
