// SPDX-License-Identifier: MIT
#include "project/projectconfig.h"

#include "fakes/logbook.h"

#include <memory>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <rapidcheck.h>

using namespace TorvoEditor;

namespace
{

/// Any text, of signs of many scripts.
rc::Gen<QString> AnyText()
{
    return rc::gen::map(rc::gen::container<std::vector<int>>(rc::gen::inRange(1, 0xd7ff)),
                        [](const std::vector<int>& signs) {
                            QString text;
                            for (const int sign : signs)
                                text.append(QChar(static_cast<ushort>(sign)));
                            return text;
                        });
}

/// Objects of texts and objects, as deep as `depth`.
rc::Gen<QJsonObject> AnyObject(int depth)
{
    return rc::gen::exec([depth] {
        QJsonObject object;
        const int count = *rc::gen::inRange(0, 5);
        for (int i = 0; i < count; ++i) {
            if (depth > 0 && *rc::gen::inRange(0, 3) == 0)
                object.insert(*AnyText(), *AnyObject(depth - 1));
            else
                object.insert(*AnyText(), *AnyText());
        }
        return object;
    });
}

void Write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

class TestProjectConfig : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keysAndTextsDoNotStandInClear();
    void objectsInsideAreEncodedToo();
    void otherValuesBecomeEmptyTexts();
    void everyListSurvivesTheFile();
    void fileIsAnIndentedArray();
    void missingFileIsLoggedAndEmpty();
    void unreadableTextIsLoggedAndEmpty_data();
    void unreadableTextIsLoggedAndEmpty();
    void fileThatHoldsNoArrayIsEmpty_data();
    void fileThatHoldsNoArrayIsEmpty();
    void textsThatAreNoBase64AreTakenForWhatTheyDecodeTo();
    void fileThatCannotBeWrittenIsLogged();

private:
    QTemporaryDir m_folder;
    QString m_path;
    std::unique_ptr<Fakes::LogBook> m_log;
};

void TestProjectConfig::init()
{
    QVERIFY(m_folder.isValid());
    m_path = m_folder.filePath("ProjectConfig.json");
    QFile::remove(m_path);
    m_log.reset();
    m_log = std::make_unique<Fakes::LogBook>();
}

void TestProjectConfig::keysAndTextsDoNotStandInClear()
{
    const QJsonArray encoded =
        EncodeProjectConfig({QJsonObject{{"guid", "g-1"}, {"name", QString::fromUtf8("滨江花园")}}});
    QCOMPARE(encoded.size(), 1);
    const auto project = encoded.at(0).toObject();
    QCOMPARE(project.keys(), QStringList({"Z3VpZA==", "bmFtZQ=="}));
    QCOMPARE(project.value("Z3VpZA==").toString(), QString("Zy0x"));
    QCOMPARE(project.value("bmFtZQ==").toString(), QString::fromLatin1(QByteArray("滨江花园").toBase64()));
}

void TestProjectConfig::objectsInsideAreEncodedToo()
{
    const QJsonObject inner{{"needUpgrade", "true"}};
    const auto encoded = EncodeProjectConfig({QJsonObject{{"customMap", QJsonObject{{"inner", inner}}}}});
    const auto outer = encoded.at(0).toObject().value("Y3VzdG9tTWFw").toObject();
    QCOMPARE(outer.keys(), QStringList("aW5uZXI="));
    QCOMPARE(outer.value("aW5uZXI=").toObject(), (QJsonObject{{"bmVlZFVwZ3JhZGU=", "dHJ1ZQ=="}}));
}

void TestProjectConfig::otherValuesBecomeEmptyTexts()
{
    const QJsonObject odd{{"n", 1}, {"b", true}, {"a", QJsonArray{"x"}}, {"z", QJsonValue()}};
    const auto decoded = DecodeProjectConfig(EncodeProjectConfig({odd}));
    QCOMPARE(decoded.at(0).toObject(), (QJsonObject{{"n", ""}, {"b", ""}, {"a", ""}, {"z", ""}}));
}

void TestProjectConfig::everyListSurvivesTheFile()
{
    QVERIFY(rc::check([this] {
        QJsonArray projects;
        const int count = *rc::gen::inRange(0, 4);
        for (int i = 0; i < count; ++i)
            projects.append(*AnyObject(2));
        WriteProjectConfig(m_path, EncodeProjectConfig(projects));
        RC_ASSERT(DecodeProjectConfig(ReadProjectConfig(m_path)) == projects);
    }));
    QCOMPARE(m_log->take(), QStringList());
}

void TestProjectConfig::fileIsAnIndentedArray()
{
    WriteProjectConfig(m_path, EncodeProjectConfig({QJsonObject{{"guid", "g-1"}}}));
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[\n    {\n        \"Z3VpZA==\": \"Zy0x\"\n    }\n]\n"));
}

void TestProjectConfig::missingFileIsLoggedAndEmpty()
{
    QCOMPARE(ReadProjectConfig(m_path), QJsonArray());
    QCOMPARE(m_log->take(),
             QStringList("warning: open file  \"" + m_path + "\" failed: \"No such file or directory\""));
}

void TestProjectConfig::unreadableTextIsLoggedAndEmpty_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "illegal value";
    QTest::newRow("cut in the middle") << QByteArray("[{\"Z3VpZA==\": \"Zy0") << "unterminated string";
    QTest::newRow("noise") << QByteArray("\x01\x02\x03") << "illegal value";
}

void TestProjectConfig::unreadableTextIsLoggedAndEmpty()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    Write(m_path, bytes);
    QCOMPARE(ReadProjectConfig(m_path), QJsonArray());
    QCOMPARE(m_log->take(), QStringList("warning: parse json failed: \"" + reason + "\""));
}

void TestProjectConfig::fileThatHoldsNoArrayIsEmpty_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("an object") << QByteArray("{}");
    QTest::newRow("an empty array") << QByteArray("[]");
}

void TestProjectConfig::fileThatHoldsNoArrayIsEmpty()
{
    QFETCH(QByteArray, bytes);
    Write(m_path, bytes);
    QCOMPARE(ReadProjectConfig(m_path), QJsonArray());
    QCOMPARE(m_log->take(), QStringList());
}

void TestProjectConfig::textsThatAreNoBase64AreTakenForWhatTheyDecodeTo()
{
    const auto decoded =
        DecodeProjectConfig({QJsonObject{{"Z3VpZA==", "!!"}}, QJsonValue(7), QJsonArray{"x"}});
    QCOMPARE(decoded, (QJsonArray{QJsonObject{{"guid", ""}}, QJsonObject(), QJsonObject()}));
}

void TestProjectConfig::fileThatCannotBeWrittenIsLogged()
{
    const QString path = m_folder.filePath("missing/ProjectConfig.json");
    WriteProjectConfig(path, {});
    QCOMPARE(m_log->take(),
             QStringList("warning: open file  \"" + path + "\" failed: \"No such file or directory\""));
}

QTEST_GUILESS_MAIN(TestProjectConfig)
#include "test_projectconfig.moc"
