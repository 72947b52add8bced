// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The title of the info card, with the button that deletes the project's files.
Rectangle {
    id: root

    signal deleteClick()

    implicitHeight: 30
    color: EConfig.eDialogBackground
    border.width: 1
    border.color: EConfig.eGlobalBackGround

    EText {
        objectName: "infoTitle"
        anchors.left: parent.left
        anchors.leftMargin: 15
        height: parent.height
        color: EConfig.eTextHighColor
        font.pixelSize: EConfig.textPixelSizeLarge
        text: qsTr("工程信息")
    }

    EHoverImageBtn {
        objectName: "deleteBtn"
        anchors.right: parent.right
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 24
        enabled: proInfoModel.bModify
        img: "qrc:/images/tab_bt_ic_del.png"
        hoveredImg: "qrc:/images/tab_bt_ic_del_hover.png"
        selectedImg: "qrc:/images/tab_bt_ic_del_selected.png"
        disabledImg: "qrc:/images/tab_bt_ic_del_disable.png"
        tipText: qsTr("删除本地文件")
        onClick: root.deleteClick()
    }
}
