// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A field of the info card. A text that is too long for it ends in dots as long as nobody is in the field, and stands
/// in a tool tip.
ETextField {
    id: root

    readonly property color textColor: root.readOnly ? EConfig.eQuietText : EConfig.textColor
    readonly property bool isCut: root.contentWidth > root.width - root.leftPadding - root.rightPadding
    /// A tip of more signs than this hides the card.
    readonly property int longestTip: 300

    function showTip() {
        if (root.hovered && root.isCut)
            tip.open()
        else
            tip.close()
    }

    clip: true
    color: cutText.visible ? "transparent" : root.textColor
    onHoveredChanged: root.showTip()

    EText {
        id: cutText

        objectName: "cutText"
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        color: root.textColor
        elide: Text.ElideRight
        maximumLineCount: 1
        font.pixelSize: root.font.pixelSize
        text: root.text
        visible: root.isCut && !root.activeFocus
        Accessible.ignored: true
    }

    EToolTip {
        id: tip

        objectName: "fieldTip"
        text: root.text.length > root.longestTip ? root.text.slice(0, root.longestTip) + "…" : root.text
    }
}
