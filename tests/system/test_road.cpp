// SPDX-License-Identifier: MIT
#include "road/picture.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <QFileInfo>

using road::HomeScreen;
using road::house;
using road::Session;

class TestRoad : public road::Suite
{
    Q_OBJECT

private slots:
    void fromTheLoginToAnOpenedProjectAndBack()
    {
        QVERIFY(session->enter());
        QVERIFY(HomeScreen::projectsInTree().contains(house));
        QVERIFY(HomeScreen::card(house) == nullptr);
        QVERIFY(session->download(house));
        QVERIFY(session->open(house));
        QCOMPARE(road::Children().size(), 1);

        QVERIFY(session->goHome());
        QVERIFY(session->turnTo(house));
        QVERIFY(session->closeCurrentTab());
        QTRY_COMPARE(road::Children().size(), 0);
        QVERIFY(session->isNoChildSeen());
        QTRY_VERIFY(HomeScreen::card(house) != nullptr);
    }

    void aDraggedModelTurns()
    {
        QVERIFY(session->enter() && session->download(house) && session->open(house));
        const QRect view = Session::view();
        const QImage before = session->desktop().picture();
        session->desktop().drag(view.center(), view.center() + QPoint(view.width() / 3, view.height() / 8));
        QTRY_VERIFY(road::DifferenceIn(before, session->desktop().picture(), view) > 0.02);
    }

    void aDownloadedProjectIsOnItsCardAtTheNextStart()
    {
        QVERIFY(session->enter() && session->download(house));
        session->leave();
        session = std::make_unique<Session>();
        // The login has been saved.
        session->startHost();
        QTRY_VERIFY(HomeScreen::window() != nullptr);
        QTRY_VERIFY(HomeScreen::card(house) != nullptr);
        QTRY_COMPARE(HomeScreen::stateOf(house), 1);
    }

    void theWindowOfTheChildFollowsTheHomeWindow()
    {
        QVERIFY(session->enter() && session->download(house) && session->open(house));
        auto* home = HomeScreen::window();
        const auto maximized = HomeScreen::contentArea();
        QVERIFY(session->home().click(QStringLiteral("maximizeBtn")));
        QTRY_VERIFY(HomeScreen::contentArea().width() < maximized.width());
        QTRY_VERIFY(session->isChildInPlace());
        home->setPosition(home->position() + QPoint(40, 30));
        QTRY_VERIFY(session->isChildInPlace());
        QVERIFY(session->home().click(QStringLiteral("maximizeBtn")));
        QTRY_COMPARE(HomeScreen::contentArea(), maximized);
        QTRY_VERIFY(session->isChildInPlace());
    }

    void theWindowOfTheChildComesBackWithTheMinimizedHomeWindow()
    {
        QVERIFY(session->enter() && session->download(house) && session->open(house));
        QVERIFY(session->home().click(QStringLiteral("minimizeBtn")));
        QTRY_VERIFY(session->isNoChildSeen());
        // As a click in the task bar does.
        session->desktop().activate(static_cast<xcb_window_t>(HomeScreen::window()->winId()));
        QTRY_VERIFY(session->isChildInPlace());
        QTRY_VERIFY(road::ColoursIn(session->desktop().picture(), Session::view()) > 16);
    }

    void closingTheHomeWindowAsksForOpenProjectsAndEndsTheirProcesses()
    {
        QVERIFY(session->enter() && session->download(house) && session->open(house));
        QVERIFY(session->home().click(QStringLiteral("closeBtn")));
        QTRY_COMPARE(HomeScreen::textOf(QStringLiteral("messageText")),
                     QStringLiteral("是否保存所有打开工程"));
        QVERIFY(session->isNoChildSeen());
        QVERIFY(session->home().click(QStringLiteral("noBtn")));
        QTRY_VERIFY(HomeScreen::window() == nullptr);
        session->leave();
        QTRY_COMPARE(road::Children().size(), 0);
    }

    void withoutOpenProjectsTheHomeWindowClosesAtOnce()
    {
        QVERIFY(session->enter());
        QVERIFY(session->home().click(QStringLiteral("closeBtn")));
        QTRY_VERIFY(HomeScreen::window() == nullptr);
    }
};

ROAD_MAIN(TestRoad)
#include "test_road.moc"
