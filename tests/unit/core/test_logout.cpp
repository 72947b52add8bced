// SPDX-License-Identifier: MIT
//
// The restart after a logout, in the layout in which the programs are deployed, with a stand-in for the host.
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

namespace
{

QString TextOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class TestLogout : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void hostStartsWithItsLoginTwoToFourSecondsAfterTheLogout();
    void scriptThatCannotBeWrittenIsLoggedAndTheProgramEndsAllTheSame();

private:
    [[nodiscard]] QStringList logOut();
    void writeStandInHost() const;

    QString m_binFolder = QFileInfo(LOGOUT_HOME_PROGRAM).absolutePath();
    QString m_shellFolder = QDir(m_binFolder + "/../../shell").absolutePath();
    QString m_script = m_binFolder + "/logout.sh";
    QString m_started = m_shellFolder + "/started";
    QString m_errors; ///< what the program wrote to standard error
};

void TestLogout::init()
{
    QDir(m_shellFolder).removeRecursively();
    QVERIFY(QDir().mkpath(m_shellFolder));
    QFile::remove(m_script);
    QDir().rmdir(m_script);
    writeStandInHost();
}

void TestLogout::writeStandInHost() const
{
    QFile host(m_shellFolder + "/KYVShell.exe");
    QVERIFY(host.open(QIODevice::WriteOnly));
    // Into place by a rename, so that what the test reads is whole.
    host.write("#!/bin/sh\n"
               "folder=$(dirname \"$0\")\n"
               "echo \"$(date +%s%3N) $# $1\" > \"$folder/starting\"\n"
               "mv \"$folder/starting\" \"$folder/started\"\n");
    QVERIFY(host.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

/// Runs the program until it has ended; what it said.
QStringList TestLogout::logOut()
{
    QProcess home;
    home.start(LOGOUT_HOME_PROGRAM, QStringList());
    if (!home.waitForFinished() || home.exitStatus() != QProcess::NormalExit || home.exitCode() != 0)
        return {};
    m_errors = QString::fromUtf8(home.readAllStandardError());
    return QString::fromUtf8(home.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

void TestLogout::hostStartsWithItsLoginTwoToFourSecondsAfterTheLogout()
{
    const auto said = logOut();
    QCOMPARE(said.size(), 2);
    QCOMPARE(said[1], QString("closing, saving: 1, script is there: 1"));
    // The old process is gone, the new host is not there yet.
    QVERIFY(!QFile::exists(m_started));

    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_started), 30000);
    const auto started = TextOf(m_started).trimmed().split(' ');
    QCOMPARE(started.mid(1), QStringList({"1", "notAutoLogin"}));
    const qint64 loggedOutAt = said[0].section(' ', 2).toLongLong();
    const qint64 passed = started[0].toLongLong() - loggedOutAt;
    QVERIFY2(passed >= 2000 && passed <= 4000, qPrintable(QString::number(passed)));
    QVERIFY(!QFile::exists(m_script));
}

void TestLogout::scriptThatCannotBeWrittenIsLoggedAndTheProgramEndsAllTheSame()
{
    QVERIFY(QDir().mkpath(m_script));
    const auto said = logOut();
    QCOMPARE(said.size(), 2);
    const auto expected = QStringLiteral("open file  \"%1\" failed: \"Is a directory\"").arg(m_script);
    QVERIFY2(m_errors.split('\n').contains(expected), qPrintable(m_errors));
    QVERIFY(QDir().rmdir(m_script));
}

QTEST_GUILESS_MAIN(TestLogout)
#include "test_logout.moc"
