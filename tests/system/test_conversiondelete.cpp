// SPDX-License-Identifier: MIT
#include "road/conversions.h"
#include "road/halting.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

using road::Conversions;
using road::house;
using road::ModelsHere;

namespace
{

constexpr int patience = 120000;

QList<pid_t> Workers()
{
    return road::ProcessesOf("../../server/bin/torvo-worker");
}

/// Lets a halted server go on as soon as the thread that made this waits for it and nothing else.
class HelpWhenStuck
{
public:
    explicit HelpWhenStuck(road::ProjectServer& server)
        : m_server(server)
        , m_thread([this] { watch(); })
    {
        QObject::connect(&m_pulse, &QTimer::timeout, &m_pulse, [this] { ++m_beats; });
        m_pulse.start(20);
    }
    HelpWhenStuck(const HelpWhenStuck&) = delete;
    HelpWhenStuck& operator=(const HelpWhenStuck&) = delete;
    ~HelpWhenStuck()
    {
        m_isOver = true;
        m_thread.join();
        m_server.goOn();
    }

private:
    void watch()
    {
        int before = -1;
        while (!m_isOver && std::exchange(before, m_beats.load()) != m_beats)
            std::this_thread::sleep_for(std::chrono::seconds(1));
        m_server.goOn();
    }

    road::ProjectServer& m_server;
    QTimer m_pulse;
    std::atomic<int> m_beats = 0;
    std::atomic<bool> m_isOver = false;
    std::thread m_thread;
};

} // namespace

/// Models that are given up at every place of their road.
class TestConversionDelete : public road::Suite
{
    Q_OBJECT

private slots:
    void whatIsUnpackedAndWhatWaitsForThatCanBeGivenUp()
    {
        QVERIFY(road::MakeLargeArchive(file("large")) && road::MakeHollowArchive(file("hollow")));
        auto conversions = dialog();
        QVERIFY(open(conversions));
        QVERIFY(conversions.send(file("large")));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("large"), road::unpacked, patience);
        QVERIFY(conversions.send(file("hollow")));
        QTRY_COMPARE(Conversions::stateOf("hollow"), road::waitsForUnpacking);
        QVERIFY(conversions.giveUp("hollow"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("hollow"), road::noRow, patience);
        QVERIFY(conversions.giveUp("large"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("large"), road::noRow, patience);
        QVERIFY(isAllForgotten(conversions));
    }

    void whatWaitsForItsUploadCanBeGivenUp()
    {
        auto conversions = dialog();
        QVERIFY(open(conversions));
        const road::Halted workers(Workers());
        const auto first = model("first");
        const auto second = model("second");
        server->halt();
        QVERIFY(conversions.send(first));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("first"), road::uploaded, patience);
        QVERIFY(conversions.send(second));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("second"), road::waitsForUpload, patience);
        {
            const HelpWhenStuck help(*server);
            QVERIFY(conversions.giveUp("second"));
            QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("second"), road::noRow, patience);
        }
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("first"), road::waitsForConversion, patience);
        QVERIFY(conversions.giveUp("first"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("first"), road::noRow, patience);
        QVERIFY(isAllForgotten(conversions));
    }

    /// What is being sent cannot be held up: it arrives, and then stands in the server's list.
    void whatIsGivenUpDuringItsUploadWaitsAtTheServer()
    {
        auto conversions = dialog();
        QVERIFY(open(conversions));
        const road::Halted workers(Workers());
        const auto archive = model("sent");
        server->halt();
        QVERIFY(conversions.send(archive));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("sent"), road::uploaded, patience);
        {
            const HelpWhenStuck help(*server);
            QVERIFY(conversions.giveUp("sent"));
            QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("sent"), road::waitsForConversion, patience);
        }
        QVERIFY(conversions.giveUp("sent"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("sent"), road::noRow, patience);
        QVERIFY(isAllForgotten(conversions));
    }

    void whatWaitsAtTheServerAndWhatIsConvertedCanBeGivenUp()
    {
        auto conversions = dialog();
        QVERIFY(open(conversions));
        const road::Trap trap("kyv-convert");
        QVERIFY(conversions.send(model("converting")));
        QTRY_VERIFY_WITH_TIMEOUT(trap.isShut(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("converting"), road::inConversion, patience);
        QVERIFY(conversions.send(model("queued")));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("queued"), road::waitsForConversion, patience);
        QVERIFY(conversions.giveUp("queued"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("queued"), road::noRow, patience);
        QVERIFY(conversions.giveUp("converting"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("converting"), road::noRow, patience);
        QVERIFY(isAllForgotten(conversions));
    }

    void whatTheServerCouldNotConvertLeavesTheListAndStaysAmongTheFailures()
    {
        QVERIFY(road::MakeHollowArchive(file("hollow")));
        auto conversions = dialog();
        QVERIFY(open(conversions));
        QVERIFY(conversions.send(file("hollow")));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("hollow"), road::conversionFailed, patience);
        QCOMPARE(conversions.lookAtFailures(), QStringList("hollow"));
        QVERIFY(conversions.giveUp("hollow"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("hollow"), road::noRow, patience);
        QCOMPARE(conversions.lookAtFailures(), QStringList("hollow"));
    }

    void whatCouldNotBeSentCanBeGivenUpAndWhatIsFinishedCannot()
    {
        QFile noise(file("noise"));
        QVERIFY(noise.open(QIODevice::WriteOnly) && noise.write(QByteArray(5000, 'x')) == 5000 &&
                noise.flush());
        auto conversions = dialog();
        QVERIFY(open(conversions));
        QVERIFY(conversions.send(noise.fileName()) && conversions.send(model("finished")));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("noise"), road::uploadFailed, patience);
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("finished"), road::converted, patience);
        QVERIFY(!Conversions::mayGiveUp("finished"));
        QVERIFY(conversions.giveUp("noise"));
        QTRY_COMPARE_WITH_TIMEOUT(Conversions::stateOf("noise"), road::noRow, patience);
        QCOMPARE(Conversions::stateOf("finished"), road::converted);
    }

private:
    [[nodiscard]] Conversions dialog() { return {session->desktop(), session->home()}; }

    /// From the login to the dialog of the house.
    [[nodiscard]] bool open(Conversions& conversions)
    {
        if (!road::AllowConversions() || !session->enter() || !session->download(house) ||
            !conversions.openFor(house))
            return false;
        m_atFirst = Conversions::names();
        return true;
    }

    /// Also the server knows of nothing but what stood in the list at first.
    [[nodiscard]] bool isAllForgotten(Conversions& conversions) const
    {
        return conversions.close() && conversions.openFor(house) &&
               road::WaitFor([&] { return Conversions::names() == m_atFirst; });
    }

    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name + ".kyv"); }

    /// An archive of that name, of the model of the house.
    [[nodiscard]] QString model(const QString& name) const
    {
        return road::PackModel(ModelsHere().constFirst(), file(name)) ? file(name) : QString();
    }

    QTemporaryDir m_folder;
    QStringList m_atFirst;
};

ROAD_MAIN(TestConversionDelete)
#include "test_conversiondelete.moc"
