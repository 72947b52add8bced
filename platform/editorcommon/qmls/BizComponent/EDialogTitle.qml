// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The title row of a dialog, with a cross at the right. Drags are told as offsets in pixels.
Item {
    id: root

    property string title: ""

    /// The cross was pressed.
    signal click()
    signal move(real xOffset, real yOffset)

    implicitWidth: 360
    implicitHeight: 34

    MouseArea {
        id: dragArea

        property real lastX: 0
        property real lastY: 0

        anchors.fill: parent
        onPressed: {
            dragArea.lastX = mouse.x
            dragArea.lastY = mouse.y
        }
        onPositionChanged: root.move(mouse.x - dragArea.lastX, mouse.y - dragArea.lastY)
    }

    EText {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: closeBtn.left
        anchors.rightMargin: 8
        height: parent.height
        elide: Text.ElideRight
        font.pixelSize: EConfig.textPixelSizeLarge
        color: EConfig.eTextHighColor
        text: root.title
    }

    EHoverImageBtn {
        id: closeBtn

        objectName: "dialogCloseBtn"
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 24
        img: "qrc:/EditorCommon/images/close.png"
        hoveredImg: "qrc:/EditorCommon/images/close_hover.png"
        selectedImg: "qrc:/EditorCommon/images/close_selected.png"
        accessibleName: qsTr("关闭")
        onClick: root.click()
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: EConfig.splitColor
    }
}
