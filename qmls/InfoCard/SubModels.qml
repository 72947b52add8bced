// SPDX-License-Identifier: MIT
import QtQuick 2.15

/// The place of the list of a building's models. Without a manager that takes them it has no room on the card, and
/// nothing is ever being converted.
Item {
    id: root

    readonly property var manager: typeof bimMgr !== "undefined" ? bimMgr : null
    readonly property bool isConverting: root.manager !== null && root.manager.isConverting

    function cancel(projGuid) {
        if (root.manager !== null)
            root.manager.cancle(projGuid)
    }

    height: 320
    visible: root.manager !== null && proInfoModel.bBimViewShow
}
