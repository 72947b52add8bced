// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// A tool tip for its parent, some milliseconds after open(). Costs next to nothing until it opens.
Item {
    id: root

    property string text: ""
    property int delay: 500
    property int pixelSize: EConfig.textPixelSizeSmall
    /// Where it is to appear, in the parent's coordinates; undefined is below the parent, in the middle.
    property var place: undefined
    readonly property bool opened: popup.item !== null && popup.item.opened

    function open() {
        popup.active = true
        popup.item.open()
    }

    function close() {
        if (popup.item !== null)
            popup.item.close()
    }

    anchors.fill: parent
    // A row or a card may go while its tip waits, and then there is no window to open it in.
    Window.onWindowChanged: {
        if (Window.window === null)
            root.close()
    }

    Loader {
        id: popup

        active: false
        sourceComponent: T.ToolTip {
            id: tip

            parent: root
            // What lies below takes the clicks.
            enabled: false
            x: root.place !== undefined ? root.place.x : Math.round((root.width - width) / 2)
            y: root.place !== undefined ? root.place.y : root.height + 4
            margins: 4
            padding: 4
            leftPadding: 8
            rightPadding: 8
            implicitWidth: contentWidth + leftPadding + rightPadding
            implicitHeight: contentHeight + topPadding + bottomPadding
            delay: root.delay
            text: root.text
            closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

            enter: Transition {
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: EConfig.motion }
            }
            exit: Transition {
                NumberAnimation { property: "opacity"; from: 1; to: 0; duration: EConfig.motion }
            }
            contentItem: EText {
                text: tip.text
                font.pixelSize: root.pixelSize
                // A long name breaks into lines instead of leaving the window.
                width: Math.min(implicitWidth, 360)
                wrapMode: Text.Wrap
            }
            background: Rectangle {
                color: EConfig.eInputFieldBackGround
                border.width: 1
                border.color: EConfig.eHoverBorderColor
                radius: EConfig.radius
            }
        }
    }
}
