// SPDX-License-Identifier: MIT
//
// Opens the home window, logs out at once and ends, as the host does when its last window has closed. Says on
// standard output what it is about to do.
#include "core/framewindow.h"

#include <cstdio>

#include <QDateTime>
#include <QFile>
#include <QGuiApplication>
#include <QTimer>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    TorvoEditor::CFrameWindow window;
    QObject::connect(&window, &TorvoEditor::CFrameWindow::beforeClosing, &app, [](bool bSaveProj) {
        const QString script = QCoreApplication::applicationDirPath() + "/logout.sh";
        std::printf("closing, saving: %d, script is there: %d\n", bSaveProj, QFile::exists(script));
    });
    window.show();
    QTimer::singleShot(0, &window, [&] {
        std::printf("logout at %lld\n", QDateTime::currentMSecsSinceEpoch());
        window.logout(true);
    });
    return QGuiApplication::exec();
}
