// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A button with one picture whose ground changes with its state.
EPushBtn {
    id: root

    property color btnColor: "transparent"
    property color hoveredBtnColor: EConfig.eTreeHover
    property color selectedBtnColor: EConfig.eBtnSelected
    property color disabledBtnColor: root.btnColor

    /// The picture, drawn over the ground.
    property string opacityImageUrl: ""

    radius: EConfig.radius
    color: !root.enabled ? root.disabledBtnColor : root.down ? root.selectedBtnColor
                                                 : root.hovered ? root.hoveredBtnColor : root.btnColor

    contentItem: Item {
        implicitWidth: picture.implicitWidth
        implicitHeight: picture.implicitHeight

        Image {
            id: picture

            x: Math.round((parent.width - width) / 2)
            y: Math.round((parent.height - height) / 2)
            source: root.opacityImageUrl
        }
    }
}
