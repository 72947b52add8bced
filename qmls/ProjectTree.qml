// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQml.Models 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "component"

/// The tree of all projects. A click on a project asks for its properties, a double click brings it into the grid; a
/// click on anything with children opens or closes it.
ETree {
    id: root

    property string downImg: "qrc:/images/bar_ic_zhankai.png"
    property string rightImg: "qrc:/images/bar_ic_shouqi.png"
    property int leftPaddingOffset: 16
    readonly property bool isEmpty: __listView.count === 0

    /// The properties of a project are asked for.
    signal sendProjectInfo(string guid)

    function valueOf(index) {
        return root.model.data(index, Qt.UserRole + 1)
    }

    function isProject(index) {
        return !root.model.hasChildren(index) && root.valueOf(index).type !== "orgType"
    }

    function openProject(guid) {
        clickTimer.forget()
        editorControl.slotTreeDblClick(guid)
    }

    treeStyleHeight: 40
    selection: ItemSelectionModel {
        model: root.model
    }
    onEnterPressed: {
        if (root.isProject(index))
            root.openProject(root.valueOf(index).text2)
        else
            root.toggle(index)
    }
    onSpacePressed: {
        if (root.isProject(index))
            root.sendProjectInfo(root.valueOf(index).text2)
        else
            root.toggle(index)
    }

    Accessible.role: Accessible.Tree
    Accessible.name: qsTr("工程列表")

    itemDelegate: ProjectTreeRow {
        tree: root
        onProjectClicked: clickTimer.count(guid)
        onProjectDoubleClicked: root.openProject(guid)
    }

    Connections {
        target: root.model
        ignoreUnknownSignals: true

        function onExpand(index) {
            root.expand(index)
        }

        function onCollapse(index) {
            root.collapse(index)
        }
    }

    // Waits whether a click on a project is the first half of a double click.
    Timer {
        id: clickTimer

        property string guid: ""
        property int clicks: 0

        function count(clickedGuid) {
            if (clickTimer.guid !== clickedGuid)
                clickTimer.forget()
            clickTimer.guid = clickedGuid
            clickTimer.clicks += 1
            if (clickTimer.clicks === 1)
                clickTimer.start()
        }

        function forget() {
            clickTimer.stop()
            clickTimer.clicks = 0
        }

        interval: 300
        onTriggered: {
            if (clickTimer.clicks === 1)
                root.sendProjectInfo(clickTimer.guid)
            clickTimer.clicks = 0
        }
    }
}
