// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A line to search with. Escape and the cross empty it.
FocusScope {
    id: root

    property alias text: field.text
    property alias placeholderText: field.placeholderText

    implicitWidth: 200
    implicitHeight: 26

    ETextField {
        id: field

        anchors.fill: parent
        leftPadding: 28
        rightPadding: clearBtn.visible ? 28 : 8
        focus: true
        placeholderText: qsTr("搜索")
        font.pixelSize: EConfig.textPixelSizeSmall
        Keys.onEscapePressed: {
            event.accepted = field.text !== ""
            field.clear()
        }
    }

    Image {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        source: "qrc:/EditorCommon/images/search.png"
    }

    EHoverImageBtn {
        id: clearBtn

        objectName: "clearBtn"
        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        width: 20
        height: 20
        img: "qrc:/EditorCommon/images/clear.png"
        hoveredImg: "qrc:/EditorCommon/images/clear_hover.png"
        tipText: qsTr("清除")
        visible: field.text !== ""
        onClick: {
            field.clear()
            field.forceActiveFocus()
        }
    }
}
