// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QProcess>
#include <QTest>

class TestBrokenScreens : public QObject
{
    Q_OBJECT

private slots:
    void screensThatCannotBeLoadedEndTheProcessWithMinusOne();
};

void TestBrokenScreens::screensThatCannotBeLoadedEndTheProcessWithMinusOne()
{
    QProcess program;
    // It ends in the middle of the engine's work, so that nothing of the engine is freed.
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    program.setProcessEnvironment(environment);
    program.start(BROKEN_SCREENS_PROGRAM, QStringList());
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    // The system keeps the low eight bits of -1.
    QCOMPARE(program.exitCode(), 255);
    QCOMPARE(program.readAllStandardOutput(), QByteArray());
    const auto log = QString::fromUtf8(program.readAllStandardError()).split('\n', Qt::SkipEmptyParts);
    QVERIFY2(log.contains("\"qrc:/qmls/main.qml: No such file or directory\"") ||
                 log.contains("\"No such file or directory\""),
             qPrintable(log.join('\n')));
}

QTEST_GUILESS_MAIN(TestBrokenScreens)
#include "test_brokenscreens.moc"
