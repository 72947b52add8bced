// SPDX-License-Identifier: MIT
#include "road/picture.h"
#include "road/samplecontent.h"
#include "road/suite.h"

#include <csignal>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

class TestHostLoss : public road::Suite
{
    Q_OBJECT

    /// Waits until the visitor has come where it wanted to.
    static bool isThere(QProcess& visitor)
    {
        return road::WaitFor([&] { return visitor.readAllStandardOutput().contains("there"); }, 90000);
    }

    static void startVisitor(QProcess& visitor, const QString& aim)
    {
        visitor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        visitor.start(QCoreApplication::applicationDirPath() + QStringLiteral("/torvo-visitor"), {aim});
    }

    static QList<pid_t> hosts() { return road::ProcessesOf(QStringLiteral("KYVShell")); }

private slots:
    void aKilledHostLeavesNoChildBehind()
    {
        QProcess visitor;
        startVisitor(visitor, QStringLiteral("open"));
        QVERIFY(isThere(visitor));
        QCOMPARE(road::Children().size(), 1);
        visitor.kill();
        QTRY_COMPARE_WITH_TIMEOUT(road::Children().size(), 0, 15000);
    }

    void afterALogoutTheHostStartsAnewAndShowsItsLogin()
    {
        QProcess visitor;
        startVisitor(visitor, QStringLiteral("logout"));
        QVERIFY(isThere(visitor));
        QElapsedTimer sinceLogout;
        sinceLogout.start();
        QVERIFY(road::WaitFor([&] { return visitor.state() == QProcess::NotRunning; }));
        QVERIFY(road::WaitFor([] { return !hosts().isEmpty(); }));
        const auto milliseconds = sinceLogout.elapsed();
        QVERIFY2(milliseconds >= 1900 && milliseconds <= 4000, qPrintable(QString::number(milliseconds)));
        // A program that is just being started has no arguments yet.
        const auto arguments = [] { return road::ArgumentsOf(hosts().value(0)).mid(1); };
        QTRY_COMPARE(arguments(), QStringList(QStringLiteral("notAutoLogin")));

        // The saved login would have opened the home window, which fills the screen.
        const QRect screen = session->desktop().picture().rect();
        QTRY_VERIFY(road::ColoursIn(session->desktop().picture(), screen) > 2);
        QTest::qWait(1000);
        const QImage picture = session->desktop().picture();
        QCOMPARE(picture.pixelColor(2, 2), picture.pixelColor(screen.width() - 3, screen.height() - 3));
        kill(hosts().constFirst(), SIGTERM);
        QTRY_VERIFY(hosts().isEmpty());
    }
};

ROAD_MAIN(TestHostLoss)
#include "test_hostloss.moc"
