// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BizComponent"

/// What all pages of the dialog have: a title that drags the dialog, buttons at the lower edge, and the page's own between
/// the two. The cross calls `leave`.
FocusScope {
    id: root

    property string title: ""
    property int bottomSpacing: 10
    default property alias content: body.data
    property alias buttons: bottomRow.data

    signal leave()

    focus: true

    EDialogTitle {
        id: titleRow

        width: parent.width
        title: root.title
        onClick: root.leave()
        onMove: {
            kyvDialog.xOffset += xOffset
            kyvDialog.yOffset += yOffset
        }
    }

    Item {
        id: body

        anchors.top: titleRow.bottom
        anchors.bottom: bottomRow.top
        width: parent.width
    }

    Row {
        id: bottomRow

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: root.bottomSpacing
    }
}
