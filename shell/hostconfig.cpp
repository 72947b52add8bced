// SPDX-License-Identifier: MIT
#include "shell/hostconfig.h"

#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace shell
{

namespace
{

const char* const defaultServer = "http://127.0.0.1:8480";

void ReadFile(const QString& path, HostConfig& config, QString& problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        problem = QStringLiteral("配置文件 %1 已损坏：%2").arg(path, error.errorString());
        return;
    }
    const auto settings = document.object();
    config.server = settings.value(QLatin1String("server")).toString(config.server);
    config.appVer = settings.value(QLatin1String("appVer")).toString(config.appVer);
    config.isBimSdk = settings.value(QLatin1String("isBimSdk")).toBool(config.isBimSdk);
}

} // namespace

HostConfig ReadHostConfig(const QString& file, const QStringList& arguments, QString& problem)
{
    HostConfig config;
    config.server = QLatin1String(defaultServer);
    ReadFile(file, config, problem);

    const QCommandLineOption server(QStringLiteral("server"), QStringLiteral("address of the project server"),
                                    QStringLiteral("URL"));
    const QCommandLineOption appVer(QStringLiteral("app-ver"), QStringLiteral("variant: Lite or Normal"),
                                    QStringLiteral("NAME"));
    const QCommandLineOption bimSdk(QStringLiteral("bim-sdk"),
                                    QStringLiteral("the variant with a logout button"));
    QCommandLineParser parser;
    parser.addOptions({server, appVer, bimSdk});
    parser.addPositionalArgument(QStringLiteral("notAutoLogin"), QStringLiteral("show the login"));
    if (!parser.parse(arguments))
        problem = parser.errorText();
    if (parser.isSet(server))
        config.server = parser.value(server);
    if (parser.isSet(appVer))
        config.appVer = parser.value(appVer);
    if (parser.isSet(bimSdk))
        config.isBimSdk = true;
    config.isAutoLoginOff = parser.positionalArguments().contains(QLatin1String("notAutoLogin"));
    return config;
}

} // namespace shell
