// SPDX-License-Identifier: MIT
#include "settingsfile.h"

#include "editorcommonlog.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace EditorCommon
{

namespace
{

/// Far more than settings ever need; what is longer is not ours.
constexpr qint64 largestFile = 1024 * 1024;

QJsonObject ReadSettings(const QString& path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(editorCommonLog) << "cannot read" << path << ":" << file.errorString();
        return {};
    }
    if (file.size() > largestFile) {
        qCWarning(editorCommonLog) << path << "is too large for settings:" << file.size() << "bytes";
        return {};
    }
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        qCWarning(editorCommonLog) << path << "holds no settings:" << error.errorString();
    return document.object();
}

} // namespace

QHash<QString, QString> ReadSettingsFile(const QString& path)
{
    QHash<QString, QString> values;
    const auto settings = ReadSettings(path);
    for (auto entry = settings.begin(); entry != settings.end(); ++entry) {
        if (entry->isString())
            values.insert(entry.key(), entry->toString());
    }
    return values;
}

} // namespace EditorCommon
