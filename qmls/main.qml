// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "InfoCard"
import "KYVConvert"
import "component"

/// The root of the home window: title bar, left panel, cards, and the boxes that all of them share. It wires the
/// signals of the screens to the managers.
Item {
    id: mainRoot

    /// Shows what the server has converted of a building, when it may be converted now.
    function showConversions(guid) {
        if (serviceConvertMgr.checkServiceConvert(guid))
            kyvDialog.open()
    }

    /// Shows a project on the info card, also in the place of one that is being shown.
    function showProjectInfo(guid) {
        infoCardCtrl.showProjectInfo(guid)
        infoDialog.showRows()
        infoDialog.open()
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
            onSendProjectInfo: mainRoot.showProjectInfo(guid)
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
                onSendProjectInfo: mainRoot.showProjectInfo(guid)
                onSendUpdate: editorControl.slotSyncProject(guid)
                onSendUpload: editorControl.slotUploadProject(guid)
                onSendUpgrade: editorControl.upgradeProj(guid)
                onSendConvert: mainRoot.showConversions(guid)
                onSendOpenWeb: editorControl.openWebProj(guid)
            }
        }

        Item {
            id: infoDialogContainer

            objectName: "infoDialogContainer"
            anchors.right: parent.right
            width: infoDialog.width
            height: parent.height

            InfoDialog {
                id: infoDialog

                parent: infoDialogContainer
                x: 0
                y: 0
                height: parent.height
                closePolicy: T.Popup.NoAutoClose
                enter: Transition {
                    NumberAnimation { property: "x"; from: infoDialogContainer.width; to: 0; duration: 500 }
                }
                exit: Transition {
                    NumberAnimation { property: "x"; from: 0; to: infoDialogContainer.width; duration: 500 }
                }
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

    KyvConvert {
        id: kyvDialog

        objectName: "kyvDialog"
        parent: mainRoot
        onClosed: serviceConvertMgr.clearCurBimProj()
    }

    ConvertMode {
        id: converModeDialog

        objectName: "converModeDialog"
        parent: mainRoot
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
