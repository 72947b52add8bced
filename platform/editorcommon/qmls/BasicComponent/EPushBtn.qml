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
    /// How far the frame of the focus stands off, where the button is as small as its picture.
    property real focusMargin: 0
    readonly property bool containsMouse: root.hovered

    /// Colour and border of the ground.
    property alias color: ground.color
    property alias border: ground.border
    property alias radius: ground.radius

    signal click()

    function showTip() {
        if (root.hovered && root.tipText !== "") {
            tip.active = true
            tip.item.open()
        } else if (tip.item !== null) {
            tip.item.close()
        }
    }

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    hoverEnabled: true
    // A click leaves the focus where it was; the keyboard comes here by Tab.
    focusPolicy: Qt.TabFocus
    onClicked: root.click()
    onHoveredChanged: root.showTip()
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
        anchors.margins: -root.focusMargin
        visible: root.visualFocus
    }

    // Made when the pointer comes here for the first time: a grid holds hundreds of buttons. It stays from then on: a
    // Loader cuts off what it unloads before it deletes it, and a tip that waits would open nowhere.
    Loader {
        id: tip

        active: false
        sourceComponent: EToolTip { text: root.tipText }
    }
}
