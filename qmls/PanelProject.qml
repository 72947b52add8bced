// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "component"

/// The left panel: how many projects there are, a search, the tree, and the button for a new one.
Rectangle {
    id: root

    property var panelModel

    signal singInnerCreate()
    /// The properties of a project are asked for.
    signal sendProjectInfo(string guid)

    color: EConfig.eBackGround

    Item {
        id: headArea

        anchors.left: parent.left
        anchors.leftMargin: 5
        anchors.right: refreshBtn.left
        height: 32

        EProjTypeCheck {
            objectName: "projTypeCheck"
            anchors.fill: parent
            panelModel: root.panelModel
            visible: editorControl.appVer === 1
            onSigTypeChecked: leftPanelModel.filterTree(strType)
        }

        EText {
            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.right: totalText.left
            anchors.verticalCenter: parent.verticalCenter
            clip: true
            color: "#f0f0f0"
            font.pixelSize: EConfig.textPixelSizeLarge
            text: qsTr("全部工程数量")
            visible: editorControl.appVer !== 1
        }

        EText {
            id: totalText

            objectName: "totalText"
            anchors.right: parent.right
            anchors.rightMargin: 25
            anchors.verticalCenter: parent.verticalCenter
            color: "#f0f0f0"
            font.pixelSize: EConfig.textPixelSizeLarge
            text: root.panelModel.sceneProjCount + root.panelModel.bimProjCount + qsTr("个")
            visible: editorControl.appVer !== 1
        }
    }

    EHoverImageBtn {
        id: refreshBtn

        objectName: "refreshBtn"
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: headArea.verticalCenter
        img: "qrc:/images/ic_refresh.png"
        hoveredImg: "qrc:/images/ic_refresh_hover.png"
        selectedImg: "qrc:/images/ic_refresh_hover.png"
        disabledImg: "qrc:/images/ic_refresh.png"
        tipText: qsTr("刷新列表")
        onClick: editorControl.reflushProjTree()
    }

    Column {
        id: lines

        anchors.top: headArea.bottom
        width: parent.width

        Rectangle {
            width: parent.width
            height: 1
            color: EConfig.eBorder
        }

        Rectangle {
            width: parent.width
            height: 1
            color: EConfig.eBorder
        }
    }

    ESearchBox {
        id: searchBox

        objectName: "searchBox"
        anchors.top: lines.bottom
        anchors.topMargin: 11
        anchors.left: parent.left
        anchors.leftMargin: 11
        anchors.right: parent.right
        anchors.rightMargin: 11
        height: 26
        placeholderText: qsTr("搜索工程")
        onTextChanged: idProjTree.showTree()
    }

    ProjectTree {
        id: idProjTree

        /// Another object after each rebuild of the tree.
        property var realTreeModel: root.panelModel.treeModel

        /// Shows the whole tree, or what the search text finds in it.
        function showTree() {
            if (searchBox.text === "") {
                idProjTree.model = root.panelModel.treeModel
                return
            }
            idProjTree.model = root.panelModel.treeModel.search(searchBox.text)
            idProjTree.model.freshModel()
            idProjTree.model.expandAll()
        }

        objectName: "projectTree"
        x: 10
        width: parent.width - 10
        anchors.top: searchBox.bottom
        anchors.bottom: createBtn.top
        model: root.panelModel.treeModel
        onRealTreeModelChanged: idProjTree.showTree()
        onSendProjectInfo: root.sendProjectInfo(guid)
        Component.onDestruction: idProjTree.model = root.panelModel.treeModel
    }

    EPlaceholder {
        objectName: "treePlaceholder"
        anchors.left: idProjTree.left
        anchors.right: idProjTree.right
        anchors.rightMargin: 10
        y: idProjTree.y + 40
        text: searchBox.text !== "" ? qsTr("没有找到“%1”").arg(searchBox.text) : qsTr("还没有工程")
        hint: searchBox.text !== "" ? qsTr("换个名称，或清除搜索") : qsTr("点击下方的“新建工程”，或刷新列表")
        visible: idProjTree.isEmpty
    }

    EImgTextBtn {
        id: createBtn

        objectName: "createBtn"
        anchors.bottom: parent.bottom
        width: parent.width
        height: 40
        border.width: 1
        border.color: EConfig.eGlobalBackGround
        imageUrl: containsMouse ? "qrc:/images/bt_ic_add_hover.png" : "qrc:/images/bt_ic_add.png"
        text: qsTr("新建工程")
        textColor: containsMouse ? EConfig.eTextHighColor : EConfig.textColor
        onClick: root.singInnerCreate()
    }
}
