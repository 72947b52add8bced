// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Controls.Styles 1.4
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A check box of two pictures. With `partCheck` it shows a small square instead: a part of what it stands for is chosen.
/// The text is spoken only.
CheckBox {
    id: root

    property string eCheckedUrl: ""
    property string eUnCheckedUrl: ""
    property color partCheckColor: EConfig.eAccent
    property bool partCheck: false

    style: CheckBoxStyle {
        spacing: 0
        label: null
        indicator: Item {
            implicitWidth: control.width
            implicitHeight: control.height

            Image {
                objectName: "checkImage"
                anchors.fill: parent
                source: control.checked ? control.eCheckedUrl : control.eUnCheckedUrl
                visible: !control.partCheck
            }

            Rectangle {
                objectName: "partSquare"
                anchors.centerIn: parent
                width: parent.width / 2
                height: parent.height / 2
                color: control.partCheckColor
                visible: control.partCheck
            }

            EFocusFrame {
                visible: control.activeFocus
            }
        }
    }
}
