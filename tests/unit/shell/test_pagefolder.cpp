// SPDX-License-Identifier: MIT
#include "shell/web/pagefolder.h"

#include <memory>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using shell::PageFolder;

class TestPageFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void pagesLieBesideTheProgram();
    void fileOfAnAddress_data();
    void fileOfAnAddress();
    void coversWhatLiesBelowIt_data();
    void coversWhatLiesBelowIt();
    void holdsItsOwnFiles();
    void holdsNothingThatIsMissing();
    void holdsNoFileOutside();
    void linkOutOfTheFolderIsNotHeld();
    void folderBehindALinkHoldsItsFiles();
    void folderThatIsMissingHoldsNothing();
    void addressOfAnotherMachineIsNotHeld_data();
    void addressOfAnotherMachineIsNotHeld();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_place->filePath(name); }
    void write(const QString& name) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    std::unique_ptr<QTemporaryDir> m_place;
};

void TestPageFolder::init()
{
    m_place = std::make_unique<QTemporaryDir>();
    write("pages/a/index.html");
    write("secret.txt");
}

void TestPageFolder::pagesLieBesideTheProgram()
{
    QCOMPARE(PageFolder::ofTheProgram().path(), QCoreApplication::applicationDirPath() + "/EditorWebExtern");
}

void TestPageFolder::fileOfAnAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("file");
    QTest::newRow("path") << "/a/b.html"
                          << "/a/b.html";
    QTest::newRow("address") << "file:///a/b.html"
                             << "/a/b.html";
    QTest::newRow("way up") << "/a/../c.html"
                            << "/c.html";
    QTest::newRow("encoded address") << "file:///a%20b/%E9%A1%B5.html" << QString::fromUtf8("/a b/页.html");
    QTest::newRow("path with the signs of an address") << "/a#b/c?d%20.html"
                                                       << "/a#b/c?d%20.html";
    QTest::newRow("relative path") << "a/b.html"
                                   << "";
    QTest::newRow("other machine") << "file://machine/a.html"
                                   << "";
    QTest::newRow("share") << "//machine/a.html"
                           << "";
    QTest::newRow("network") << "https://example.org/a.html"
                             << "";
    QTest::newRow("data") << "data:text/html,x"
                          << "";
    QTest::newRow("script") << "javascript:alert(1)"
                            << "";
    QTest::newRow("resource") << "qrc:/a.html"
                              << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void TestPageFolder::fileOfAnAddress()
{
    QFETCH(QString, address);
    QTEST(PageFolder::fileOf(address), "file");
}

void TestPageFolder::coversWhatLiesBelowIt_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isCovered");
    QTest::newRow("file") << "/pages/a.html" << true;
    QTest::newRow("deeper") << "/pages/a/b/c.html" << true;
    QTest::newRow("way within") << "/pages/a/../b.html" << true;
    QTest::newRow("way out") << "/pages/../secret.txt" << false;
    QTest::newRow("folder itself") << "/pages" << false;
    QTest::newRow("longer name") << "/pagesx/a.html" << false;
    QTest::newRow("elsewhere") << "/etc/passwd" << false;
    QTest::newRow("share") << "//pages/a.html" << false;
    QTest::newRow("nothing") << "" << false;
}

void TestPageFolder::coversWhatLiesBelowIt()
{
    QFETCH(QString, file);
    QTEST(PageFolder("/pages").covers(file), "isCovered");
}

void TestPageFolder::holdsItsOwnFiles()
{
    const PageFolder folder(path("pages"));
    QVERIFY(folder.holds(path("pages/a/index.html")));
    QVERIFY(folder.holds(QUrl::fromLocalFile(path("pages/a/index.html"))));
}

void TestPageFolder::holdsNothingThatIsMissing()
{
    QVERIFY(!PageFolder(path("pages")).holds(path("pages/a/other.html")));
}

void TestPageFolder::holdsNoFileOutside()
{
    QVERIFY(!PageFolder(path("pages")).holds(path("secret.txt")));
    QVERIFY(!PageFolder(path("pages")).holds(path("pages/../secret.txt")));
}

void TestPageFolder::linkOutOfTheFolderIsNotHeld()
{
    QVERIFY(QFile::link(path("secret.txt"), path("pages/link.html")));
    QVERIFY(PageFolder(path("pages")).covers(path("pages/link.html")));
    QVERIFY(!PageFolder(path("pages")).holds(path("pages/link.html")));
}

void TestPageFolder::folderBehindALinkHoldsItsFiles()
{
    QVERIFY(QFile::link(path("pages"), path("elsewhere")));
    QVERIFY(PageFolder(path("elsewhere")).holds(path("elsewhere/a/index.html")));
}

void TestPageFolder::folderThatIsMissingHoldsNothing()
{
    QVERIFY(!PageFolder(path("missing")).holds(path("secret.txt")));
    QVERIFY(!PageFolder(path("missing")).holds(QString()));
}

void TestPageFolder::addressOfAnotherMachineIsNotHeld_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("network") << "https://example.org/pages/a/index.html";
    QTest::newRow("data") << "data:text/html,x";
    QTest::newRow("resource") << "qrc:/pages/a/index.html";
    QTest::newRow("blank") << "about:blank";
}

void TestPageFolder::addressOfAnotherMachineIsNotHeld()
{
    QFETCH(QString, address);
    QVERIFY(!PageFolder(path("pages")).holds(QUrl(address)));
    QVERIFY(!PageFolder(path("pages")).holds(QUrl("file://machine" + path("pages/a/index.html"))));
}

QTEST_GUILESS_MAIN(TestPageFolder)
#include "test_pagefolder.moc"
