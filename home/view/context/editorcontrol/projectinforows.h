// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QString>

namespace TorvoEditor
{

struct SProjectInfoRecord;

/// The labels of the info card, which are the keys of its rows as well.
namespace InfoLabel
{
[[nodiscard]] QString name();
[[nodiscard]] QString guid();
[[nodiscard]] QString type();
[[nodiscard]] QString templateFile();
[[nodiscard]] QString region();
[[nodiscard]] QString proj4();
[[nodiscard]] QString iotCode();
[[nodiscard]] QString earthConfig();  ///< no row stands under it
[[nodiscard]] QString templateEdit(); ///< no row stands under it, and nothing is written by it
[[nodiscard]] QString department();
} // namespace InfoLabel

/// What decides, beside the record, which rows the card has.
struct InfoRowsMode {
    bool isLocal = false;    ///< the project is here and may be edited
    bool isBimSdk = false;   ///< the variant of the host
    bool showsProj4 = false; ///< the setting "proj4_info" is "1"
};

/// The rows of the info card for a project. A row is an object of "key" (label), "value", "visible",
/// "readOnly" and "type": 0 text, 1 file shown as text, 2 property template, 3 region.
[[nodiscard]] QJsonArray ProjectInfoRows(const SProjectInfoRecord& record, const InfoRowsMode& mode);

} // namespace TorvoEditor
