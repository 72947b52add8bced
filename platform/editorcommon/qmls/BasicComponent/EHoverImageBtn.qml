// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A button whose picture changes with its state. A state without a picture of its own shows `img`.
EPushBtn {
    id: root

    property string img: ""
    property string hoveredImg: ""
    property string selectedImg: ""
    property string disabledImg: ""

    /// Size of the picture; 0 is the picture's own.
    property real sourceWidth: 0
    property real sourceHeight: 0

    readonly property string currentImg: {
        if (!root.enabled)
            return root.disabledImg !== "" ? root.disabledImg : root.img
        if (root.down && root.selectedImg !== "")
            return root.selectedImg
        return root.hovered && root.hoveredImg !== "" ? root.hoveredImg : root.img
    }

    radius: EConfig.radius
    color: root.enabled && root.hovered ? EConfig.eTreeHover : "transparent"

    contentItem: Item {
        implicitWidth: picture.width
        implicitHeight: picture.height

        Image {
            id: picture

            x: Math.round((parent.width - width) / 2)
            y: Math.round((parent.height - height) / 2)
            width: root.sourceWidth > 0 ? root.sourceWidth : implicitWidth
            height: root.sourceHeight > 0 ? root.sourceHeight : implicitHeight
            source: root.currentImg
        }
    }
}
