// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The head of a column: its name, room for more at the right of it, and two lines below.
Item {
    id: root

    property string text: ""
    readonly property alias label: label
    default property alias content: row.data

    implicitHeight: 36

    Item {
        id: row

        width: parent.width
        height: 34

        EText {
            id: label

            x: 15
            height: parent.height
            color: "#f0f0f0"
            text: root.text
        }
    }

    Rectangle {
        y: 34
        width: parent.width
        height: 1
        color: EConfig.splitColor
    }

    Rectangle {
        y: 35
        width: parent.width
        height: 1
        color: EConfig.splitColor
    }
}
