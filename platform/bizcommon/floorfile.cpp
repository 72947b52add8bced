// SPDX-License-Identifier: MIT
#include "bizcommon/floorfile.h"

#include "bizcommon/bizcommonlog.h"
#include "bizcommon/floorspath.h"
#include "bizcommon/jsonfile.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace BIZCOMMON::FLOORINFO
{

namespace
{

constexpr qint64 maximumBytes = 64 * 1024 * 1024;
constexpr int currentVersion = 1;

constexpr QLatin1String versionKey("version");
constexpr QLatin1String projectKey("bim_proj");
constexpr QLatin1String floorsKey("floor_list");
constexpr QLatin1String nameKey("floor_name");
constexpr QLatin1String mappingKey("mapping");

std::optional<QStringList> NamesFrom(const QJsonValue& value)
{
    if (!value.isArray())
        return std::nullopt;
    QStringList names;
    const auto array = value.toArray();
    for (const auto& name : array) {
        if (!name.isString())
            return std::nullopt;
        names.append(name.toString());
    }
    return names;
}

std::optional<TFloorRec> FloorFrom(const QJsonObject& object)
{
    const auto name = object.value(nameKey);
    const auto mapping = object.value(mappingKey);
    if (!name.isString() || !mapping.isObject())
        return std::nullopt;
    TFloorRec floor{name.toString(), {}};
    const auto models = mapping.toObject();
    for (auto model = models.begin(); model != models.end(); ++model) {
        auto names = NamesFrom(model.value());
        if (!names)
            return std::nullopt;
        if (!names->isEmpty())
            floor.mapping.insert(model.key(), std::move(*names));
    }
    return floor;
}

std::optional<QList<TFloorRec>> FloorsFrom(const QJsonObject& file)
{
    if (file.value(versionKey).toInt() != currentVersion || !file.value(floorsKey).isArray())
        return std::nullopt;
    QList<TFloorRec> floors;
    const auto array = file.value(floorsKey).toArray();
    for (const auto& entry : array) {
        auto floor = FloorFrom(entry.toObject());
        if (!floor)
            return std::nullopt;
        floors.append(std::move(*floor));
    }
    return floors;
}

QJsonObject ObjectOf(const TFloorRec& floor)
{
    QJsonObject mapping;
    for (auto model = floor.mapping.begin(); model != floor.mapping.end(); ++model)
        mapping.insert(model.key(), QJsonArray::fromStringList(*model));
    return {{nameKey, floor.floorName}, {mappingKey, mapping}};
}

/// The floors in the file; nothing, with the reason, when it is there and cannot be read.
std::optional<QList<TFloorRec>> Read(const QString& path, QString& reason)
{
    const auto file = ReadJson(path, maximumBytes);
    if (file.state == JsonFile::State::missing)
        return QList<TFloorRec>();
    reason =
        file.state == JsonFile::State::unreadable ? file.reason : QStringLiteral("it is no list of floors");
    return file.state == JsonFile::State::read ? FloorsFrom(file.document.object()) : std::nullopt;
}

bool Move(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(from.toStdWString(), to.toStdWString(), error);
    if (error)
        qCWarning(bizcommonLog) << to << "cannot be written:" << QString::fromStdString(error.message());
    return !error;
}

} // namespace

FloorFile::FloorFile(QString bimGuid, const QString& dataDir)
    : m_bimGuid(std::move(bimGuid))
    , m_path(FloorsPath(dataDir, m_bimGuid))
{
}

QList<TFloorRec> FloorFile::read() const
{
    QString reason;
    const auto floors = Read(m_path, reason);
    if (!floors)
        qCWarning(bizcommonLog) << "the floors in" << m_path << "cannot be read:" << reason;
    return floors.value_or(QList<TFloorRec>());
}

void FloorFile::write(const QList<TFloorRec>& floors) const
{
    if (m_path.isEmpty()) {
        qCWarning(bizcommonLog) << "no floors can be stored for" << m_bimGuid;
        return;
    }
    QJsonArray list;
    for (const auto& floor : floors)
        list.append(ObjectOf(floor));
    const QJsonObject file{{versionKey, currentVersion}, {projectKey, m_bimGuid}, {floorsKey, list}};
    const auto bytes = QJsonDocument(file).toJson();
    if (bytes.size() > maximumBytes) {
        qCWarning(bizcommonLog) << "the floors of" << m_bimGuid << "are too many to be stored";
        return;
    }
    if (keepDamaged() && !replace(bytes))
        QFile::remove(m_path + QStringLiteral(".tmp"));
}

bool FloorFile::keepDamaged() const
{
    QString reason;
    if (Read(m_path, reason))
        return true;
    const auto kept = m_path + QStringLiteral(".damaged");
    qCWarning(bizcommonLog) << m_path << "could not be read and is kept as" << kept << ":" << reason;
    return Move(m_path, kept);
}

bool FloorFile::replace(const QByteArray& bytes) const
{
    // The ending keeps it out of an upload that runs at this moment.
    QFile half(m_path + QStringLiteral(".tmp"));
    if (!half.open(QIODevice::WriteOnly) || half.write(bytes) != bytes.size() || !half.flush()) {
        qCWarning(bizcommonLog) << half.fileName() << "cannot be written:" << half.errorString();
        return false;
    }
    half.close();
    return Move(half.fileName(), m_path);
}

} // namespace BIZCOMMON::FLOORINFO
