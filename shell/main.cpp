// SPDX-License-Identifier: MIT
#include "shell/accountfiles.h"
#include "shell/host.h"

#include <cstdio>

#include <QApplication>
#include <QMessageBox>

namespace
{

constexpr int cannotStart = 3;

/// The children's windows are taken into the home window, which Wayland does not allow.
void ChooseWindowSystem()
{
#ifdef Q_OS_LINUX
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
#endif
}

void Tell(const QString& problem)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(problem));
    QMessageBox::critical(nullptr, QStringLiteral("Torvo Home"), problem);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    ChooseWindowSystem();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argumentCount, arguments);
    QApplication::setApplicationName(QStringLiteral("Torvo Home"));

    QString problem = shell::FolderProblem();
    const auto config =
        problem.isEmpty() ? shell::ReadHostConfig(shell::HostConfigFile(), QApplication::arguments(), problem)
                          : shell::HostConfig();
    if (!problem.isEmpty()) {
        Tell(problem);
        return cannotStart;
    }
    shell::Host host(config);
    host.start();
    const int result = QApplication::exec();
    host.stop();
    return result;
}
