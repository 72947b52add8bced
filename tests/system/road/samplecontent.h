// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace road
{

// What the demonstration content holds, as far as the road goes over it.

inline const QString account = QStringLiteral("zhangwei");
inline const QString password = QStringLiteral("torvo-zhangwei");

/// A building project with one model, a house.
inline const QString house = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");
/// A building project with one model, an engine.
inline const QString engine = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a03");

/// A building project with a model for each floor.
inline const QString layeredHouse = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a02");
/// A scene with two building projects.
inline const QString scene = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0b02");

/// A building project of the format before the current one.
inline const QString oldFormat = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a06");

} // namespace road
