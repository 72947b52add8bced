// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A line to search with, and below it the rows that it leaves.
Item {
    id: root

    property alias listView: listView
    property string emptyText: ""

    ESearchBox {
        id: searchBox

        objectName: "kyvSearch"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 10
        height: 26
    }

    EScrollView {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: searchBox.bottom
        anchors.bottom: parent.bottom
        anchors.margins: 10
        barOffset: 8

        ESearchList {
            id: listView

            objectName: "kyvList"
            searchText: searchBox.text
            snapMode: ListView.SnapToItem
            clip: true
        }
    }

    EText {
        objectName: "kyvEmpty"
        anchors.centerIn: parent
        visible: listView.count === 0
        color: EConfig.eQuietText
        text: searchBox.text !== "" ? qsTr("没有符合的模型") : root.emptyText
    }
}
