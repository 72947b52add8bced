// SPDX-License-Identifier: MIT
#include "EditorCommon/kyvapi.h"
#include "archivesender.h"
#include "archiveserver.h"
#include "fakes/logbook.h"
#include "zipsuite.h"

#include <QRandomGenerator>
#include <QTest>

using namespace EditorCommon;

namespace
{

QByteArray Noise(int size)
{
    QRandomGenerator random(3);
    QByteArray bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random.generate());
    return bytes;
}

QString Md5(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

const SendPatience small{10, std::chrono::milliseconds(1), 3};

/// One way to send an archive of 25 bytes in portions of 10.
struct Sending {
    explicit Sending(const ArchiveServer& server, const SendPatience& patience = small)
    {
        http::Client client;
        isReady = client.setServer(server.address()) && ZipPlace::write(place.archive(), bytes);
        fault = ArchiveSender(client, "bim", "bim/t/house.kyv", patience).send(place.archive(), md5);
    }

    ZipPlace place;
    QByteArray bytes = Noise(25);
    bool isReady = false;
    http::Fault fault;
    QString md5;
};

/// The body of a request.
QJsonObject BodyOf(const std::string& request)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(request.substr(request.find("\r\n\r\n") + 4)))
        .object();
}

} // namespace

class TestArchiveSender : public QObject
{
    Q_OBJECT

private slots:
    void archiveGoesInPortions();
    void requestsAreThoseOfTheContract();
    void sendingGoesOnWhereTheServerStands_data();
    void sendingGoesOnWhereTheServerStands();
    void whatTheServerHoldsAlreadyCountsForTheDigest();
    void portionWhoseAnswerWasLostIsNotSentTwice();
    void portionThatNeverArrivedIsSentAgain();
    void everyRequestMayFailTwice_data();
    void everyRequestMayFailTwice();
    void threeFaultsWithoutAByteEndIt();
    void faultsWithBytesInBetweenAreForgiven();
    void refusalEndsItAtOnce_data();
    void refusalEndsItAtOnce();
    void otherDigestIsSentAnewOnce();
    void secondOtherDigestEndsIt();
    void answersThatMakeNoSenseEndIt_data();
    void answersThatMakeNoSenseEndIt();
    void fileThatCannotBeReadIsNotBegun_data();
    void fileThatCannotBeReadIsNotBegun();
    void failureLeavesTheDigestAlone();
    void callOfTheApiSendsWithTheRealPortions();
    void callOfTheApiLogsItsFailure();
};

void TestArchiveSender::archiveGoesInPortions()
{
    const ArchiveServer server;
    const Sending sending(server);
    QVERIFY(sending.isReady && !sending.fault);
    QCOMPARE(server.steps(), QStringList({"POST archives", "PUT 0", "PUT 10", "PUT 20", "POST finish"}));
    QCOMPARE(server.bytes(), sending.bytes);
    QCOMPARE(sending.md5, Md5(sending.bytes));
    QVERIFY(server.isFinished());
}

void TestArchiveSender::requestsAreThoseOfTheContract()
{
    const ArchiveServer server;
    const Sending sending(server);
    const auto requests = server.requests();
    QVERIFY(requests.at(0).starts_with("POST /api/v1/projects/bim/archives HTTP/1.1\r\n"));
    QCOMPARE(BodyOf(requests.at(0)), (QJsonObject{{"path", "bim/t/house.kyv"}, {"size", 25}}));
    QVERIFY(requests.at(2).starts_with("PUT /api/v1/projects/bim/archives/a1/bytes/10 HTTP/1.1\r\n"));
    QVERIFY(requests.at(2).find("\r\nContent-Type: application/octet-stream\r\n") != std::string::npos);
    QVERIFY(requests.at(4).starts_with("POST /api/v1/projects/bim/archives/a1/finish HTTP/1.1\r\n"));
    QCOMPARE(BodyOf(requests.at(4)), (QJsonObject{{"md5", Md5(sending.bytes)}}));
}

void TestArchiveSender::sendingGoesOnWhereTheServerStands_data()
{
    QTest::addColumn<int>("held");
    QTest::addColumn<QStringList>("puts");
    QTest::newRow("a portion") << 10 << QStringList({"PUT 10", "PUT 20"});
    QTest::newRow("something crooked") << 7 << QStringList({"PUT 7", "PUT 17"});
    QTest::newRow("all but one byte") << 24 << QStringList("PUT 24");
    QTest::newRow("all") << 25 << QStringList();
}

void TestArchiveSender::sendingGoesOnWhereTheServerStands()
{
    QFETCH(int, held);
    QFETCH(QStringList, puts);
    ArchiveServer server;
    server.setBytes(Noise(25).left(held));
    const Sending sending(server);
    QVERIFY(!sending.fault);
    QCOMPARE(server.steps(), QStringList("POST archives") + puts + QStringList("POST finish"));
    QCOMPARE(server.bytes(), sending.bytes);
    QCOMPARE(sending.md5, Md5(sending.bytes));
}

void TestArchiveSender::whatTheServerHoldsAlreadyCountsForTheDigest()
{
    ArchiveServer server;
    server.setBytes("other bytes than the file has");
    server.setBytes(server.bytes().left(12));
    const Sending sending(server);
    QVERIFY(!sending.fault);
    QCOMPARE(server.steps(), QStringList({"POST archives", "PUT 12", "PUT 22", "POST finish", // refused
                                          "POST archives", "PUT 0", "PUT 10", "PUT 20", "POST finish"}));
    QCOMPARE(server.bytes(), sending.bytes);
}

void TestArchiveSender::portionWhoseAnswerWasLostIsNotSentTwice()
{
    ArchiveServer* self = nullptr;
    ArchiveServer server([&](int number, const std::string& path) -> std::optional<ScriptedServer::Answer> {
        if (number != 3)
            return std::nullopt;
        static_cast<void>(self->truth(path));
        return ArchiveServer::lostAnswer();
    });
    self = &server;
    const Sending sending(server);
    QVERIFY(!sending.fault);
    QCOMPARE(server.steps(),
             QStringList({"POST archives", "PUT 0", "PUT 10", "POST archives", "PUT 20", "POST finish"}));
    QCOMPARE(server.bytes(), sending.bytes);
}

void TestArchiveSender::portionThatNeverArrivedIsSentAgain()
{
    const ArchiveServer server([](int number, const std::string&) {
        return number == 3 ? std::optional(ArchiveServer::lostAnswer()) : std::nullopt;
    });
    const Sending sending(server);
    QVERIFY(!sending.fault);
    QCOMPARE(server.steps(), QStringList({"POST archives", "PUT 0", "PUT 10", "POST archives", "PUT 10",
                                          "PUT 20", "POST finish"}));
    QCOMPARE(server.bytes(), sending.bytes);
    QCOMPARE(sending.md5, Md5(sending.bytes));
}

void TestArchiveSender::everyRequestMayFailTwice_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("code");
    for (const char* step : {"archives", "bytes/0", "bytes/20", "finish"}) {
        QTest::addRow("%s, lost", step) << step << 0 << 0;
        QTest::addRow("%s, server in trouble", step) << step << 500 << 50000;
        QTest::addRow("%s, proxy in trouble", step) << step << 502 << 0;
        QTest::addRow("%s, archive gone", step) << step << 404 << 40411;
        QTest::addRow("%s, stands elsewhere", step) << step << 409 << 40910;
        QTest::addRow("%s, bytes missing", step) << step << 409 << 40911;
        QTest::addRow("%s, finished already", step) << step << 409 << 40913;
    }
}

void TestArchiveSender::everyRequestMayFailTwice()
{
    QFETCH(QString, step);
    QFETCH(int, status);
    QFETCH(int, code);
    std::atomic<int> faults = 0;
    const ArchiveServer server([&](int, const std::string& path) -> std::optional<ScriptedServer::Answer> {
        if (!path.ends_with(step.toStdString()) || faults >= 2)
            return std::nullopt;
        ++faults;
        return status == 0 ? ArchiveServer::lostAnswer() : ArchiveServer::error(status, code);
    });
    const Sending sending(server);
    QVERIFY2(!sending.fault, sending.fault.msg.c_str());
    QCOMPARE(int(faults), 2);
    QCOMPARE(server.bytes(), sending.bytes);
}

void TestArchiveSender::threeFaultsWithoutAByteEndIt()
{
    const ArchiveServer server([](int, const std::string& path) {
        return path.ends_with("bytes/10") ? std::optional(ArchiveServer::error(500, 50000)) : std::nullopt;
    });
    const Sending sending(server);
    QCOMPARE(sending.fault.code, 50000);
    QCOMPARE(server.steps(), QStringList({"POST archives", "PUT 0", "PUT 10", "POST archives", "PUT 10",
                                          "POST archives", "PUT 10"}));
}

void TestArchiveSender::faultsWithBytesInBetweenAreForgiven()
{
    std::atomic<int> portions = 0;
    const ArchiveServer server([&](int, const std::string& path) {
        const bool isPortion = path.find("/bytes/") != std::string::npos;
        const bool isRefused = isPortion && ++portions % 3 != 0;
        return isRefused ? std::optional(ArchiveServer::error(503, 0)) : std::nullopt;
    });
    const Sending sending(server, {2, std::chrono::milliseconds(1), 3});
    QVERIFY2(!sending.fault, sending.fault.msg.c_str());
    QCOMPARE(server.bytes(), sending.bytes);
    QCOMPARE(int(portions), 39); // 13 portions, each the third time
}

void TestArchiveSender::refusalEndsItAtOnce_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("code");
    QTest::newRow("malformed") << 400 << 40001;
    QTest::newRow("login ended") << 401 << 40014;
    QTest::newRow("not allowed") << 403 << 40300;
    QTest::newRow("no project") << 404 << 40400;
    QTest::newRow("too large") << 413 << 41300;
    QTest::newRow("disk full") << 507 << 50700;
}

void TestArchiveSender::refusalEndsItAtOnce()
{
    QFETCH(int, status);
    QFETCH(int, code);
    for (int at = 1; at <= 5; ++at) {
        const ArchiveServer server([&](int number, const std::string&) {
            return number == at ? std::optional(ArchiveServer::error(status, code)) : std::nullopt;
        });
        const Sending sending(server);
        QCOMPARE(sending.fault.code, code);
        QCOMPARE(int(server.requests().size()), at);
    }
}

void TestArchiveSender::otherDigestIsSentAnewOnce()
{
    ArchiveServer* self = nullptr;
    ArchiveServer server([&](int number, const std::string& path) -> std::optional<ScriptedServer::Answer> {
        if (number != 3)
            return std::nullopt;
        auto answer = self->truth(path);
        auto damaged = self->bytes();
        damaged[15] = static_cast<char>(damaged.at(15) ^ 1);
        self->setBytes(damaged);
        return answer;
    });
    self = &server;
    const Sending sending(server);
    QVERIFY(!sending.fault);
    QCOMPARE(server.steps().count("POST finish"), 2);
    QCOMPARE(server.bytes(), sending.bytes);
    QCOMPARE(sending.md5, Md5(sending.bytes));
}

void TestArchiveSender::secondOtherDigestEndsIt()
{
    const ArchiveServer server([](int, const std::string& path) {
        return path.ends_with("finish") ? std::optional(ArchiveServer::error(409, 40912)) : std::nullopt;
    });
    const Sending sending(server);
    QCOMPARE(sending.fault.code, 40912);
    QCOMPARE(server.steps().count("POST finish"), 2);
}

void TestArchiveSender::answersThatMakeNoSenseEndIt_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("body");
    QTest::newRow("begin: no JSON") << "archives"
                                    << "<html>";
    QTest::newRow("begin: no name") << "archives"
                                    << R"({"received": 0})";
    QTest::newRow("begin: no number") << "archives"
                                      << R"({"archive": "a1"})";
    QTest::newRow("begin: text") << "archives"
                                 << R"({"archive": "a1", "received": "0"})";
    QTest::newRow("begin: below zero") << "archives"
                                       << R"({"archive": "a1", "received": -5})";
    QTest::newRow("begin: more than there is") << "archives"
                                               << R"({"archive": "a1", "received": 26})";
    QTest::newRow("portion: no JSON") << "bytes/0"
                                      << "";
    QTest::newRow("portion: less than was sent") << "bytes/0"
                                                 << R"({"received": 9})";
    QTest::newRow("portion: more than was sent") << "bytes/0"
                                                 << R"({"received": 11})";
}

void TestArchiveSender::answersThatMakeNoSenseEndIt()
{
    QFETCH(QString, step);
    QFETCH(QString, body);
    const ArchiveServer server([&](int, const std::string& path) {
        return path.ends_with(step.toStdString())
                   ? std::optional(ScriptedServer::reply(200, body.toStdString()))
                   : std::nullopt;
    });
    const Sending sending(server);
    QCOMPARE(sending.fault.code, int(http::faultcode::badReply));
    QVERIFY(server.requests().size() <= 2);
}

void TestArchiveSender::fileThatCannotBeReadIsNotBegun_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("missing") << false;
    QTest::newRow("empty") << true;
}

void TestArchiveSender::fileThatCannotBeReadIsNotBegun()
{
    QFETCH(bool, isThere);
    const ArchiveServer server;
    const ZipPlace place;
    QVERIFY(!isThere || place.write(place.archive(), {}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QString md5;
    QVERIFY(ArchiveSender(client, "bim", "bim/t/house.kyv", small).send(place.archive(), md5));
    QVERIFY(server.requests().empty());
}

void TestArchiveSender::failureLeavesTheDigestAlone()
{
    const ArchiveServer server(
        [](int, const std::string&) { return std::optional(ArchiveServer::error(403, 40300)); });
    const Sending sending(server);
    QVERIFY(sending.fault);
    QCOMPARE(sending.md5, QString());
}

void TestArchiveSender::callOfTheApiSendsWithTheRealPortions()
{
    const ArchiveServer server;
    const ZipPlace place;
    const auto bytes = Noise((4 << 20) + 5);
    QVERIFY(place.write(place.archive(), bytes));
    KYVApi::init(QString::fromStdString(server.address()), "token-1");
    QString md5;
    QVERIFY(KYVApi::uploadKyv(place.archive(), "{bim}", "{bim}/t/别墅.kyv", md5));
    QCOMPARE(server.steps(), QStringList({"POST archives", "PUT 0", "PUT 4194304", "POST finish"}));
    QVERIFY(server.bytes() == bytes);
    QCOMPARE(md5, Md5(bytes));
    const auto begin = server.requests().front();
    QVERIFY(begin.starts_with("POST /api/v1/projects/%7Bbim%7D/archives "));
    QVERIFY(begin.find("\r\nAuthorization: Bearer token-1\r\n") != std::string::npos);
    QCOMPARE(BodyOf(begin).value("path"), QJsonValue("{bim}/t/别墅.kyv"));
}

void TestArchiveSender::callOfTheApiLogsItsFailure()
{
    const ArchiveServer server(
        [](int, const std::string&) { return std::optional(ArchiveServer::error(403, 40300)); });
    const ZipPlace place;
    QVERIFY(place.write(place.archive(), "bytes"));
    KYVApi::init(QString::fromStdString(server.address()), "token-1");
    Fakes::LogBook log;
    QString md5 = "before";
    QVERIFY(!KYVApi::uploadKyv(place.archive(), "bim", "bim/t/house.kyv", md5));
    QCOMPARE(md5, QString("before"));
    QCOMPARE(log.take(), QStringList("warning: uploadKyv failed: 40300 \"said so\""));
    QVERIFY(!KYVApi::uploadKyv(place.archive(), "", "/t/house.kyv", md5));
    QCOMPARE(int(server.requests().size()), 1);
}

QTEST_GUILESS_MAIN(TestArchiveSender)
#include "test_archivesender.moc"
