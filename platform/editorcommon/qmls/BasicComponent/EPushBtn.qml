// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// What all buttons have in common: pointer, keyboard (Tab, Space, Enter), focus frame, tool tip, and a name for
/// screen readers. The kinds of buttons differ in what they show.
T.AbstractButton {
    id: root

    /// What the button does, in a few words: tool tip and spoken name. Without it the button's text is spoken.
    property string tipText: ""
    property string accessibleName: root.tipText !== "" ? root.tipText : root.text
    readonly property bool containsMouse: root.hovered

    /// Colour and border of the ground.
    property alias color: ground.color
    property alias border: ground.border
    property alias radius: ground.radius

    signal click()

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    hoverEnabled: true
    // A click leaves the focus where it was; the keyboard comes here by Tab.
    focusPolicy: Qt.TabFocus
    onClicked: root.click()
    Keys.onReturnPressed: root.click()
    Keys.onEnterPressed: root.click()

    Accessible.role: Accessible.Button
    Accessible.name: root.accessibleName
    Accessible.onPressAction: root.click()

    background: Rectangle {
        id: ground

        color: "transparent"
        border.width: 0
    }

    EFocusFrame {
        visible: root.visualFocus
    }

    // Made when the pointer rests here for the first time: a grid holds hundreds of buttons.
    Loader {
        active: root.tipText !== "" && root.hovered
        sourceComponent: EToolTip {
            text: root.tipText
            Component.onCompleted: open()
        }
    }
}
