// SPDX-License-Identifier: MIT
#include "faultplan.h"
#include "stage.h"

#include <QTest>

/// The project server is killed and started again in the middle of a transfer.
class TestKilledServer : public QObject
{
    Q_OBJECT

private slots:
    void transferEndsWholeOrNotAtAllAndGoesOn_data();
    void transferEndsWholeOrNotAtAllAndGoesOn();
};

void TestKilledServer::transferEndsWholeOrNotAtAllAndGoesOn_data()
{
    QTest::addColumn<int>("operation");
    for (const auto operation : allOperations)
        QTest::newRow(NameOf(operation)) << static_cast<int>(operation);
}

void TestKilledServer::transferEndsWholeOrNotAtAllAndGoesOn()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(10);
    Stage stage;
    const auto whole = stage.measure(what);
    int met = 0;
    for (int i = 0; i < plan.count(); ++i) {
        const std::chrono::microseconds moment(plan.below(static_cast<std::uint64_t>(whole.length.count())));
        stage.prepare(what);
        Client client;
        client.start(stage.commandOf(what));
        client.sleepUntil(moment);
        stage.server().kill();
        met += client.isRunning() ? 1 : 0;
        stage.server().start();
        const auto outcome = client.wait();
        auto words = outcome.hasCrashed ? std::string("the client has crashed; ") : std::string();
        words += stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        QVERIFY2(words.empty(), plan.told(i,
                                          "after " + std::to_string(moment.count()) + " of " +
                                              std::to_string(whole.length.count()) + " us",
                                          words)
                                    .c_str());
    }
    QVERIFY2(met > 0, "no transfer was running when the server was killed");
}

QTEST_GUILESS_MAIN(TestKilledServer)
#include "test_killedserver.moc"
