// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"
import "../component"
import "Floor"

/// The floors of a building project, and which floors of its models belong to each. Nothing is stored before OK: what a
/// cancelled dialog leaves behind is filled anew when it opens again.
EDialog {
    id: root

    readonly property real columnWidth: (root.width - 4) / 3

    function accept(clearsEmpty) {
        root.close()
        floorMatchedCtrl.saveMatchedFloorInfo(clearsEmpty)
    }

    width: 840
    height: 586
    backgroundItem.color: "#494b4e"
    onAboutToShow: {
        content.active = true
        root.xOffset = 0
        root.yOffset = 0
    }
    onOpened: {
        floorMatchedCtrl.refillFloorInfo(proInfoModel.projGuid)
        content.item.forceActiveFocus(Qt.OtherFocusReason)
    }

    // Made when the dialog opens for the first time: most people never open it, and the card is to be quick.
    contentItem: Loader {
        id: content

        active: false
        focus: true
        sourceComponent: FocusScope {
            focus: true

            Accessible.role: Accessible.Dialog
            Accessible.name: qsTr("楼层管理")

            EDialogTitle {
                id: title

                width: parent.width
                title: qsTr("楼层管理")
                onClick: root.close()
                onMove: {
                    root.xOffset += xOffset
                    root.yOffset += yOffset
                }
            }

            Row {
                anchors.top: title.bottom
                anchors.bottom: tail.top
                anchors.bottomMargin: 4

                FloorAll {
                    id: floorAll

                    objectName: "floorAll"
                    width: root.columnWidth
                    height: parent.height
                    focus: true
                }

                Rectangle {
                    width: 1
                    height: parent.height
                    color: EConfig.splitColor
                }

                FloorMatched {
                    objectName: "floorMatched"
                    width: root.columnWidth
                    height: parent.height
                }

                Rectangle {
                    width: 2
                    height: parent.height
                    color: EConfig.splitColor
                }

                FloorUnMatched {
                    objectName: "floorUnMatched"
                    width: root.columnWidth
                    height: parent.height
                }
            }

            Item {
                id: tail

                anchors.bottom: parent.bottom
                width: parent.width
                height: 40

                ECheckBox {
                    id: checkBox

                    objectName: "clearEmptyBox"
                    anchors.left: parent.left
                    anchors.leftMargin: 20
                    anchors.verticalCenter: parent.verticalCenter
                    width: 14
                    height: 14
                    checked: true
                    partCheck: false
                    eCheckedUrl: "qrc:/images/checkBox_selected.png"
                    eUnCheckedUrl: "qrc:/images/checkBox.png"
                    text: clearLabel.text
                    // Only a host that edits main projects publishes this.
                    visible: typeof editConext !== "undefined" && editConext.isMainProject
                }

                EText {
                    id: clearLabel

                    anchors.left: checkBox.right
                    anchors.leftMargin: 4
                    width: 75
                    height: parent.height
                    font.pixelSize: 12
                    text: qsTr("删除空楼层")
                    visible: checkBox.visible
                    Accessible.ignored: true
                }

                Row {
                    anchors.centerIn: parent
                    spacing: 10

                    TailBtn {
                        objectName: "floorOkBtn"
                        text: qsTr("确定")
                        onClick: root.accept(checkBox.checked)
                    }

                    TailBtn {
                        objectName: "floorCancelBtn"
                        text: qsTr("取消")
                        onClick: root.close()
                    }

                    TailBtn {
                        objectName: "floorResetBtn"
                        text: qsTr("重置")
                        onClick: floorMatchedCtrl.resetFloorInfo()
                    }
                }
            }
        }
    }
}
