// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15

/// The floor dialog by keyboard, and to a screen reader.
HomeTest {
    id: home

    FloorCase {
        name: "floorkeyboard"
        home: home

        function test_arrowsMakeARowCurrent() {
            press(Qt.Key_Down)
            compare(floors.rows(), ["一层*", "二层", "三层"])
            press(Qt.Key_Down)
            compare(floors.rows(), ["一层", "二层*", "三层"])
            press(Qt.Key_Up)
            press(Qt.Key_Up)
            compare(floors.rows(), ["一层*", "二层", "三层"])
            press(Qt.Key_End)
            compare(floors.rows(), ["一层", "二层", "三层*"])
            press(Qt.Key_Home)
            compare(floors.matched(), ["a 1F", "a 2F", "b 1F"])
        }

        function test_pagesGoByWhatIsSeen() {
            const many = []
            for (let i = 0; i < 50; ++i)
                many.push({ name: "F" + i, models: {} })
            beginAnew(many, [])
            press(Qt.Key_Home)
            press(Qt.Key_PageDown)
            const page = list().currentIndex
            verify(page > 5 && page < 20, page)
            compare(floors.rows()[page], "F" + page + "*")
            press(Qt.Key_PageUp)
            compare(list().currentIndex, 0)
        }

        function test_arrowsWithShiftSelectARegion() {
            press(Qt.Key_Down)
            press(Qt.Key_Down, Qt.ShiftModifier)
            compare(floors.rows(), ["一层*", "二层*", "三层"])
            press(Qt.Key_Down, Qt.ShiftModifier)
            compare(floors.rows(), ["一层*", "二层*", "三层*"])
            press(Qt.Key_Up, Qt.ShiftModifier)
            compare(floors.rows(), ["一层*", "二层*", "三层"])
        }

        function test_controlGoesWithoutSelecting() {
            press(Qt.Key_Down)
            press(Qt.Key_Down, Qt.ControlModifier)
            press(Qt.Key_Down, Qt.ControlModifier)
            compare(floors.rows(), ["一层*", "二层", "三层"])
            press(Qt.Key_Space, Qt.ControlModifier)
            compare(floors.rows(), ["一层*", "二层", "三层*"])
            press(Qt.Key_Space, Qt.ControlModifier)
            compare(floors.rows(), ["一层*", "二层", "三层"])
            press(Qt.Key_Space)
            compare(floors.rows(), ["一层", "二层", "三层*"])
        }

        function test_altMovesTheRowAndTheKeyboardFollows() {
            press(Qt.Key_Down)
            press(Qt.Key_Down, Qt.AltModifier)
            compare(floors.rows(), ["二层", "一层*", "三层"])
            compare(list().currentIndex, 1)
            press(Qt.Key_Up, Qt.AltModifier)
            compare(floors.rows(), ["一层*", "二层", "三层"])
            compare(list().currentIndex, 0)
        }

        function test_deleteRemovesTheSelectedRows() {
            press(Qt.Key_Down)
            press(Qt.Key_Down, Qt.ShiftModifier)
            press(Qt.Key_Delete)
            compare(floors.rows(), ["三层"])
            press(Qt.Key_Down)
            compare(floors.rows(), ["三层*"])
        }

        function test_f2Renames() {
            press(Qt.Key_Down)
            press(Qt.Key_F2)
            tryVerify(function() { return part("floorNameInput") !== null && part("floorNameInput").activeFocus })
            verify(home.findText("修改楼层") !== null)
            type("首层")
            press(Qt.Key_Return)
            tryNoName()
            compare(floors.rows(), ["首层*", "二层", "三层"])
            tryVerify(function() { return list().activeFocus })
        }

        function test_escapeLeavesTheNameDialogAlone() {
            askName("floorAddBtn")
            press(Qt.Key_Escape)
            tryNoName()
            verify(dialog.opened)
        }

        function test_escapeLeavesTheDialogWithoutStoring() {
            press(Qt.Key_Down)
            press(Qt.Key_Delete)
            press(Qt.Key_Escape)
            tryCompare(dialog, "visible", false)
            compare(floors.stored().length, 3)
        }

        function test_enterMatchesAndFrees() {
            clickFloor(1)
            const view = partOf("floorUnMatched", "floorItems")
            view.forceActiveFocus(Qt.TabFocusReason)
            compare(view.currentIndex, 0)
            press(Qt.Key_Down)
            press(Qt.Key_Down)
            press(Qt.Key_Down)
            press(Qt.Key_Return)
            compare(floors.matched(), ["a 4F"])
            compare(view.currentIndex, 3)
            press(Qt.Key_Enter)
            compare(floors.matched(), [])
        }

        function test_enterInTheMiddleFreesOneAfterTheOther() {
            clickFloor(0)
            const view = partOf("floorMatched", "floorItems")
            view.forceActiveFocus(Qt.TabFocusReason)
            press(Qt.Key_Return)
            compare(floors.matched(), ["a 2F", "b 1F"])
            compare(view.currentIndex, 0)
            press(Qt.Key_Return)
            press(Qt.Key_Return)
            compare(floors.matched(), [])
            press(Qt.Key_Return)
            compare(floors.matched(), [])
        }

        function test_tabReachesAllThreeLists() {
            const reached = []
            for (let i = 0; i < 20; ++i) {
                press(Qt.Key_Tab)
                for (const column of ["floorAll", "floorMatched", "floorUnMatched"]) {
                    const name = column === "floorAll" ? "floorList" : "floorItems"
                    if (partOf(column, name).activeFocus && reached.indexOf(column) < 0)
                        reached.push(column)
                }
            }
            compare(reached.sort(), ["floorAll", "floorMatched", "floorUnMatched"])
        }

        function test_keysInAnEmptyListDoNothing() {
            beginAnew([], [])
            for (const key of [Qt.Key_Down, Qt.Key_Home, Qt.Key_Space, Qt.Key_Delete])
                press(key)
            press(Qt.Key_Down, Qt.ShiftModifier)
            press(Qt.Key_Up, Qt.AltModifier)
            compare(floors.rows(), [])
        }

        function test_frameIsShownForTheKeyboardOnly() {
            clickFloor(0)
            compare(waitFor("floorAll", "floor_0").hasKeyboard, false)
            press(Qt.Key_Down)
            compare(waitFor("floorAll", "floor_1").hasKeyboard, true)
        }

        function test_rowsAreSpoken() {
            clickFloor(0)
            compare(screens.spoken(waitFor("floorAll", "floor_1")).name, "二层")
            compare(screens.spoken(waitFor("floorMatched", "item_0")).name, "1F   塔楼")
            compare(screens.spoken(waitFor("floorUnMatched", "item_0")).name, "1F，已匹配")
            compare(screens.spoken(waitFor("floorUnMatched", "item_3")).name, "4F")
            screens.pressBySpeech(waitFor("floorAll", "floor_1"))
            compare(floors.rows(), ["一层", "二层*", "三层"])
        }

        function test_partsAreSpoken_data() {
            return [
                { tag: "floorUpBtn", name: "上移" },
                { tag: "floorDownBtn", name: "下移" },
                { tag: "floorAddBtn", name: "添加楼层" },
                { tag: "floorEditBtn", name: "编辑" },
                { tag: "floorDeleteBtn", name: "删除" },
                { tag: "floorOkBtn", name: "确定" },
                { tag: "floorCancelBtn", name: "取消" },
                { tag: "floorResetBtn", name: "重置" },
                { tag: "floorList", name: "楼层" },
                { tag: "floorBox", name: "塔楼" }
            ]
        }

        function test_partsAreSpoken(row) {
            compare(screens.spoken(part(row.tag)).name, row.name)
        }

        function test_currentRowIsSpokenWithItsList() {
            press(Qt.Key_Down)
            press(Qt.Key_Down)
            compare(screens.spoken(list()).description, "二层")
        }
    }
}
