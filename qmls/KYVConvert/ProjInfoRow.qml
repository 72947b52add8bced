// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// One model: its name, how far it has come, and a button that gives it up as long as it is not finished.
Item {
    id: root

    /// A CKyvConvertData.
    property var row: null
    readonly property string stateText: root.row.pointText
                                        + (root.row.sort > 0 ? qsTr("排在") + root.row.sort + qsTr("位") : "")

    objectName: "kyvRow_" + root.row.guid
    height: 40

    Rectangle {
        id: leftArea

        anchors.left: parent.left
        anchors.right: stateBox.left
        height: parent.height
        color: nameHover.hovered ? EConfig.eTreeSelected : EConfig.eDialogBackground

        HoverHandler {
            id: nameHover

            onHoveredChanged: {
                if (hovered) {
                    nameTip.place = Qt.point(point.position.x, point.position.y + 16)
                    nameTip.open()
                } else {
                    nameTip.close()
                }
            }
        }

        Image {
            id: icon

            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            source: "qrc:/images/bar_ic_default.png"
        }

        EText {
            id: nameText

            objectName: "kyvName"
            anchors.left: icon.right
            anchors.leftMargin: 15
            anchors.right: parent.right
            anchors.rightMargin: 8
            height: parent.height
            elide: Text.ElideRight
            text: root.row.name

            Accessible.description: root.stateText
        }

        Rectangle {
            objectName: "kyvProgress"
            anchors.left: nameText.left
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 2
            width: root.row.process * nameText.width
            height: 2
            radius: 0.5
            color: "#1473e6"
            visible: root.row.state === 6
        }

        EToolTip {
            id: nameTip

            text: root.row.name
            delay: 200
        }
    }

    Rectangle {
        id: stateBox

        objectName: "kyvState"
        anchors.right: delBtn.visible ? delBtn.left : parent.right
        anchors.rightMargin: delBtn.visible ? 0 : 5
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 26
        radius: 2
        color: "#535353"

        Image {
            objectName: "kyvStateImage"
            anchors.fill: parent
            fillMode: Image.Pad
            source: root.row.image
        }

        HoverHandler {
            onHoveredChanged: {
                if (hovered && root.stateText !== "")
                    stateTip.open()
                else
                    stateTip.close()
            }
        }

        EToolTip {
            id: stateTip

            objectName: "kyvStateTip"
            text: root.stateText
            delay: 300
            pixelSize: 14
        }
    }

    EHoverImageBtn {
        id: delBtn

        objectName: "delKyvBtn"
        anchors.right: parent.right
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 26
        img: "qrc:/images/pop_bt_ic_del.png"
        hoveredImg: "qrc:/images/pop_bt_ic_del_hover.png"
        selectedImg: "qrc:/images/pop_bt_ic_del_selected.png"
        border.width: 0
        tipText: qsTr("删除kyv")
        visible: root.row.state !== 0
        onClick: serviceConvertMgr.delKyvModel(root.row.guid)
    }
}
