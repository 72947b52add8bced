// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A button with one picture.
EPushBtn {
    id: root

    property string imageUrl: ""

    contentItem: Item {
        implicitWidth: picture.implicitWidth
        implicitHeight: picture.implicitHeight

        Image {
            id: picture

            anchors.centerIn: parent
            source: root.imageUrl
            opacity: !root.enabled ? 0.35 : root.hovered || root.down ? 1 : 0.8
        }
    }
}
