// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/BasicComponent"

/// How the chosen archive is to be converted.
KyvPage {
    id: root

    title: qsTr("选择转换模式")
    bottomSpacing: 5
    onLeave: kyvDialog.close()

    T.ButtonGroup { buttons: choices.children }

    Column {
        id: choices

        anchors.top: parent.top
        anchors.topMargin: 25
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 15

        ERadioBtn {
            id: fastBtn

            objectName: "fastBtn"
            checked: true
            focus: true
            text: qsTr("极速")
        }

        ERadioBtn {
            objectName: "balancedBtn"
            text: qsTr("平衡")
        }
    }

    buttons: [
        EDialogTextBtn {
            objectName: "okBtn"
            width: 62
            height: 32
            primary: true
            text: qsTr("确定")
            onClick: {
                kyvDialog.convertType = fastBtn.checked ? 0 : 1
                kyvDialog.showSelecter()
            }
        },
        EDialogTextBtn {
            objectName: "cancelBtn"
            width: 62
            height: 32
            text: qsTr("取消")
            onClick: kyvDialog.close()
        }
    ]
}
