// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace shell
{

/// How the host was set up, from "hostConfig.json" beside the program and from its arguments, which count
/// more.
struct HostConfig {
    QString server;                            ///< address of the project server
    QString appVer = QStringLiteral("Normal"); ///< variant: "Lite", "Normal" or anything else
    bool isBimSdk = false;                     ///< the variant with a logout button
    bool isAutoLoginOff = false;               ///< argument "notAutoLogin": show the login whatever is saved
};

/// Reads file and arguments; a missing file or key leaves the default. `problem` takes words for the user
/// when an argument is not understood or the file is damaged.
[[nodiscard]] HostConfig ReadHostConfig(const QString& file, const QStringList& arguments, QString& problem);

} // namespace shell
