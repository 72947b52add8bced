// SPDX-License-Identifier: MIT
#include "shell/hostconfig.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using shell::HostConfig;
using shell::ReadHostConfig;

class TestHostConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void withoutAFileTheDefaultsCount();
    void fileGivesTheSettings();
    void argumentsCountMoreThanTheFile();
    void settingsOfAnotherKindLeaveTheDefaults();
    void notAutoLoginShowsTheLogin();
    void damagedFileIsTold_data();
    void damagedFileIsTold();
    void unknownArgumentIsTold();

private:
    void write(const QByteArray& bytes) const;
    HostConfig read(const QStringList& arguments = {});

    QTemporaryDir m_folder;
    QString m_file;
    QString m_problem;
};

void TestHostConfig::init()
{
    m_file = m_folder.filePath("hostConfig.json");
    QFile::remove(m_file);
    m_problem.clear();
}

void TestHostConfig::write(const QByteArray& bytes) const
{
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

HostConfig TestHostConfig::read(const QStringList& arguments)
{
    return ReadHostConfig(m_file, QStringList("KYVShell") + arguments, m_problem);
}

void TestHostConfig::withoutAFileTheDefaultsCount()
{
    const auto config = read();
    QCOMPARE(m_problem, QString());
    QCOMPARE(config.server, QString("http://127.0.0.1:8480"));
    QCOMPARE(config.appVer, QString("Normal"));
    QVERIFY(!config.isBimSdk && !config.isAutoLoginOff);
}

void TestHostConfig::fileGivesTheSettings()
{
    write(R"({"server": "https://projects.example", "appVer": "Lite", "isBimSdk": true})");
    const auto config = read();
    QCOMPARE(config.server, QString("https://projects.example"));
    QCOMPARE(config.appVer, QString("Lite"));
    QVERIFY(config.isBimSdk);
}

void TestHostConfig::argumentsCountMoreThanTheFile()
{
    write(R"({"server": "http://a", "appVer": "Lite"})");
    const auto config = read({"--server", "http://b", "--app-ver", "Normal", "--bim-sdk"});
    QCOMPARE(config.server, QString("http://b"));
    QCOMPARE(config.appVer, QString("Normal"));
    QVERIFY(config.isBimSdk);
}

void TestHostConfig::settingsOfAnotherKindLeaveTheDefaults()
{
    write(R"({"server": 7, "appVer": null, "isBimSdk": "yes"})");
    const auto config = read();
    QCOMPARE(config.server, QString("http://127.0.0.1:8480"));
    QCOMPARE(config.appVer, QString("Normal"));
    QVERIFY(!config.isBimSdk);
}

void TestHostConfig::notAutoLoginShowsTheLogin()
{
    QVERIFY(read({"notAutoLogin"}).isAutoLoginOff);
    QVERIFY(!read({"NotAutoLogin"}).isAutoLoginOff);
}

void TestHostConfig::damagedFileIsTold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << QByteArray(R"({"server": "http)");
    QTest::newRow("a list") << QByteArray("[]");
}

void TestHostConfig::damagedFileIsTold()
{
    QFETCH(QByteArray, bytes);
    write(bytes);
    const auto config = read();
    QVERIFY(m_problem.contains(m_file));
    QCOMPARE(config.server, QString("http://127.0.0.1:8480"));
}

void TestHostConfig::unknownArgumentIsTold()
{
    static_cast<void>(read({"--colour", "blue"}));
    QVERIFY(m_problem.contains("colour"));
}

QTEST_GUILESS_MAIN(TestHostConfig)
#include "test_hostconfig.moc"
