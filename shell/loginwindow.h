// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickView>

namespace shell
{

class LoginController;

/// The login: a small frameless window in the middle of the screen. GUI thread.
class LoginWindow : public QQuickView
{
    Q_OBJECT

public:
    explicit LoginWindow(LoginController& controller);

    /// Follows the pointer while the title is dragged.
    Q_INVOKABLE void move(double xOffset, double yOffset);
};

} // namespace shell
