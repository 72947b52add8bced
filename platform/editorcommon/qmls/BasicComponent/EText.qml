// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A text label. Shows its text as it is: tags in it are no markup.
Text {
    id: root

    color: EConfig.textColor
    font.family: EConfig.fontFamily
    font.pixelSize: EConfig.textPixelSize
    font.weight: EConfig.fontWeight
    textFormat: Text.PlainText
    renderType: Text.NativeRendering
    verticalAlignment: Text.AlignVCenter

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
    Accessible.ignored: root.text === ""
}
