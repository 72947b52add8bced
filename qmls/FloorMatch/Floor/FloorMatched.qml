// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// The floors of models that are matched to the current floor of the project.
Rectangle {
    id: root

    function remove(floor) {
        list.keepsPlace = true
        floorMatchedCtrl.removeCurMatchedFloor(floor.projGuid, floor.floorName)
        list.keepsPlace = false
    }

    color: EConfig.eDialogBackground

    FloorHead {
        id: head

        width: parent.width
        text: qsTr("已匹配楼层")
    }

    FloorItemList {
        id: list

        anchors.top: head.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        spokenName: qsTr("已匹配楼层")
        floors: floorModel.curMatchedFloors
        textOf: function(floor) { return floor.floorName + "   " + floor.projName }
        onActed: root.remove(floor)
    }
}
