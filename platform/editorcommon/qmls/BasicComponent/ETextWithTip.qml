// SPDX-License-Identifier: MIT
import QtQuick 2.15

/// A label that tells the whole of its text by a tool tip where it has no room for it.
EText {
    id: root

    property int tipDelay: 500
    /// What lies below is not told of the pointer meanwhile.
    readonly property bool isHovered: hover.hovered

    elide: Text.ElideRight

    HoverHandler {
        id: hover

        onHoveredChanged: {
            if (hovered && root.truncated)
                tip.open()
            else
                tip.close()
        }
    }

    EToolTip {
        id: tip

        text: root.text
        delay: root.tipDelay
    }
}
