// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The floors of the project. A plain click makes one current, control and shift clicks choose several to delete.
FocusScope {
    id: root

    /// Rows at which a region of shift clicks begins and ends; a completed region leaves none to begin at.
    property real beginIndex: -1
    property real endIndex: -1
    /// The row at which the keyboard began to select a region.
    property int keyboardAnchor: -1

    function click(index, modifiers) {
        root.keyboardAnchor = -1
        view.currentIndex = index
        view.forceActiveFocus(Qt.MouseFocusReason)
        view.isKeyboardUsed = false
        if (modifiers & Qt.ShiftModifier)
            root.shiftClick(index)
        else if (modifiers & Qt.ControlModifier)
            root.controlClick(index)
        else
            root.plainClick(index)
    }

    function plainClick(index) {
        floorModel.clearAndSelected(index)
        root.beginIndex = index
    }

    function controlClick(index) {
        floorModel.ctrlSelected(index)
        root.beginIndex = -1
    }

    function shiftClick(index) {
        if (root.beginIndex < 0) {
            root.beginIndex = index
            floorModel.clearAndSelected(index)
            return
        }
        root.endIndex = index
        floorModel.regionSelected(root.beginIndex, root.endIndex)
        root.beginIndex = -1
    }

    /// The keyboard goes to a row: with control it only goes there, with shift it takes what lies between along.
    function goTo(row, modifiers) {
        if (view.count === 0)
            return
        const from = Math.max(0, view.currentIndex)
        view.currentIndex = Math.max(0, Math.min(row, view.count - 1))
        if (modifiers & Qt.ShiftModifier) {
            if (root.keyboardAnchor < 0)
                root.keyboardAnchor = from
            floorModel.regionSelected(root.keyboardAnchor, view.currentIndex)
            root.beginIndex = -1
        } else {
            root.keyboardAnchor = -1
            if (!(modifiers & Qt.ControlModifier))
                root.plainClick(view.currentIndex)
        }
    }

    function isSelected(row) {
        const index = floorModel.index(row, 0)
        return index.valid && floorModel.data(index, 256).isSelected
    }

    /// A move fills the list anew; it stays where it is, and the keyboard follows the row.
    function move(step) {
        const place = view.contentY
        const row = view.currentIndex
        if (step < 0)
            floorMatchedCtrl.moveUpCurrentModel()
        else
            floorMatchedCtrl.movedownCurrentModel()
        view.forceLayout()
        view.contentY = place
        view.currentIndex = row >= 0 && !root.isSelected(row) && root.isSelected(row + step) ? row + step : row
    }

    function remove() {
        floorMatchedCtrl.removeSelectedModel()
        root.keyboardAnchor = -1
        view.currentIndex = Math.min(view.currentIndex, view.count - 1)
    }

    function askName(isNew) {
        floorNameDlg.isAddFloor = isNew
        floorNameDlg.open()
    }

    /// True when the key meant something.
    function press(key, modifiers) {
        const page = Math.max(1, Math.floor(view.height / 40) - 1)
        const rows = { [Qt.Key_Up]: view.currentIndex - 1, [Qt.Key_Down]: view.currentIndex + 1,
                       [Qt.Key_PageUp]: view.currentIndex - page, [Qt.Key_PageDown]: view.currentIndex + page,
                       [Qt.Key_Home]: 0, [Qt.Key_End]: view.count - 1 }
        if (modifiers & Qt.AltModifier && (key === Qt.Key_Up || key === Qt.Key_Down))
            root.move(key === Qt.Key_Up ? -1 : 1)
        else if (rows[key] !== undefined)
            root.goTo(rows[key], modifiers)
        else if (key === Qt.Key_Space)
            modifiers & Qt.ControlModifier ? root.controlClick(view.currentIndex) : root.plainClick(view.currentIndex)
        else if (key === Qt.Key_F2)
            root.askName(false)
        else if (key === Qt.Key_Delete)
            root.remove()
        else
            return false
        return true
    }

    Rectangle {
        anchors.fill: parent
        color: EConfig.eDialogBackground
    }

    FloorHead {
        id: head

        width: parent.width
        text: qsTr("楼层")

        Row {
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter

            FloorBtn {
                objectName: "floorUpBtn"
                picture: "pop_bt_ic_up"
                tipText: qsTr("上移")
                onClick: root.move(-1)
            }

            FloorBtn {
                objectName: "floorDownBtn"
                picture: "pop_bt_ic_down"
                tipText: qsTr("下移")
                onClick: root.move(1)
            }

            FloorBtn {
                objectName: "floorAddBtn"
                picture: "pop_bt_ic_add"
                tipText: qsTr("添加楼层")
                onClick: root.askName(true)
            }

            FloorBtn {
                objectName: "floorEditBtn"
                img: "qrc:/images/tab_bt_ic_edit.png"
                hoveredImg: img
                selectedImg: img
                disabledImg: img
                tipText: qsTr("编辑")
                onClick: root.askName(false)
            }

            FloorBtn {
                objectName: "floorDeleteBtn"
                picture: "tab_bt_ic_del"
                disabledImg: "qrc:/images/tab_bt_ic_del_disable.png"
                tipText: qsTr("删除")
                onClick: root.remove()
            }
        }
    }

    EScrollView {
        x: 15
        anchors.top: head.bottom
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: 10
        width: parent.width - 25
        barOffset: 10
        focus: true

        ListView {
            id: view

            /// The keyboard was used last, and not the mouse.
            property bool isKeyboardUsed: false

            objectName: "floorList"
            clip: true
            focus: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            currentIndex: -1
            model: floorModel
            onActiveFocusChanged: view.isKeyboardUsed = true
            Keys.onPressed: {
                view.isKeyboardUsed = true
                event.accepted = root.press(event.key, event.modifiers)
            }

            Accessible.role: Accessible.List
            Accessible.name: qsTr("楼层")
            Accessible.description: view.currentItem !== null ? view.currentItem.Accessible.name : ""

            delegate: FloorRow {
                readonly property var floor: model.listData

                objectName: "floor_" + index
                width: view.width
                text: floor ? floor.floorName : ""
                isLit: floor ? floor.isSelected : false
                hasKeyboard: ListView.isCurrentItem && view.activeFocus && view.isKeyboardUsed
                onClicked: root.click(index, modifiers)
            }
        }
    }

    EText {
        objectName: "noFloorText"
        anchors.centerIn: parent
        visible: view.count === 0
        color: EConfig.eQuietText
        text: qsTr("还没有楼层")
    }

    EFloorNameDialog {
        id: floorNameDlg

        parent: root
    }
}
