// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"
import "component"

/// The title bar of the frameless window: home tab, tabs of the opened projects, buttons. It decides what is asked
/// when the program is left with projects open.
Rectangle {
    id: root

    property bool isMaxed: rootView.isMaxed
    property int uploadCount: 0
    property bool isConverting: false

    signal openWebConsole()

    function toggleMaximized() {
        if (root.isMaxed)
            rootView.showNormal()
        else
            rootView.showMaximized()
    }

    /// True when leaving the program would lose nothing, as far as tabs and operations tell.
    function isIdle() {
        return tabListView.count === 0 && root.uploadCount === 0 && !root.isConverting
    }

    function requestClose() {
        if (root.isIdle() && !serviceConvertMgr.hasUploadingProj()) {
            rootView.close(false)
            return
        }
        tabMgr.openTab("main")
        closeTimer.restart()
    }

    function requestLogout() {
        if (root.isIdle()) {
            rootView.logout(false)
            return
        }
        tabMgr.openTab("main")
        logoutTimer.restart()
    }

    function ask(title, text, yesCallBack, noCallBack) {
        tipDialog.title = title
        tipDialog.contentText = text
        tipDialog.yesCallBack = yesCallBack
        tipDialog.noCallBack = noCallBack
        tipDialog.open()
    }

    function askBeforeClosing() {
        const yes = function() { rootView.close(true) }
        const no = function() { rootView.close(false) }
        if (root.isConverting)
            root.ask(qsTr("是否保存"), qsTr("工程正在转换中，退出将会转换失败。<br/>是否保存所有打开工程"), yes, no)
        else if (root.uploadCount > 0)
            root.ask(qsTr("是否保存"), qsTr("工程正在上传中，退出将会上传失败。<br/>是否保存所有打开工程"), yes, no)
        else if (serviceConvertMgr.hasUploadingProj())
            root.ask(qsTr("是取消删除"), qsTr("服务端转换有工程在上传中，退出将会失去上<br/>传中的kyv工程。是否退出"), yes, no)
        else
            root.ask(qsTr("是否保存"), qsTr("是否保存所有打开工程"), yes, no)
    }

    function askBeforeLogout() {
        const yes = function() { rootView.logout(true) }
        const no = function() { rootView.logout(false) }
        if (root.isConverting)
            root.ask(qsTr("是否保存"), qsTr("工程正在转换中，注销将会转换失败。<br/>是否保存所有打开工程"), yes, no)
        else if (root.uploadCount > 0)
            root.ask(qsTr("是否保存"), qsTr("工程正在上传中，退出将会上传失败。<br/>是否保存所有打开工程"), yes, no)
        else
            root.ask(qsTr("是否保存"), qsTr("是否保存所有打开工程"), yes, no)
    }

    color: EConfig.eBackGround

    MouseArea {
        id: dragArea

        property real lastX: 0
        property real lastY: 0
        /// The second press of a double click is no drag of the window that it maximizes.
        property bool mask: false
        /// The window has just left the maximized state, and the pointer stands elsewhere in the bar.
        property bool cursorChanged: false

        function drag(x, y) {
            if (dragArea.cursorChanged) {
                dragArea.lastX = x
                dragArea.lastY = y
                dragArea.cursorChanged = false
            }
            const xOffset = x - dragArea.lastX
            const yOffset = y - dragArea.lastY
            if (dragArea.mask || (xOffset === 0 && yOffset === 0))
                return
            if (root.isMaxed) {
                rootView.changeSize()
                dragArea.cursorChanged = true
            } else {
                rootView.move(xOffset, yOffset)
            }
        }

        objectName: "dragArea"
        anchors.fill: parent
        cursorShape: Qt.OpenHandCursor
        onPressed: {
            dragArea.lastX = mouse.x
            dragArea.lastY = mouse.y
        }
        onPositionChanged: dragArea.drag(mouse.x, mouse.y)
        onDoubleClicked: {
            if (root.isMaxed) {
                rootView.showNormal()
                return
            }
            dragArea.mask = true
            rootView.showMaximized()
            delayer.restart()
        }

        Timer {
            id: delayer

            interval: 100
            onTriggered: dragArea.mask = false
        }
    }

    ETipMsgBox {
        id: tipDialog

        property var yesCallBack: function() {}
        property var noCallBack: function() {}

        parent: mainRoot
        onYesClick: tipDialog.yesCallBack()
        onNoClick: tipDialog.noCallBack()
    }

    ETabBtn {
        id: mainPageBtn

        objectName: "mainPageBtn"
        width: 270
        height: parent.height
        anchors.left: parent.left
        enabled: !maskArea.enabled
        text: editorControl.loginName
        isCurrent: tab.currentTab === "main"
        textAnchors.leftMargin: 10
        textAnchors.rightMargin: 10
        onClick: tabMgr.openTab("main")
    }

    ListView {
        id: tabListView

        objectName: "tabListView"
        anchors.left: mainPageBtn.right
        anchors.right: toolBtnRow.left
        height: parent.height
        clip: true
        enabled: !maskArea.enabled
        interactive: false
        orientation: ListView.Horizontal
        model: tab.tabList
        delegate: ETabBtn {
            id: tabBtn

            objectName: "tab_" + modelData
            width: tabListView.count > 4 ? tabListView.width / tabListView.count : 270
            height: tabListView.height
            text: tab.idConvertToName(modelData)
            isCurrent: tab.currentTab === modelData
            textAnchors.leftMargin: 8
            textAnchors.rightMargin: height / 2 + 4
            onClick: tabMgr.openTab(modelData)

            EHoverImageBtn {
                objectName: "tabCloseBtn"
                width: parent.height / 2
                height: parent.height / 2
                anchors.right: parent.right
                anchors.rightMargin: 4
                anchors.verticalCenter: parent.verticalCenter
                border.width: 0
                img: "qrc:/images/pop_ic_close.png"
                hoveredImg: "qrc:/images/pop_ic_close_hover.png"
                selectedImg: "qrc:/images/pop_ic_close_selected.png"
                accessibleName: qsTr("关闭%1").arg(tabBtn.text)
                onClick: {
                    tabMgr.openTab(modelData)
                    tabMgr.closeTab(modelData)
                }
            }
        }

        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("打开的工程")
    }

    EImageBtn {
        objectName: "helpBtn"
        width: 16
        height: 16
        y: 2
        anchors.right: toolBtnRow.left
        anchors.rightMargin: 8
        enabled: !maskArea.enabled
        visible: tab.currentTab !== "main"
        color: EConfig.eBackGround
        imageUrl: "qrc:/images/help.png"
        tipText: qsTr("帮助")
        onClick: tabMgr.showHelp()
    }

    Row {
        id: toolBtnRow

        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        enabled: !maskArea.enabled
        spacing: 4

        ETitleTextBtn {
            objectName: "logoutBtn"
            text: qsTr("注销")
            visible: editorControl.isBimSdk
            onClick: root.requestLogout()
        }

        ETitleTextBtn {
            objectName: "consoleBtn"
            text: qsTr("控制台")
            visible: !editorControl.isBimSdk
            onClick: root.openWebConsole()
        }

        ETitleTextBtn {
            objectName: "versionBtn"
            text: editorControl.getVersion()
        }

        EHoverImageBtn {
            objectName: "minimizeBtn"
            width: 28
            height: 20
            img: "qrc:/images/head_ic_minimum.png"
            hoveredImg: "qrc:/images/head_ic_minimum_hover.png"
            selectedImg: "qrc:/images/head_ic_minimum_selected.png"
            tipText: qsTr("最小化")
            onClick: rootView.showMinimized()
        }

        EHoverImageBtn {
            objectName: "maximizeBtn"
            width: 28
            height: 20
            img: root.isMaxed ? "qrc:/images/head_ic_maximum_02.png" : "qrc:/images/head_ic_maximum.png"
            hoveredImg: root.isMaxed ? "qrc:/images/head_ic_maximum_hover_02.png"
                                     : "qrc:/images/head_ic_maximum_hover.png"
            selectedImg: root.isMaxed ? "qrc:/images/head_ic_maximum_selected_02.png"
                                      : "qrc:/images/head_ic_maximum_selected.png"
            tipText: root.isMaxed ? qsTr("还原") : qsTr("最大化")
            onClick: root.toggleMaximized()
        }

        EHoverImageBtn {
            objectName: "closeBtn"
            width: 28
            height: 20
            img: "qrc:/images/head_ic_close.png"
            hoveredImg: "qrc:/images/head_ic_close_hover.png"
            selectedImg: "qrc:/images/head_ic_close_selected.png"
            tipText: qsTr("关闭")
            onClick: root.requestClose()
        }
    }

    // A question that comes too fast finds the window of the tab not yet hidden, and lies behind it.
    Timer {
        id: closeTimer

        interval: 500
        onTriggered: root.askBeforeClosing()
    }

    Timer {
        id: logoutTimer

        interval: 500
        onTriggered: root.askBeforeLogout()
    }

    Connections {
        target: tabMgr

        function onDialogShow(isShown) {
            maskArea.enabled = isShown
        }

        function onUploadCountChanged(count) {
            root.uploadCount = count
        }

        function onIsConvertingChanged(converting) {
            root.isConverting = converting
        }
    }

    MouseArea {
        id: maskArea

        objectName: "maskArea"
        anchors.fill: parent
        enabled: false
        hoverEnabled: enabled
    }
}
