// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The choice of the type of a new project.
EComboBox {
    id: root

    property string typeName: qsTr("场景工程")
    property string typeID: "CIM"

    signal sigSelect()

    backGroundColor: EConfig.eInputFieldBackGround
    isField: true
    displayText: root.typeName
    textRole: "name"
    model: [
        { name: qsTr("场景工程"), type: "CIM" },
        { name: qsTr("BIM工程"), type: "BIM" }
    ]
    onActivated: {
        root.typeName = root.model[index].name
        root.typeID = root.model[index].type
        root.sigSelect()
    }

    delegate: T.ItemDelegate {
        id: row

        objectName: "projType_" + modelData.type
        width: root.width
        height: 32
        leftPadding: 10
        rightPadding: 10
        highlighted: root.highlightedIndex === index
        text: modelData.name

        Accessible.role: Accessible.ListItem
        Accessible.name: row.text
        Accessible.selected: modelData.type === root.typeID

        contentItem: EText {
            color: modelData.type === root.typeID ? root.fontSelectedColor : root.fontColor
            elide: Text.ElideRight
            font.pixelSize: root.fontSize
            text: row.text
            Accessible.ignored: true
        }
        background: Rectangle {
            color: row.highlighted ? root.highlightColor : root.normalColor
        }
    }
}
