// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QRect>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

// The messages of the home to its children: JSON objects with the key "operator". Pure functions.

[[nodiscard]] QJsonObject OperatorMessage(const QString& name);

/// "error", "info" or "warn" with its text.
[[nodiscard]] QJsonObject TextMessage(const QString& name, const QString& text);

/// Where the content area lies on the screen. `titleHeight` counts on top of the area's own top, which lies
/// below the title already; the children know it so.
[[nodiscard]] QJsonObject ResizeMessage(const QRect& contentRect, double titleHeight);

/// What the home tells a child when it starts it.
struct StartInfo {
    QString tabName;
    QString ipcServer;
    QRect contentRect;
    QStringList subProjects;
    QString projMode; ///< "CIM" or "BIM"
};

/// The start message. Session values come from the properties of the application object; "epId", "epName",
/// "iotUrl" and "iotToken" only when somebody has set them.
[[nodiscard]] QJsonObject StartMessage(const StartInfo& info);

/// A message as it goes over the wire and onto a child's command line.
[[nodiscard]] QByteArray MessageBytes(const QJsonObject& message);

} // namespace TorvoEditor
