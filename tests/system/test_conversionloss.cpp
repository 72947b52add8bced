// SPDX-License-Identifier: MIT
#include "road/conversions.h"
#include "road/halting.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <csignal>
#include <memory>

#include <QDir>
#include <QTemporaryDir>

using road::Conversions;
using road::HomeScreen;
using road::house;
using road::ModelsHere;

namespace
{

constexpr int patience = 120000;
constexpr xcb_keysym_t escapeKey = 0xff1b;

// A worker that is lost is missed soon.
const QStringList shortLease{"--job-lease-seconds", "6"};

} // namespace

/// What becomes of an archive when the program, a worker or the server ends in the middle of its road.
class TestConversionLoss : public road::Suite
{
    Q_OBJECT

private slots:
    void leavingWithAnArchiveUnderWayIsAskedAbout_data() { rowsOfAnswers(); }
    void leavingWithAnArchiveUnderWayIsAskedAbout()
    {
        QFETCH(QString, answer);
        const auto large = m_folder.filePath("large.kyv");
        QVERIFY(road::MakeLargeArchive(large));
        auto conversions = dialog();
        QVERIFY(open(conversions));
        QVERIFY(conversions.send(large));
        QVERIFY(conversions.close());
        server->halt();
        QVERIFY(session->home().click("closeBtn"));
        QTRY_COMPARE_WITH_TIMEOUT(
            HomeScreen::textOf("messageText"),
            QStringLiteral("服务端转换有工程在上传中，退出将会失去上\n传中的kyv工程。是否退出"), patience);
        session->desktop().awaitQuiet();
        // Whoever says neither stays, with the archive still on its way.
        session->desktop().press(escapeKey);
        QTRY_VERIFY(!HomeScreen::shows("messageText"));
        QVERIFY(HomeScreen::window() != nullptr);
        QVERIFY(session->home().click("closeBtn"));
        QTRY_VERIFY_WITH_TIMEOUT(HomeScreen::shows("messageText"), patience);
        session->desktop().awaitQuiet();
        // Both answers leave: there is nothing to save.
        QVERIFY(session->home().click(answer));
        QTRY_VERIFY_WITH_TIMEOUT(HomeScreen::window() == nullptr, patience);
        server->goOn();
        session->leave();
        QCOMPARE(QDir(QCoreApplication::applicationDirPath() + "/kyvUpload")
                     .entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList());
    }

    void aKilledWorkerCostsNothingButTime()
    {
        server->kill();
        server->start(shortLease);
        auto conversions = dialog();
        QVERIFY(open(conversions));
        auto trap = std::make_unique<road::Trap>("kyv-convert");
        QVERIFY(conversions.send(model("worker")));
        QTRY_VERIFY_WITH_TIMEOUT(trap->isShut(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("worker"), road::inConversion, patience);
        const auto workers = road::ProcessesOf("../../server/bin/torvo-worker");
        QVERIFY(!workers.isEmpty());
        for (const auto process : workers)
            ::kill(process, SIGKILL);
        trap.reset();
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("worker"), road::converted, patience);
        QVERIFY(conversions.close());
        QTRY_COMPARE_WITH_TIMEOUT(HomeScreen::stateOf(house), road::changedThere, patience);
        const auto before = ModelsHere().size();
        QVERIFY(session->update(house));
        QCOMPARE(ModelsHere().size(), before + 1);
    }

    void aServerThatIsStartedAgainEndsTheJobWell()
    {
        server->kill();
        server->start(shortLease);
        auto conversions = dialog();
        QVERIFY(open(conversions));
        auto trap = std::make_unique<road::Trap>("kyv-convert");
        QVERIFY(conversions.send(model("server")));
        QTRY_VERIFY_WITH_TIMEOUT(trap->isShut(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("server"), road::inConversion, patience);
        server->kill();
        trap.reset();
        QTRY_COMPARE_WITH_TIMEOUT(road::ProcessesOf("../../server/bin/torvo-worker"), QList<pid_t>(),
                                  patience);
        server->start(shortLease);
        // The dialog stays open and finds the server again by itself.
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("server"), road::converted, patience);
    }

private:
    static void rowsOfAnswers()
    {
        QTest::addColumn<QString>("answer");
        QTest::newRow("yes") << "yesBtn";
        QTest::newRow("no") << "noBtn";
    }

    [[nodiscard]] Conversions dialog() { return {session->desktop(), session->home()}; }

    /// From the login to the dialog of the house.
    [[nodiscard]] bool open(Conversions& conversions)
    {
        return road::AllowConversions() && session->enter() && session->download(house) &&
               conversions.openFor(house);
    }

    /// An archive of that name, of the model of the house.
    [[nodiscard]] QString model(const QString& name) const
    {
        const auto file = m_folder.filePath(name + ".kyv");
        return road::PackModel(ModelsHere().constFirst(), file) ? file : QString();
    }

    QTemporaryDir m_folder;
};

ROAD_MAIN(TestConversionLoss)
#include "test_conversionloss.moc"
