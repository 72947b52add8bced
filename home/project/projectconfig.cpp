// SPDX-License-Identifier: MIT
#include "project/projectconfig.h"

#include "core/filefunctions.h"

#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

using TextCoding = QString (*)(const QString&);

QString EncodeText(const QString& text)
{
    return QString::fromLatin1(text.toUtf8().toBase64());
}

QString DecodeText(const QString& text)
{
    return QString::fromUtf8(QByteArray::fromBase64(text.toUtf8()));
}

QJsonObject CodeObject(const QJsonObject& object, TextCoding code)
{
    QJsonObject coded;
    for (auto member = object.constBegin(); member != object.constEnd(); ++member) {
        if (member.value().isObject())
            coded.insert(code(member.key()), CodeObject(member.value().toObject(), code));
        else
            coded.insert(code(member.key()), code(member.value().toString()));
    }
    return coded;
}

QJsonArray CodeArray(const QJsonArray& projects, TextCoding code)
{
    QJsonArray coded;
    for (const auto& project : projects)
        coded.append(CodeObject(project.toObject(), code));
    return coded;
}

} // namespace

QJsonArray EncodeProjectConfig(const QJsonArray& projects)
{
    return CodeArray(projects, EncodeText);
}

QJsonArray DecodeProjectConfig(const QJsonArray& projects)
{
    return CodeArray(projects, DecodeText);
}

QJsonArray ReadProjectConfig(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "open file " << path << "failed:" << file.errorString();
        return {};
    }
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull()) {
        qWarning() << "parse json failed:" << error.errorString();
        return {};
    }
    return document.array();
}

void WriteProjectConfig(const QString& path, const QJsonArray& projects)
{
    WriteBytesFile(path, QJsonDocument(projects).toJson());
}

} // namespace TorvoEditor
