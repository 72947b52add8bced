// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A row of the tree of the organisation: one of its parts, under which projects may hang or not.
Item {
    id: root

    property string chosenId: ""
    readonly property var value: styleData.value ? styleData.value : ({})
    readonly property bool isChosen: root.chosenId !== "" && root.value.id === root.chosenId

    signal taken(var department)

    objectName: "orgRow_" + (root.value.id || "")

    Accessible.role: Accessible.TreeItem
    Accessible.name: root.value.name || ""
    Accessible.selected: root.isChosen
    Accessible.onPressAction: root.taken(root.value)

    Rectangle {
        width: parent.width
        height: 30
        color: area.containsMouse || root.isChosen ? "#2a2a2a" : "#272727"

        Image {
            id: icon

            objectName: "orgIcon"
            anchors.left: parent.left
            anchors.leftMargin: (styleData.depth + 1) * 15
            anchors.verticalCenter: parent.verticalCenter
            source: root.value.canSelect ? "qrc:/images/ic_project.png" : "qrc:/images/ic_company.png"
        }

        EText {
            objectName: "orgName"
            anchors.left: icon.right
            anchors.leftMargin: 8
            anchors.right: mark.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            color: root.isChosen ? "#1473e6" : "#dddddd"
            elide: Text.ElideRight
            font.pixelSize: styleData.depth === 0 ? 14 : 12
            text: root.value.name || ""
            Accessible.ignored: true
        }

        Image {
            id: mark

            objectName: "orgMark"
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            source: "qrc:/images/ic_xuanzhong.png"
            visible: root.isChosen
        }

        MouseArea {
            id: area

            anchors.fill: parent
            hoverEnabled: true
            onClicked: root.taken(root.value)
        }
    }
}
