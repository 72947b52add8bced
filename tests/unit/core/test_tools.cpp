// SPDX-License-Identifier: MIT
#include "core/tools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using TorvoEditor::Tools;

class TestTools : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void toLocalFileOfATextParsesTolerantly_data();
    void toLocalFileOfATextParsesTolerantly();
    void toLocalFileOfAUrl();
    void fromLocalFileMakesAFileUrl();
    void toLocalFileListKeepsTheOrder();
    void isExistOfNothingIsFalse();
    void isExistOfFileAndFolder();
    void partsOfAPath_data();
    void partsOfAPath();
    void absolutePathsStartAtTheWorkingFolder();
    void canonicalFilePathFollowsLinks();
    void canonicalFilePathOfAMissingFileIsEmpty();
    void mkdirMakesOneLevel();
    void mkpathMakesAllLevels();
    void readLittleFileReadsAllOfIt();
    void readLittleFileOfAMissingFileIsEmpty();
    void checkOrCreatePathLeavesAnExistingFolderAlone();
    void checkOrCreatePathMakesAllLevels();
    void checkOrCreatePathBelowAFileFails();

private:
    [[nodiscard]] QString pathOf(const QString& name) const { return m_folder->filePath(name); }
    void write(const QString& name, const QByteArray& bytes) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    Tools m_tools;
};

void TestTools::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestTools::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(pathOf(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void TestTools::toLocalFileOfATextParsesTolerantly_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("file");
    QTest::newRow("plain") << "file:///a/b.fbx"
                           << "/a/b.fbx";
    QTest::newRow("blank") << "file:///a/b c.fbx"
                           << "/a/b c.fbx";
    QTest::newRow("encoded") << "file:///a/%E6%A8%A1%E5%9E%8B.ifc" << QString::fromUtf8("/a/模型.ifc");
    QTest::newRow("lone percent sign") << "file:///a/100%.fbx"
                                       << "/a/100%.fbx";
    QTest::newRow("no file") << "http://a/b"
                             << "";
    QTest::newRow("empty") << ""
                           << "";
}

void TestTools::toLocalFileOfATextParsesTolerantly()
{
    QFETCH(QString, url);
    QFETCH(QString, file);
    QCOMPARE(m_tools.toLocalFile(url), file);
}

void TestTools::toLocalFileOfAUrl()
{
    QCOMPARE(m_tools.toLocalFile(QUrl::fromLocalFile("/a/b c")), QString("/a/b c"));
}

void TestTools::fromLocalFileMakesAFileUrl()
{
    QCOMPARE(m_tools.fromLocalFile("/a/b c"), QUrl("file:///a/b%20c"));
}

void TestTools::toLocalFileListKeepsTheOrder()
{
    const QList<QUrl> urls{QUrl("file:///2"), QUrl("http://none"), QUrl("file:///1")};
    QCOMPARE(m_tools.toLocalFileList(urls), QList<QString>({"/2", "", "/1"}));
}

void TestTools::isExistOfNothingIsFalse()
{
    QVERIFY(!m_tools.isExist(""));
    QVERIFY(!m_tools.isExist(pathOf("none")));
}

void TestTools::isExistOfFileAndFolder()
{
    write("file", "x");
    QVERIFY(m_tools.isExist(pathOf("file")));
    QVERIFY(m_tools.isExist(m_folder->path()));
}

void TestTools::partsOfAPath_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("filePath");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("baseName");
    QTest::addColumn<QString>("completeBaseName");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("completeSuffix");
    QTest::addColumn<QString>("path");
    QTest::newRow("two dots") << "/a/b.tar.gz"
                              << "/a/b.tar.gz"
                              << "b.tar.gz"
                              << "b"
                              << "b.tar"
                              << "gz"
                              << "tar.gz"
                              << "/a";
    QTest::newRow("no suffix") << "/a/b"
                               << "/a/b"
                               << "b"
                               << "b"
                               << "b"
                               << ""
                               << ""
                               << "/a";
    QTest::newRow("relative") << "a/b.fbx"
                              << "a/b.fbx"
                              << "b.fbx"
                              << "b"
                              << "b"
                              << "fbx"
                              << "fbx"
                              << "a";
    QTest::newRow("empty") << ""
                           << ""
                           << ""
                           << ""
                           << ""
                           << ""
                           << ""
                           << "";
}

void TestTools::partsOfAPath()
{
    QFETCH(QString, file);
    QTEST(m_tools.filePath(file), "filePath");
    QTEST(m_tools.fileName(file), "fileName");
    QTEST(m_tools.baseName(file), "baseName");
    QTEST(m_tools.completeBaseName(file), "completeBaseName");
    QTEST(m_tools.suffix(file), "suffix");
    QTEST(m_tools.completeSuffix(file), "completeSuffix");
    QTEST(m_tools.path(file), "path");
    QCOMPARE(m_tools.bundleName(file), QFileInfo(file).bundleName());
}

void TestTools::absolutePathsStartAtTheWorkingFolder()
{
    QCOMPARE(m_tools.absoluteFilePath("a/b.fbx"), QDir::currentPath() + "/a/b.fbx");
    QCOMPARE(m_tools.absolutePath("a/b.fbx"), QDir::currentPath() + "/a");
}

void TestTools::canonicalFilePathFollowsLinks()
{
    write("target", "x");
    QVERIFY(QFile::link(pathOf("target"), pathOf("link")));
    QCOMPARE(m_tools.canonicalFilePath(pathOf("link")), QFileInfo(pathOf("target")).canonicalFilePath());
}

void TestTools::canonicalFilePathOfAMissingFileIsEmpty()
{
    QCOMPARE(m_tools.canonicalFilePath(pathOf("none")), QString());
}

void TestTools::mkdirMakesOneLevel()
{
    QVERIFY(m_tools.mkdir(pathOf("one")));
    QVERIFY(QFileInfo(pathOf("one")).isDir());
    QVERIFY(!m_tools.mkdir(pathOf("two/three")));
    QVERIFY(!QFileInfo::exists(pathOf("two")));
}

void TestTools::mkpathMakesAllLevels()
{
    QVERIFY(m_tools.mkpath(pathOf("two/three")));
    QVERIFY(QFileInfo(pathOf("two/three")).isDir());
}

void TestTools::readLittleFileReadsAllOfIt()
{
    const QByteArray large(3 * 1024 * 1024 + 1, 'x');
    write("large", large);
    QCOMPARE(m_tools.readLittleFile(pathOf("large")), large);
}

void TestTools::readLittleFileOfAMissingFileIsEmpty()
{
    QCOMPARE(m_tools.readLittleFile(pathOf("none")), QByteArray());
}

void TestTools::checkOrCreatePathLeavesAnExistingFolderAlone()
{
    write("file", "x");
    const auto changed = QFileInfo(m_folder->path()).lastModified();
    QVERIFY(m_tools.checkOrCreatePath(m_folder->path()));
    QCOMPARE(QFileInfo(m_folder->path()).lastModified(), changed);
    QVERIFY(m_tools.isExist(pathOf("file")));
}

void TestTools::checkOrCreatePathMakesAllLevels()
{
    QVERIFY(m_tools.checkOrCreatePath(pathOf("a/b/c")));
    QVERIFY(QFileInfo(pathOf("a/b/c")).isDir());
}

void TestTools::checkOrCreatePathBelowAFileFails()
{
    write("file", "x");
    QVERIFY(!m_tools.checkOrCreatePath(pathOf("file/below")));
}

QTEST_GUILESS_MAIN(TestTools)
#include "test_tools.moc"
