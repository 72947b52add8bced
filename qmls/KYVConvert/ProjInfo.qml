// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The models of the project: finished, on the server, and on their way there.
KyvPage {
    id: root

    function choose() {
        globalFileDialog.reset()
        globalFileDialog.title = qsTr("请选择KYV文件")
        globalFileDialog.nameFilters = ["KYV(*.kyv)"]
        globalFileDialog.open(function(file) { kyvDialog.showOptionSelecter(file) }, function() {})
    }

    title: qsTr("转化BIM工程")
    onLeave: kyvDialog.close()

    Item {
        id: header

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 10
        height: 26

        EText {
            height: parent.height
            text: qsTr("KYV文件")
        }

        EHoverImageBtn {
            objectName: "addKyvBtn"
            anchors.right: parent.right
            anchors.rightMargin: 4
            width: 30
            height: 26
            img: "qrc:/images/pop_bt_ic_add.png"
            hoveredImg: "qrc:/images/pop_bt_ic_add_hover.png"
            selectedImg: "qrc:/images/pop_bt_ic_add_selected.png"
            tipText: qsTr("添加KYV")
            onClick: root.choose()
        }
    }

    KyvList {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        emptyText: qsTr("还没有模型")
        listView.dataModel: serviceConvertModel
        listView.listCountFunc: function() { return serviceConvertModel.getCount() }
        listView.listDataFunc: function(index) { return serviceConvertModel.getName(index) }
        listView.groupdelegateItem: Component {
            ProjInfoRow {
                width: ListView.view !== null ? ListView.view.width : 0
                row: model.listData
            }
        }
    }

    buttons: [
        EDialogTextBtn {
            objectName: "failedListBtn"
            width: 100
            height: 32
            text: qsTr("转换失败列表")
            onClick: kyvDialog.showFailedInfo()
        },
        EDialogTextBtn {
            objectName: "cancelConvertBtn"
            width: 100
            height: 32
            text: qsTr("取消转换")
            onClick: serviceConvertMgr.delAllKyvModel()
        }
    ]
}
