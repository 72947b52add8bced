// SPDX-License-Identifier: MIT
#include "shell/desktopsettings.h"

#include <QGuiApplication>

namespace shell
{

void ChooseDesktopSettings()
{
#ifdef Q_OS_LINUX
    // The children's windows are taken into the home window, which Wayland does not allow.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
#endif
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

} // namespace shell
