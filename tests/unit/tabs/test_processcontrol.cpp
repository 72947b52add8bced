// SPDX-License-Identifier: MIT
#include "tabs/processcontrol.h"

#include "fakes/childprocesses.h"
#include "fakes/logbook.h"

#include <memory>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using TorvoEditor::CProcessControl;

namespace
{

QString Child()
{
    return QCoreApplication::applicationDirPath() + "/TorvoEditorTab.exe";
}

QStringList Part(const QString& steps)
{
    return {QString::fromUtf8(QJsonDocument(QJsonObject{{"epName", steps}}).toJson())};
}

} // namespace

class TestProcessControl : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void processBearsItsName();
    void processWithoutANameHasNone();
    void processRunsInTheFolderOfTheProgramWithItsEnvironment();
    void argumentsArriveAsTheyAre();
    void startAndEndAreLogged();
    void outputIsLogged();
    void endTellsTheExitCode();
    void endDeletesTheProcess();
    void crashIsAnErrorAndThenAnEnd();
    void programThatIsNotThereIsLoggedAndNothingElse();
    void severalChildrenRunSideBySide();
    void endOfTheControlKillsWhatStillRuns();
    void floodOfOutputIsLoggedWithoutGrowth();

private:
    [[nodiscard]] QProcess* onlyProcess() const;
    [[nodiscard]] QString line(const QString& level, qint64 processId, const QString& rest) const;

    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<CProcessControl> m_control;
};

void TestProcessControl::init()
{
    m_log = std::make_unique<Fakes::LogBook>();
    m_control = std::make_unique<CProcessControl>();
}

void TestProcessControl::cleanup()
{
    m_control.reset();
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
    m_log.reset();
}

QProcess* TestProcessControl::onlyProcess() const
{
    const auto processes = m_control->findChildren<QProcess*>();
    return processes.size() == 1 ? processes.front() : nullptr;
}

QString TestProcessControl::line(const QString& level, qint64 processId, const QString& rest) const
{
    return QStringLiteral("%1: \"%2\" %3 %4").arg(level, Child()).arg(processId).arg(rest);
}

void TestProcessControl::processBearsItsName()
{
    m_control->Start(Child(), Part("await ever"), "project-1");
    QVERIFY(onlyProcess() != nullptr);
    QCOMPARE(onlyProcess()->objectName(), QString("project-1"));
}

void TestProcessControl::processWithoutANameHasNone()
{
    m_control->Start(Child(), Part("await ever"), QString());
    QVERIFY(onlyProcess() != nullptr);
    QCOMPARE(onlyProcess()->objectName(), QString());
}

void TestProcessControl::processRunsInTheFolderOfTheProgramWithItsEnvironment()
{
    qputenv("TORVO_TEST_VALUE", "seen");
    m_control->Start("/bin/sh", {"-c", "pwd; echo $TORVO_TEST_VALUE"}, "a");
    const QString expected = QStringLiteral("\"%1\\nseen\\n\"").arg(QCoreApplication::applicationDirPath());
    QTRY_COMPARE(m_log->linesWith(expected).size(), 1);
}

void TestProcessControl::argumentsArriveAsTheyAre()
{
    // A start message has line breaks, quotes and blanks, and is one argument all the same.
    m_control->Start(Child(), Part("say \"as it is\""), "a");
    QTRY_COMPARE(m_log->linesWith("\\\"as it is\\\"").size(), 1);
}

void TestProcessControl::startAndEndAreLogged()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start(Child(), Part("exit 0"), "a");
    auto* process = onlyProcess();
    QVERIFY(process != nullptr);
    const qint64 id = process->processId();
    QVERIFY(id > 0);
    QTRY_COMPARE(finished.count(), 1);
    // At the end the process has no number any more.
    QCOMPARE(m_log->take(),
             QStringList({line("info", id, " started "), line("info", 0, " finished with exitcode  0")}));
}

void TestProcessControl::outputIsLogged()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start(Child(), Part("say to the world;complain a little;await ever"), "a");
    const qint64 id = onlyProcess()->processId();
    QTRY_COMPARE(m_log->linesWith(line("info", id, "\"to the world\\n\"")).size(), 1);
    QTRY_COMPARE(m_log->linesWith(line("warning", id, "\"a little\\n\"")).size(), 1);
}

void TestProcessControl::endTellsTheExitCode()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start(Child(), Part("exit 7"), "a");
    QTRY_COMPARE(finished, QList<QVariantList>({{7}}));
    QCOMPARE(m_log->linesWith(" finished with exitcode  7").size(), 1);
}

void TestProcessControl::endDeletesTheProcess()
{
    m_control->Start(Child(), Part("exit 0"), "a");
    const QPointer<QProcess> process = onlyProcess();
    QVERIFY(!process.isNull());
    QTRY_VERIFY(process.isNull());
}

void TestProcessControl::crashIsAnErrorAndThenAnEnd()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start(Child(), Part("crash"), "a");
    const qint64 id = onlyProcess()->processId();
    QTRY_COMPARE(finished.count(), 1);
    const auto lines = m_log->take();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], line("info", id, " started "));
    QVERIFY2(lines[1].startsWith("warning: ") && lines[1].endsWith("  error:  \"Process crashed\""),
             qPrintable(lines[1]));
    QCOMPARE(lines[2], line("info", 0, " finished with exitcode  9"));
}

void TestProcessControl::programThatIsNotThereIsLoggedAndNothingElse()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start("/no/such/program", QStringList(), "a");
    QTRY_COMPARE(m_log->linesWith("error").size(), 1);
    const auto lines = m_log->take();
    QCOMPARE(lines.size(), 1);
    const QRegularExpression expected(
        "^warning: \"/no/such/program\" \\d+  error:  \".*No such file or directory\"$");
    QVERIFY2(expected.match(lines[0]).hasMatch(), qPrintable(lines[0]));
    // It stays until the control goes.
    QVERIFY(onlyProcess() != nullptr);
    QCOMPARE(finished.count(), 0);
}

void TestProcessControl::severalChildrenRunSideBySide()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start(Child(), Part("say one;await ever"), "a");
    m_control->Start(Child(), Part("say two;await ever"), "b");
    QTRY_COMPARE(Fakes::RunningChildren().size(), 2);
    QTRY_COMPARE(m_log->linesWith("\"one\\n\"").size(), 1);
    QTRY_COMPARE(m_log->linesWith("\"two\\n\"").size(), 1);
    for (const auto* process : m_control->findChildren<QProcess*>()) {
        const auto started = line("info", process->processId(), " started ");
        QCOMPARE(m_log->linesWith(started).size(), 1);
    }
}

void TestProcessControl::endOfTheControlKillsWhatStillRuns()
{
    m_control->Start(Child(), Part("say ready;hang"), "a");
    QTRY_COMPARE(m_log->linesWith("ready").size(), 1);
    m_control.reset();
    QCOMPARE(Fakes::RunningChildren(), QList<qint64>());
}

void TestProcessControl::floodOfOutputIsLoggedWithoutGrowth()
{
    QSignalSpy finished(m_control.get(), &CProcessControl::sigFinished);
    m_control->Start("/bin/sh", {"-c", "head -c 20000000 /dev/zero | tr '\\0' x"}, "a");
    auto* process = onlyProcess();
    while (finished.count() == 0) {
        QTest::qWait(0);
        m_log->take();
        QVERIFY(finished.count() > 0 || process->bytesAvailable() == 0);
    }
}

QTEST_MAIN(TestProcessControl)
#include "test_processcontrol.moc"
