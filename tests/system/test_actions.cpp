// SPDX-License-Identifier: MIT
#include "road/colleague.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <QDir>

using road::Colleague;
using road::HomeScreen;
using road::house;
using road::oldFormat;

/// Every action of a card by clicks, with a colleague who works on the same projects at another machine.
class TestActions : public road::Suite
{
    Q_OBJECT

private slots:
    void anEditInTheTabIsUploadedAndComesToTheColleague()
    {
        const Colleague colleague(server->address());
        QVERIFY(session->enter() && session->download(house) && editInTab("from-the-tab"));
        QTRY_COMPARE(HomeScreen::stateOf(house), road::changedHere);
        QVERIFY(session->upload(house));
        QVERIFY(colleague.download(house));
        QVERIFY(colleague.noteOf(house).contains("from-the-tab"));
    }

    void anUpdateBringsWhatTheColleagueHasUploaded()
    {
        const Colleague colleague(server->address());
        QVERIFY(session->enter() && session->download(house));
        QVERIFY(colleague.download(house) && colleague.edit(house, "for-the-update") &&
                colleague.upload(house));
        QVERIFY(session->update(house));
        QCOMPARE(noteHere(), QStringLiteral("for-the-update"));
    }

    void aConflictIsShownAndForcedUp()
    {
        const Colleague colleague(server->address());
        QVERIFY(session->enter() && session->download(house));
        QVERIFY(colleague.download(house) && colleague.edit(house, "for-the-conflict") &&
                colleague.upload(house));
        QVERIFY(editInTab("mine"));
        QTRY_COMPARE(HomeScreen::stateOf(house), road::changedOnBoth);
        QVERIFY(session->upload(house));
        QVERIFY(noteHere().contains("mine"));
        QCOMPARE(colleague.stateOf(house), road::changedThere);
        QVERIFY(colleague.update(house));
        QVERIFY(colleague.noteOf(house).contains("mine"));
    }

    void theColleagueWhoComesSecondKeepsTheWork()
    {
        const Colleague colleague(server->address());
        QVERIFY(colleague.download(house) && colleague.edit(house, "of-the-second"));
        QVERIFY(session->enter() && session->download(house) && editInTab("first"));
        QVERIFY(session->upload(house));
        QVERIFY(!colleague.upload(house));
        QCOMPARE(colleague.stateOf(house), road::changedOnBoth);
        QCOMPARE(colleague.noteOf(house), QStringLiteral("of-the-second"));
        QVERIFY(colleague.force(house));
        QCOMPARE(colleague.stateOf(house), road::upToDate);
    }

    void aProjectRemovedFromTheListComesBackWithoutADownload()
    {
        QVERIFY(session->enter() && session->download(house));
        QVERIFY(session->removeFromList(house));
        QVERIFY(QFileInfo::exists(dataFolder() + "/proj_" + house + "/project.db"));
        server->halt();
        QVERIFY(session->home().doubleClickInTree(house));
        QTRY_VERIFY(HomeScreen::card(house) != nullptr);
        server->goOn();
    }

    void aProjectOfAnOlderFormatIsUpgradedByAClickAndOpens()
    {
        QVERIFY(session->enter());
        QVERIFY(session->home().doubleClickInTree(oldFormat));
        QTRY_VERIFY_WITH_TIMEOUT(HomeScreen::operationOf(oldFormat) == 0 &&
                                     HomeScreen::itemOfCard(oldFormat, "upgradeCover") != nullptr,
                                 30000);
        QVERIFY(session->upgrade(oldFormat));
        QVERIFY(session->open(oldFormat));
    }

private:
    [[nodiscard]] static QString dataFolder() { return QCoreApplication::applicationDirPath() + "/data"; }

    [[nodiscard]] QString noteHere() const
    {
        return Colleague(server->address(), dataFolder()).noteOf(house);
    }

    [[nodiscard]] bool editInTab(const QString& note)
    {
        return session->open(house) && session->writeNote(note) && session->closeCurrentTab();
    }
};

ROAD_MAIN(TestActions)
#include "test_actions.moc"
