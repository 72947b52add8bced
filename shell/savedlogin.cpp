// SPDX-License-Identifier: MIT
#include "shell/savedlogin.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace shell
{

namespace
{

QJsonObject Read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool Write(const QString& path, const QJsonObject& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(QJsonDocument(content).toJson());
    return file.commit();
}

} // namespace

std::optional<Login> ReadSavedLogin(const QString& file, const QString& server, qint64 now)
{
    const auto saved = Read(file);
    Login login;
    login.server = saved.value(QLatin1String("server")).toString();
    login.account = saved.value(QLatin1String("account")).toString();
    login.token = saved.value(QLatin1String("token")).toString();
    login.loginName = saved.value(QLatin1String("loginName")).toString();
    login.expires = static_cast<qint64>(saved.value(QLatin1String("expires")).toDouble());
    if (login.token.isEmpty() || login.server != server || login.expires <= now)
        return std::nullopt;
    return login;
}

QString ReadSavedAccount(const QString& file)
{
    return Read(file).value(QLatin1String("account")).toString();
}

bool SaveLogin(const QString& file, const Login& login)
{
    return Write(file, {{QStringLiteral("server"), login.server},
                        {QStringLiteral("account"), login.account},
                        {QStringLiteral("token"), login.token},
                        {QStringLiteral("loginName"), login.loginName},
                        {QStringLiteral("expires"), static_cast<double>(login.expires)}});
}

void ForgetToken(const QString& file)
{
    auto saved = Read(file);
    if (!saved.contains(QLatin1String("token")))
        return;
    saved.remove(QLatin1String("token"));
    Write(file, saved);
}

} // namespace shell
