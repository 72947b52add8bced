// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A button with text at the right end of the title bar.
ETextBtn {
    id: root

    width: 55
    height: 20
    color: root.containsMouse ? EConfig.eTreeHover : EConfig.eBackGround
    opacity: root.containsMouse ? 1 : 0.7
    border.width: 1
    border.color: EConfig.eGridBtnBorder
    radius: EConfig.radius
    textColor: EConfig.eDialogBtnText
    textItem.font.pixelSize: 13
}
