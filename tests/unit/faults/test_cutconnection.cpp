// SPDX-License-Identifier: MIT
#include "cuttingproxy.h"
#include "faultplan.h"
#include "stage.h"

#include <QTest>
#include <QUrl>

namespace
{

constexpr std::chrono::seconds longEnough(20);

int PortOf(const RealServer& server)
{
    return QUrl(QString::fromStdString(server.address())).port();
}

} // namespace

/// Connections break in the middle of a transfer, and answers get lost on their way.
class TestCutConnection : public QObject
{
    Q_OBJECT

private slots:
    void transferEndsWholeOrNotAtAllAndGoesOn_data();
    void transferEndsWholeOrNotAtAllAndGoesOn();
    void uploadIsDoneWhenTheAnswerToItsCommitIsLost_data();
    void uploadIsDoneWhenTheAnswerToItsCommitIsLost();
    void stateIsRightWhenTheClientIsKilledWithoutTheAnswerToItsCommit_data();
    void stateIsRightWhenTheClientIsKilledWithoutTheAnswerToItsCommit();
    void stateIsRightWhenTheServerIsOutOfReachAfterTheCommit_data();
    void stateIsRightWhenTheServerIsOutOfReachAfterTheCommit();
    void uploadGoesOnWhenAnotherAnswerIsLost_data();
    void uploadGoesOnWhenAnotherAnswerIsLost();

private:
    [[nodiscard]] static Outcome run(Stage& stage, Operation what, CuttingProxy& proxy);
};

namespace
{

void UploadRows()
{
    QTest::addColumn<int>("operation");
    for (const auto operation : {Operation::firstUpload, Operation::upload})
        QTest::newRow(NameOf(operation)) << static_cast<int>(operation);
}

} // namespace

Outcome TestCutConnection::run(Stage& stage, Operation what, CuttingProxy& proxy)
{
    Client client;
    client.start(stage.commandOf(what, proxy.address()));
    return client.wait();
}

void TestCutConnection::transferEndsWholeOrNotAtAllAndGoesOn_data()
{
    QTest::addColumn<int>("operation");
    for (const auto operation : allOperations)
        QTest::newRow(NameOf(operation)) << static_cast<int>(operation);
}

void TestCutConnection::transferEndsWholeOrNotAtAllAndGoesOn()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(10);
    Stage stage;
    CuttingProxy proxy(PortOf(stage.server()));
    stage.prepare(what);
    QVERIFY(run(stage, what, proxy).isDone);
    const auto whole = proxy.bytes();
    for (int i = 0; i < plan.count(); ++i) {
        // Every second cut is among the last bytes, where little is sent and much is decided.
        const auto cut = plan.coin() ? 1 + plan.below(whole) : whole - plan.below(1500);
        const bool isForGood = plan.coin();
        stage.prepare(what);
        proxy.cutAfter(cut, isForGood);
        const auto outcome = run(stage, what, proxy);
        auto words = outcome.hasCrashed ? std::string("the client has crashed; ") : std::string();
        words += stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        QVERIFY2(words.empty(), plan.told(i,
                                          "behind " + std::to_string(cut) + " of " + std::to_string(whole) +
                                              " bytes" + (isForGood ? " for good" : ""),
                                          words)
                                    .c_str());
    }
}

void TestCutConnection::uploadIsDoneWhenTheAnswerToItsCommitIsLost_data()
{
    UploadRows();
}

void TestCutConnection::uploadIsDoneWhenTheAnswerToItsCommitIsLost()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    Stage stage;
    CuttingProxy proxy(PortOf(stage.server()));
    // All attempts at the commit, or the first only.
    for (const int lost : {1, 4}) {
        stage.prepare(what);
        proxy.loseAnswersTo("/commit HTTP/1.1", lost, false);
        const auto outcome = run(stage, what, proxy);
        QVERIFY(proxy.waitForLoss(longEnough));
        QVERIFY2(outcome.isDone, qPrintable(outcome.words));
        const auto words = stage.findings(what, true) + stage.findingsOfRepetition(what);
        QVERIFY2(words.empty(), words.c_str());
    }
}

void TestCutConnection::stateIsRightWhenTheClientIsKilledWithoutTheAnswerToItsCommit_data()
{
    UploadRows();
}

void TestCutConnection::stateIsRightWhenTheClientIsKilledWithoutTheAnswerToItsCommit()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(3);
    Stage stage;
    CuttingProxy proxy(PortOf(stage.server()));
    for (int i = 0; i < plan.count(); ++i) {
        stage.prepare(what);
        proxy.loseAnswersTo("/commit HTTP/1.1", 1, true);
        Client client;
        client.start(stage.commandOf(what, proxy.address()));
        QVERIFY(proxy.waitForLoss(longEnough));
        client.kill();
        QVERIFY(client.wait().hasCrashed);
        // The revision has been taken.
        const auto words = stage.findings(what, true) + stage.findingsOfRepetition(what);
        QVERIFY2(words.empty(), plan.told(i, "at the lost answer", words).c_str());
    }
}

void TestCutConnection::stateIsRightWhenTheServerIsOutOfReachAfterTheCommit_data()
{
    UploadRows();
}

void TestCutConnection::stateIsRightWhenTheServerIsOutOfReachAfterTheCommit()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    Stage stage;
    CuttingProxy proxy(PortOf(stage.server()));
    stage.prepare(what);
    proxy.loseAnswersTo("/commit HTTP/1.1", 1, true);
    const auto outcome = run(stage, what, proxy);
    QVERIFY(!outcome.isDone);
    QCOMPARE(outcome.code(), int(http::faultcode::unreachable));
    // Taken none the less, and the next look shows it.
    const auto words = stage.findings(what, true) + stage.findingsOfRepetition(what);
    QVERIFY2(words.empty(), words.c_str());
}

void TestCutConnection::uploadGoesOnWhenAnotherAnswerIsLost_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("text");
    for (const auto operation : {Operation::firstUpload, Operation::upload}) {
        for (const char* text : {"/uploads HTTP/1.1", "/pieces HTTP/1.1"})
            QTest::addRow("%s, %s", NameOf(operation), text) << static_cast<int>(operation) << text;
    }
}

void TestCutConnection::uploadGoesOnWhenAnotherAnswerIsLost()
{
    QFETCH(int, operation);
    QFETCH(QString, text);
    const auto what = static_cast<Operation>(operation);
    Stage stage;
    CuttingProxy proxy(PortOf(stage.server()));
    stage.prepare(what);
    proxy.loseAnswersTo(text.toStdString(), 1, false);
    const auto outcome = run(stage, what, proxy);
    QVERIFY(proxy.waitForLoss(longEnough));
    QVERIFY(!outcome.hasCrashed);
    // Pieces are sent again; a beginning is the person's to repeat.
    QCOMPARE(outcome.isDone, text.startsWith("/pieces"));
    const auto words = stage.findings(what, outcome.isDone) + stage.findingsOfRepetition(what);
    QVERIFY2(words.empty(), words.c_str());
}

QTEST_GUILESS_MAIN(TestCutConnection)
#include "test_cutconnection.moc"
