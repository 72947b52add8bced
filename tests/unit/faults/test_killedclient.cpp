// SPDX-License-Identifier: MIT
#include "faultplan.h"
#include "stage.h"

#include <QTest>

/// The program of a person is killed in the middle of a transfer.
class TestKilledClient : public QObject
{
    Q_OBJECT

private slots:
    void killedTransferLeavesTheOldOrTheNewAndGoesOn_data();
    void killedTransferLeavesTheOldOrTheNewAndGoesOn();
};

void TestKilledClient::killedTransferLeavesTheOldOrTheNewAndGoesOn_data()
{
    QTest::addColumn<int>("operation");
    for (const auto operation : allOperations)
        QTest::newRow(NameOf(operation)) << static_cast<int>(operation);
}

void TestKilledClient::killedTransferLeavesTheOldOrTheNewAndGoesOn()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(12);
    Stage stage;
    const auto whole = stage.measure(what);
    int killed = 0;
    for (int i = 0; i < plan.count(); ++i) {
        const std::chrono::microseconds moment(plan.below(static_cast<std::uint64_t>(whole.length.count())));
        stage.prepare(what);
        Client client;
        client.start(stage.commandOf(what));
        client.sleepUntil(moment);
        client.kill();
        const auto outcome = client.wait();
        killed += outcome.hasCrashed ? 1 : 0;
        auto words = stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        QVERIFY2(words.empty(), plan.told(i,
                                          "after " + std::to_string(moment.count()) + " of " +
                                              std::to_string(whole.length.count()) + " us",
                                          words)
                                    .c_str());
    }
    QVERIFY2(killed > 0, "no kill came in time");
}

QTEST_GUILESS_MAIN(TestKilledClient)
#include "test_killedclient.moc"
