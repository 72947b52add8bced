// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A button with text. `textAnchors` and `textHorizontalAlignment` place the text, `textItem` is the label itself.
EPushBtn {
    id: root

    property alias textItem: label
    property alias textColor: label.color
    property alias textHorizontalAlignment: label.horizontalAlignment
    property alias textAnchors: label.anchors

    contentItem: Item {
        implicitWidth: label.implicitWidth
        implicitHeight: label.implicitHeight

        EText {
            id: label

            anchors.fill: parent
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
            text: root.text
            opacity: root.enabled ? 1 : 0.35
            Accessible.ignored: true
        }
    }
}
