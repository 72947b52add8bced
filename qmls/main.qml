// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "component"

/// The root of the home window: title bar, left panel, cards, and the boxes that all of them share. It wires the
/// signals of the screens to the managers.
Item {
    id: mainRoot

    /// An action whose manager takes it in a later version: nothing is shown, one line is logged.
    function notYet(action, guid) {
        console.info("main.qml: no manager takes", action, guid)
    }

    function showMessage(title, text, noText) {
        tipDialog.close()
        tipDialog.title = title
        tipDialog.contentText = text
        tipDialog.noText = noText
        tipDialog.open()
    }

    width: 1360
    height: 860

    ETitleBar {
        id: titlebar

        objectName: "titleRect"
        width: parent.width
        height: 34
        z: 1
        onOpenWebConsole: editorControl.openWebConsole()
    }

    Item {
        id: contentRect

        objectName: "contentRect"
        y: titlebar.height
        width: parent.width
        height: parent.height - y

        PanelProject {
            id: treePanel

            objectName: "treePanel"
            width: 270
            height: parent.height
            color: EConfig.eBackGround
            panelModel: leftPanelModel
            onSingInnerCreate: newProDialog.open()
            onSendProjectInfo: mainRoot.notYet("infoCardCtrl.showProjectInfo", guid)
        }

        Rectangle {
            id: proInfoContainer

            objectName: "proInfoContainer"
            anchors.left: treePanel.right
            anchors.right: parent.right
            height: parent.height
            color: EConfig.eGlobalBackGround
            border.width: 1
            border.color: EConfig.eBorder

            ProjectInfoGridView {
                id: proInfoGridView

                objectName: "proInfoGridView"
                model: gridViewModel
                onSendDeleteInfo: editorControl.slotRemoveProject(guid)
                onSendProDoubleClicked: editorControl.slotProjectDblClick(guid)
                onSendProjectInfo: mainRoot.notYet("infoCardCtrl.showProjectInfo", guid)
                onSendUpdate: editorControl.slotSyncProject(guid)
                onSendUpload: editorControl.slotUploadProject(guid)
                onSendUpgrade: editorControl.upgradeProj(guid)
                onSendConvert: mainRoot.notYet("serviceConvertMgr.checkServiceConvert", guid)
                onSendOpenWeb: editorControl.openWebProj(guid)
            }
        }

        NewProjectDialog {
            id: newProDialog

            parent: mainRoot
            onSendClicked: editorControl.slotCreateProject()
        }

        Connections {
            target: tabMgr

            function onSigCreateBimProj() {
                newProDialog.openBimProj()
            }
        }
    }

    Connections {
        target: messageBoxMgr

        function onSigShowTip(title, text) {
            mainRoot.showMessage(title, text, "")
        }

        function onSigCheckBox(title, text) {
            mainRoot.showMessage(title, text, qsTr("取消"))
        }
    }

    TipDialog {
        id: tipDialog

        parent: mainRoot
        onYesClick: messageBoxMgr.callResultCallBack(true)
        onNoClick: messageBoxMgr.callResultCallBack(false)
    }

    EditFileDialog {
        id: globalFileDialog
    }
}
