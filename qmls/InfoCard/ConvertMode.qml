// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"

/// Asks how a model is to be converted on this machine. show() takes who is told: whether the model loads by levels, and
/// whether performance comes first.
EDialog {
    id: root

    property var __okCallback: null

    function show(cb) {
        root.__okCallback = cb
        root.open()
    }

    function accept() {
        root.__okCallback(levelModelBtn1.checked || levelModelBtn2.checked, levelModelBtn1.checked)
        root.close()
    }

    width: 360
    height: 240
    padding: 0

    contentItem: FocusScope {
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("选择转换模式")

        EDialogTitle {
            id: titleRow

            width: parent.width
            title: qsTr("选择转换模式")
            onClick: root.close()
            onMove: {
                root.xOffset += xOffset
                root.yOffset += yOffset
            }
        }

        T.ButtonGroup { buttons: choices.children }

        Column {
            id: choices

            anchors.top: titleRow.bottom
            anchors.topMargin: 20
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10

            ERadioBtn {
                id: levelModelBtn1

                objectName: "levelModelBtn1"
                height: 24
                text: qsTr("极速")
            }

            ERadioBtn {
                id: levelModelBtn2

                objectName: "levelModelBtn2"
                height: 24
                text: qsTr("平衡")
            }

            ERadioBtn {
                id: staticModelBtn

                objectName: "staticModelBtn"
                height: 24
                checked: true
                focus: true
                text: qsTr("效果")
            }
        }

        Row {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 20
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 20

            EDialogTextBtn {
                objectName: "okBtn"
                width: 62
                height: 32
                primary: true
                text: qsTr("确定")
                onClick: root.accept()
            }

            EDialogTextBtn {
                objectName: "cancelBtn"
                width: 62
                height: 32
                text: qsTr("取消")
                onClick: root.close()
            }
        }
    }
}
