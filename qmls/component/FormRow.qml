// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A row of a form: a label, and below it the field, which it is given as its child.
Column {
    id: root

    property string label: ""
    property bool valid: true
    property int fontSize: EConfig.textPixelSizeSmall
    default property alias field: holder.data

    spacing: 6

    EText {
        objectName: "formLabel"
        width: parent.width
        height: 14
        color: root.valid ? EConfig.eInputFieldText : EConfig.eInputFieldTextInvalid
        elide: Text.ElideRight
        font.pixelSize: root.fontSize
        text: root.label
    }

    Item {
        id: holder

        width: parent.width
        height: 32
    }
}
