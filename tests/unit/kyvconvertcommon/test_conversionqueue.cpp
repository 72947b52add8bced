// SPDX-License-Identifier: MIT
#include "queueowner.h"

#include <QElapsedTimer>
#include <QRegularExpression>

using namespace std::chrono_literals;

namespace
{

// Converters that do what a test wants.
const QByteArray converts = "mkdir $folder && echo model of $source >$folder/model.json\n";
const QByteArray refuses = "echo '{\"error\": \"no surfaces\", \"code\": 3}'\nexit 3\n";
const QByteArray isSlow = "mkdir $folder.half\necho half >$folder.half/model.glb\nexec sleep 600\n";
const QByteArray isDeaf =
    "trap '' TERM\nmkdir $folder.half\ntouch $here/deaf.$name\nwhile true; do sleep 0.05; done\n";
const QByteArray waitsForAWord = "while [ ! -e $here/go.$name ]; do sleep 0.02; done\n" + converts;
const QByteArray hasAHelper = "sleep 600 &\ntrap \"kill $!; exit 8\" TERM\n"
                              "echo $! >$here/helper.new\nmv $here/helper.new $here/helper\nwait\n";

void expectFailure(const char* reason)
{
    QTest::ignoreMessage(
        QtWarningMsg,
        QRegularExpression(
            QStringLiteral("^the conversion of a\\.fbx has failed: %1$").arg(QLatin1String(reason))));
}

} // namespace

/// The queue of conversions, over converters that a test scripts.
class TestConversionQueue : public QObject
{
    Q_OBJECT

private slots:
    void stateIsToldFromWaitingToFinished();
    void nothingIsToldBeforeTheCallHasReturned();
    void finishedModelStandsInTheDataFolder();
    void modelIsNotSeenBeforeItIsWhole();
    void converterIsGivenItsLimitsAndOptions();
    void fileThatLooksLikeAnOptionIsAFile();
    void conversionsAreBegunInTheirOrder();
    void noMoreRunAtOnceThanThereAreCores();
    void reasonOfTheConverterIsLogged();
    void failureDoesNotStopTheNext();
    void converterThatIsKilledIsAFailure();
    void converterThatHangsIsAFailure();
    void missingConverterIsAFailure();
    void converterThatMakesNoModelIsAFailure();
    void dataFolderThatCannotBeWrittenIsAFailure();
    void failureLeavesNoFile();
    void cancelEndsTheConverterWithoutAWord();
    void cancelEndsWhatTheConverterHasStarted();
    void cancelDropsWhatWaits();
    void cancelInsideASignalIsTheLastWord();
    void cancelBeforeTheStartIsTheLastWord();
    void cancelLeavesNoFile();
    void cancelDoesNotWaitForTheConverter();
    void deafConverterIsKilled();
    void queueGoesOnAfterACancel();
    void converterIsGoneWithTheQueue();
    void deafConverterIsGoneWithTheQueue();
    void whatAKilledProgramHasLeftGoesAtTheStart();
    void otherFilesInTheDataFolderStay();
    void converterEndsWithAKilledProgram();
};

void TestConversionQueue::stateIsToldFromWaitingToFinished()
{
    QueueOwner owner(converts);
    owner.add("a");
    QVERIFY(owner.isTold("a 2"));
    QCOMPARE(owner.states, QStringList({"a 0", "a 1", "a 2"}));
}

void TestConversionQueue::nothingIsToldBeforeTheCallHasReturned()
{
    const QueueOwner owner(converts);
    owner.add("a");
    QCOMPARE(owner.states, QStringList());
    QVERIFY(owner.isTold("a 2"));
}

void TestConversionQueue::finishedModelStandsInTheDataFolder()
{
    const QueueOwner owner(converts);
    owner.add("a");
    QVERIFY(owner.isTold("a 2"));
    QCOMPARE(owner.converter.text("data/proj_a/model.json"), QByteArray("model of a.fbx"));
}

void TestConversionQueue::modelIsNotSeenBeforeItIsWhole()
{
    const QueueOwner owner(
        "mkdir $folder\ntouch $here/begun\nwhile [ ! -e $here/go ]; do sleep 0.02; done\n");
    owner.add("a");
    QTRY_VERIFY(QFile::exists(owner.converter.path("begun")));
    QVERIFY(!owner.converter.left().contains("proj_a"));
    QVERIFY(QFile(owner.converter.path("go")).open(QIODevice::WriteOnly));
    QVERIFY(owner.isTold("a 2"));
    QVERIFY(owner.converter.left().contains("proj_a"));
}

void TestConversionQueue::converterIsGivenItsLimitsAndOptions()
{
    QueueOwner owner(converts);
    owner.settings.longest = 90s;
    owner.settings.mebibytes = 700;
    owner.make();
    owner.queue->add({"a", "/x/a.kyv", {"--name=a", "--mode=1"}});
    QVERIFY(owner.isTold("a 2"));
    QCOMPARE(owner.converter.text("arguments.a"),
             QByteArray("--name=a --mode=1 --time=90 --memory=700 -- /x/a.kyv ") +
                 owner.converter.data().toUtf8() + "/conversions/a/model");
}

void TestConversionQueue::fileThatLooksLikeAnOptionIsAFile()
{
    const QueueOwner owner("[ \"${@: -3:1}\" = -- ] && mkdir $folder\n");
    owner.queue->add({"a", "--help", {}});
    QVERIFY(owner.isTold("a 2"));
}

void TestConversionQueue::conversionsAreBegunInTheirOrder()
{
    const QueueOwner owner(converts);
    for (const auto* uid : {"b", "c", "a"})
        owner.add(uid);
    QVERIFY(owner.isTold("a 2"));
    QCOMPARE(owner.states, QStringList({"b 0", "c 0", "a 0", "b 1", "b 2", "c 1", "c 2", "a 1", "a 2"}));
}

void TestConversionQueue::noMoreRunAtOnceThanThereAreCores()
{
    QueueOwner owner(waitsForAWord, 2);
    for (const auto* uid : {"a", "b", "c"})
        owner.add(uid);
    QVERIFY(owner.converter.process("pid.a") > 0 && owner.converter.process("pid.b") > 0);
    QCOMPARE(owner.states, QStringList({"a 0", "b 0", "c 0", "a 1", "b 1"}));
    QVERIFY(QFile(owner.converter.path("go.b")).open(QIODevice::WriteOnly));
    QVERIFY(owner.isTold("c 1"));
    QCOMPARE(owner.states.mid(5), QStringList({"b 2", "c 1"}));
}

void TestConversionQueue::reasonOfTheConverterIsLogged()
{
    const QueueOwner owner(refuses);
    expectFailure("no surfaces");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
    QCOMPARE(owner.states, QStringList({"a 0", "a 1", "a 3"}));
}

void TestConversionQueue::failureDoesNotStopTheNext()
{
    const QueueOwner owner("[ $name = a ] && exit 3\n" + converts);
    expectFailure("the converter has ended without a reason");
    owner.add("a");
    owner.add("b");
    QVERIFY(owner.isTold("b 2"));
}

void TestConversionQueue::converterThatIsKilledIsAFailure()
{
    const QueueOwner owner("mkdir $folder\nkill -9 $$\n");
    expectFailure("something has ended the converter");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
}

void TestConversionQueue::converterThatHangsIsAFailure()
{
    QueueOwner owner(isDeaf);
    owner.settings.longest = 300ms;
    owner.settings.patience = 200ms;
    owner.make();
    expectFailure("the converter does not end");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
    QVERIFY(!ScriptedConverter::isRunning(owner.converter.process("pid.a")));
}

void TestConversionQueue::missingConverterIsAFailure()
{
    QueueOwner owner(converts);
    owner.settings.converter = owner.converter.path("nowhere");
    owner.make();
    expectFailure("the converter could not be started");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
    QCOMPARE(owner.states, QStringList({"a 0", "a 1", "a 3"}));
}

void TestConversionQueue::converterThatMakesNoModelIsAFailure()
{
    const QueueOwner owner("exit 0\n");
    expectFailure("the converter has made no model");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
}

void TestConversionQueue::dataFolderThatCannotBeWrittenIsAFailure()
{
    QueueOwner owner(converts);
    // Below a file there are no folders, not even for root.
    owner.settings.dataFolder = owner.converter.program();
    owner.make();
    expectFailure("the folder for it cannot be made");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
}

void TestConversionQueue::failureLeavesNoFile()
{
    const QueueOwner owner("mkdir $folder $folder.half\ntouch $folder/model.json\nexit 3\n");
    expectFailure("the converter has ended without a reason");
    owner.add("a");
    QVERIFY(owner.isTold("a 3"));
    QTRY_COMPARE(owner.converter.left(), QStringList());
}

void TestConversionQueue::cancelEndsTheConverterWithoutAWord()
{
    QueueOwner owner(isSlow);
    owner.add("a");
    const auto process = owner.converter.process("pid.a");
    QVERIFY(process > 0);
    owner.states.clear();
    owner.queue->cancelAll();
    QTRY_VERIFY(!ScriptedConverter::isRunning(process));
    // The next one's word comes after any that might come of the cancelled one.
    owner.converter.write(converts);
    owner.add("b");
    QVERIFY(owner.isTold("b 2"));
    QCOMPARE(owner.states, QStringList({"b 0", "b 1", "b 2"}));
}

void TestConversionQueue::cancelEndsWhatTheConverterHasStarted()
{
    const QueueOwner owner(hasAHelper);
    owner.add("a");
    const auto helper = owner.converter.process("helper");
    QVERIFY(helper > 0);
    owner.queue->cancelAll();
    QTRY_VERIFY(!ScriptedConverter::isRunning(helper));
}

void TestConversionQueue::cancelDropsWhatWaits()
{
    QueueOwner owner(isSlow);
    owner.add("a");
    owner.add("b");
    QVERIFY(owner.converter.process("pid.a") > 0);
    owner.queue->cancelAll();
    owner.converter.write(converts);
    owner.add("c");
    QVERIFY(owner.isTold("c 2"));
    QVERIFY(!owner.states.contains("b 1"));
}

void TestConversionQueue::cancelInsideASignalIsTheLastWord()
{
    QueueOwner owner(converts);
    connect(owner.queue.get(), &KYVConvertCommon::ConversionQueue::stateChanged, owner.queue.get(),
            &KYVConvertCommon::ConversionQueue::cancelAll);
    owner.add("a");
    owner.add("b");
    QVERIFY(owner.isTold("a 0"));
    QTest::qWait(200);
    QCOMPARE(owner.states, QStringList("a 0"));
}

void TestConversionQueue::cancelBeforeTheStartIsTheLastWord()
{
    QueueOwner owner(converts);
    owner.add("a");
    owner.queue->cancelAll();
    owner.add("b");
    QVERIFY(owner.isTold("b 2"));
    QCOMPARE(owner.states, QStringList({"b 0", "b 1", "b 2"}));
}

void TestConversionQueue::cancelLeavesNoFile()
{
    const QueueOwner owner(isSlow);
    owner.add("a");
    QTRY_VERIFY(QFile::exists(owner.converter.path("data/conversions/a/model.half/model.glb")));
    owner.queue->cancelAll();
    QTRY_VERIFY(!QFile::exists(owner.converter.path("data/conversions/a")));
    QVERIFY(!owner.converter.left().contains("proj_a"));
}

void TestConversionQueue::cancelDoesNotWaitForTheConverter()
{
    QueueOwner owner(isDeaf);
    owner.settings.patience = 5s;
    owner.make();
    owner.add("a");
    QTRY_VERIFY(QFile::exists(owner.converter.path("deaf.a")));
    QElapsedTimer timer;
    timer.start();
    owner.queue->cancelAll();
    QVERIFY(timer.elapsed() < 1000);
    ::kill(owner.converter.process("pid.a"), SIGKILL);
}

void TestConversionQueue::deafConverterIsKilled()
{
    QueueOwner owner(isDeaf);
    owner.settings.patience = 200ms;
    owner.make();
    owner.add("a");
    const auto process = owner.converter.process("pid.a");
    QTRY_VERIFY(QFile::exists(owner.converter.path("deaf.a")));
    owner.queue->cancelAll();
    QTRY_VERIFY(!ScriptedConverter::isRunning(process));
    QTRY_VERIFY(!QFile::exists(owner.converter.path("data/conversions/a")));
}

void TestConversionQueue::queueGoesOnAfterACancel()
{
    const QueueOwner owner(isSlow);
    owner.add("a");
    QVERIFY(owner.converter.process("pid.a") > 0);
    owner.queue->cancelAll();
    owner.converter.write(converts);
    owner.add("b");
    QVERIFY(owner.isTold("b 2"));
    QCOMPARE(owner.converter.text("data/proj_b/model.json"), QByteArray("model of b.fbx"));
}

void TestConversionQueue::converterIsGoneWithTheQueue()
{
    QueueOwner owner(isSlow);
    owner.add("a");
    const auto process = owner.converter.process("pid.a");
    QVERIFY(process > 0);
    owner.queue.reset();
    QVERIFY(!ScriptedConverter::isRunning(process));
    QCOMPARE(owner.converter.left(), QStringList());
}

void TestConversionQueue::deafConverterIsGoneWithTheQueue()
{
    QueueOwner owner(isDeaf);
    owner.settings.patience = 200ms;
    owner.make();
    owner.add("a");
    const auto process = owner.converter.process("pid.a");
    QTRY_VERIFY(QFile::exists(owner.converter.path("deaf.a")));
    owner.queue.reset();
    QVERIFY(!ScriptedConverter::isRunning(process));
    QCOMPARE(owner.converter.left(), QStringList());
}

void TestConversionQueue::whatAKilledProgramHasLeftGoesAtTheStart()
{
    QueueOwner owner(converts);
    QVERIFY(QDir().mkpath(owner.converter.path("data/conversions/old/model.half/scratch")));
    owner.make();
    QCOMPARE(owner.converter.left(), QStringList());
}

void TestConversionQueue::otherFilesInTheDataFolderStay()
{
    QueueOwner owner(converts);
    QVERIFY(QDir().mkpath(owner.converter.path("data/proj_other")));
    owner.make();
    owner.queue.reset();
    QCOMPARE(owner.converter.left(), QStringList("proj_other"));
}

void TestConversionQueue::converterEndsWithAKilledProgram()
{
    const ScriptedConverter converter(isSlow);
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(),
                  {"convert", converter.program(), converter.data()});
    QVERIFY(program.waitForStarted());
    const auto process = converter.process("pid.a");
    QVERIFY(process > 0);
    program.kill();
    QVERIFY(program.waitForFinished());
    QTRY_VERIFY(!ScriptedConverter::isRunning(process));
}

int main(int argumentCount, char** arguments)
{
    QCoreApplication app(argumentCount, arguments);
    if (app.arguments().value(1) == "convert") {
        // The program that a test kills.
        KYVConvertCommon::ConversionSettings settings;
        settings.converter = app.arguments().value(2);
        settings.dataFolder = app.arguments().value(3);
        KYVConvertCommon::ConversionQueue queue(settings);
        queue.add({"a", "a.fbx", {}});
        return QCoreApplication::exec();
    }
    TestConversionQueue test;
    return QTest::qExec(&test, argumentCount, arguments);
}

#include "test_conversionqueue.moc"
