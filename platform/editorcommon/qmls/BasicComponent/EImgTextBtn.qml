// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A button with a picture and a text beside it.
EPushBtn {
    id: root

    property string imageUrl: ""
    property color textColor: EConfig.textColor

    spacing: 8

    contentItem: Item {
        implicitWidth: face.implicitWidth
        implicitHeight: face.implicitHeight

        Row {
            id: face

            x: Math.round((parent.width - width) / 2)
            y: Math.round((parent.height - height) / 2)
            spacing: root.spacing
            opacity: root.enabled ? 1 : 0.35

            Image {
                anchors.verticalCenter: parent.verticalCenter
                source: root.imageUrl
            }

            EText {
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                color: root.textColor
                font.pixelSize: EConfig.textPixelSizeLarge
                Accessible.ignored: true
            }
        }
    }
}
