// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TorvoEditor
{

/// The long operation that is running.
enum ProjOperateEnum { PO_None = 0, PO_Download = 1, PO_Upload = 2, PO_Update = 3, PO_Upgrade = 4 };

// Whether an action on a project may start, and what is said when it may not. The server's states are those
// of ServerProjState, the project's those of CGridViewData::StateTypeEnum. An empty text says that nothing is
// against it; the words differ from action to action.

/// What to say while `operation` runs; empty for one that has no words of its own.
[[nodiscard]] QString BusyText(ProjOperateEnum operation);

[[nodiscard]] QString DownloadRefusal(int serverState);
[[nodiscard]] QString UploadRefusal(int serverState);
[[nodiscard]] QString UpdateRefusal(int serverState);

/// How a project goes up.
enum class UploadWay {
    None,    ///< there is nothing to send
    AsAsked, ///< by force only when that was asked for
    Forced,
};

/// `hasSubToSend`: one of its sub projects is new or changed here.
[[nodiscard]] UploadWay UploadWayOf(int projectState, bool hasSubToSend);

/// The text for a failure. `reason` is JSON or any text; an expired login is added to the text, and nothing
/// else of the reason is for the user.
[[nodiscard]] QString FailureText(const QString& text, const QString& reason);

} // namespace TorvoEditor
