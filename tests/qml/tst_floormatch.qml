// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15

/// The floor dialog with the mouse.
HomeTest {
    id: home

    property QtObject editConext: QtObject {
        property bool isMainProject: false
    }

    FloorCase {
        name: "floormatch"
        home: home

        function test_dialogHasItsSizeAndTitle() {
            compare(dialog.width, 840)
            compare(dialog.height, 586)
            compare(part("dialogTitle").text, "楼层管理")
            for (const column of ["floorAll", "floorMatched", "floorUnMatched"])
                fuzzyCompare(part(column).width, 836 / 3, 0.01)
            compare(part("floorAll").height, 586 - 34 - 40 - 4)
        }

        function test_storedFloorsAreShown() {
            compare(floors.rows(), ["一层", "二层", "三层"])
            compare(home.find(waitFor("floorAll", "floor_1"), "rowText").text, "二层")
            compare(home.find(waitFor("floorUnMatched", "item_0"), "rowText").text, "1F")
            compare([0, 1, 2, 3].map(isMarked), [true, true, true, false])
        }

        function test_emptyProjectSaysSo() {
            beginAnew([], [])
            compare(part("noFloorText").text, "还没有楼层")
            compare(part("floorBox").count, 0)
        }

        // The floors of the project.

        function test_plainClickMakesARowCurrent() {
            clickFloor(0)
            compare(floors.rows(), ["一层*", "二层", "三层"])
            compare(floors.matched(), ["a 1F", "a 2F", "b 1F"])
            compare(home.find(waitFor("floorMatched", "item_1"), "rowText").text, "2F   塔楼")
            clickFloor(2)
            compare(floors.rows(), ["一层", "二层", "三层*"])
            tryVerify(function() { return partOf("floorMatched", "item_1") === null })
        }

        function test_controlClickChangesOneAndEmptiesTheMiddle() {
            clickFloor(0)
            clickFloor(2, Qt.ControlModifier)
            compare(floors.rows(), ["一层*", "二层", "三层*"])
            tryVerify(function() { return partOf("floorMatched", "item_0") === null })
            clickFloor(0, Qt.ControlModifier)
            compare(floors.rows(), ["一层", "二层", "三层*"])
        }

        function test_shiftClickSelectsFromThePlainClick() {
            clickFloor(2)
            clickFloor(0, Qt.ShiftModifier)
            compare(floors.rows(), ["一层*", "二层*", "三层*"])
            compare(floors.matched(), [])
        }

        function test_shiftClickAfterARegionStartsAnother() {
            clickFloor(0)
            clickFloor(1, Qt.ShiftModifier)
            compare(part("floorAll").beginIndex, -1)
            clickFloor(2, Qt.ShiftModifier)
            compare(floors.rows(), ["一层", "二层", "三层*"])
            compare(floors.matched(), ["a 3F"])
            clickFloor(1, Qt.ShiftModifier)
            compare(floors.rows(), ["一层", "二层*", "三层*"])
        }

        function test_shiftClickAfterAControlClickStartsAnother() {
            clickFloor(0)
            clickFloor(1, Qt.ControlModifier)
            clickFloor(2, Qt.ShiftModifier)
            compare(floors.rows(), ["一层", "二层", "三层*"])
            compare(part("floorAll").beginIndex, 2)
        }

        function test_otherMouseButtonsDoNotCount() {
            clickFloor(0)
            mouseClick(waitFor("floorAll", "floor_1"), 60, 20, Qt.RightButton)
            compare(floors.rows(), ["一层*", "二层", "三层"])
        }

        function test_selectedRowIsLit() {
            clickFloor(1)
            compare(home.find(waitFor("floorAll", "floor_1"), "band").color, "#2a2a2a")
            compare(home.find(waitFor("floorAll", "floor_1"), "rowText").color, "#ffffff")
            verify(home.find(waitFor("floorAll", "floor_1"), "litBar") !== null)
            mouseMove(home, 1300, 850)
            compare(home.find(waitFor("floorAll", "floor_0"), "rowText").color, "#dddddd")
            tryVerify(function() { return home.find(waitFor("floorAll", "floor_0"), "band").color.a === 0 })
        }

        function test_floorMovesUpAndDown() {
            clickFloor(1)
            click("floorUpBtn")
            compare(floors.rows(), ["二层*", "一层", "三层"])
            click("floorUpBtn")
            compare(floors.rows(), ["二层*", "一层", "三层"])
            click("floorDownBtn")
            click("floorDownBtn")
            compare(floors.rows(), ["一层", "三层", "二层*"])
        }

        function test_moveLeavesTheListWhereItIs() {
            const many = []
            for (let i = 0; i < 200; ++i)
                many.push({ name: "F" + i, models: {} })
            beginAnew(many, [])
            list().positionViewAtIndex(120, ListView.Center)
            clickFloor(120)
            const place = list().contentY
            verify(place > 0)
            click("floorDownBtn")
            compare(floors.rows()[121], "F120*")
            compare(list().contentY, place)
            compare(list().currentIndex, 121)
        }

        function test_selectedFloorsAreDeleted() {
            clickFloor(0)
            clickFloor(2, Qt.ControlModifier)
            click("floorDeleteBtn")
            compare(floors.rows(), ["二层"])
            compare([0, 1, 2, 3].map(isMarked), [false, false, false, false])
        }

        function test_deletionWithNothingSelectedDoesNothing() {
            click("floorDeleteBtn")
            compare(floors.rows(), ["一层", "二层", "三层"])
        }

        function test_manyFloorsAreDeleted() {
            const many = []
            for (let i = 0; i < 2000; ++i)
                many.push({ name: "F" + i, models: {} })
            beginAnew(many, [])
            clickFloor(1)
            list().positionViewAtEnd()
            clickFloor(1998, Qt.ShiftModifier)
            click("floorDeleteBtn")
            compare(floors.rows(), ["F0", "F1999"])
            waitFor("floorAll", "floor_1")
        }

        // Their names.

        function test_floorIsAddedOnTop() {
            askName("floorAddBtn")
            compare(part("floorAll").parent !== null && home.findText("添加楼层") !== null, true)
            type("屋顶")
            click("floorNameOkBtn")
            tryNoName()
            compare(floors.rows(), ["屋顶", "一层", "二层", "三层"])
        }

        function test_floorIsAddedBehindTheCurrent() {
            clickFloor(1)
            askName("floorAddBtn")
            type("夹层")
            click("floorNameOkBtn")
            compare(floors.rows(), ["一层", "二层*", "夹层", "三层"])
        }

        function test_emptyNameIsRefused() {
            askName("floorAddBtn")
            click("floorNameOkBtn")
            compare(part("floorNameError").text, "楼层名不能为空")
            compare(part("floorNameError").color, "#ff0000")
            compare(floors.rows().length, 3)
        }

        function test_takenNameIsRefused() {
            askName("floorAddBtn")
            type("二层")
            click("floorNameOkBtn")
            compare(part("floorNameError").text, "楼层名重复")
            compare(floors.rows().length, 3)
        }

        function test_nameDialogOpensEmptyAndWithoutAnError() {
            askName("floorAddBtn")
            type("二层")
            click("floorNameOkBtn")
            click("floorNameCancelBtn")
            tryNoName()
            askName("floorEditBtn")
            compare(part("floorNameInput").text, "")
            compare(part("floorNameError"), null)
            verify(home.findText("修改楼层") !== null)
        }

        function test_currentFloorIsRenamed() {
            clickFloor(1)
            askName("floorEditBtn")
            type("夹层")
            click("floorNameOkBtn")
            tryNoName()
            compare(floors.rows(), ["一层", "夹层*", "三层"])
            compare(home.find(waitFor("floorAll", "floor_1"), "rowText").text, "夹层")
        }

        function test_renameWithoutACurrentFloorIsCalledATakenName() {
            askName("floorEditBtn")
            type("夹层")
            click("floorNameOkBtn")
            compare(part("floorNameError").text, "楼层名重复")
        }

        function test_nameDialogIsDragged() {
            askName("floorAddBtn")
            const title = home.findText("添加楼层")
            const before = title.mapToItem(home, 0, 0)
            mouseDrag(title, 20, 10, 30, 20)
            const after = title.mapToItem(home, 0, 0)
            verify(after.x > before.x && after.y > before.y)
        }

        // The floors of the models.

        function test_doubleClickMatchesAFloor() {
            clickFloor(1)
            doubleClick("floorUnMatched", 3)
            compare(floors.matched(), ["a 4F"])
            tryVerify(function() { return isMarked(3) })
        }

        function test_doubleClickOnAMatchedFloorTakesItFromWhicheverRowHasIt() {
            clickFloor(1)
            doubleClick("floorUnMatched", 2)
            tryVerify(function() { return !isMarked(2) })
            clickFloor(2)
            compare(floors.matched(), [])
        }

        function test_nothingIsMatchedWithoutACurrentFloor() {
            doubleClick("floorUnMatched", 3)
            verify(!isMarked(3))
            compare(floors.matched(), [])
        }

        function test_afterAControlClickFloorsCanOnlyBeFreed() {
            clickFloor(0)
            clickFloor(1, Qt.ControlModifier)
            doubleClick("floorUnMatched", 3)
            verify(!isMarked(3))
            doubleClick("floorUnMatched", 0)
            tryVerify(function() { return !isMarked(0) })
        }

        function test_doubleClickInTheMiddleFreesAFloor() {
            clickFloor(0)
            doubleClick("floorMatched", 1)
            compare(floors.matched(), ["a 1F", "b 1F"])
            tryVerify(function() { return !isMarked(1) })
        }

        function test_clickMakesARowOfTheListCurrentAlone() {
            clickFloor(0)
            mouseClick(waitFor("floorMatched", "item_2"), 60, 20)
            compare(waitFor("floorMatched", "item_2").isLit, true)
            mouseClick(waitFor("floorUnMatched", "item_1"), 60, 20)
            compare(waitFor("floorUnMatched", "item_1").isLit, true)
            compare(floors.matched(), ["a 1F", "a 2F", "b 1F"])
        }

        function test_matchingLeavesTheListWhereItIs() {
            const names = []
            for (let i = 0; i < 100; ++i)
                names.push("F" + i)
            beginAnew(stored, [{ guid: "a", name: "塔楼", floors: names }])
            clickFloor(1)
            const view = partOf("floorUnMatched", "floorItems")
            view.positionViewAtIndex(60, ListView.Center)
            const place = view.contentY
            verify(place > 0)
            doubleClick("floorUnMatched", 60)
            compare(floors.matched(), ["a F60"])
            compare(view.contentY, place)
            tryVerify(function() { return isMarked(60) })
        }

        function test_boxChoosesTheModel() {
            compare(part("floorBox").displayText, "塔楼")
            click("floorBox")
            tryVerify(function() { return part("model_1") !== null })
            mouseClick(part("model_1"))
            compare(part("floorBox").displayText, "裙房")
            tryVerify(function() { return home.find(waitFor("floorUnMatched", "item_0"), "rowText").text === "B1" })
            verify(!isMarked(0))
            verify(isMarked(1))
        }

        function test_resetLeavesTheBoxAsItIs() {
            click("floorBox")
            tryVerify(function() { return part("model_1") !== null })
            mouseClick(part("model_1"))
            click("floorResetBtn")
            compare(floors.rows(), ["首层"])
            compare(part("floorBox").displayText, "裙房")
            tryVerify(function() { return isMarked(0) && !isMarked(1) })
            verify(dialog.opened)
        }

        // The end.

        function test_okStoresWithoutEmptyFloors() {
            clickFloor(2)
            doubleClick("floorUnMatched", 3)
            click("floorOkBtn")
            tryCompare(dialog, "visible", false)
            compare(floors.stored(), ["一层 a:1F,2F b:1F", "三层 a:3F,4F"])
        }

        function test_emptyFloorsAreKeptWhenTheHostLetsChoose() {
            compare(part("clearEmptyBox"), null)
            editConext.isMainProject = true
            tryVerify(function() { return part("clearEmptyBox") !== null })
            verify(home.findText("删除空楼层") !== null)
            verify(part("clearEmptyBox").checked)
            click("clearEmptyBox")
            click("floorOkBtn")
            editConext.isMainProject = false
            compare(floors.stored(), ["一层 a:1F,2F b:1F", "二层", "三层 a:3F"])
        }

        function test_cancelledEditsAreGoneAtTheNextOpening_data() {
            return [{ tag: "floorCancelBtn" }, { tag: "dialogCloseBtn" }]
        }

        function test_cancelledEditsAreGoneAtTheNextOpening(row) {
            clickFloor(0)
            click("floorDeleteBtn")
            compare(floors.rows(), ["二层", "三层"])
            click(row.tag)
            tryCompare(dialog, "visible", false)
            compare(floors.rows(), ["二层", "三层"])
            open()
            compare(floors.rows(), ["一层", "二层", "三层"])
            compare(floors.stored().length, 3)
        }

        function test_storedEditsAreThereAtTheNextOpening() {
            clickFloor(0)
            click("floorDeleteBtn")
            click("floorOkBtn")
            tryCompare(dialog, "visible", false)
            open()
            compare(floors.rows(), ["三层"])
        }
    }
}
