// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQml.Models 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// One finished model to choose. What is not finished has no room in the list.
Rectangle {
    id: root

    /// A CKyvConvertData.
    property var row: null
    property bool isChosen: false
    property bool isCurrent: false

    /// `place` is the row's place among those that the search leaves.
    signal chosen(int place)

    objectName: "kyvChoice_" + root.row.guid
    height: visible ? 40 : 0
    visible: root.row.state === 0
    color: hover.hovered ? EConfig.eTreeSelected : EConfig.eDialogBackground

    HoverHandler { id: hover }

    TapHandler {
        onTapped: root.chosen(root.DelegateModel.foundIndex)
    }

    ERadioBtn {
        id: radio

        objectName: "kyvRadio"
        anchors.left: parent.left
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        autoExclusive: false
        checked: root.isChosen
        onClicked: {
            root.chosen(root.DelegateModel.foundIndex)
            checked = Qt.binding(function() { return root.isChosen })
        }

        Accessible.name: root.row.name
    }

    Image {
        id: icon

        anchors.left: radio.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        source: "qrc:/images/bar_ic_default.png"
    }

    Rectangle {
        anchors.fill: nameText
        color: root.isCurrent || hover.hovered ? EConfig.eTreeSelected : "transparent"
    }

    ETextWithTip {
        id: nameText

        objectName: "kyvName"
        anchors.left: icon.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 60
        height: parent.height
        text: root.row.name
    }
}
