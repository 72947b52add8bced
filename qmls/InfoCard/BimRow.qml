// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQml.Models 2.15
import CKYVConvertState 1.0
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A model of the building, with the state of its conversion at the right.
Rectangle {
    id: root

    /// A CKYVConvertState. It may be deleted before its row is.
    property var row: null
    property bool isCurrent: false
    readonly property string uid: root.row !== null ? root.row.uid : ""
    readonly property int convertState: root.row !== null ? root.row.convertState : KYVConvertState.ConvertFinished
    readonly property string stateText: {
        switch (root.convertState) {
        case KYVConvertState.Waiting: return qsTr("等待转换")
        case KYVConvertState.Converting: return qsTr("转换中")
        case KYVConvertState.ConvertFailed: return qsTr("转换失败")
        }
        return ""
    }

    /// `place` is the row's place among those that the search leaves.
    signal chosen(int place)

    function choose() {
        root.chosen(root.DelegateModel.foundIndex)
    }

    objectName: "bimRow_" + root.uid
    height: 40
    color: root.isCurrent ? EConfig.eTreeHover : hover.hovered || nameText.isHovered ? EConfig.eTreeSelected : "transparent"

    Accessible.role: Accessible.ListItem
    Accessible.name: nameText.text
    Accessible.description: root.stateText
    Accessible.selected: root.isCurrent
    Accessible.selectable: true
    Accessible.onPressAction: root.choose()

    HoverHandler { id: hover }

    TapHandler { onTapped: root.choose() }

    Image {
        id: icon

        objectName: "bimIcon"
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        source: root.row !== null && root.row.isLevelModel ? "qrc:/images/pop_ic_xiazailiebiao.png"
                                                           : "qrc:/images/bar_ic_default.png"
    }

    ETextWithTip {
        id: nameText

        objectName: "bimName"
        anchors.left: icon.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 60
        height: parent.height
        text: root.row !== null ? root.row.name : ""
    }

    Item {
        objectName: "bimState"
        anchors.right: parent.right
        anchors.rightMargin: 10
        width: height
        height: parent.height

        Image {
            id: waiting

            objectName: "bimWaiting"
            anchors.centerIn: parent
            visible: root.convertState === KYVConvertState.Waiting
            source: "qrc:/images/pop_bt_ic_muxing.png"

            SequentialAnimation on opacity {
                loops: Animation.Infinite
                running: waiting.visible

                NumberAnimation { from: 1; to: 0; duration: 600 }
                PauseAnimation { duration: 300 }
                NumberAnimation { from: 0; to: 1; duration: 600 }
            }
        }

        EBusyIndicator {
            objectName: "bimConverting"
            anchors.centerIn: parent
            width: 40
            height: 40
            visible: root.convertState === KYVConvertState.Converting
            busyColor: "#636363"
            busyCount: 5
            busyRadius: 3
        }

        Image {
            objectName: "bimFailed"
            anchors.centerIn: parent
            visible: root.convertState === KYVConvertState.ConvertFailed
            source: "qrc:/images/state_ic_unmatched.png"
        }
    }
}
