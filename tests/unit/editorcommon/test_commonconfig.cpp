// SPDX-License-Identifier: MIT
#include "EditorCommon/commonconfig.h"
#include "fakes/logbook.h"
#include "settingsfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using EditorCommon::CommonConfig;
using EditorCommon::ReadSettingsFile;

namespace
{

void Write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

class TestCommonConfig : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void textsOfTheFileBesideTheProgramAreGivenByKey();
    void unknownKeyGivesAnEmptyText();
    void valueThatIsNoTextGivesAnEmptyText();
    void textsMayBeOfAnyScript();
    void missingFileHasNoTextsAndIsNoFault();
    void badFileHasNoTextsAndTheLogSaysWhy_data();
    void badFileHasNoTextsAndTheLogSaysWhy();
    void folderInPlaceOfTheFileIsNoCrash();

private:
    QString m_path = QCoreApplication::applicationDirPath() + QStringLiteral("/commonConfig.json");
};

void TestCommonConfig::initTestCase()
{
    Write(m_path, R"({"proj4_info": "+proj=longlat", "count": 3, "nested": {"a": "b"}, "城市": "上海"})");
}

void TestCommonConfig::cleanupTestCase()
{
    QVERIFY(QFile::remove(m_path));
}

void TestCommonConfig::textsOfTheFileBesideTheProgramAreGivenByKey()
{
    QCOMPARE(CommonConfig::getInstance().getConfigInfo(QStringLiteral("proj4_info")),
             QStringLiteral("+proj=longlat"));
}

void TestCommonConfig::unknownKeyGivesAnEmptyText()
{
    QCOMPARE(CommonConfig::getInstance().getConfigInfo(QStringLiteral("nothing")), QString());
}

void TestCommonConfig::valueThatIsNoTextGivesAnEmptyText()
{
    QCOMPARE(CommonConfig::getInstance().getConfigInfo(QStringLiteral("count")), QString());
    QCOMPARE(CommonConfig::getInstance().getConfigInfo(QStringLiteral("nested")), QString());
}

void TestCommonConfig::textsMayBeOfAnyScript()
{
    QCOMPARE(CommonConfig::getInstance().getConfigInfo(QStringLiteral("城市")), QStringLiteral("上海"));
}

void TestCommonConfig::missingFileHasNoTextsAndIsNoFault()
{
    Fakes::LogBook log;
    const QTemporaryDir folder;
    QVERIFY(ReadSettingsFile(folder.filePath(QStringLiteral("none.json"))).isEmpty());
    QCOMPARE(log.take(), QStringList());
}

void TestCommonConfig::badFileHasNoTextsAndTheLogSaysWhy_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("holds no settings");
    QTest::newRow("cut in the middle")
        << QByteArray(R"({"proj4_info": "+pr)") << QStringLiteral("holds no settings");
    QTest::newRow("a list") << QByteArray(R"(["proj4_info"])") << QStringLiteral("holds no settings");
    QTest::newRow("noise") << QByteArray(4096, '\xff') << QStringLiteral("holds no settings");
    QTest::newRow("10 MB") << QByteArray(10'000'000, ' ') << QStringLiteral("is too large for settings");
}

void TestCommonConfig::badFileHasNoTextsAndTheLogSaysWhy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("bad.json"));
    Write(path, bytes);
    Fakes::LogBook log;
    QVERIFY(ReadSettingsFile(path).isEmpty());
    QCOMPARE(log.linesWith(reason).count(), 1);
    QCOMPARE(log.linesWith(path).count(), 1);
}

void TestCommonConfig::folderInPlaceOfTheFileIsNoCrash()
{
    const QTemporaryDir folder;
    Fakes::LogBook log;
    QVERIFY(ReadSettingsFile(folder.path()).isEmpty());
    QCOMPARE(log.linesWith(QStringLiteral("cannot read")).count(), 1);
}

QTEST_GUILESS_MAIN(TestCommonConfig)
#include "test_commonconfig.moc"
