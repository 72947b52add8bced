// SPDX-License-Identifier: MIT
#include "http/fault.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using http::Fault;

class TestFault : public QObject
{
    Q_OBJECT

private slots:
    void faultIsTrueWhenSomethingWentWrong();
    void noFaultIsTheEmptyText();
    void faultIsAnObjectWithCodeAndWords();
    void wordsThatAreNoTextAreMended();
    void answerOfTheServerIsItsOwnFault_data();
    void answerOfTheServerIsItsOwnFault();
};

void TestFault::faultIsTrueWhenSomethingWentWrong()
{
    QVERIFY(!Fault());
    QVERIFY(bool(Fault{40400, "gone"}));
}

void TestFault::noFaultIsTheEmptyText()
{
    QCOMPARE(http::ToJson({}), std::string());
}

void TestFault::faultIsAnObjectWithCodeAndWords()
{
    const auto text = QByteArray::fromStdString(http::ToJson({50300, "没有 \"网络\"\n"}));
    QCOMPARE(QJsonDocument::fromJson(text).object(),
             (QJsonObject{{"code", 50300}, {"msg", QStringLiteral("没有 \"网络\"\n")}}));
}

void TestFault::wordsThatAreNoTextAreMended()
{
    const auto text = QByteArray::fromStdString(http::ToJson({50200, "a\xff"}));
    QCOMPARE(QJsonDocument::fromJson(text).object().value("msg").toString(), QStringLiteral("a\uFFFD"));
}

void TestFault::answerOfTheServerIsItsOwnFault_data()
{
    QTest::addColumn<unsigned>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("msg");
    const auto row = [](const char* name, unsigned status, const char* body, int code, const char* msg) {
        QTest::newRow(name) << status << QByteArray(body) << code << QByteArray(msg);
    };
    const char* unexpected404 = "the project server answered with an unexpected status 404";
    row("in the server's form", 404, R"({"code": 40400, "msg": "not here"})", 40400, "not here");
    row("a code of its own with 401", 401, R"({"code": 40010, "msg": "no"})", 40010, "no");
    row("without words", 404, R"({"code": 40400})", 40400, "");
    row("words that are no text", 404, R"({"code": 40400, "msg": 7})", 40400, "");
    row("401 without a body", 401, "", 40014, "the login has expired");
    row("401 as a web page", 401, "<html>", 40014, "the login has expired");
    row("a web page", 404, "<html>", 50200, unexpected404);
    row("nothing", 404, "", 50200, unexpected404);
    row("JSON of another kind", 404, "[40400]", 50200, unexpected404);
    row("a code that is a text", 404, R"({"code": "40400"})", 50200, unexpected404);
    row("a code with a fraction", 404, R"({"code": 40400.5})", 50200, unexpected404);
    row("half a JSON", 500, R"({"code": 50000, )", 50200,
        "the project server answered with an unexpected status 500");
}

void TestFault::answerOfTheServerIsItsOwnFault()
{
    QFETCH(unsigned, status);
    QFETCH(QByteArray, body);
    QFETCH(int, code);
    QFETCH(QByteArray, msg);
    const auto fault = http::FaultOfAnswer(status, body.toStdString());
    QCOMPARE(fault.code, code);
    QCOMPARE(QByteArray::fromStdString(fault.msg), msg);
}

QTEST_GUILESS_MAIN(TestFault)
#include "test_fault.moc"
