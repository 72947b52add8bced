// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A row of one of the three lists. The ground hardly differs from the column's, so a bar at the left says which rows are
/// meant, and a frame where the keyboard is.
Item {
    id: root

    property string text: ""
    property bool isLit: false
    property bool hasKeyboard: false
    property bool isMarked: false
    property real textX: 17
    property real textWidth: band.width - 27

    signal clicked(int modifiers)
    signal doubleClicked()

    height: 40

    Accessible.role: Accessible.ListItem
    Accessible.name: root.isMarked ? qsTr("%1，已匹配").arg(root.text) : root.text
    Accessible.selectable: true
    Accessible.selected: root.isLit
    Accessible.onPressAction: root.clicked(Qt.NoModifier)

    HoverHandler { id: hover }

    Rectangle {
        id: band

        objectName: "band"
        y: 6
        width: parent.width
        height: 34
        color: root.isLit || hover.hovered ? "#2a2a2a" : "transparent"

        Rectangle {
            objectName: "litBar"
            width: 3
            height: parent.height
            color: EConfig.eAccent
            visible: root.isLit
        }

        ETextWithTip {
            objectName: "rowText"
            x: root.textX
            width: root.textWidth
            height: parent.height
            color: root.isLit ? "#ffffff" : "#dddddd"
            font.pixelSize: 13
            tipDelay: 1000
            text: root.text
            Accessible.ignored: true
        }

        Image {
            objectName: "rowMark"
            anchors.right: parent.right
            anchors.rightMargin: 15
            anchors.verticalCenter: parent.verticalCenter
            source: "qrc:/images/ic_xuanzhong.png"
            visible: root.isMarked
        }

        EFocusFrame {
            visible: root.hasKeyboard
        }
    }

    MouseArea {
        anchors.fill: band
        acceptedButtons: Qt.LeftButton
        onClicked: root.clicked(mouse.modifiers)
        onDoubleClicked: root.doubleClicked()
    }
}
