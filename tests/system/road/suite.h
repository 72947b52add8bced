// SPDX-License-Identifier: MIT
#pragma once

#include "road/processes.h"
#include "road/projectserver.h"
#include "road/session.h"
#include "shell/desktopsettings.h"

#include <memory>

#include <QApplication>
#include <QObject>
#include <QTest>

namespace road
{

/// What the test functions of a system suite have in common: a server, a clean folder and a session each, and
/// no process left behind at the end of any.
class Suite : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<ProjectServer> server;
    std::unique_ptr<Session> session;

private slots:
    void init()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        server = std::make_unique<ProjectServer>();
        server->start();
        PrepareFolder(server->address());
        session = std::make_unique<Session>();
    }

    void cleanup()
    {
        session.reset();
        server.reset();
        QTRY_COMPARE(Children(), QList<pid_t>());
        QCOMPARE(ProcessesOf(QStringLiteral("../../server/bin/torvo-server")), QList<pid_t>());
    }
};

} // namespace road

/// The program of a suite.
#define ROAD_MAIN(SuiteClass)                                                                                \
    int main(int argumentCount, char** arguments)                                                            \
    {                                                                                                        \
        shell::ChooseDesktopSettings();                                                                      \
        QApplication app(argumentCount, arguments);                                                          \
        SuiteClass suite;                                                                                    \
        return QTest::qExec(&suite, argumentCount, arguments);                                               \
    }
