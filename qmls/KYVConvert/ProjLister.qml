// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The choice of the finished model that the chosen archive takes the place of.
KyvPage {
    id: root

    property string currentUID: ""

    title: qsTr("选择要更新的BIM工程")
    onLeave: kyvDialog.showInfo()

    KyvList {
        anchors.fill: parent
        listView.dataModel: serviceConvertModel
        listView.listCountFunc: function() { return serviceConvertModel.getCount() }
        listView.listDataFunc: function(index) { return serviceConvertModel.getValidName(index) }
        listView.groupdelegateItem: Component {
            ProjListerRow {
                width: ListView.view !== null ? ListView.view.width : 0
                row: model.listData
                isChosen: root.currentUID === row.guid
                isCurrent: ListView.isCurrentItem
                onChosen: {
                    root.currentUID = row.guid
                    ListView.view.currentIndex = place
                }
            }
        }
    }

    EText {
        objectName: "noModelText"
        anchors.centerIn: parent
        visible: serviceConvertModel.getValidCount() === 0
        text: qsTr("没有可以更新的模型")
    }

    buttons: [
        EDialogTextBtn {
            objectName: "okBtn"
            width: 62
            height: 32
            primary: true
            enabled: root.currentUID !== ""
            text: qsTr("确定")
            onClick: {
                serviceConvertMgr.updateKyvModel(kyvDialog.strFilePath, root.currentUID, kyvDialog.convertType)
                kyvDialog.showInfo()
            }
        },
        EDialogTextBtn {
            objectName: "cancelBtn"
            width: 62
            height: 32
            text: qsTr("取消")
            onClick: kyvDialog.close()
        }
    ]
}
