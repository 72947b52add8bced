// SPDX-License-Identifier: MIT
#include "core/restartscript.h"

#include "core/filefunctions.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace TorvoEditor;

namespace
{

/// A program that says that it was started, and with what.
bool WriteStandInHost(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\necho \"$@\" > \"$0.started\"\n") > 0 &&
           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString TextOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class TestRestartScript : public QObject
{
    Q_OBJECT

private slots:
    void hostLiesTwoFoldersAboveInTheShellFolder();
    void batchTextLetterForLetter();
    void batchTextKeepsAPathWithABlankAsItIs();
    void shellTextLetterForLetter();
    void shellScriptWaitsForTheOldProcessThenStartsTheHostAndDeletesItself();
    void shellScriptCountsAProcessThatNobodyCollectedAsGone();
};

void TestRestartScript::hostLiesTwoFoldersAboveInTheShellFolder()
{
    QCOMPARE(HostPath("/home/me/torvo/editor/bin"), QString("/home/me/torvo/shell/KYVShell.exe"));
}

void TestRestartScript::batchTextLetterForLetter()
{
    QCOMPARE(RestartBatchText("C:/Torvo/shell/KYVShell.exe"),
             QString("\n@echo off\nchoice /t 2 /d y /n >nul \n"
                     "C:/Torvo/shell/KYVShell.exe notAutoLogin\ndel %0\n"));
}

void TestRestartScript::batchTextKeepsAPathWithABlankAsItIs()
{
    QVERIFY(RestartBatchText("C:/Program Files/shell/KYVShell.exe")
                .contains("\nC:/Program Files/shell/KYVShell.exe notAutoLogin\n"));
}

void TestRestartScript::shellTextLetterForLetter()
{
    QCOMPARE(RestartShellText("/home/o'neil/my torvo/shell/KYVShell.exe", 4711),
             QString("#!/bin/sh\n"
                     "sleep 2\n"
                     "while [ -e /proc/4711/status ] && ! grep -q '^State:.Z' /proc/4711/status; do\n"
                     "    sleep 0.1\n"
                     "done\n"
                     "rm -f -- \"$0\"\n"
                     "exec '/home/o'\\''neil/my torvo/shell/KYVShell.exe' notAutoLogin\n"));
}

void TestRestartScript::shellScriptWaitsForTheOldProcessThenStartsTheHostAndDeletesItself()
{
    QTemporaryDir folder;
    const QString host = folder.filePath("it's a host.exe");
    QVERIFY(WriteStandInHost(host));
    QProcess oldProcess;
    oldProcess.start("sleep", {"60"});
    QVERIFY(oldProcess.waitForStarted());

    const QString script = folder.filePath("logout.sh");
    QVERIFY(WriteBytesFile(script, RestartShellText(host, oldProcess.processId()).toUtf8()));
    QElapsedTimer sinceStart;
    sinceStart.start();
    QProcess running;
    running.start("/bin/sh", {script});
    QVERIFY(!running.waitForFinished(3000));
    QVERIFY(!QFile::exists(host + ".started"));

    oldProcess.kill();
    QVERIFY(oldProcess.waitForFinished());
    QVERIFY(running.waitForFinished());
    QCOMPARE(TextOf(host + ".started"), QString("notAutoLogin\n"));
    QVERIFY(!QFile::exists(script));
}

void TestRestartScript::shellScriptCountsAProcessThatNobodyCollectedAsGone()
{
    QTemporaryDir folder;
    const QString host = folder.filePath("host.exe");
    QVERIFY(WriteStandInHost(host));
    // The inner shell ends at once; its parent has turned into a sleep that never collects it.
    QProcess parent;
    parent.start("/bin/sh", {"-c", "sh -c 'echo $$' & exec sleep 60"});
    QVERIFY(parent.waitForReadyRead());
    const qint64 deadProcess = parent.readAllStandardOutput().trimmed().toLongLong();
    QVERIFY(deadProcess > 0);

    QElapsedTimer sinceStart;
    sinceStart.start();
    const QString script = folder.filePath("logout.sh");
    QVERIFY(WriteBytesFile(script, RestartShellText(host, deadProcess).toUtf8()));
    QCOMPARE(QProcess::execute("/bin/sh", {script}), 0);
    QVERIFY(sinceStart.elapsed() >= 2000);
    QVERIFY(QFile::exists(QStringLiteral("/proc/%1").arg(deadProcess)));
    QCOMPARE(TextOf(host + ".started"), QString("notAutoLogin\n"));
    parent.kill();
    QVERIFY(parent.waitForFinished());
}

QTEST_GUILESS_MAIN(TestRestartScript)
#include "test_restartscript.moc"
