// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// One model that could not be converted; its tool tip tells when.
Rectangle {
    id: root

    /// An object with the texts "name", "guid" and "faildDate".
    property var row: ({})

    objectName: "kyvFailure_" + root.row.guid
    height: 40
    color: hover.hovered ? EConfig.eTreeSelected : EConfig.eDialogBackground

    HoverHandler {
        id: hover

        onHoveredChanged: {
            if (hovered && tip.text !== "")
                tip.open()
            else
                tip.close()
        }
    }

    Image {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        source: "qrc:/images/bar_ic_default.png"
    }

    EText {
        objectName: "kyvName"
        anchors.left: icon.right
        anchors.leftMargin: 15
        anchors.right: parent.right
        anchors.rightMargin: 10
        height: parent.height
        elide: Text.ElideRight
        text: root.row.name

        Accessible.description: root.row.faildDate
    }

    EToolTip {
        id: tip

        objectName: "kyvFailureTip"
        text: root.row.name + root.row.faildDate
        delay: 300
        pixelSize: 14
    }
}
