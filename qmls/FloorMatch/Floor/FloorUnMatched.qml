// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// The floors of one model, with a mark at those that are matched to some floor of the project.
Rectangle {
    id: root

    function act(floor) {
        if (floor.isMatched)
            floorMatchedCtrl.removeFloorMatchedInfo(floor.projGuid, floor.floorName)
        else
            floorMatchedCtrl.addMatchedFloor(floor.projGuid, floor.projName, floor.floorName)
    }

    /// Another model, or all of them anew.
    function startAnew(change) {
        list.keepsPlace = false
        change()
        list.keepsPlace = true
    }

    color: EConfig.eDialogBackground

    FloorHead {
        id: head

        width: parent.width
        text: qsTr("工程楼层")

        EFloorBox {
            objectName: "floorBox"
            anchors.left: head.label.right
            anchors.leftMargin: 5
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            height: 26
            onModelChosen: root.startAnew(function() { floorMatchedCtrl.setSelectedProjIndex(index) })
        }
    }

    FloorItemList {
        id: list

        anchors.top: head.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        spokenName: qsTr("工程楼层")
        floors: floorMatchedCtrl.seletedProjFloor
        textX: 15
        textMargin: 40
        keepsPlace: true
        onActed: root.act(floor)
    }
}
