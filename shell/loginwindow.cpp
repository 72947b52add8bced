// SPDX-License-Identifier: MIT
#include "shell/loginwindow.h"

#include "shell/logincontroller.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QScreen>

/// A linker leaves the resource of a static library out unless somebody asks for it, which works outside of
/// namespaces only.
static void RegisterResource()
{
    Q_INIT_RESOURCE(shell);
}

namespace shell
{

LoginWindow::LoginWindow(LoginController& controller)
{
    RegisterResource();
    setTitle(QStringLiteral("Torvo Home"));
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    rootContext()->setContextProperty(QStringLiteral("loginController"), &controller);
    rootContext()->setContextProperty(QStringLiteral("loginWindow"), this);
    setResizeMode(QQuickView::SizeViewToRootObject);
    setSource(QUrl(QStringLiteral("qrc:/shell/Login.qml")));
    const QRect area = screen()->availableGeometry();
    setPosition(area.center() - QPoint(width() / 2, height() / 2));
}

void LoginWindow::move(double xOffset, double yOffset)
{
    setPosition(x() + static_cast<int>(xOffset), y() + static_cast<int>(yOffset));
}

} // namespace shell
