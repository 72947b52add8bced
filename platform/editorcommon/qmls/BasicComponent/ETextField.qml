// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// A line to type in. A read-only one can be read and copied from.
T.TextField {
    id: root

    property int backgroundBorderWidth: 1

    implicitWidth: 200
    implicitHeight: 32
    leftPadding: 8
    rightPadding: 8
    verticalAlignment: TextInput.AlignVCenter
    color: root.readOnly ? EConfig.eQuietText : EConfig.textColor
    placeholderTextColor: EConfig.eQuietText
    selectionColor: EConfig.eAccent
    selectedTextColor: EConfig.eTextHighColor
    selectByMouse: true
    hoverEnabled: true
    font.family: EConfig.fontFamily
    font.pixelSize: EConfig.textPixelSize
    font.weight: EConfig.fontWeight
    renderType: Text.NativeRendering
    opacity: root.enabled ? 1 : 0.5

    Accessible.role: Accessible.EditableText
    Accessible.name: root.placeholderText
    Accessible.readOnly: root.readOnly

    background: Rectangle {
        color: EConfig.eInputFieldBackGround
        border.width: root.backgroundBorderWidth
        border.color: root.activeFocus ? EConfig.eAccent
                                       : root.hovered && !root.readOnly ? EConfig.eHoverBorderColor : EConfig.eInputFieldBorder
        radius: EConfig.radius
    }

    EText {
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        color: root.placeholderTextColor
        elide: Text.ElideRight
        font.pixelSize: root.font.pixelSize
        text: root.placeholderText
        visible: root.length === 0 && root.preeditText === ""
        Accessible.ignored: true
    }
}
