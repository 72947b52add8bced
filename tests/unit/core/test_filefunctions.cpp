// SPDX-License-Identifier: MIT
#include "core/filefunctions.h"

#include "fakes/logbook.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace TorvoEditor;

class TestFileFunctions : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void readJsonFileGivesTheObject();
    void readJsonFileOfAMissingFileLogsAndLeavesTheObjectAlone();
    void readJsonFileOfBadJsonLogsAndLeavesTheObjectAlone_data();
    void readJsonFileOfBadJsonLogsAndLeavesTheObjectAlone();
    void readJsonFileWithAnArrayAtTheTopGivesAnEmptyObject();
    void readTextFileReadsUtf8();
    void readTextFileOfAMissingFileLogsAndLeavesTheTextAlone();
    void writeBytesFileReplacesTheContents();
    void writeBytesFileThatCannotBeOpenedLogs();
    void dataDirIsTheDataFolderBesideTheProgram();

private:
    [[nodiscard]] QString pathOf(const QString& name) const { return m_folder->filePath(name); }
    void write(const QString& name, const QByteArray& bytes) const;
    [[nodiscard]] QString openFailure(const QString& path, const QString& reason) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestFileFunctions::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestFileFunctions::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(pathOf(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QString TestFileFunctions::openFailure(const QString& path, const QString& reason) const
{
    return QStringLiteral("warning: open file  \"%1\" failed: \"%2\"").arg(path, reason);
}

void TestFileFunctions::readJsonFileGivesTheObject()
{
    write("a.json", R"({"version": "1.2", "name": "工程"})");
    QJsonObject object;
    QVERIFY(ReadJsonFile(pathOf("a.json"), object));
    QCOMPARE(object, QJsonObject({{"version", "1.2"}, {"name", QString::fromUtf8("工程")}}));
}

void TestFileFunctions::readJsonFileOfAMissingFileLogsAndLeavesTheObjectAlone()
{
    Fakes::LogBook log;
    const QJsonObject before{{"kept", true}};
    QJsonObject object = before;
    QVERIFY(!ReadJsonFile(pathOf("none.json"), object));
    QCOMPARE(object, before);
    QCOMPARE(log.take(), QStringList(openFailure(pathOf("none.json"), "No such file or directory")));
}

void TestFileFunctions::readJsonFileOfBadJsonLogsAndLeavesTheObjectAlone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "illegal value";
    QTest::newRow("cut in the middle") << QByteArray(R"({"version": "1.)") << "unterminated string";
    QTest::newRow("noise") << QByteArray("\x00\xFF\x13\x37", 4) << "illegal value";
    QTest::newRow("bare text") << QByteArray("\"text\"") << "illegal value";
}

void TestFileFunctions::readJsonFileOfBadJsonLogsAndLeavesTheObjectAlone()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    write("bad.json", bytes);
    Fakes::LogBook log;
    const QJsonObject before{{"kept", true}};
    QJsonObject object = before;
    QVERIFY(!ReadJsonFile(pathOf("bad.json"), object));
    QCOMPARE(object, before);
    QCOMPARE(log.take(), QStringList(QStringLiteral("warning: parse json failed: \"%1\"").arg(reason)));
}

void TestFileFunctions::readJsonFileWithAnArrayAtTheTopGivesAnEmptyObject()
{
    write("array.json", "[1, 2]");
    QJsonObject object{{"old", true}};
    QVERIFY(ReadJsonFile(pathOf("array.json"), object));
    QCOMPARE(object, QJsonObject());
}

void TestFileFunctions::readTextFileReadsUtf8()
{
    write("text", "模型\nsecond line");
    QString text;
    QVERIFY(ReadTextFile(pathOf("text"), text));
    QCOMPARE(text, QString::fromUtf8("模型\nsecond line"));
}

void TestFileFunctions::readTextFileOfAMissingFileLogsAndLeavesTheTextAlone()
{
    Fakes::LogBook log;
    QString text = "kept";
    QVERIFY(!ReadTextFile(pathOf("none"), text));
    QCOMPARE(text, QString("kept"));
    QCOMPARE(log.take(), QStringList(openFailure(pathOf("none"), "No such file or directory")));
}

void TestFileFunctions::writeBytesFileReplacesTheContents()
{
    write("file", "a long earlier text");
    QVERIFY(WriteBytesFile(pathOf("file"), "new"));
    QString text;
    QVERIFY(ReadTextFile(pathOf("file"), text));
    QCOMPARE(text, QString("new"));
}

void TestFileFunctions::writeBytesFileThatCannotBeOpenedLogs()
{
    Fakes::LogBook log;
    QVERIFY(!WriteBytesFile(pathOf("none/file"), "new"));
    QCOMPARE(log.take(), QStringList(openFailure(pathOf("none/file"), "No such file or directory")));
}

void TestFileFunctions::dataDirIsTheDataFolderBesideTheProgram()
{
    QCOMPARE(DataDir(), QCoreApplication::applicationDirPath() + "/data");
}

QTEST_GUILESS_MAIN(TestFileFunctions)
#include "test_filefunctions.moc"
