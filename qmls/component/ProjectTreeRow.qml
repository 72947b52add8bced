// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A row of the project tree: a department or a project, as the item's map says. Rows are recycled, so everything in
/// it follows `styleData`.
Item {
    id: root

    /// The ProjectTree that it belongs to.
    property var tree
    readonly property var value: styleData.value ? styleData.value : ({})
    readonly property bool isDepartment: value.type === "orgType"
    readonly property bool isHovered: hoverHandler.hovered && mouseArea.containsMouse
    readonly property bool isMarked: styleData.selected || mouseArea.pressed
    readonly property string name: (value.text1 || "") + (value.isDemo ? qsTr(" (Demo工程)") : "")

    signal projectClicked(string guid)
    signal projectDoubleClicked(string guid)

    objectName: "treeRow_" + txtName.rowIdentifier

    Accessible.role: Accessible.TreeItem
    Accessible.name: root.name
    Accessible.selected: styleData.selected
    Accessible.onPressAction: mouseArea.take()

    Rectangle {
        id: ground

        anchors.fill: parent
        anchors.rightMargin: 10
        anchors.topMargin: 6
        radius: EConfig.radius
        color: root.isMarked ? EConfig.eTreeSelected : root.isHovered ? EConfig.eTreeHover : EConfig.eBackGround
        border.width: 1
        border.color: root.isMarked ? EConfig.ePressedBorderColor
                                    : root.isHovered ? EConfig.eHoverBorderColor : EConfig.eBackGround

        HoverHandler {
            id: hoverHandler
        }

        MouseArea {
            id: mouseArea

            function take() {
                if (styleData.hasChildren) {
                    root.tree.toggle(styleData.index)
                } else if (!root.isDepartment) {
                    root.tree.setCurrent(styleData.row, styleData.index)
                    root.projectClicked(txtName.rowIdentifier)
                }
            }

            anchors.fill: parent
            hoverEnabled: true
            onClicked: mouseArea.take()
            onDoubleClicked: {
                if (styleData.hasChildren)
                    root.tree.toggle(styleData.index)
                else if (!root.isDepartment)
                    root.projectDoubleClicked(txtName.rowIdentifier)
            }
        }

        Image {
            id: headerImg

            anchors.left: parent.left
            anchors.leftMargin: root.tree.leftPaddingOffset * (styleData.depth + 1)
            anchors.verticalCenter: parent.verticalCenter
            source: root.value.image1 || ""
        }

        EText {
            id: txtName

            property string rowIdentifier: root.value.text2 || ""

            anchors.left: headerImg.right
            anchors.leftMargin: 10
            anchors.right: mark.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            color: "#dddddd"
            font.pixelSize: styleData.depth === 0 ? 14 : 12
            elide: Text.ElideRight
            text: root.name
            Accessible.ignored: true
        }

        // The state of a project, or whether a department is open: never both.
        Item {
            id: mark

            width: 16
            height: 16
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter

            Image {
                id: stateImg

                x: 1
                y: 1
                source: root.value.image2 || ""
                visible: !styleData.hasChildren
            }

            Image {
                id: branchImage

                source: styleData.isExpanded ? root.tree.downImg : root.tree.rightImg
                visible: styleData.hasChildren
            }
        }

        EToolTip {
            id: tip

            delay: 300
            pixelSize: 14
            text: root.name
        }
    }

    onIsHoveredChanged: {
        if (root.isHovered)
            tip.open()
        else
            tip.close()
    }
}
