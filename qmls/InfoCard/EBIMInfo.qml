// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The models of a building on this machine: adds, replaces and deletes them. The list is read from the project whenever
/// it comes into view.
FocusScope {
    id: root

    property string selectedGuid: ""

    /// The floors of the building are wanted.
    signal floorsRequested()

    function resetSelection() {
        listView.currentIndex = -1
        root.selectedGuid = ""
    }

    function select(place, uid) {
        listView.currentIndex = place
        root.selectedGuid = uid
    }

    /// Moves the selection by the keyboard.
    function selectNext(step) {
        const place = Math.max(0, Math.min(listView.count - 1, listView.currentIndex + step))
        if (listView.count === 0)
            return
        listView.currentIndex = place
        root.selectedGuid = listView.currentItem.uid
    }

    /// Asks for a file and hands it to `take`.
    function chooseFile(title, filter, take) {
        globalFileDialog.reset()
        globalFileDialog.title = title
        globalFileDialog.nameFilters = [filter]
        globalFileDialog.open(function(file) {
            take(file)
            root.resetSelection()
        })
    }

    function addFbx() {
        root.chooseFile(qsTr("请选择FBX文件"), "FBX(*.fbx)", function(file) {
            bimMgr.addFBXProj(file)
            converModeDialog.close()
        })
    }

    function addDwg() {
        root.chooseFile(qsTr("请选择DWG文件"), "DWG(*.dwg)", function(file) {
            bimMgr.addDwgProj(file)
            converModeDialog.close()
        })
    }

    function addArchive() {
        root.chooseFile(qsTr("请选择KYV文件"), "KYV(*.kyv)", function(file) {
            bimMgr.add(proInfoModel.projGuid, file, true, false)
        })
    }

    function replaceModel() {
        if (root.selectedGuid === "")
            return
        root.chooseFile(qsTr("请选择KYV文件"), "KYV(*.kyv)", function(file) {
            bimMgr.update(proInfoModel.projGuid, file, root.selectedGuid, true, false)
        })
    }

    function removeModel() {
        if (root.selectedGuid === "" || bimMgr.isConverting)
            return
        bimMgr.remove(proInfoModel.projGuid, root.selectedGuid)
        root.resetSelection()
    }

    /// The binding that asks names whatever the answer may change with.
    function isUpdatable(guid) {
        return guid !== "" && bimMgr.checkedUpdate(guid)
    }

    height: 320
    onVisibleChanged: {
        root.resetSelection()
        if (root.visible)
            bimMgr.syncProjList(proInfoModel.projGuid)
    }

    Accessible.role: Accessible.Grouping
    Accessible.name: titleText.text

    Item {
        id: titleBar

        width: parent.width
        height: 31

        EText {
            id: titleText

            objectName: "bimTitle"
            x: 15
            height: parent.height
            text: qsTr("KYV文件列表")
        }

        Row {
            objectName: "bimButtons"
            anchors.right: parent.right
            anchors.rightMargin: 15
            anchors.verticalCenter: parent.verticalCenter

            BimBtn {
                objectName: "bimFloorsBtn"
                visible: bimMgr.currentBimGuid !== "" && bimMgr.currentBimGuid === proInfoModel.projGuid
                picture: "tab_bt_ic_floors"
                tipText: qsTr("楼层管理")
                onClick: root.floorsRequested()
            }

            BimBtn {
                objectName: "bimFbxBtn"
                picture: "tab_bt_ic_fbx"
                tipText: qsTr("添加FBX文件")
                onClick: root.addFbx()
            }

            BimBtn {
                objectName: "bimDwgBtn"
                picture: "tab_bt_ic_dwg"
                tipText: qsTr("添加DWG文件")
                onClick: root.addDwg()
            }

            BimBtn {
                objectName: "bimAddBtn"
                picture: "pop_bt_ic_add"
                tipText: qsTr("添加BIM工程")
                onClick: root.addArchive()
            }

            BimBtn {
                objectName: "bimUpdateBtn"
                picture: "ic_update"
                disabledImg: "qrc:/images/ic_update_disable.png"
                tipText: qsTr("更新BIM工程")
                enabled: root.isUpdatable(root.selectedGuid, bimMgr.isConverting, bimMgr.projList)
                onClick: root.replaceModel()
            }

            BimBtn {
                objectName: "bimDeleteBtn"
                picture: "tab_bt_ic_del"
                disabledImg: "qrc:/images/tab_bt_ic_del_disable.png"
                tipText: qsTr("删除BIM工程")
                enabled: !bimMgr.isConverting
                onClick: root.removeModel()
            }
        }
    }

    ESearchBox {
        id: searchBox

        objectName: "bimSearch"
        anchors.top: titleBar.bottom
        anchors.topMargin: 10
        x: 10
        width: parent.width - 20
        height: 26
        onTextChanged: root.resetSelection()
    }

    EScrollView {
        id: scrollView

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: searchBox.bottom
        anchors.bottom: parent.bottom
        anchors.margins: 10
        barOffset: 8

        ESearchList {
            id: listView

            objectName: "bimList"
            dataModel: bimMgr.projList
            searchText: searchBox.text
            listCountFunc: function() { return bimMgr.projList.length }
            listDataFunc: function(index) { return bimMgr.projList[index].name }
            activeFocusOnTab: true
            keyNavigationEnabled: false
            onCurrentIndexChanged: {
                if (currentIndex < 0)
                    root.selectedGuid = ""
            }
            Keys.onUpPressed: root.selectNext(-1)
            Keys.onDownPressed: root.selectNext(1)

            Accessible.role: Accessible.List
            Accessible.name: titleText.text

            groupdelegateItem: Component {
                BimRow {
                    width: ListView.view !== null ? ListView.view.width : 0
                    row: modelData
                    isCurrent: ListView.isCurrentItem
                    onChosen: root.select(place, uid)
                }
            }
        }
    }

    EFocusFrame {
        anchors.fill: scrollView
        visible: listView.activeFocus
    }

    EText {
        objectName: "bimEmpty"
        anchors.centerIn: parent
        visible: listView.count === 0
        color: EConfig.eQuietText
        text: searchBox.text !== "" ? qsTr("没有符合的模型") : qsTr("还没有模型")
    }
}
