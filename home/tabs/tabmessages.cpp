// SPDX-License-Identifier: MIT
#include "tabs/tabmessages.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

namespace TorvoEditor
{

namespace
{

QString SessionText(const char* name)
{
    return QCoreApplication::instance()->property(name).toString();
}

} // namespace

QJsonObject OperatorMessage(const QString& name)
{
    return {{QStringLiteral("operator"), name}};
}

QJsonObject TextMessage(const QString& name, const QString& text)
{
    auto message = OperatorMessage(name);
    message.insert(QStringLiteral("value"), text);
    return message;
}

QJsonObject ResizeMessage(const QRect& contentRect, double titleHeight)
{
    auto message = OperatorMessage(QStringLiteral("resize"));
    message.insert(QStringLiteral("x"), contentRect.x());
    message.insert(QStringLiteral("y"), contentRect.y() + titleHeight);
    message.insert(QStringLiteral("w"), contentRect.width());
    message.insert(QStringLiteral("h"), contentRect.height());
    return message;
}

QJsonObject StartMessage(const StartInfo& info)
{
    QJsonObject message{
        {QStringLiteral("tabName"), info.tabName},
        {QStringLiteral("ipcServer"), info.ipcServer},
        {QStringLiteral("token"), SessionText("token")},
        {QStringLiteral("serverAddr"), SessionText("serverAddr")},
        {QStringLiteral("sdkAddr"), SessionText("sdkAddr")},
        {QStringLiteral("loginName"), SessionText("loginName")},
        {QStringLiteral("x"), info.contentRect.x()},
        {QStringLiteral("y"), info.contentRect.y()},
        {QStringLiteral("w"), info.contentRect.width()},
        {QStringLiteral("h"), info.contentRect.height()},
        {QStringLiteral("subProj"), QJsonArray::fromStringList(info.subProjects)},
        {QStringLiteral("projMode"), info.projMode},
        {QStringLiteral("cookies"), SessionText("cookies")},
    };
    for (const char* name : {"epId", "epName", "iotUrl", "iotToken"}) {
        const QVariant value = QCoreApplication::instance()->property(name);
        if (value.isValid())
            message.insert(QLatin1String(name), value.toString());
    }
    return message;
}

QByteArray MessageBytes(const QJsonObject& message)
{
    return QJsonDocument(message).toJson();
}

} // namespace TorvoEditor
