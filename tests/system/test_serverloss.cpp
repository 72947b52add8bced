// SPDX-License-Identifier: MIT
#include "road/samplecontent.h"
#include "road/suite.h"

#include <QDir>

using road::HomeScreen;
using road::house;

class TestServerLoss : public road::Suite
{
    Q_OBJECT

    /// What stands below the data folder, without the program's own books.
    static QStringList projectFolders()
    {
        const QDir data(QCoreApplication::applicationDirPath() + QStringLiteral("/data"));
        return data.entryList({QStringLiteral("*5b0f6a52*")},
                              QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private slots:
    void aServerKilledDuringADownloadIsToldAndLeavesNothing()
    {
        QVERIFY(session->enter());
        server->halt();
        QVERIFY(session->beginDownload(house));
        server->kill();

        QTRY_VERIFY_WITH_TIMEOUT(HomeScreen::shows(QStringLiteral("messageText")), 30000);
        QVERIFY(!HomeScreen::textOf(QStringLiteral("messageText")).isEmpty());
        QTRY_VERIFY(HomeScreen::card(house) == nullptr);
        QCOMPARE(projectFolders(), QStringList());
    }

    void aDownloadSucceedsWhenTheServerIsBack()
    {
        QVERIFY(session->enter());
        server->halt();
        QVERIFY(session->beginDownload(house));
        server->kill();
        QTRY_VERIFY_WITH_TIMEOUT(HomeScreen::shows(QStringLiteral("messageText")), 30000);
        session->desktop().press(0xff1b);
        QTRY_VERIFY(!HomeScreen::shows(QStringLiteral("messageText")));
        QTRY_VERIFY(HomeScreen::card(house) == nullptr);

        server->start();
        QVERIFY(session->download(house));
        QVERIFY(session->open(house));
    }
};

ROAD_MAIN(TestServerLoss)
#include "test_serverloss.moc"
