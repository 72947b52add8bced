// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"
import "../FloorMatch"

/// The info card: what is known of one project. The data of a project on this machine are saved by OK; what is typed for
/// one that is on the server only goes there.
EDialog {
    id: root

    property int normalFontSize: 14
    /// It is on its way out, and a second click means nothing.
    property bool isLeaving: false

    /// Shows the rows as `proInfoModel` now has them.
    function showRows() {
        infoRows.model = proInfoModel.projInfo
    }

    function accept() {
        if (root.isLeaving || bimMgr.isConverting)
            return
        if (!proInfoModel.bModify) {
            root.close()
            proInfoModel.changeServiceProjName()
        } else {
            editorControl.slotProjectInfoUpdate()
            root.close()
        }
    }

    function cancel() {
        if (root.isLeaving)
            return
        if (proInfoModel.bBimViewShow)
            bimMgr.cancle(proInfoModel.projGuid)
        root.close()
    }

    function deleteProject() {
        root.close()
        editorControl.slotDeleteProject(proInfoModel.projGuid)
    }

    width: 360
    backgroundItem.border.width: 0
    backgroundItem.radius: 0
    onAboutToShow: {
        root.isLeaving = false
        root.showRows()
    }
    onOpened: infoRows.focusFirst()
    onAboutToHide: root.isLeaving = true
    onClosed: infoRows.model = ""

    contentItem: FocusScope {
        focus: true
        Keys.onEscapePressed: root.cancel()
        Keys.onReturnPressed: root.accept()
        Keys.onEnterPressed: root.accept()

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("工程信息")

        InfoTitle {
            id: title

            width: parent.width
            onDeleteClick: deleteBox.open()
        }

        CardPicture {
            id: picture

            anchors.top: title.bottom
            anchors.topMargin: 20
            anchors.horizontalCenter: parent.horizontalCenter
            width: 310
            height: 167
            url: proInfoModel.projImage
        }

        InfoRows {
            id: infoRows

            objectName: "infoRowsView"
            x: 15
            width: parent.width - 30
            anchors.top: picture.bottom
            anchors.topMargin: 8
            anchors.bottom: bimInfo.visible ? bimInfo.top : buttons.top
            anchors.bottomMargin: 20
            focus: true
            normalFontSize: root.normalFontSize
        }

        EBIMInfo {
            id: bimInfo

            objectName: "bimInfo"
            anchors.bottom: buttons.top
            width: parent.width
            visible: proInfoModel.bBimViewShow
            onFloorsRequested: {
                floorMatchDialog.enabled = true
                floorMatchDialog.open()
            }
        }

        Row {
            id: buttons

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 20
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10

            EDialogTextBtn {
                objectName: "infoOkBtn"
                width: 62
                height: 32
                enabled: !bimMgr.isConverting
                primary: true
                text: qsTr("确定")
                onClick: root.accept()
            }

            EDialogTextBtn {
                objectName: "infoCancelBtn"
                width: 62
                height: 32
                text: qsTr("取消")
                onClick: root.cancel()
            }
        }
    }

    FloorMatch {
        id: floorMatchDialog

        objectName: "floorMatchDialog"
        parent: mainRoot
        enabled: false
    }

    EMessageBox {
        id: deleteBox

        parent: mainRoot
        title: qsTr("删除工程")
        contentText: qsTr("删除操作将只删除本地工程数据.\n请确认后再进行操作！")
        onYesClick: root.deleteProject()
    }
}
