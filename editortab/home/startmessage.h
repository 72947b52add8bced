// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QRect>
#include <QString>
#include <QStringList>

namespace editortab
{

/// What the home tells this program when it starts it: a JSON object, the one argument of the command line.
struct StartMessage {
    QString tabName; ///< the project's guid, and the name of the connection
    QString ipcServer;
    QString token;
    QString serverAddr;
    QString cookies;
    QRect contentRect; ///< on the screen
    QStringList subProjects;
    QString projMode; ///< "CIM" or "BIM"
};

/// Reads the message; nothing when it is no JSON object or names neither tab nor server.
[[nodiscard]] std::optional<StartMessage> ReadStartMessage(const QString& text);

} // namespace editortab
