// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The choice of the model whose floors the right-hand list shows. It stays when the models are filled anew, as it does
/// below the screens.
EComboBox {
    id: root

    property int chosenIndex: 0

    signal modelChosen(int index)

    fontColor: "#a0a0a0"
    fontSize: 13
    backGroundColor: "#272727"
    textRole: "projName"
    model: floorMatchedCtrl.allMatchedProj
    // A box goes to its first row when it gets a new list.
    onModelChanged: root.currentIndex = root.chosenIndex
    onActivated: {
        root.chosenIndex = index
        root.modelChosen(index)
    }

    Accessible.name: root.displayText !== "" ? root.displayText : qsTr("模型")

    delegate: T.ItemDelegate {
        id: row

        objectName: "model_" + index
        width: root.width
        height: 40
        leftPadding: 20
        rightPadding: 10
        hoverEnabled: true
        highlighted: root.highlightedIndex === index
        text: modelData.projName
        onHoveredChanged: row.hovered ? tip.open() : tip.close()

        Accessible.role: Accessible.ListItem
        Accessible.name: row.text
        Accessible.selected: root.currentIndex === index

        contentItem: EText {
            color: root.currentIndex === index || row.hovered || row.highlighted ? "#1473e6" : "#dddddd"
            elide: Text.ElideRight
            font.pixelSize: 13
            text: row.text
            Accessible.ignored: true
        }
        background: Rectangle {
            color: root.backGroundColor
        }

        HoverHandler { cursorShape: Qt.PointingHandCursor }

        EToolTip {
            id: tip

            objectName: "modelTip"
            text: row.text
            delay: 300
        }
    }
}
