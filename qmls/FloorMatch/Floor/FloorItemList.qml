// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A list of floors of models. A double click or Enter acts on one. Each change brings a new list: what was to be seen
/// stays where it is, unless the new list is another one altogether.
FocusScope {
    id: root

    property var floors: []
    property string spokenName: ""
    property var textOf: function(floor) { return floor.floorName }
    property real textX: 17
    /// Kept free at the right of a text.
    property real textMargin: 10
    /// The next list is the present one with changes.
    property bool keepsPlace: false
    readonly property alias view: view

    signal acted(var floor)

    function act(index) {
        if (index >= 0 && index < root.floors.length)
            root.acted(root.floors[index])
    }

    function takeFloors() {
        const place = root.keepsPlace ? view.contentY : 0
        const current = root.keepsPlace ? Math.min(view.currentIndex, root.floors.length - 1) : -1
        view.model = root.floors
        view.currentIndex = current
        view.forceLayout()
        view.contentY = Math.max(0, Math.min(place, view.contentHeight - view.height))
    }

    function click(index) {
        view.currentIndex = index
        view.forceActiveFocus(Qt.MouseFocusReason)
        view.isKeyboardUsed = false
    }

    onFloorsChanged: root.takeFloors()

    EScrollView {
        anchors.fill: parent
        focus: true

        ListView {
            id: view

            /// The keyboard was used last, and not the mouse.
            property bool isKeyboardUsed: false

            objectName: "floorItems"
            clip: true
            focus: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            currentIndex: -1
            onActiveFocusChanged: {
                view.isKeyboardUsed = true
                if (view.activeFocus && view.currentIndex < 0 && view.count > 0)
                    view.currentIndex = 0
            }
            Keys.onPressed: view.isKeyboardUsed = true
            Keys.onReturnPressed: root.act(view.currentIndex)
            Keys.onEnterPressed: root.act(view.currentIndex)

            Accessible.role: Accessible.List
            Accessible.name: root.spokenName
            Accessible.description: view.currentItem !== null ? view.currentItem.Accessible.name : ""

            delegate: FloorRow {
                objectName: "item_" + index
                width: view.width
                text: root.textOf(modelData)
                textX: root.textX
                textWidth: width - root.textX - root.textMargin
                isLit: ListView.isCurrentItem
                isMarked: modelData.isMatched === true
                hasKeyboard: ListView.isCurrentItem && view.activeFocus && view.isKeyboardUsed
                onClicked: root.click(index)
                onDoubleClicked: root.act(index)
            }
        }
    }
}
