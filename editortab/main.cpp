// SPDX-License-Identifier: MIT
#include "editortab/home/homelink.h"
#include "editortab/home/startmessage.h"
#include "editortab/window/editorwindow.h"
#include "editortab/window/look.h"

#include <cstdio>

#include <QApplication>
#include <QTimer>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#endif

namespace
{

constexpr int badArgument = 2;
constexpr int noHome = 3;
constexpr int patience = 10000; ///< milliseconds for the home to answer

/// Until the connection stands nothing tells this program that the home has gone; the system does it instead.
void DieWithParent(bool isOn)
{
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, isOn ? SIGKILL : 0);
#else
    Q_UNUSED(isOn)
#endif
}

} // namespace

int main(int argumentCount, char** arguments)
{
    DieWithParent(true);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto start = editortab::ReadStartMessage(QApplication::arguments().value(1));
    if (!start) {
        std::fprintf(stderr,
                     "this program is started by the home window, with its start message as the argument\n");
        return badArgument;
    }
    editortab::ApplyLook(app);
    editortab::HomeLink home;
    editortab::EditorWindow window(*start, home);
    bool isConnected = false;
    QObject::connect(&home, &editortab::HomeLink::connected, &window, [&] {
        isConnected = true;
        DieWithParent(false);
        window.show();
        window.openProject();
    });
    QObject::connect(&home, &editortab::HomeLink::lost, &window, [&] {
        window.close();
        QCoreApplication::exit(isConnected ? 0 : noHome);
    });
    QObject::connect(&window, &editortab::EditorWindow::finished, &window, [&] {
        window.close();
        QCoreApplication::exit(0);
    });
    QTimer::singleShot(patience, &window, [&] {
        if (!isConnected)
            QCoreApplication::exit(noHome);
    });
    QTimer::singleShot(0, &home, [&] { home.open(start->ipcServer, start->tabName); });
    return QApplication::exec();
}
