// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The models that the server could not convert.
KyvPage {
    id: root

    title: qsTr("转换失败的模型")
    onLeave: kyvDialog.showInfo()

    KyvList {
        anchors.fill: parent
        emptyText: qsTr("没有失败的模型")
        listView.dataModel: serviceConvertMgr.failedArray
        listView.listCountFunc: function() { return serviceConvertMgr.failedArray.length }
        listView.listDataFunc: function(index) { return serviceConvertMgr.failedArray[index]["name"] }
        listView.groupdelegateItem: Component {
            ProjFaildRow {
                width: ListView.view !== null ? ListView.view.width : 0
                row: modelData
            }
        }
    }

    buttons: [
        EDialogTextBtn {
            objectName: "backBtn"
            width: 62
            height: 32
            primary: true
            text: qsTr("返回")
            onClick: kyvDialog.showInfo()
        }
    ]
}
