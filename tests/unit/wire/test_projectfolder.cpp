// SPDX-License-Identifier: MIT
#include "wire/projectfolder.h"

#include <fstream>

#include <QTemporaryDir>
#include <QTest>

using namespace wire;

class TestProjectFolder : public QObject
{
    Q_OBJECT

private slots:
    void fileBelongsToAProjectOrNot_data();
    void fileBelongsToAProjectOrNot();
    void filesComeInTheOrderOfTheirBytes();
    void linksAreLeftOut();
};

void TestProjectFolder::fileBelongsToAProjectOrNot_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<bool>("belongs");
    QTest::newRow("database") << QByteArray("project.db") << true;
    QTest::newRow("picture") << QByteArray("projimage.jpg") << true;
    QTest::newRow("in a folder") << QByteArray("a/b.glb") << true;
    QTest::newRow("what SQLite keeps") << QByteArray("project.db-wal") << false;
    QTest::newRow("its index") << QByteArray("project.db-shm") << false;
    QTest::newRow("half-written") << QByteArray("floors.json.tmp") << false;
    QTest::newRow("damaged") << QByteArray("floors.json.damaged") << false;
    QTest::newRow("memory of the server") << QByteArray("sync.json") << false;
}

void TestProjectFolder::fileBelongsToAProjectOrNot()
{
    QFETCH(QByteArray, path);
    QTEST(IsProjectFile(path.toStdString()), "belongs");
}

void TestProjectFolder::filesComeInTheOrderOfTheirBytes()
{
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.path().toStdString();
    std::filesystem::create_directories(path / "b");
    for (const char* name : {"c", "b/x", "B", "project.db", "sync.json", "project.db-wal"})
        std::ofstream(path / name) << "x";
    QVERIFY(ProjectFiles(path) == std::vector<std::string>({"B", "b/x", "c", "project.db"}));
}

void TestProjectFolder::linksAreLeftOut()
{
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.path().toStdString();
    std::filesystem::create_symlink("/etc/passwd", path / "link");
    std::filesystem::create_directory_symlink("/", path / "everything");
    QVERIFY(ProjectFiles(path).empty());
}

QTEST_APPLESS_MAIN(TestProjectFolder)
#include "test_projectfolder.moc"
