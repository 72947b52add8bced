// SPDX-License-Identifier: MIT
#pragma once

/// The codes of the project server that a transfer has to tell apart; server/openapi.yaml has them all.
namespace ZRSmartDB::servercode
{

inline constexpr int uploadGone = 40410;  ///< the upload has ended
inline constexpr int unknownBase = 40903; ///< the server does not have the revision that was told against
inline constexpr int incomplete = 40904;  ///< pieces are missing

} // namespace ZRSmartDB::servercode
