// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QString>

namespace ZRSmartDB
{
class IZRModelRecord;
class IZRModelStore;
} // namespace ZRSmartDB

namespace TorvoEditor
{

/// The models of a building project that is open, for changing them; null when it is not.
[[nodiscard]] ZRSmartDB::IZRModelStore* OpenedModelStore(const QString& bimGuid);

/// The models of a building project, which is opened where needed; null when it cannot be.
[[nodiscard]] ZRSmartDB::IZRModelStore* ModelStoreOnDisk(const QString& bimGuid);

/// All of their records, in the order in which the project took them in.
[[nodiscard]] std::vector<const ZRSmartDB::IZRModelRecord*> ModelRecords(const QString& bimGuid);

/// Lets go of an open project. False when there is no database.
bool CloseProject(const QString& bimGuid);

} // namespace TorvoEditor
