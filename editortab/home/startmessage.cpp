// SPDX-License-Identifier: MIT
#include "editortab/home/startmessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace editortab
{

namespace
{

constexpr int smallestWidth = 320;
constexpr int smallestHeight = 240;

} // namespace

std::optional<StartMessage> ReadStartMessage(const QString& text)
{
    const auto object = QJsonDocument::fromJson(text.toUtf8()).object();
    const auto textOf = [&](QLatin1String key) { return object.value(key).toString(); };
    const auto numberOf = [&](QLatin1String key) { return object.value(key).toInt(); };
    StartMessage message;
    message.tabName = textOf(QLatin1String("tabName"));
    message.ipcServer = textOf(QLatin1String("ipcServer"));
    if (message.tabName.isEmpty() || message.ipcServer.isEmpty())
        return std::nullopt;
    message.token = textOf(QLatin1String("token"));
    message.serverAddr = textOf(QLatin1String("serverAddr"));
    message.cookies = textOf(QLatin1String("cookies"));
    message.projMode = textOf(QLatin1String("projMode"));
    message.contentRect = QRect(numberOf(QLatin1String("x")), numberOf(QLatin1String("y")),
                                qMax(smallestWidth, numberOf(QLatin1String("w"))),
                                qMax(smallestHeight, numberOf(QLatin1String("h"))));
    const auto subProjects = object.value(QLatin1String("subProj")).toArray();
    for (const auto& subProject : subProjects)
        message.subProjects.append(subProject.toString());
    return message;
}

} // namespace editortab
