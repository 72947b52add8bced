// SPDX-License-Identifier: MIT
//
// Opens the home window without any screens: there is no "qrc:/qmls/main.qml" in this program.
#include "core/framewindow.h"

#include <cstdio>

#include <QGuiApplication>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const TorvoEditor::CFrameWindow window;
    std::puts("still here");
    return 0;
}
