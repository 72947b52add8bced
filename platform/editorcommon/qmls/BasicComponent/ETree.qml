// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Controls.Styles 1.4
import QtQml.Models 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A tree over a model whose items are maps under the role "value". The item delegate gets the map as
/// `styleData.value` and draws the whole row, indentation included; rows are recycled.
///
/// With the keyboard: up and down move the current row, right and left open and close it, Enter and Space are
/// handed on by the signals.
TreeView {
    id: root

    property int treeStyleHeight: 34
    property color treeBackColor: EConfig.eBackGround

    /// Enter or Space on the current row.
    signal enterPressed(var index)
    signal spacePressed(var index)

    /// Makes a row the current one, as a click does.
    function setCurrent(row, index) {
        root.__currentRow = row
        if (root.selection !== null)
            root.selection.setCurrentIndex(index, ItemSelectionModel.ClearAndSelect)
        root.forceActiveFocus(Qt.MouseFocusReason)
    }

    function toggle(index) {
        if (root.isExpanded(index))
            root.collapse(index)
        else
            root.expand(index)
    }

    headerVisible: false
    frameVisible: false
    backgroundVisible: true
    alternatingRowColors: false
    horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff
    onActiveFocusChanged: {
        if (activeFocus && __currentRow < 0 && __listView.count > 0)
            __currentRow = 0
    }
    Keys.onReturnPressed: root.currentIndex.valid ? root.enterPressed(root.currentIndex) : event.accepted = false
    Keys.onEnterPressed: root.currentIndex.valid ? root.enterPressed(root.currentIndex) : event.accepted = false
    Keys.onSpacePressed: root.currentIndex.valid ? root.spacePressed(root.currentIndex) : event.accepted = false

    TableViewColumn {
        role: "value"
        width: root.viewport.width
        resizable: false
        movable: false
    }

    style: TreeViewStyle {
        indentation: 0
        branchDelegate: null
        headerDelegate: null
        frame: null
        backgroundColor: root.treeBackColor
        transientScrollBars: false
        handleOverlap: 0
        minimumHandleLength: 24
        incrementControl: null
        decrementControl: null
        corner: null
        scrollBarBackground: Item {
            implicitWidth: 10
            implicitHeight: 10
        }
        handle: Item {
            implicitWidth: 10
            implicitHeight: 10

            Rectangle {
                anchors.fill: parent
                anchors.margins: 2
                radius: 3
                color: styleData.hovered || styleData.pressed ? EConfig.eTitleText : EConfig.eHoverBorderColor
            }
        }
        rowDelegate: Rectangle {
            height: root.treeStyleHeight
            color: root.treeBackColor
        }
    }
}
