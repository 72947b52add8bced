// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// A slim scroll bar that stands there as long as there is something to scroll.
T.ScrollBar {
    id: root

    implicitWidth: 10
    implicitHeight: 10
    padding: 2
    visible: size < 1.0
    minimumSize: 0.05

    Accessible.role: Accessible.ScrollBar
    Accessible.name: root.orientation === Qt.Vertical ? qsTr("垂直滚动条") : qsTr("水平滚动条")

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: root.pressed || root.hovered ? EConfig.eTitleText : EConfig.eHoverBorderColor

        Behavior on color { ColorAnimation { duration: EConfig.motion } }
    }
}
