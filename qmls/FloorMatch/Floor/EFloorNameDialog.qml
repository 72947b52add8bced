// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"

/// Asks for the name of a new floor, or another name of the current one.
EDialog {
    id: root

    property int nPixSize: 12
    property bool isAddFloor: false

    function showError(text) {
        errorText.text = text
        errorText.visible = true
    }

    function accept() {
        const name = nameInput.text
        if (name === "")
            root.showError(qsTr("楼层名不能为空"))
        else if (!(root.isAddFloor ? floorMatchedCtrl.addModel(name) : floorMatchedCtrl.changeFloorName(name)))
            root.showError(qsTr("楼层名重复"))
        else
            root.close()
    }

    width: 200
    height: 150
    // At once: what is typed while it fades in would be emptied away.
    enter: null
    onAboutToShow: {
        root.xOffset = 0
        root.yOffset = 0
    }
    onOpened: {
        nameInput.text = ""
        errorText.visible = false
        nameInput.forceActiveFocus(Qt.OtherFocusReason)
    }

    contentItem: FocusScope {
        focus: true
        Keys.onReturnPressed: root.accept()
        Keys.onEnterPressed: root.accept()

        Accessible.role: Accessible.Dialog
        Accessible.name: title.title

        EDialogTitle {
            id: title

            width: parent.width
            title: root.isAddFloor ? qsTr("添加楼层") : qsTr("修改楼层")
            onClick: root.close()
            onMove: {
                root.xOffset += xOffset
                root.yOffset += yOffset
            }
        }

        Item {
            id: inputRow

            x: 20
            anchors.top: title.bottom
            anchors.topMargin: 15
            width: parent.width - 40
            height: 40

            EText {
                id: label

                height: parent.height
                font.pixelSize: root.nPixSize
                text: qsTr("楼层名称")
                Accessible.ignored: true
            }

            ETextField {
                id: nameInput

                objectName: "floorNameInput"
                anchors.left: label.right
                anchors.leftMargin: 10
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                focus: true

                Accessible.name: label.text
            }
        }

        EText {
            id: errorText

            objectName: "floorNameError"
            anchors.bottom: buttons.top
            anchors.bottomMargin: 5
            anchors.horizontalCenter: parent.horizontalCenter
            color: "red"
            font.pixelSize: root.nPixSize
            visible: false
        }

        Row {
            id: buttons

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 10
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10

            EDialogTextBtn {
                objectName: "floorNameOkBtn"
                width: 62
                height: 32
                primary: true
                textItem.font.pixelSize: root.nPixSize
                text: qsTr("确定")
                onClick: root.accept()
            }

            EDialogTextBtn {
                objectName: "floorNameCancelBtn"
                width: 62
                height: 32
                textItem.font.pixelSize: root.nPixSize
                text: qsTr("取消")
                onClick: root.close()
            }
        }
    }
}
