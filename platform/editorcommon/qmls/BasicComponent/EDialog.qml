// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// A dialog over its parent, in the middle unless placed otherwise. What lies behind it is shaded and takes no input.
T.Popup {
    id: root

    readonly property alias backgroundItem: ground

    /// How far the user has moved it from its place.
    property real xOffset: 0
    property real yOffset: 0
    /// What had the keyboard before, and gets it back.
    property Item lastFocus: null

    function giveFocusBack() {
        if (root.parent === null)
            return
        const holder = root.parent.Window.activeFocusItem
        const isFree = holder === null || holder === root.parent.Window.contentItem
        if (isFree && root.lastFocus !== null && root.lastFocus.visible)
            root.lastFocus.forceActiveFocus(Qt.OtherFocusReason)
    }

    x: parent !== null ? Math.round((parent.width - width) / 2 + xOffset) : 0
    y: parent !== null ? Math.round((parent.height - height) / 2 + yOffset) : 0
    implicitWidth: Math.max(implicitBackgroundWidth, contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, contentHeight + topPadding + bottomPadding)
    modal: true
    dim: true
    focus: true
    padding: 0
    closePolicy: T.Popup.CloseOnEscape

    onAboutToShow: root.lastFocus = root.parent.Window.activeFocusItem
    onClosed: root.giveFocusBack()

    T.Overlay.modal: Rectangle {
        color: EConfig.eShade

        Behavior on opacity { NumberAnimation { duration: EConfig.motion } }
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: EConfig.motion }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: EConfig.motion }
    }
    background: Rectangle {
        id: ground

        color: EConfig.eDialogBackground
        border.width: 1
        border.color: EConfig.eHoverBorderColor
        radius: EConfig.radius
    }
}
