// SPDX-License-Identifier: MIT
#include "testchild.h"

#include <csignal>
#include <cstdio>

#include <QGuiApplication>

#include <sys/prctl.h>

int main(int argc, char** argv)
{
    // No test leaves a process behind, whatever part is played.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argc != 2) {
        std::fprintf(stderr, "testchild: wants its start message as the one argument, got %d\n", argc - 1);
        return 2;
    }
    // On its outputs stands what its part says and nothing else.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QGuiApplication app(argc, argv);
    const TestChild child{QByteArray(argv[1])};
    return QGuiApplication::exec();
}
