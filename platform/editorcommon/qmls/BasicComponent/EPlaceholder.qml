// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// Stands where there is nothing to show yet, and says what to do next.
Column {
    id: root

    property string imageUrl: ""
    property string text: ""
    property string hint: ""

    spacing: 8

    Image {
        anchors.horizontalCenter: parent.horizontalCenter
        source: root.imageUrl
        visible: root.imageUrl !== ""
    }

    EText {
        width: root.width
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        font.pixelSize: EConfig.textPixelSizeLarge
        color: EConfig.textColor
        text: root.text
    }

    EText {
        width: root.width
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        font.pixelSize: EConfig.textPixelSizeSmall
        lineHeight: 1.25
        color: EConfig.eQuietText
        text: root.hint
        visible: root.hint !== ""
    }
}
