// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TorvoEditor
{

/// How far a model has come on its way over the server. The numbers are known to the screens.
enum KyvConvertState {
    KCS_Converted = 0,       ///< on the server: a finished model
    KCS_WaitRepackage = 1,   ///< here: waits to be unpacked
    KCS_Repackage = 2,       ///< here: is being unpacked
    KCS_WaitUpload = 3,      ///< here: waits to be sent
    KCS_Upload = 4,          ///< here: is being sent
    KCS_WaitConvert = 5,     ///< on the server: waits in its queue
    KCS_Convert = 6,         ///< on the server: is being converted
    KCS_RepackageFailed = 7, ///< here: could not be unpacked
    KCS_UploadFailed = 8,    ///< here: could not be sent
    KCS_ConvertFailed = 9,   ///< on the server: could not be converted
};

/// What a row shows of a state.
struct TKyvStateLook {
    QString image;     ///< URL
    QString pointText; ///< of a state that waits it ends in a comma: the screen appends the position
};

/// Any number has a look.
[[nodiscard]] TKyvStateLook KyvStateLook(int state);

/// The state that the server's "status" of a job stands for. An unknown one waits in the server's queue, and
/// is logged.
[[nodiscard]] int convertServiceStateToLocal(const QString& status);

} // namespace TorvoEditor
