// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A labelled field of the login.
Column {
    id: root

    property alias label: labelText.text
    property alias text: field.text
    property alias field: field

    signal accepted()

    spacing: 8

    EText {
        id: labelText

        color: EConfig.eInputFieldText
        Accessible.ignored: true
    }

    ETextField {
        id: field

        width: root.width
        height: 36
        font.pixelSize: EConfig.textPixelSizeLarge
        onAccepted: root.accepted()
        Accessible.name: labelText.text
    }
}
