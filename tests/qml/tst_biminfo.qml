// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import CKYVConvertState 1.0
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/qmls/InfoCard"

/// The list of a building's models on the info card.
HomeTest {
    id: home

    Component {
        id: modelComponent

        KYVConvertState {}
    }

    EBIMInfo {
        id: list

        x: 900
        width: 360
        visible: false
        onFloorsRequested: home.called("floorsRequested")
    }

    EBusyIndicator {
        id: busy

        visible: false
    }

    TestCase {
        name: "biminfo"
        when: windowShown

        readonly property var uids: ["m1", "m2", "m3", "m4"]

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            mouseMove(home, 10, 850)
            list.visible = true
            // Rows of an earlier list are there until the list is laid out anew.
            tryRows([])
            bimMgr.projList = [
                model("m1", "别墅", KYVConvertState.ConvertFinished),
                model("m2", "Tower", KYVConvertState.Waiting),
                model("m3", "tower base", KYVConvertState.Converting),
                model("m4", "车库", KYVConvertState.ConvertFailed, true)
            ]
            tryRows(uids)
            home.takeCalls()
        }

        function cleanup() {
            list.visible = true
            part("bimSearch").text = ""
            list.visible = false
            busy.visible = false
            compare(screens.takeWarnings(), [])
        }

        function model(uid, name, state, isLevelModel) {
            return modelComponent.createObject(home, { uid: uid, name: name, convertState: state,
                                                       isLevelModel: isLevelModel === true })
        }

        function part(name) {
            return home.findShown(name)
        }

        function inRow(uid, name) {
            return home.find(part("bimRow_" + uid), name)
        }

        function select(uid) {
            mouseClick(part("bimRow_" + uid))
            compare(list.selectedGuid, uid)
        }

        function tryRows(wanted) {
            tryVerify(function() {
                return String(uids.filter(function(uid) { return part("bimRow_" + uid) !== null })) === String(wanted)
            })
        }

        // Looks.

        function test_theTitleBar() {
            const title = part("bimTitle")
            compare(title.text, "KYV文件列表")
            compare(title.mapToItem(list, 0, 0).x, 15)
            compare(title.parent.height, 31)
            compare(list.height, 320)
        }

        function test_buttonsStandAtTheRightInTheirOrder() {
            const names = ["bimFloorsBtn", "bimFbxBtn", "bimDwgBtn", "bimAddBtn", "bimUpdateBtn", "bimDeleteBtn"]
            const right = 360 - 15
            names.forEach(function(name, index) {
                compare(part(name).width, 28)
                compare(part(name).height, 20)
                compare(part(name).mapToItem(list, 0, 0).x, right - 28 * (names.length - index))
            })
        }

        function test_tipsAndPictures_data() {
            return [
                { tag: "bimFloorsBtn", tip: "楼层管理", picture: "tab_bt_ic_floors" },
                { tag: "bimFbxBtn", tip: "添加FBX文件", picture: "tab_bt_ic_fbx" },
                { tag: "bimDwgBtn", tip: "添加DWG文件", picture: "tab_bt_ic_dwg" },
                { tag: "bimAddBtn", tip: "添加BIM工程", picture: "pop_bt_ic_add" },
                { tag: "bimUpdateBtn", tip: "更新BIM工程", picture: "ic_update", disabled: true },
                { tag: "bimDeleteBtn", tip: "删除BIM工程", picture: "tab_bt_ic_del", disabled: true }
            ]
        }

        function test_tipsAndPictures(row) {
            const button = part(row.tag)
            compare(button.tipText, row.tip)
            compare(button.img, "qrc:/images/" + row.picture + ".png")
            compare(button.hoveredImg, "qrc:/images/" + row.picture + "_hover.png")
            compare(button.selectedImg, "qrc:/images/" + row.picture + "_selected.png")
            if (row.disabled)
                compare(button.disabledImg, "qrc:/images/" + row.picture + "_disable.png")
        }

        function test_theSearchStandsBelowTheTitle() {
            const box = part("bimSearch")
            compare(box.mapToItem(list, 0, 0), Qt.point(10, 41))
            compare(box.width, 340)
            compare(box.height, 26)
        }

        function test_aRowShowsItsModel() {
            compare(part("bimRow_m1").height, 40)
            compare(inRow("m1", "bimName").text, "别墅")
            compare(inRow("m1", "bimIcon").source, "qrc:/images/bar_ic_default.png")
            compare(inRow("m1", "bimIcon").mapToItem(part("bimRow_m1"), 0, 0).x, 10)
            compare(inRow("m4", "bimIcon").source, "qrc:/images/pop_ic_xiazailiebiao.png")
        }

        function test_aRowShowsTheStateOfItsConversion_data() {
            return [
                { tag: "m1", shown: "" },
                { tag: "m2", shown: "bimWaiting" },
                { tag: "m3", shown: "bimConverting" },
                { tag: "m4", shown: "bimFailed" }
            ]
        }

        function test_aRowShowsTheStateOfItsConversion(row) {
            for (const name of ["bimWaiting", "bimConverting", "bimFailed"])
                compare(inRow(row.tag, name) !== null, name === row.shown, name)
        }

        function test_picturesOfTheStates() {
            compare(inRow("m2", "bimWaiting").source, "qrc:/images/pop_bt_ic_muxing.png")
            compare(inRow("m4", "bimFailed").source, "qrc:/images/state_ic_unmatched.png")
            const indicator = inRow("m3", "bimConverting")
            compare(indicator.width, 40)
            compare(indicator.height, 40)
            compare(indicator.busyColor, "#636363")
            compare(indicator.busyCount, 5)
            compare(indicator.busyRadius, 3)
        }

        function test_whatWaitsFadesOutAndIn() {
            const picture = inRow("m2", "bimWaiting")
            tryVerify(function() { return picture.opacity < 0.5 })
            tryVerify(function() { return picture.opacity > 0.5 })
        }

        function test_aRowFollowsItsModel() {
            const entry = bimMgr.projList[1]
            entry.convertState = KYVConvertState.Converting
            tryVerify(function() { return inRow("m2", "bimConverting") !== null })
            compare(inRow("m2", "bimWaiting"), null)
            entry.name = "new"
            compare(inRow("m2", "bimName").text, "new")
        }

        function test_aRowIsColouredByPointerAndSelection() {
            compare(part("bimRow_m1").color, "#00000000")
            // Over the name, which shows a tip of its own. The row has just been laid out, so the pointer moves twice.
            mouseMove(inRow("m1", "bimName"), 20, 20)
            wait(50)
            mouseMove(inRow("m1", "bimName"), 40, 20)
            tryVerify(function() { return Qt.colorEqual(part("bimRow_m1").color, EConfig.eTreeSelected) })
            select("m1")
            compare(part("bimRow_m1").color, EConfig.eTreeHover)
        }

        function test_busyDotsGoRound() {
            busy.visible = true
            const ring = home.find(busy, "busyRing")
            tryVerify(function() { return ring.rotation > 0 })
            verify(home.find(busy, "busyDot4") !== null)
            compare(home.find(busy, "busyDot5"), null)
        }

        // What comes into view.

        function test_comingIntoViewReadsTheProjectsModels() {
            list.visible = false
            compare(home.takeCalls(), [])
            list.visible = true
            compare(home.takeCalls(), ["bimMgr.syncProjList(shown)"])
        }

        function test_aNewListIsShown() {
            bimMgr.projList = [model("m2", "Tower", KYVConvertState.ConvertFinished)]
            tryRows(["m2"])
        }

        function test_anEmptyListSaysSo() {
            bimMgr.projList = []
            tryVerify(function() { return part("bimEmpty") !== null })
            compare(part("bimEmpty").text, "还没有模型")
        }

        // Selection.

        function test_aClickSelects() {
            select("m2")
            compare(part("bimList").currentIndex, 1)
        }

        function test_goingOutOfViewDropsTheSelection() {
            select("m1")
            list.visible = false
            compare(list.selectedGuid, "")
        }

        function test_noCurrentRowMeansNoSelection() {
            select("m1")
            part("bimList").currentIndex = -1
            compare(list.selectedGuid, "")
        }

        function test_aNewListDropsTheSelection() {
            select("m1")
            bimMgr.projList = [model("m1", "别墅", KYVConvertState.ConvertFinished)]
            tryCompare(list, "selectedGuid", "")
        }

        // Search.

        function test_theSearchLeavesWhatHoldsTheText() {
            part("bimSearch").text = "TOWER"
            tryRows(["m2", "m3"])
            part("bimSearch").text = "nothing"
            tryRows([])
            compare(part("bimEmpty").text, "没有符合的模型")
        }

        function test_theSearchDropsTheSelectionAndWithItTheActions() {
            bimMgr.updatable = uids
            select("m1")
            verify(part("bimUpdateBtn").enabled)
            part("bimSearch").text = "别"
            compare(list.selectedGuid, "")
            verify(!part("bimUpdateBtn").enabled)
            mouseClick(part("bimDeleteBtn"))
            compare(home.takeCalls(), [])
        }

        function test_aRowThatTheSearchLeavesIsSelectedAsItself() {
            part("bimSearch").text = "tower"
            tryRows(["m2", "m3"])
            select("m3")
            compare(part("bimList").currentIndex, 1)
        }

        // Adding.

        function test_addingAsksForAFile_data() {
            return [
                { tag: "bimFbxBtn", title: "请选择FBX文件", filter: "FBX(*.fbx)",
                  calls: ["bimMgr.addFBXProj(/m/a)", "converModeDialog.close()"] },
                { tag: "bimDwgBtn", title: "请选择DWG文件", filter: "DWG(*.dwg)",
                  calls: ["bimMgr.addDwgProj(/m/a)", "converModeDialog.close()"] },
                { tag: "bimAddBtn", title: "请选择KYV文件", filter: "KYV(*.kyv)",
                  calls: ["bimMgr.add(shown,/m/a,true,false)"] },
                { tag: "bimUpdateBtn", title: "请选择KYV文件", filter: "KYV(*.kyv)",
                  calls: ["bimMgr.update(shown,/m/a,m1,true,false)"] }
            ]
        }

        function test_addingAsksForAFile(row) {
            bimMgr.updatable = uids
            select("m1")
            mouseClick(part(row.tag))
            compare(home.takeCalls(), ["globalFileDialog.reset()", "globalFileDialog.open()"])
            compare(globalFileDialog.title, row.title)
            compare(globalFileDialog.nameFilters, [row.filter])
            compare(list.selectedGuid, "m1")
            globalFileDialog.accept("/m/a")
            compare(home.takeCalls(), row.calls)
            compare(list.selectedGuid, "")
            compare(part("bimList").currentIndex, -1)
        }

        // Replacing.

        function test_withoutASelectionNothingIsReplaced() {
            bimMgr.updatable = uids
            verify(!part("bimUpdateBtn").enabled)
            list.replaceModel()
            compare(home.takeCalls(), [])
        }

        function test_onlyWhatMayBeReplacedIs() {
            bimMgr.updatable = ["m1"]
            select("m1")
            verify(part("bimUpdateBtn").enabled)
            compare(part("bimUpdateBtn").currentImg, "qrc:/images/ic_update.png")
            select("m3")
            verify(!part("bimUpdateBtn").enabled)
            compare(part("bimUpdateBtn").currentImg, "qrc:/images/ic_update_disable.png")
            mouseClick(part("bimUpdateBtn"))
            compare(home.takeCalls(), [])
        }

        function test_theEndOfAConversionIsNoticed() {
            bimMgr.isConverting = true
            select("m3")
            verify(!part("bimUpdateBtn").enabled)
            bimMgr.updatable = ["m3"]
            bimMgr.isConverting = false
            verify(part("bimUpdateBtn").enabled)
        }

        // Deleting.

        function test_theSelectedModelIsDeleted() {
            select("m4")
            mouseClick(part("bimDeleteBtn"))
            compare(home.takeCalls(), ["bimMgr.remove(shown,m4)"])
            compare(list.selectedGuid, "")
        }

        function test_withoutASelectionNothingIsDeleted() {
            verify(part("bimDeleteBtn").enabled)
            mouseClick(part("bimDeleteBtn"))
            compare(home.takeCalls(), [])
        }

        function test_nothingIsDeletedDuringAConversion() {
            select("m1")
            bimMgr.isConverting = true
            verify(!part("bimDeleteBtn").enabled)
            compare(part("bimDeleteBtn").currentImg, "qrc:/images/tab_bt_ic_del_disable.png")
            mouseClick(part("bimDeleteBtn"))
            compare(home.takeCalls(), [])
        }

        // Floors.

        function test_theFloorsAreAskedFor() {
            mouseClick(part("bimFloorsBtn"))
            compare(home.takeCalls(), ["floorsRequested()"])
        }

        function test_withoutAReadListThereAreNoFloors() {
            bimMgr.currentBimGuid = "other"
            compare(part("bimFloorsBtn"), null)
        }

        // Keyboard and speech.

        function test_arrowsMoveTheSelection() {
            part("bimList").forceActiveFocus()
            keyClick(Qt.Key_Down)
            compare(list.selectedGuid, "m1")
            keyClick(Qt.Key_Down)
            compare(list.selectedGuid, "m2")
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Up)
            compare(list.selectedGuid, "m1")
        }

        function test_buttonsArePressedByTheKeyboard() {
            part("bimAddBtn").forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Space)
            compare(home.takeCalls(), ["globalFileDialog.reset()", "globalFileDialog.open()"])
        }

        function test_aRowSpeaks() {
            const spoken = screens.spoken(part("bimRow_m3"))
            compare(spoken.name, "tower base")
            compare(spoken.description, "转换中")
            screens.pressBySpeech(part("bimRow_m1"))
            compare(list.selectedGuid, "m1")
        }
    }
}
