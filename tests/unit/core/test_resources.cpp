// SPDX-License-Identifier: MIT
#include <QFile>
#include <QLibrary>
#include <QTest>

/// Screens and pictures of the plugin's library, as a host sees them that loads and unloads it.
class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void screensAndPicturesComeAndGoWithTheLibrary();
};

void TestResources::screensAndPicturesComeAndGoWithTheLibrary()
{
    QLibrary library(TORVO_HOME_LIBRARY);
    const QStringList files = {":/qmls/main.qml", ":/images/bar_ic_bim.png"};
    for (int i = 0; i < 2; ++i) {
        for (const auto& file : files)
            QVERIFY2(!QFile::exists(file), qPrintable(file));
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        for (const auto& file : files)
            QVERIFY2(QFile::exists(file), qPrintable(file));
        QVERIFY2(library.unload(), qPrintable(library.errorString()));
    }
    for (const auto& file : files)
        QVERIFY2(!QFile::exists(file), qPrintable(file));
}

QTEST_GUILESS_MAIN(TestResources)
#include "test_resources.moc"
