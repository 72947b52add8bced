// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A button at the lower edge of the floor dialog, quiet until the pointer or the keyboard is on it.
EDialogTextBtn {
    id: root

    width: 60
    height: 32
    border.width: 1
    border.color: "#adadad"
    color: EConfig.eDialogBtn
    opacity: root.containsMouse || root.visualFocus ? 1 : 0.6
}
