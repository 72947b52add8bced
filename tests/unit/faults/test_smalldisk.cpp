// SPDX-License-Identifier: MIT
#include "faultplan.h"
#include "smartdb/failure.h"
#include "stage.h"

#include <filesystem>
#include <initializer_list>

#include <QTest>

#include <sys/resource.h>

namespace
{

namespace fs = std::filesystem;

constexpr int serverIsFullCode = 50700;

/// From now on no file of the process becomes larger; what a full disk does, too.
bool LimitFiles(qint64 process, rlim_t bytes)
{
    const rlimit limit{bytes, RLIM_INFINITY};
    return ::prlimit(static_cast<pid_t>(process), RLIMIT_FSIZE, &limit, nullptr) == 0;
}

std::uint64_t LargestPack(const RealServer& server)
{
    std::uint64_t largest = 0;
    for (const auto& entry : fs::directory_iterator(server.folder().toStdString() + "/packs"))
        largest = std::max<std::uint64_t>(largest, entry.file_size());
    return largest;
}

void Rows(std::initializer_list<Operation> operations)
{
    QTest::addColumn<int>("operation");
    for (const auto operation : operations)
        QTest::newRow(NameOf(operation)) << static_cast<int>(operation);
}

} // namespace

/// The disk of a person or of the server is full in the middle of a transfer.
class TestSmallDisk : public QObject
{
    Q_OBJECT

private slots:
    void fullDiskOfThePersonIsToldAndLosesNothing_data();
    void fullDiskOfThePersonIsToldAndLosesNothing();
    void filesThatCannotGrowLoseNothing_data();
    void filesThatCannotGrowLoseNothing();
    void fullPacksOfTheServerAreToldAndLoseNothing_data();
    void fullPacksOfTheServerAreToldAndLoseNothing();
    void fullDiskOfTheServersDatabaseLosesNothing_data();
    void fullDiskOfTheServersDatabaseLosesNothing();
};

void TestSmallDisk::fullDiskOfThePersonIsToldAndLosesNothing_data()
{
    Rows({Operation::firstUpload, Operation::upload, Operation::download, Operation::update});
}

void TestSmallDisk::fullDiskOfThePersonIsToldAndLosesNothing()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(4);
    Stage stage;
    const auto whole = stage.measure(what).written;
    for (int i = 0; i < plan.count(); ++i) {
        const auto room = plan.below(whole);
        stage.prepare(what);
        const auto outcome = stage.run(what, {"disk", QString::number(room)});
        std::string words;
        // What only spares reading later need not be written.
        if (!outcome.isDone && outcome.code() != ZRSmartDB::localcode::diskFull)
            words = "not told: " + outcome.words.toStdString() + "; ";
        words += stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        const auto moment = "with " + std::to_string(room) + " of " + std::to_string(whole) + " bytes";
        QVERIFY2(words.empty(), plan.told(i, moment, words).c_str());
    }
}

void TestSmallDisk::filesThatCannotGrowLoseNothing_data()
{
    Rows({Operation::firstUpload, Operation::upload, Operation::download, Operation::update});
}

/// Here SQLite cannot write its files either.
void TestSmallDisk::filesThatCannotGrowLoseNothing()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(2);
    Stage stage;
    for (int i = 0; i < plan.count(); ++i) {
        const auto largest = plan.below(200'000);
        stage.prepare(what);
        const auto outcome = stage.run(what, {"file", QString::number(largest)});
        auto words = outcome.hasCrashed ? std::string("the client has crashed; ") : std::string();
        words += stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        const auto moment = "with files of " + std::to_string(largest) + " bytes";
        QVERIFY2(words.empty(), plan.told(i, moment, words).c_str());
    }
}

void TestSmallDisk::fullPacksOfTheServerAreToldAndLoseNothing_data()
{
    Rows({Operation::firstUpload, Operation::upload});
}

void TestSmallDisk::fullPacksOfTheServerAreToldAndLoseNothing()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(4);
    Stage stage;
    const auto before = LargestPack(stage.server());
    static_cast<void>(stage.measure(what));
    const auto whole = (LargestPack(stage.server()) - before) / 2;
    for (int i = 0; i < plan.count(); ++i) {
        const auto room = plan.below(whole);
        stage.prepare(what);
        QVERIFY(LimitFiles(stage.server().process(), LargestPack(stage.server()) + room));
        const auto outcome = stage.run(what);
        QVERIFY(LimitFiles(stage.server().process(), RLIM_INFINITY));
        std::string words;
        if (outcome.isDone || outcome.code() != serverIsFullCode)
            words = "not told: " + outcome.words.toStdString() + "; ";
        words += stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        const auto moment = "with " + std::to_string(room) + " of " + std::to_string(whole) + " bytes";
        QVERIFY2(words.empty(), plan.told(i, moment, words).c_str());
    }
}

void TestSmallDisk::fullDiskOfTheServersDatabaseLosesNothing_data()
{
    Rows({Operation::firstUpload, Operation::upload, Operation::download, Operation::update});
}

void TestSmallDisk::fullDiskOfTheServersDatabaseLosesNothing()
{
    QFETCH(int, operation);
    const auto what = static_cast<Operation>(operation);
    FaultPlan plan(2);
    Stage stage;
    for (int i = 0; i < plan.count(); ++i) {
        const auto largest = plan.below(LargestPack(stage.server()));
        stage.prepare(what);
        QVERIFY(LimitFiles(stage.server().process(), largest));
        const auto outcome = stage.run(what);
        QVERIFY(LimitFiles(stage.server().process(), RLIM_INFINITY));
        auto words = outcome.hasCrashed ? std::string("the client has crashed; ") : std::string();
        words += stage.findings(what, outcome.isDone);
        words += stage.findingsOfRepetition(what);
        const auto moment = "with files of " + std::to_string(largest) + " bytes";
        QVERIFY2(words.empty(), plan.told(i, moment, words).c_str());
    }
}

QTEST_GUILESS_MAIN(TestSmallDisk)
#include "test_smalldisk.moc"
