// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// One of several choices, a ring with a dot in it when it is the chosen one. A group of the page's own makes the others
/// let go.
T.RadioButton {
    id: root

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 24
    spacing: 8
    leftPadding: indicator.width + spacing
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    font.family: EConfig.fontFamily
    font.pixelSize: EConfig.textPixelSize
    Keys.onReturnPressed: root.toggle()
    Keys.onEnterPressed: root.toggle()

    Accessible.role: Accessible.RadioButton
    Accessible.name: root.text
    Accessible.checked: root.checked

    indicator: Rectangle {
        y: Math.round((root.height - height) / 2)
        width: 16
        height: 16
        radius: 8
        color: EConfig.eInputFieldBackGround
        border.width: 1
        border.color: root.checked ? EConfig.eAccent : root.hovered ? EConfig.eTitleText : EConfig.eQuietText

        Rectangle {
            anchors.centerIn: parent
            width: 8
            height: 8
            radius: 4
            color: EConfig.eAccent
            visible: root.checked
        }
    }

    contentItem: EText {
        text: root.text
        font: root.font
        elide: Text.ElideRight
        opacity: root.enabled ? 1 : 0.35
        Accessible.ignored: true
    }

    EFocusFrame {
        visible: root.visualFocus
    }
}
