// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls/InfoCard"

/// The info card as a whole: title, picture, list of rows, buttons, keyboard.
HomeTest {
    id: home

    InfoDialog {
        id: dialog

        parent: home
        x: 1000
        y: 0
        height: 826
        closePolicy: T.Popup.NoAutoClose
    }

    TestCase {
        name: "infodialog"
        when: windowShown

        readonly property var rows: [
            { key: "工程名称", value: "滨江新区", visible: true, readOnly: false, type: 0 },
            { key: "工程Guid", value: "{a-b}", visible: true, readOnly: true, type: 0 },
            { key: "工程类型", value: "场景工程", visible: true, readOnly: true, type: 0 },
            { key: "物联资产编号", value: "", visible: true, readOnly: false, type: 0 }
        ]

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            dialog.height = 826
            mouseMove(home, 10, 850)
            proInfoModel.projInfo = rows
        }

        function cleanup() {
            dialog.close()
            tryCompare(dialog, "visible", false)
            compare(screens.takeWarnings(), [])
        }

        function part(name) {
            return home.findShown(name)
        }

        function fieldOf(key) {
            return home.find(part("infoRow_" + key), "cardField")
        }

        function openCard() {
            dialog.open()
            tryVerify(function() { return dialog.opened && part("infoRow_工程名称") !== null })
            home.takeCalls()
        }

        function waitForBox() {
            tryVerify(function() { return part("yesBtn") !== null && part("yesBtn").activeFocus })
        }

        // Looks.

        function test_theCardIsNarrowAndWithoutABorder() {
            openCard()
            compare(dialog.width, 360)
            compare(dialog.backgroundItem.border.width, 0)
            compare(dialog.normalFontSize, 14)
        }

        function test_theTitleBar() {
            openCard()
            const title = part("infoTitle")
            compare(title.text, "工程信息")
            compare(title.mapToItem(title.parent, 0, 0).x, 15)
            compare(title.parent.height, 30)
            compare(title.parent.color, EConfig.eDialogBackground)
            compare(title.parent.border.width, 1)
            compare(title.parent.border.color, EConfig.eGlobalBackGround)
        }

        function test_thePictureStandsBelowTheTitle() {
            openCard()
            const picture = part("infoPicture")
            compare(picture.width, 310)
            compare(picture.height, 167)
            compare(picture.mapToItem(dialog.contentItem, 0, 0), Qt.point(25, 50))
            compare(picture.cache, false)
        }

        function test_theListReachesFromThePictureToTheButtons() {
            openCard()
            const list = part("infoRows")
            const place = list.mapToItem(dialog.contentItem, 0, 0)
            compare(place, Qt.point(15, 30 + 20 + 167 + 8))
            compare(list.width, 330)
            compare(place.y + list.height, 826 - 20 - 32 - 20)
        }

        function test_aRowIs62HighWithItsViewAtTheBottom() {
            openCard()
            for (let i = 0; i < rows.length; ++i) {
                const view = part("infoRow_" + rows[i].key)
                compare(view.mapToItem(part("infoRows"), 0, 0).y, i * 62 + 12)
                compare(view.height, 50)
                compare(view.width, 330)
            }
        }

        function test_theButtonsStandInTheMiddleOfTheLowerEdge() {
            openCard()
            const ok = part("infoOkBtn")
            const no = part("infoCancelBtn")
            compare(ok.text, "确定")
            compare(no.text, "取消")
            for (const button of [ok, no])
                compare(Qt.size(button.width, button.height), Qt.size(62, 32))
            compare(ok.mapToItem(dialog.contentItem, 0, 0), Qt.point(113, 826 - 52))
            compare(no.mapToItem(dialog.contentItem, 0, 0), Qt.point(185, 826 - 52))
        }

        // Picture.

        function test_aMissingPictureShowsTheDrawing_data() {
            return [{ tag: "none", url: "" }, { tag: "no file", url: "file:////nowhere/picture.jpg" }]
        }

        function test_aMissingPictureShowsTheDrawing(row) {
            proInfoModel.projImage = row.url
            openCard()
            tryVerify(function() { return part("infoPlaceholder") !== null })
            compare(part("infoPicture").status, Image.Null)
        }

        function test_thePictureTakesThePlaceOfTheDrawing() {
            proInfoModel.projImage = "qrc:/images/card_ic_default.png"
            openCard()
            tryVerify(function() { return part("infoPicture").status === Image.Ready })
            compare(part("infoPlaceholder"), null)
        }

        // Rows.

        function test_theRowsAreReadOnOpeningAndForgottenOnClosing() {
            openCard()
            compare(part("infoRows").count, rows.length)
            compare(part("infoRows").model, rows)
            const list = part("infoRows")
            dialog.close()
            tryCompare(dialog, "visible", false)
            compare(list.model, "")
            compare(list.count, 0)
        }

        function test_eachOpeningShowsTheRowsAsTheyThenAre() {
            openCard()
            dialog.close()
            tryCompare(dialog, "visible", false)
            proInfoModel.projInfo = [{ key: "工程名称", value: "别处", visible: true, readOnly: false, type: 0 }]
            openCard()
            compare(part("infoRows").count, 1)
            compare(fieldOf("工程名称").text, "别处")
        }

        function test_theFirstFillingOfEachRowGoesToTheData() {
            dialog.open()
            tryVerify(function() { return part("infoRow_工程类型") !== null })
            // A text that stays empty does not change.
            compare(home.takeCalls().sort(), ["proInfoModel.setJsonData(工程Guid,{a-b})",
                                              "proInfoModel.setJsonData(工程名称,滨江新区)",
                                              "proInfoModel.setJsonData(工程类型,场景工程)"].sort())
        }

        function test_whatIsTypedIsKeptWhileTheRowIsOutOfSight() {
            dialog.height = 420
            openCard()
            const list = part("infoRows")
            verify(list.height < 2 * 62)
            fieldOf("工程名称").text = "新名"
            list.positionViewAtEnd()
            waitForRendering(list)
            list.positionViewAtBeginning()
            compare(fieldOf("工程名称").text, "新名")
            compare(home.takeCalls(), ["proInfoModel.setJsonData(工程名称,新名)"])
        }

        // OK and cancel.

        function test_okOfALocalProjectSavesAndCloses() {
            openCard()
            mouseClick(part("infoOkBtn"))
            compare(home.takeCalls(), ["editorControl.slotProjectInfoUpdate()"])
            tryCompare(dialog, "visible", false)
        }

        function test_okOfAServersProjectClosesAndChangesTheName() {
            proInfoModel.bModify = false
            openCard()
            mouseClick(part("infoOkBtn"))
            compare(home.takeCalls(), ["proInfoModel.changeServiceProjName()"])
            tryCompare(dialog, "visible", false)
        }

        function test_cancelOnlyCloses_data() {
            return [
                { tag: "scene", bBimViewShow: false, calls: [] },
                { tag: "building", bBimViewShow: true, calls: ["bimMgr.cancle(shown)"] }
            ]
        }

        function test_cancelOnlyCloses(row) {
            proInfoModel.bBimViewShow = row.bBimViewShow
            openCard()
            mouseClick(part("infoCancelBtn"))
            compare(home.takeCalls(), row.calls)
            tryCompare(dialog, "visible", false)
        }

        function test_aSecondClickOnAnEndMeansNothing_data() {
            return [{ tag: "infoOkBtn" }, { tag: "infoCancelBtn" }]
        }

        function test_aSecondClickOnAnEndMeansNothing(row) {
            proInfoModel.bBimViewShow = true
            openCard()
            mouseClick(part(row.tag))
            verify(dialog.visible)
            mouseClick(part(row.tag))
            compare(home.takeCalls().length, 1)
        }

        // A building's models.

        function test_theListOfABuildingIsReadWhenTheCardOpens() {
            proInfoModel.bBimViewShow = true
            dialog.open()
            tryCompare(dialog, "opened", true)
            compare(home.takeCalls().filter(call => call.startsWith("bimMgr")), ["bimMgr.syncProjList(shown)"])
        }

        function test_theModelsOfALocalBuildingHaveTheirPlace_data() {
            return [{ tag: "building", bBimViewShow: true }, { tag: "scene", bBimViewShow: false }]
        }

        function test_theModelsOfALocalBuildingHaveTheirPlace(row) {
            proInfoModel.bBimViewShow = row.bBimViewShow
            openCard()
            compare(part("bimInfo") !== null, row.bBimViewShow)
            compare(part("infoRows").height, 826 - 225 - 72 - (row.bBimViewShow ? 320 : 0))
        }

        function test_whileModelsAreConvertedThereIsNoOkButACancel() {
            bimMgr.isConverting = true
            proInfoModel.bBimViewShow = true
            openCard()
            verify(!part("infoOkBtn").enabled)
            mouseClick(part("infoOkBtn"))
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), [])
            mouseClick(part("infoCancelBtn"))
            compare(home.takeCalls(), ["bimMgr.cancle(shown)"])
            tryCompare(dialog, "visible", false)
        }

        function test_okComesBackWhenTheModelsAreConverted() {
            bimMgr.isConverting = true
            openCard()
            bimMgr.isConverting = false
            verify(part("infoOkBtn").enabled)
        }

        function test_cancelOfASceneStopsNoConversion() {
            openCard()
            mouseClick(part("infoCancelBtn"))
            compare(home.takeCalls(), [])
        }

        // Deleting.

        function test_onlyALocalProjectCanBeDeleted() {
            openCard()
            verify(part("deleteBtn").enabled)
            compare(part("deleteBtn").currentImg, "qrc:/images/tab_bt_ic_del.png")
            compare(part("deleteBtn").hoveredImg, "qrc:/images/tab_bt_ic_del_hover.png")
            compare(part("deleteBtn").selectedImg, "qrc:/images/tab_bt_ic_del_selected.png")
            compare(part("deleteBtn").tipText, "删除本地文件")
            proInfoModel.bModify = false
            verify(!part("deleteBtn").enabled)
            compare(part("deleteBtn").currentImg, "qrc:/images/tab_bt_ic_del_disable.png")
            mouseClick(part("deleteBtn"))
            compare(part("yesBtn"), null)
        }

        function test_deletingIsAskedForAndClosesTheCard() {
            openCard()
            mouseClick(part("deleteBtn"))
            waitForBox()
            compare(part("dialogTitle").text, "删除工程")
            compare(part("messageText").text, "删除操作将只删除本地工程数据.\n请确认后再进行操作！")
            compare(home.takeCalls(), [])
            mouseClick(part("yesBtn"))
            compare(home.takeCalls(), ["editorControl.slotDeleteProject(shown)"])
            tryCompare(dialog, "visible", false)
        }

        function test_refusedDeletingLeavesTheCardOpen_data() {
            return [{ tag: "noBtn" }, { tag: "escape" }, { tag: "dialogCloseBtn" }]
        }

        function test_refusedDeletingLeavesTheCardOpen(row) {
            openCard()
            mouseClick(part("deleteBtn"))
            waitForBox()
            if (row.tag === "escape")
                keyClick(Qt.Key_Escape)
            else
                mouseClick(part(row.tag))
            tryVerify(function() { return part("yesBtn") === null })
            compare(home.takeCalls(), [])
            verify(dialog.opened)
        }

        // Keyboard and speech.

        function test_theFirstFieldHasTheKeyboard() {
            openCard()
            tryVerify(function() { return fieldOf("工程名称").activeFocus })
            keyClick(Qt.Key_End)
            keyClick(Qt.Key_X)
            compare(home.takeCalls(), ["proInfoModel.setJsonData(工程名称,滨江新区x)"])
        }

        function test_aCardWithoutRowsOpensAllTheSame() {
            proInfoModel.projInfo = []
            dialog.open()
            tryCompare(dialog, "opened", true)
            keyClick(Qt.Key_Escape)
            tryCompare(dialog, "visible", false)
        }

        function test_escapeCancels() {
            proInfoModel.bBimViewShow = true
            openCard()
            keyClick(Qt.Key_Escape)
            compare(home.takeCalls(), ["bimMgr.cancle(shown)"])
            tryCompare(dialog, "visible", false)
        }

        function test_returnInAFieldIsOk_data() {
            return [{ tag: "return", key: Qt.Key_Return }, { tag: "enter", key: Qt.Key_Enter }]
        }

        function test_returnInAFieldIsOk(row) {
            openCard()
            tryVerify(function() { return fieldOf("工程名称").activeFocus })
            keyClick(row.key)
            compare(home.takeCalls(), ["editorControl.slotProjectInfoUpdate()"])
            tryCompare(dialog, "visible", false)
        }

        function test_returnInABoxOfTheRegionIsNotOk() {
            proInfoModel.projInfo = [{ key: "所属行政区", visible: true, readOnly: false, type: 3,
                                       value: { pId: "33", pName: "浙江省", cId: "", cName: "", rId: "", rName: "" } }]
            dialog.open()
            tryVerify(function() { return part("provinceBox") !== null && part("provinceBox").activeFocus })
            home.takeCalls()
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Enter)
            compare(home.takeCalls(), [])
        }

        function test_escapeInAnOpenBoxClosesOnlyTheBox() {
            proInfoModel.projInfo = [{ key: "所属行政区", visible: true, readOnly: false, type: 3,
                                       value: { pId: "33", pName: "浙江省", cId: "", cName: "", rId: "", rName: "" } }]
            dialog.open()
            tryVerify(function() { return part("provinceBox") !== null && part("provinceBox").activeFocus })
            keyClick(Qt.Key_Space)
            tryVerify(function() { return part("provinceBox").popup.opened })
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return !part("provinceBox").popup.visible })
            verify(dialog.opened)
        }

        function test_tabGoesThroughTheRowsToTheButtonsAndRound() {
            openCard()
            tryVerify(function() { return fieldOf("工程名称").activeFocus })
            const rest = [fieldOf("工程Guid"), fieldOf("工程类型"), fieldOf("物联资产编号"), part("infoOkBtn"),
                          part("infoCancelBtn"), part("deleteBtn"), fieldOf("工程名称")]
            for (let i = 0; i < rest.length; ++i) {
                keyClick(Qt.Key_Tab)
                verify(rest[i].activeFocus, "stop " + i)
            }
        }

        function test_aRowThatGetsTheKeyboardComesIntoSight() {
            dialog.height = 420
            openCard()
            tryVerify(function() { return fieldOf("工程名称").activeFocus })
            for (let i = 0; i < 3; ++i)
                keyClick(Qt.Key_Tab)
            const field = fieldOf("物联资产编号")
            verify(field.activeFocus)
            const list = part("infoRows")
            tryVerify(function() { return field.mapToItem(list, 0, field.height).y <= list.height })
        }

        function test_theCardSpeaks() {
            openCard()
            compare(screens.spoken(dialog.contentItem).name, "工程信息")
            compare(screens.spoken(fieldOf("工程名称")).name, "工程名称")
            compare(screens.spoken(part("deleteBtn")).name, "删除本地文件")
            compare(screens.spoken(part("infoOkBtn")).name, "确定")
            compare(screens.spoken(part("infoCancelBtn")).name, "取消")
        }

        function test_theFloorsOfABuildingOpenFromItsList() {
            const floorDialog = findChild(dialog, "floorMatchDialog")
            floors.start([], [], [])
            screens.takeWarnings() // of managers that find no files of their own here
            home.floorModel = floors.model
            home.floorMatchedCtrl = floors.ctrl
            proInfoModel.bBimViewShow = true
            openCard()
            mouseClick(part("bimFloorsBtn"))
            compare(floorDialog.enabled, true)
            tryCompare(floorDialog, "opened", true)
            floorDialog.close()
            tryCompare(floorDialog, "visible", false)
            floorDialog.enabled = false
        }

        function test_floorDialogStandsReadyAndIsNotEnabled() {
            const floorDialog = findChild(dialog, "floorMatchDialog")
            verify(floorDialog !== null)
            compare(floorDialog.enabled, false)
            compare(floorDialog.parent, home)
            compare(floorDialog.visible, false)
        }

        function test_floorsOpenOnTheCardsProject() {
            floors.start([{ name: "一层", models: {} }], [], [])
            screens.takeWarnings() // of managers that find no files of their own here
            home.floorModel = floors.model
            home.floorMatchedCtrl = floors.ctrl
            const floorDialog = findChild(dialog, "floorMatchDialog")
            findChild(dialog, "bimInfo").floorsRequested()
            tryCompare(floorDialog, "opened", true)
            compare(floorDialog.enabled, true)
            compare(floors.rows(), ["一层"])
            floorDialog.close()
            tryCompare(floorDialog, "visible", false)
            floorDialog.enabled = false
        }
    }
}
