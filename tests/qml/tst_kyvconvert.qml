// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls/KYVConvert"

HomeTest {
    id: home

    property var kyvDialog: null

    Component {
        id: dialogComponent

        KyvConvert {
            parent: home
            onClosed: serviceConvertMgr.clearCurBimProj()
        }
    }

    TestCase {
        name: "kyvconvert"
        when: windowShown

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            mouseMove(home, 1300, 850)
            home.serviceConvertModel = screens.makeModels([
                { guid: "m1", name: "别墅" },
                { guid: "m2", name: "塔楼" },
                { guid: "j1", name: "厂房", state: 6, sort: 0, process: 0.25 },
                { guid: "j2", name: "车库", state: 5, sort: 4 },
                { guid: "t1", name: "围墙", state: 2, sort: 0 }
            ])
            home.kyvDialog = createTemporaryObject(dialogComponent, home)
            kyvDialog.open()
            waitForPage("转化BIM工程")
            home.takeCalls()
        }

        function cleanup() {
            if (kyvDialog.visible) {
                kyvDialog.close()
                tryCompare(kyvDialog, "visible", false)
            }
            home.kyvDialog = null
            compare(screens.takeWarnings(), [])
        }

        function part(name) {
            return home.findShown(name)
        }

        function waitForPage(title) {
            tryVerify(function() {
                return kyvDialog.opened && part("dialogTitle") !== null && part("dialogTitle").text === title
            })
            tryVerify(function() { return part("kyvPage").status === Loader.Ready })
        }

        function click(name) {
            const item = part(name)
            verify(item !== null, name)
            mouseClick(item)
        }

        function rowOf(guid) {
            let row = null
            tryVerify(function() { return (row = part("kyvRow_" + guid)) !== null })
            return row
        }

        function inRow(guid, name) {
            return home.find(rowOf(guid), name)
        }

        function shownRows(prefix, guids) {
            return guids.filter(function(guid) { return part(prefix + guid) !== null })
        }

        /// Rows that a search takes away are there until the list is laid out anew.
        function tryRows(prefix, all, wanted) {
            tryVerify(function() { return String(shownRows(prefix, all)) === String(wanted) },
                      5000, String(shownRows(prefix, all)))
        }

        function openOptions() {
            kyvDialog.showOptionSelecter("/models/house.kyv")
            waitForPage("选择转换模式")
        }

        function openSelecter() {
            openOptions()
            click("okBtn")
            waitForPage("导入KYV")
        }

        function openLister() {
            openSelecter()
            click("updateBtn")
            click("okBtn")
            waitForPage("选择要更新的BIM工程")
        }

        // The dialog.

        function test_pagesHaveTheirHeights_data() {
            return [
                { tag: "showInfo", height: 444, title: "转化BIM工程" },
                { tag: "showFailedInfo", height: 444, title: "转换失败的模型" },
                { tag: "showSelecter", height: 240, title: "导入KYV" },
                { tag: "showList", height: 444, title: "选择要更新的BIM工程" }
            ]
        }

        function test_pagesHaveTheirHeights(row) {
            kyvDialog[row.tag]()
            waitForPage(row.title)
            compare(kyvDialog.height, row.height)
            compare(kyvDialog.width, 360)
        }

        function test_pageOfTheOptionsRemembersTheFile() {
            openOptions()
            compare(kyvDialog.height, 260)
            compare(kyvDialog.strFilePath, "/models/house.kyv")
        }

        function test_closingOnAnyPageIsTold_data() {
            return [{ tag: "showInfo" }, { tag: "showFailedInfo" }, { tag: "showSelecter" }, { tag: "showList" }]
        }

        function test_closingOnAnyPageIsTold(row) {
            kyvDialog[row.tag]()
            keyClick(Qt.Key_Escape)
            tryCompare(kyvDialog, "visible", false)
            compare(home.takeCalls(), ["serviceConvertMgr.clearCurBimProj()"])
        }

        function test_dialogOpensWithTheListAgain() {
            kyvDialog.showFailedInfo()
            kyvDialog.close()
            tryCompare(kyvDialog, "visible", false)
            kyvDialog.open()
            waitForPage("转化BIM工程")
            compare(kyvDialog.height, 444)
        }

        function test_crossClosesOrGoesBack_data() {
            return [
                { tag: "showInfo", title: "转化BIM工程", back: false },
                { tag: "showSelecter", title: "导入KYV", back: false },
                { tag: "showFailedInfo", title: "转换失败的模型", back: true },
                { tag: "showList", title: "选择要更新的BIM工程", back: true }
            ]
        }

        function test_crossClosesOrGoesBack(row) {
            kyvDialog[row.tag]()
            waitForPage(row.title)
            click("dialogCloseBtn")
            if (row.back)
                waitForPage("转化BIM工程")
            else
                tryCompare(kyvDialog, "visible", false)
        }

        function test_crossOfTheOptionsCloses() {
            openOptions()
            click("dialogCloseBtn")
            tryCompare(kyvDialog, "visible", false)
        }

        // The list of models.

        function test_listShowsAllModelsInTheirOrder() {
            const guids = ["m1", "m2", "j1", "j2", "t1"]
            for (let i = 0; i < guids.length; ++i) {
                compare(rowOf(guids[i]).height, 40)
                compare(rowOf(guids[i]).y, 40 * i)
            }
            compare(inRow("j1", "kyvName").text, "厂房")
        }

        function test_progressIsShownOnlyDuringTheConversion() {
            const bar = inRow("j1", "kyvProgress")
            compare(bar.width, 0.25 * inRow("j1", "kyvName").width)
            compare(bar.height, 2)
            compare(String(bar.color), "#1473e6")
            compare(bar.y + bar.height, 38)
            for (const guid of ["m1", "j2", "t1"])
                compare(inRow(guid, "kyvProgress"), null)
        }

        function test_stateHasItsPictureAndItsTip_data() {
            return [
                { tag: "m1", image: "pop_bt_ic_prosperity", tip: "kyv转换成功" },
                { tag: "j1", image: "card_ic_transition", tip: "kyv服务器转换中" },
                { tag: "j2", image: "pop_bt_ic_translation", tip: "kyv服务器转换排队中,排在4位" },
                { tag: "t1", image: "pop_bt_ic_translation", tip: "kyv解包中" }
            ]
        }

        function test_stateHasItsPictureAndItsTip(row) {
            compare(String(inRow(row.tag, "kyvStateImage").source), "qrc:/images/" + row.image + ".png")
            compare(inRow(row.tag, "kyvState").width, 30)
            compare(inRow(row.tag, "kyvState").height, 26)
            compare(String(inRow(row.tag, "kyvState").color), "#535353")
            compare(inRow(row.tag, "kyvStateTip").delay, 300)
            compare(inRow(row.tag, "kyvStateTip").pixelSize, 14)
            mouseMove(inRow(row.tag, "kyvState"), 15, 13)
            tryVerify(function() { return home.findText(row.tip) !== null })
        }

        function test_nameHasATip() {
            mouseMove(inRow("m2", "kyvName"), 5, 10)
            tryVerify(function() { return home.findText("塔楼") !== null && inRow("m2", "kyvName") !== null })
        }

        function test_finishedModelCannotBeDeleted() {
            compare(inRow("m1", "delKyvBtn"), null)
            const box = inRow("m1", "kyvState")
            compare(box.x + box.width, rowOf("m1").width - 5)
        }

        function test_otherModelsCanBeDeleted_data() {
            return [{ tag: "j1" }, { tag: "j2" }, { tag: "t1" }]
        }

        function test_otherModelsCanBeDeleted(row) {
            const button = inRow(row.tag, "delKyvBtn")
            const box = inRow(row.tag, "kyvState")
            compare(button.width, 30)
            compare(button.height, 26)
            compare(button.x + button.width, rowOf(row.tag).width - 5)
            compare(box.x + box.width, button.x)
            compare(button.tipText, "删除kyv")
            mouseClick(button)
            compare(home.takeCalls(), ["serviceConvertMgr.delKyvModel(" + row.tag + ")"])
        }

        function test_searchNarrowsTheList_data() {
            return [
                { tag: "one", text: "车", rows: ["j2"] },
                { tag: "several", text: "房", rows: ["j1"] },
                { tag: "none", text: "zz", rows: [] },
                { tag: "blanks", text: "  ", rows: ["m1", "m2", "j1", "j2", "t1"] }
            ]
        }

        function test_searchNarrowsTheList(row) {
            rowOf("m1")
            part("kyvSearch").text = row.text
            const all = ["m1", "m2", "j1", "j2", "t1"]
            tryVerify(function() { return part("kyvList").count === row.rows.length })
            tryRows("kyvRow_", all, row.rows)
            compare(part("kyvEmpty") !== null, row.rows.length === 0)
            part("kyvSearch").text = ""
            tryVerify(function() { return part("kyvList").count === 5 })
        }

        function test_searchDoesNotLookAtTheCase() {
            screens.setModels(home.serviceConvertModel, [{ guid: "a", name: "Tower" }, { guid: "b", name: "House" }])
            part("kyvSearch").text = "tOW"
            tryVerify(function() { return part("kyvList").count === 1 })
            tryRows("kyvRow_", ["a", "b"], ["a"])
        }

        function test_searchHoldsForRowsThatCome() {
            part("kyvSearch").text = "塔"
            screens.setModels(home.serviceConvertModel, [{ guid: "a", name: "塔吊" }, { guid: "b", name: "桥" }])
            tryVerify(function() { return part("kyvList").count === 1 })
            tryRows("kyvRow_", ["a", "b"], ["a"])
        }

        function test_emptyListSaysSo() {
            screens.setModels(home.serviceConvertModel, [])
            tryVerify(function() { return part("kyvEmpty") !== null && part("kyvEmpty").text === "还没有模型" })
        }

        function test_buttonsOfTheList() {
            compare(part("failedListBtn").width, 100)
            compare(part("cancelConvertBtn").width, 100)
            click("cancelConvertBtn")
            compare(home.takeCalls(), ["serviceConvertMgr.delAllKyvModel()"])
            click("failedListBtn")
            waitForPage("转换失败的模型")
        }

        function test_addingAsksForAFile() {
            compare(part("addKyvBtn").tipText, "添加KYV")
            click("addKyvBtn")
            compare(home.takeCalls(), ["globalFileDialog.reset()", "globalFileDialog.open()"])
            compare(globalFileDialog.title, "请选择KYV文件")
            compare(globalFileDialog.nameFilters, ["KYV(*.kyv)"])
            globalFileDialog.accept("/models/a.kyv")
            waitForPage("选择转换模式")
            compare(kyvDialog.strFilePath, "/models/a.kyv")
        }

        // How to convert.

        function test_modeIsTheOneThatIsChosen_data() {
            return [{ tag: "fastBtn", type: 0 }, { tag: "balancedBtn", type: 1 }]
        }

        function test_modeIsTheOneThatIsChosen(row) {
            kyvDialog.convertType = 7
            openOptions()
            verify(part("fastBtn").checked)
            click(row.tag)
            compare(part("fastBtn").checked, row.type === 0)
            compare(part("balancedBtn").checked, row.type === 1)
            click("okBtn")
            waitForPage("导入KYV")
            compare(kyvDialog.convertType, row.type)
        }

        function test_cancelledModeDropsTheFileAndKeepsItsPath() {
            openOptions()
            click("balancedBtn")
            click("cancelBtn")
            tryCompare(kyvDialog, "visible", false)
            compare(kyvDialog.strFilePath, "/models/house.kyv")
            compare(kyvDialog.convertType, 0)
            compare(home.takeCalls(), ["serviceConvertMgr.clearCurBimProj()"])
        }

        function test_modeIsChosenWithTheKeyboard() {
            openOptions()
            tryCompare(part("fastBtn"), "activeFocus", true)
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_Space)
            verify(part("balancedBtn").checked)
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_Return)
            waitForPage("导入KYV")
            compare(kyvDialog.convertType, 1)
        }

        // New or in the place of another.

        function test_newModelIsAdded() {
            openSelecter()
            verify(part("newBtn").checked)
            click("okBtn")
            waitForPage("转化BIM工程")
            compare(home.takeCalls(), ["serviceConvertMgr.addKyvModel(/models/house.kyv,0)"])
        }

        function test_questionStandsAsItIsDrawn() {
            openSelecter()
            const question = home.findText("请选择添加方式")
            compare(String(question.color), "#f0f0f0")
            compare(question.height, 26)
            compare(part("okBtn").width, 62)
            compare(part("okBtn").height, 32)
        }

        function test_cancelledSelecterAddsNothing() {
            openSelecter()
            click("cancelBtn")
            tryCompare(kyvDialog, "visible", false)
            compare(home.takeCalls(), ["serviceConvertMgr.clearCurBimProj()"])
        }

        function test_onlyFinishedModelsCanBeReplaced() {
            openLister()
            tryVerify(function() { return part("kyvChoice_m1") !== null })
            tryRows("kyvChoice_", ["m1", "m2", "j1", "j2", "t1"], ["m1", "m2"])
            compare(part("noModelText"), null)
        }

        function test_withoutAFinishedModelTheListSaysSo() {
            screens.setModels(home.serviceConvertModel, [{ guid: "j1", name: "厂房", state: 5, sort: 1 }])
            openLister()
            tryVerify(function() { return part("noModelText") !== null })
            compare(part("kyvChoice_j1"), null)
            verify(!part("okBtn").enabled)
        }

        function test_modelIsReplacedOnceOneIsChosen_data() {
            return [{ tag: "by its name", on: "kyvName" }, { tag: "by its ring", on: "kyvRadio" }]
        }

        function test_modelIsReplacedOnceOneIsChosen(row) {
            openLister()
            verify(!part("okBtn").enabled)
            tryVerify(function() { return part("kyvChoice_m2") !== null })
            mouseClick(home.find(part("kyvChoice_m1"), row.on))
            mouseClick(home.find(part("kyvChoice_m2"), row.on))
            verify(!home.find(part("kyvChoice_m1"), "kyvRadio").checked)
            verify(home.find(part("kyvChoice_m2"), "kyvRadio").checked)
            compare(part("kyvList").currentIndex, 1)
            verify(part("okBtn").enabled)
            click("okBtn")
            waitForPage("转化BIM工程")
            compare(home.takeCalls(), ["serviceConvertMgr.updateKyvModel(/models/house.kyv,m2,0)"])
        }

        function test_chosenRingStaysChosenWhenPressedAgain() {
            openLister()
            tryVerify(function() { return part("kyvChoice_m1") !== null })
            const ring = home.find(part("kyvChoice_m1"), "kyvRadio")
            mouseClick(ring)
            mouseClick(ring)
            verify(ring.checked)
            verify(part("okBtn").enabled)
        }

        function test_searchNarrowsTheChoice() {
            openLister()
            part("kyvSearch").text = "塔"
            tryVerify(function() { return part("kyvChoice_m2") !== null && part("kyvChoice_m1") === null })
            mouseClick(home.find(part("kyvChoice_m2"), "kyvName"))
            compare(part("kyvList").currentIndex, 0)
            click("okBtn")
            compare(home.takeCalls(), ["serviceConvertMgr.updateKyvModel(/models/house.kyv,m2,0)"])
        }

        function test_cancelledChoiceReplacesNothing() {
            openLister()
            click("cancelBtn")
            tryCompare(kyvDialog, "visible", false)
            compare(home.takeCalls(), ["serviceConvertMgr.clearCurBimProj()"])
        }

        // What went wrong.

        function test_failuresAreListedWithTheirTimes() {
            serviceConvertMgr.failedArray = [{ name: "桥", guid: "7", faildDate: "2026-03-09 17:05:00" },
                                             { name: "坝", guid: "8", faildDate: "2026-03-08 08:00:00" }]
            kyvDialog.showFailedInfo()
            waitForPage("转换失败的模型")
            tryVerify(function() { return part("kyvFailure_8") !== null })
            compare(part("kyvFailure_7").height, 40)
            compare(home.find(part("kyvFailure_7"), "kyvName").text, "桥")
            mouseMove(part("kyvFailure_7"), 100, 20)
            compare(String(part("kyvFailure_7").color), String(EConfig.eTreeSelected))
            tryVerify(function() { return home.findText("桥2026-03-09 17:05:00") !== null })
            part("kyvSearch").text = "坝"
            tryVerify(function() { return part("kyvFailure_7") === null && part("kyvFailure_8") !== null })
        }

        function test_withoutFailuresTheListSaysSo() {
            kyvDialog.showFailedInfo()
            waitForPage("转换失败的模型")
            compare(part("kyvEmpty").text, "没有失败的模型")
            click("backBtn")
            waitForPage("转化BIM工程")
        }

        // What is heard.

        function test_ringsAreSpoken() {
            openOptions()
            compare(screens.spoken(part("fastBtn")).name, "极速")
            openLister()
            tryVerify(function() { return part("kyvChoice_m1") !== null })
            compare(screens.spoken(home.find(part("kyvChoice_m1"), "kyvRadio")).name, "别墅")
        }
    }
}
