// SPDX-License-Identifier: MIT
#include "road/samplecontent.h"
#include "road/suite.h"

#include <csignal>

using road::engine;
using road::HomeScreen;
using road::house;

class TestChildren : public road::Suite
{
    Q_OBJECT

    /// The one child that is running now and was not before.
    static pid_t newest(const QList<pid_t>& before)
    {
        for (const auto child : road::Children()) {
            if (!before.contains(child))
                return child;
        }
        return 0;
    }

    bool openBoth()
    {
        if (!session->enter() || !session->download(house) || !session->download(engine))
            return false;
        if (!session->open(house))
            return false;
        houseChild = newest({});
        if (!session->goHome() || !session->open(engine))
            return false;
        engineChild = newest({houseChild});
        return houseChild != 0 && engineChild != 0;
    }

    pid_t houseChild = 0;
    pid_t engineChild = 0;

private slots:
    void twoProjectsAreOpenInProcessesOfTheirOwn()
    {
        QVERIFY(openBoth());
        QCOMPARE(road::Children().size(), 2);
        QCOMPARE(HomeScreen::tabs(), QStringList({house, engine}));
        QVERIFY(session->isChildInPlace());
        const auto engineWindow = session->home().childWindow()->id;
        QVERIFY(session->turnTo(house));
        QTRY_VERIFY(session->home().childWindow() && session->home().childWindow()->id != engineWindow);
        QVERIFY(session->turnTo(engine));
        QTRY_VERIFY(session->home().childWindow() && session->home().childWindow()->id == engineWindow);
    }

    void aChildKilledWhileCurrentLeavesTheTabStripAndTheHomeScreenIsBack()
    {
        QVERIFY(openBoth());
        kill(engineChild, SIGKILL);
        QTRY_COMPARE(HomeScreen::tabs(), QStringList({house}));
        QTRY_VERIFY(HomeScreen::card(engine) != nullptr);
        QVERIFY(session->isNoChildSeen());
        // The other is as it was.
        QVERIFY(session->turnTo(house));
    }

    void aChildKilledWhileHiddenLeavesTheTabStrip()
    {
        QVERIFY(openBoth());
        kill(houseChild, SIGKILL);
        QTRY_COMPARE(HomeScreen::tabs(), QStringList({engine}));
    }

    void aKilledProjectOpensAgain()
    {
        QVERIFY(session->enter() && session->download(house) && session->open(house));
        kill(newest({}), SIGKILL);
        QTRY_VERIFY(HomeScreen::tabs().isEmpty());
        QVERIFY(session->open(house));
    }

    void tenTimesOpenedAndClosedLeavesNothing()
    {
        QVERIFY(session->enter() && session->download(house));
        for (int i = 0; i < 10; ++i) {
            QVERIFY2(session->open(house), qPrintable(QString::number(i)));
            QVERIFY(session->closeCurrentTab());
            QTRY_COMPARE(road::Children().size(), 0);
        }
    }
};

ROAD_MAIN(TestChildren)
#include "test_children.moc"
