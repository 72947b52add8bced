// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A tab of the title bar.
ETextBtn {
    id: root

    property bool isCurrent: false

    color: root.isCurrent ? EConfig.eTitleBtnActived : EConfig.eBackGround
    textColor: root.isCurrent ? EConfig.eTitleTextActived : EConfig.eTitleText
    textHorizontalAlignment: Text.AlignLeft
    textItem.font.pixelSize: EConfig.textPixelSize + 2

    Accessible.role: Accessible.PageTab
    Accessible.selected: root.isCurrent

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 2
        color: EConfig.eAccent
        visible: root.isCurrent
    }
}
