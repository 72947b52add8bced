// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The choice of the type of projects that the tree shows, with the number of each.
EComboBox {
    id: root

    property var panelModel
    property string typeName: qsTr("全部工程类型")
    property string strType: ""
    readonly property int bimProjCount: panelModel ? panelModel.bimProjCount : 0
    readonly property int sceneProjCount: panelModel ? panelModel.sceneProjCount : 0

    signal sigTypeChecked()

    function countOf(type) {
        if (type === "CIM")
            return root.sceneProjCount
        return type === "BIM" ? root.bimProjCount : root.sceneProjCount + root.bimProjCount
    }

    fontSize: 14
    fontColor: "#f0f0f0"
    closedImage: "qrc:/images/ic_xiala.png"
    openImage: "qrc:/images/ic_xiala_hover.png"
    textRole: "name"
    displayText: root.typeName
    model: [
        { name: qsTr("全部工程类型"), type: "", image: "qrc:/images/bar_ic_default.png", hoverImage: "qrc:/images/bar_ic_hover.png" },
        { name: qsTr("场景工程"), type: "CIM", image: "qrc:/images/bar_ic_scene.png", hoverImage: "qrc:/images/bar_ic_scene_hover.png" },
        { name: qsTr("BIM工程"), type: "BIM", image: "qrc:/images/bar_ic_bim.png", hoverImage: "qrc:/images/bar_ic_bim_hover.png" }
    ]
    onActivated: {
        root.typeName = root.model[index].name
        root.strType = root.model[index].type
        root.sigTypeChecked()
    }

    contentItem: Item {
        EText {
            anchors.left: parent.left
            anchors.right: totalText.left
            anchors.rightMargin: 8
            height: parent.height
            color: root.fontColor
            elide: Text.ElideRight
            font.pixelSize: root.fontSize
            text: root.displayText
            Accessible.ignored: true
        }

        EText {
            id: totalText

            anchors.right: parent.right
            height: parent.height
            color: root.fontColor
            font.pixelSize: root.fontSize
            text: root.countOf(root.strType)
        }
    }

    delegate: T.ItemDelegate {
        id: row

        readonly property bool isCurrent: modelData.type === root.strType
        readonly property bool isLit: row.highlighted || row.isCurrent

        objectName: "type_" + modelData.type
        width: root.width
        height: 40
        hoverEnabled: true
        highlighted: root.highlightedIndex === index
        text: modelData.name

        Accessible.role: Accessible.ListItem
        Accessible.name: modelData.name
        Accessible.selected: row.isCurrent

        background: Rectangle {
            color: "#2e2e2e"
            radius: 3

            Rectangle {
                y: 6
                width: parent.width
                height: 34
                radius: 3
                color: row.isLit ? "#2a2a2a" : "#2e2e2e"
            }
        }

        contentItem: Item {
            Image {
                x: 10
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: 3
                source: row.isLit ? modelData.hoverImage : modelData.image
            }

            EText {
                anchors.left: parent.left
                anchors.leftMargin: 36
                anchors.right: countText.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: 3
                color: row.isCurrent ? "#1473e6" : "#dddddd"
                elide: Text.ElideRight
                font.pixelSize: root.fontSize
                text: modelData.name
                Accessible.ignored: true
            }

            EText {
                id: countText

                anchors.right: parent.right
                anchors.rightMargin: 25
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: 3
                color: row.isCurrent ? "#1473e6" : "#dddddd"
                font.pixelSize: root.fontSize
                text: root.countOf(modelData.type)
                Accessible.ignored: true
            }
        }
    }
}
