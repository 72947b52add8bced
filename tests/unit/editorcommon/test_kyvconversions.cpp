// SPDX-License-Identifier: MIT
// What the calls about conversions send, and what they make of the answers.
#include "EditorCommon/kyvapi.h"
#include "fakes/logbook.h"
#include "scriptedserver.h"

#include <QJsonDocument>
#include <QTest>

using EditorCommon::KYVApi;

namespace
{

using Answers = std::vector<ScriptedServer::Answer>;

/// A server that gives these answers in turn, the last one from then on.
class Server
{
public:
    explicit Server(Answers answers)
        : m_answers(std::move(answers))
        , m_server(
              [this](const std::string&) { return m_answers.at(std::min(m_next++, m_answers.size() - 1)); })
    {
        KYVApi::init(QString::fromStdString(m_server.address()), "token-1");
    }
    Server(int status, const std::string& body)
        : Server(Answers{ScriptedServer::reply(status, body)})
    {
    }

    /// The first line of each request, without the protocol.
    [[nodiscard]] QStringList asked() const
    {
        QStringList lines;
        for (const auto& request : m_server.requests())
            lines.append(QString::fromStdString(request.substr(0, request.find(" HTTP/1.1"))));
        return lines;
    }
    [[nodiscard]] QByteArray body() const
    {
        const auto request = m_server.requests().back();
        return QByteArray::fromStdString(request.substr(request.find("\r\n\r\n") + 4));
    }

private:
    Answers m_answers;
    std::atomic<std::size_t> m_next = 0;
    ScriptedServer m_server; // last: it uses all of the above
};

const QJsonObject job{{"projectId", "bim"}, {"path", "bim/t/house.kyv"}, {"name", "别墅"}, {"status", 6}};
const ScriptedServer::Answer lost{"", 0, false};

using List = bool (*)(const QString&, QJsonArray&);

} // namespace

Q_DECLARE_METATYPE(List)

class TestKyvConversions : public QObject
{
    Q_OBJECT

private slots:
    void jobIsRegistered();
    void jobWhoseAnswerWasLostIsRegisteredAgain();
    void jobThatIsRefusedIsNotRegisteredAgain();
    void answerWithoutAnIdIsAFailure_data();
    void answerWithoutAnIdIsAFailure();
    void jobWithoutAProjectIsNotSent();

    void listIsRead_data();
    void listIsRead();
    void listThatCannotBeReadLeavesTheOldOne_data();
    void listThatCannotBeReadLeavesTheOldOne();
    void listOfNoProjectIsNotAskedFor_data() { listIsRead_data(); }
    void listOfNoProjectIsNotAskedFor();

    void progressIsRead_data();
    void progressIsRead();
    void progressThatCannotBeReadLeavesTheNumber_data();
    void progressThatCannotBeReadLeavesTheNumber();
    void jobIsDeleted();
    void refusedDeletionIsAFailure();
    void jobWithoutAnIdIsNeitherAskedForNorDeleted();
};

void TestKyvConversions::jobIsRegistered()
{
    const Server server(200, R"({"id": "j-7"})");
    QString id;
    QVERIFY(KYVApi::kyvSave(job, id));
    QCOMPARE(id, QString("j-7"));
    QCOMPARE(server.asked(), QStringList("POST /api/v1/projects/bim/conversions"));
    QCOMPARE(QJsonDocument::fromJson(server.body()).object(), job);
}

void TestKyvConversions::jobWhoseAnswerWasLostIsRegisteredAgain()
{
    const Server server({lost, ScriptedServer::reply(200, R"({"id": "j-7"})")});
    QString id;
    QVERIFY(KYVApi::kyvSave(job, id));
    QCOMPARE(id, QString("j-7"));
    QCOMPARE(server.asked().size(), 2);
}

void TestKyvConversions::jobThatIsRefusedIsNotRegisteredAgain()
{
    const Server server(409, R"({"code": 40912, "msg": "another archive"})");
    Fakes::LogBook log;
    QString id = "before";
    QVERIFY(!KYVApi::kyvSave(job, id));
    QCOMPARE(id, QString("before"));
    QCOMPARE(server.asked().size(), 1);
    QCOMPARE(log.take(), QStringList("warning: kyvSave failed: 40912 \"another archive\""));
}

void TestKyvConversions::answerWithoutAnIdIsAFailure_data()
{
    QTest::addColumn<QString>("body");
    QTest::newRow("none") << "{}";
    QTest::newRow("empty") << R"({"id": ""})";
    QTest::newRow("a number") << R"({"id": 7})";
    QTest::newRow("no JSON") << "j-7";
}

void TestKyvConversions::answerWithoutAnIdIsAFailure()
{
    QFETCH(QString, body);
    const Server server(200, body.toStdString());
    Fakes::LogBook log;
    QString id = "before";
    QVERIFY(!KYVApi::kyvSave(job, id));
    QCOMPARE(id, QString("before"));
    QCOMPARE(log.take().size(), 1);
}

void TestKyvConversions::jobWithoutAProjectIsNotSent()
{
    const Server server(200, R"({"id": "j-7"})");
    QString id;
    QVERIFY(!KYVApi::kyvSave({{"name", "别墅"}}, id));
    QCOMPARE(server.asked(), QStringList());
}

void TestKyvConversions::listIsRead_data()
{
    QTest::addColumn<List>("list");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("key");
    QTest::newRow("jobs") << &KYVApi::getConvertKyvInfoBimProj << "/conversions"
                          << "jobs";
    QTest::newRow("models") << &KYVApi::getKyvInfoByBimProj << "/models"
                            << "models";
    QTest::newRow("failures") << &KYVApi::getConvertFailedList << "/conversions/failures"
                              << "failures";
}

void TestKyvConversions::listIsRead()
{
    QFETCH(List, list);
    QFETCH(QString, path);
    QFETCH(QString, key);
    const QJsonArray told{QJsonObject{{"id", "1"}, {"name", "塔楼"}}, QJsonObject{{"id", "2"}}};
    const Server server(200, QJsonDocument(QJsonObject{{key, told}}).toJson().toStdString());
    QJsonArray read;
    QVERIFY(list("{bim}", read));
    QCOMPARE(read, told);
    QCOMPARE(server.asked(), QStringList("GET /api/v1/projects/%7Bbim%7D" + path));
}

void TestKyvConversions::listThatCannotBeReadLeavesTheOldOne_data()
{
    QTest::addColumn<List>("list");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("body");
    const std::vector<std::pair<const char*, List>> lists = {{"jobs", &KYVApi::getConvertKyvInfoBimProj},
                                                             {"models", &KYVApi::getKyvInfoByBimProj},
                                                             {"failures", &KYVApi::getConvertFailedList}};
    for (const auto& [name, list] : lists) {
        QTest::addRow("%s, refused", name) << list << 404 << R"({"code": 40400, "msg": "none"})";
        QTest::addRow("%s, server in trouble", name) << list << 500 << "";
        QTest::addRow("%s, no JSON", name) << list << 200 << "<html>";
        QTest::addRow("%s, without the key", name) << list << 200 << R"({"others": []})";
        QTest::addRow("%s, no list", name) << list << 200 << QString(R"({"%1": {}})").arg(name);
    }
}

void TestKyvConversions::listThatCannotBeReadLeavesTheOldOne()
{
    QFETCH(List, list);
    QFETCH(int, status);
    QFETCH(QString, body);
    const Server server(status, body.toStdString());
    Fakes::LogBook log;
    QJsonArray read{"before"};
    QVERIFY(!list("bim", read));
    QCOMPARE(read, QJsonArray{"before"});
    QCOMPARE(log.take().size(), 1);
}

void TestKyvConversions::listOfNoProjectIsNotAskedFor()
{
    QFETCH(List, list);
    const Server server(200, "{}");
    QJsonArray read;
    QVERIFY(!list("", read));
    QCOMPARE(server.asked(), QStringList());
}

void TestKyvConversions::progressIsRead_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<double>("percent");
    QTest::newRow("none") << R"({"percent": 0})" << 0.0;
    QTest::newRow("part") << R"({"percent": 37.5})" << 37.5;
    QTest::newRow("all") << R"({"percent": 100})" << 100.0;
    QTest::newRow("beyond") << R"({"percent": 140})" << 100.0;
    QTest::newRow("below") << R"({"percent": -1})" << 0.0;
}

void TestKyvConversions::progressIsRead()
{
    QFETCH(QString, body);
    const Server server(200, body.toStdString());
    double percent = 77;
    QVERIFY(KYVApi::getKyvConvertProcess("j/7", percent));
    QTEST(percent, "percent");
    QCOMPARE(server.asked(), QStringList("GET /api/v1/conversions/j%2F7/progress"));
}

void TestKyvConversions::progressThatCannotBeReadLeavesTheNumber_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("body");
    QTest::newRow("no job") << 404 << R"({"code": 40412, "msg": "none"})";
    QTest::newRow("a text") << 200 << R"({"percent": "5"})";
    QTest::newRow("nothing") << 200 << "{}";
}

void TestKyvConversions::progressThatCannotBeReadLeavesTheNumber()
{
    QFETCH(int, status);
    QFETCH(QString, body);
    const Server server(status, body.toStdString());
    Fakes::LogBook log;
    double percent = 77;
    QVERIFY(!KYVApi::getKyvConvertProcess("j", percent));
    QCOMPARE(percent, 77.0);
}

void TestKyvConversions::jobIsDeleted()
{
    const Server server(204, "");
    QVERIFY(KYVApi::delKyvConvert("j-7"));
    QCOMPARE(server.asked(), QStringList("DELETE /api/v1/conversions/j-7"));
}

void TestKyvConversions::refusedDeletionIsAFailure()
{
    const Server server(404, R"({"code": 40412, "msg": "none"})");
    Fakes::LogBook log;
    QVERIFY(!KYVApi::delKyvConvert("j-7"));
    QCOMPARE(log.take(), QStringList("warning: delKyvConvert failed: 40412 \"none\""));
}

void TestKyvConversions::jobWithoutAnIdIsNeitherAskedForNorDeleted()
{
    const Server server(200, "{}");
    double percent = 0;
    QVERIFY(!KYVApi::getKyvConvertProcess("", percent));
    QVERIFY(!KYVApi::delKyvConvert(""));
    QCOMPARE(server.asked(), QStringList());
}

QTEST_GUILESS_MAIN(TestKyvConversions)
#include "test_kyvconversions.moc"
