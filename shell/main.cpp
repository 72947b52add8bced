// SPDX-License-Identifier: MIT
#include "shell/accountfiles.h"
#include "shell/desktopsettings.h"
#include "shell/host.h"

#include <cstdio>

#include <QApplication>
#include <QMessageBox>

namespace
{

constexpr int cannotStart = 3;

void Tell(const QString& problem)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(problem));
    QMessageBox::critical(nullptr, QStringLiteral("Torvo Home"), problem);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    shell::ChooseDesktopSettings();
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
