// SPDX-License-Identifier: MIT
#include "check/check.h"

#include "shell/desktopsettings.h"

#include <cstdio>
#include <exception>

#include <QApplication>
#include <QCommandLineParser>

int main(int argumentCount, char** arguments)
{
    shell::ChooseDesktopSettings();
    QApplication app(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const QCommandLineOption shots(QStringLiteral("shots"), QStringLiteral("folder for the pictures"),
                                   QStringLiteral("folder"));
    const QCommandLineOption server(QStringLiteral("server-pid"),
                                    QStringLiteral("process of the project server"), QStringLiteral("pid"));
    QCommandLineParser parser;
    parser.addOptions({shots, server});
    parser.process(app);
    const int pid = parser.value(server).toInt();
    if (!parser.isSet(shots) || pid <= 0) {
        std::fprintf(stderr, "torvo-check wants --shots and --server-pid\n");
        return 2;
    }
    try {
        Check check(parser.value(shots), pid);
        return check.run() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "torvo-check: %s\n", error.what());
        return 1;
    }
}
