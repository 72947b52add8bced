// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// The frame around what the keyboard acts on. It lies over its parent and takes no input.
Rectangle {
    anchors.fill: parent
    color: "transparent"
    border.width: 2
    border.color: EConfig.eAccent
    radius: EConfig.radius
    z: 1
}
