// SPDX-License-Identifier: MIT
#include "bizcommon/jsonfile.h"

#include <QFile>
#include <QFileInfo>

namespace BIZCOMMON
{

namespace
{

JsonFile Unreadable(const QString& reason)
{
    return {JsonFile::State::unreadable, {}, reason};
}

} // namespace

JsonFile ReadJson(const QString& path, qint64 maximumBytes)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    // Opening a pipe would wait for somebody to write into it.
    if (!info.isFile())
        return Unreadable(QStringLiteral("it is no file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Unreadable(file.errorString());
    const auto bytes = file.read(maximumBytes + 1);
    if (bytes.size() > maximumBytes)
        return Unreadable(QStringLiteral("it is larger than %1 bytes").arg(maximumBytes));
    QJsonParseError error;
    auto document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return Unreadable(error.errorString());
    return {JsonFile::State::read, std::move(document), {}};
}

} // namespace BIZCOMMON
