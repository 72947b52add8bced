// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// A list or any other content that scrolls, with a slim bar at its right. `barOffset` moves the bar outwards, out of the
/// content's way.
T.ScrollView {
    id: root

    property real barOffset: 0

    implicitWidth: Math.max(implicitBackgroundWidth, contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, contentHeight + topPadding + bottomPadding)

    T.ScrollBar.vertical: EScrollBar {
        objectName: "verticalBar"
        parent: root
        x: root.width - width + root.barOffset
        y: root.topPadding
        height: root.availableHeight
    }
    T.ScrollBar.horizontal: EScrollBar {
        objectName: "horizontalBar"
        parent: root
        x: root.leftPadding
        y: root.height - height
        width: root.availableWidth
        // A list says nothing of its width.
        visible: root.contentWidth > root.availableWidth
    }
}
