// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/BasicComponent"

/// Whether the chosen archive is a new model, or takes the place of one.
KyvPage {
    id: root

    function goOn() {
        if (updateBtn.checked) {
            kyvDialog.showList()
            return
        }
        serviceConvertMgr.addKyvModel(kyvDialog.strFilePath, kyvDialog.convertType)
        kyvDialog.showInfo()
    }

    title: qsTr("导入KYV")
    bottomSpacing: 5
    onLeave: kyvDialog.close()

    EText {
        id: question

        anchors.top: parent.top
        anchors.topMargin: 25
        anchors.horizontalCenter: parent.horizontalCenter
        height: 26
        color: "#f0f0f0"
        text: qsTr("请选择添加方式")
    }

    T.ButtonGroup { buttons: choices.children }

    Column {
        id: choices

        anchors.top: question.bottom
        anchors.topMargin: 5
        anchors.left: question.left
        spacing: 10

        ERadioBtn {
            objectName: "newBtn"
            checked: true
            focus: true
            text: qsTr("新增模型")
        }

        ERadioBtn {
            id: updateBtn

            objectName: "updateBtn"
            text: qsTr("更新模型")
        }
    }

    buttons: [
        EDialogTextBtn {
            objectName: "okBtn"
            width: 62
            height: 32
            primary: true
            text: qsTr("确定")
            onClick: root.goOn()
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
