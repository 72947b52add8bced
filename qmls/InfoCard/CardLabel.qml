// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The label above the field of a row.
EText {
    objectName: "cardLabel"
    width: parent.width
    height: 12
    color: EConfig.eInputFieldText
    elide: Text.ElideRight
    // The field below is spoken with this name.
    Accessible.ignored: true
}
