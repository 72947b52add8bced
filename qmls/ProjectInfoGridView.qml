// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"

/// The cards of the projects. Actions that cannot be taken back are asked about first.
GridView {
    id: root

    property int spacing: 15
    property int cW: 215
    property int cH: 160

    signal sendDeleteInfo(string guid)
    signal sendProjectInfo(string guid)
    signal sendUpdate(string guid)
    signal sendUpload(string guid)
    signal sendProDoubleClicked(string guid)
    signal sendUpgrade(string guid)
    signal sendConvert(string guid)
    signal sendOpenWeb(string guid)

    function ask(title, text, yesCallBack) {
        messageBox.title = title
        messageBox.contentText = text
        messageBox.yesCallBack = yesCallBack
        messageBox.open()
    }

    function askBeforeDelete(guid) {
        root.ask(qsTr("删除工程"), qsTr("删除操作将从工程列表中删除工程。\n请确认后再进行操作！"), function() {
            root.sendDeleteInfo(guid)
        })
    }

    function askBeforeUpdate(guid) {
        root.ask(qsTr("更新工程"), qsTr("更新操作将本地工程更新为服务器版本。\n请确认后再进行操作！"), function() {
            console.log("更新工程", guid)
            root.sendUpdate(guid)
        })
    }

    function askBeforeUpload(guid) {
        root.ask(qsTr("上传工程"), qsTr("上传操作将本地工程上传到服务器。\n请确认后再进行操作！"), function() {
            console.log("上传工程", guid)
            root.sendUpload(guid)
        })
    }

    anchors.fill: parent
    anchors.margins: 1
    cellWidth: cW + spacing
    cellHeight: cH + spacing
    clip: true
    activeFocusOnTab: true
    keyNavigationEnabled: true
    boundsBehavior: Flickable.StopAtBounds
    // One screen of cards above and below, so that scrolling meets cards that are there already.
    cacheBuffer: 700
    highlightFollowsCurrentItem: false
    currentIndex: -1
    onActiveFocusChanged: {
        if (activeFocus && currentIndex < 0 && count > 0)
            currentIndex = 0
    }
    Keys.onReturnPressed: root.currentItem !== null ? root.currentItem.card.open() : event.accepted = false
    Keys.onEnterPressed: root.currentItem !== null ? root.currentItem.card.open() : event.accepted = false
    Keys.onSpacePressed: root.currentItem !== null ? root.currentItem.card.showInfo() : event.accepted = false
    Keys.onDeletePressed: root.currentItem !== null ? root.currentItem.card.remove() : event.accepted = false
    T.ScrollBar.vertical: EScrollBar {}

    Accessible.role: Accessible.List
    Accessible.name: qsTr("工程卡片")

    delegate: Item {
        readonly property alias card: projectView

        width: root.cellWidth
        height: root.cellHeight

        ProjectView {
            id: projectView

            x: root.spacing
            y: root.spacing
            width: root.cW
            height: root.cH
            dataModel: model.viewData
            hasKeyboard: parent.GridView.isCurrentItem && root.activeFocus
            onPressedInside: root.currentIndex = index
            onSendDelBtn: root.askBeforeDelete(guid)
            onSendProInfoBtn: root.sendProjectInfo(guid)
            onSendUpdateBtn: root.askBeforeUpdate(guid)
            onSendUploadBtn: root.askBeforeUpload(guid)
            onSendImageDoubleClicked: root.sendProDoubleClicked(guid)
            onSendUpgrade: root.sendUpgrade(guid)
            onSendConvert: root.sendConvert(guid)
            onSendOpenWeb: root.sendOpenWeb(guid)
        }
    }

    EPlaceholder {
        objectName: "gridPlaceholder"
        anchors.centerIn: parent
        width: Math.min(parent.width - 40, 420)
        imageUrl: "qrc:/images/card_ic_default.png"
        text: qsTr("这里还没有工程")
        hint: qsTr("双击左侧列表中的工程，它会下载并显示在这里")
        visible: root.count === 0
    }

    EMessageBox {
        id: messageBox

        property var yesCallBack: function() {}

        parent: mainRoot
        needsAnswer: false
        onYesClick: {
            messageBox.close()
            messageBox.yesCallBack()
        }
    }
}
