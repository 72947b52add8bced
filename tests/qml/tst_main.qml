// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"

HomeTest {
    id: home

    Loader {
        id: loader

        width: home.width
        height: home.height
    }

    TestCase {
        name: "main"
        when: windowShown

        property var main: null

        function initTestCase() {
            screens.listen()
            home.gridViewModel = screens.makeCards()
            home.serviceConvertModel = screens.makeModels([])
            leftPanelModel.treeModel = screens.makeTree([{ text1: "甲楼", text2: "a" }])
            loader.source = "qrc:/qmls/main.qml"
            main = loader.item
            verify(main !== null)
        }

        function init() {
            home.reset()
            mouseMove(home, 1300, 850)
            gridViewModel.clear()
            screens.addCard(gridViewModel, { guid: "g1", name: "小楼" })
            tryVerify(function() { return home.find(main, "card_g1") !== null })
            waitForItemPolished(part("delBtn").parent)
        }

        function cleanup() {
            compare(screens.takeWarnings(), [])
        }

        function part(name) {
            const found = findChild(main, name)
            verify(found !== null, name)
            return found
        }

        function click(name) {
            mouseClick(part(name))
        }

        function waitForBox() {
            tryVerify(function() { return home.findShown("yesBtn") !== null && home.findShown("yesBtn").activeFocus })
        }

        function waitForNoBox() {
            tryVerify(function() { return home.findShown("yesBtn") === null })
        }

        function test_aWarningOfAScreenIsSeen() {
            console.warn("seen")
            compare(screens.takeWarnings(), ["seen"])
        }

        // Layout.

        function test_thePartsStandWhereTheTabsExpectThem_data() {
            return [
                { tag: "titleRect", x: 0, y: 0, width: 1360, height: 34 },
                { tag: "contentRect", x: 0, y: 34, width: 1360, height: 826 },
                { tag: "treePanel", x: 0, y: 34, width: 270, height: 826 },
                { tag: "proInfoContainer", x: 270, y: 34, width: 1090, height: 826 },
                { tag: "proInfoGridView", x: 270, y: 34, width: 1090, height: 826 }
            ]
        }

        function test_thePartsStandWhereTheTabsExpectThem(row) {
            const item = part(row.tag)
            compare(main.mapFromItem(item, 0, 0).x, row.x)
            compare(main.mapFromItem(item, 0, 0).y, row.y)
            compare(item.width, row.width)
            compare(item.height, row.height)
        }

        function test_theScreenHasASizeOfItsOwn() {
            const alone = createTemporaryObject(Qt.createComponent("qrc:/qmls/main.qml"), home, { visible: false })
            compare(alone.width, 1360)
            compare(alone.height, 860)
        }

        function test_theContentFollowsTheWindow() {
            loader.width = 1000
            loader.height = 500
            compare(part("contentRect").width, 1000)
            compare(part("contentRect").height, 466)
            compare(part("proInfoGridView").width, 730)
            loader.width = home.width
            loader.height = home.height
        }

        function test_thePartsShowTheirModels() {
            compare(part("proInfoGridView").model, gridViewModel)
            compare(part("treePanel").panelModel, leftPanelModel)
            compare(part("treePanel").color, EConfig.eBackGround)
            compare(part("proInfoContainer").color, EConfig.eGlobalBackGround)
            compare(part("proInfoContainer").border.width, 1)
            compare(part("proInfoContainer").border.color, EConfig.eBorder)
        }

        // Actions.

        function test_aDoubleClickOnACardReachesTheController() {
            mouseDoubleClickSequence(part("pictureArea"))
            compare(home.takeCalls(), ["editorControl.slotProjectDblClick(g1)"])
        }

        function test_conversionsOpenForAProjectThatMayBeConverted_data() {
            return [{ tag: "taken", taken: true }, { tag: "refused", taken: false }]
        }

        function test_conversionsOpenForAProjectThatMayBeConverted(row) {
            serviceConvertMgr.isVisible = true
            serviceConvertMgr.takesProjects = row.taken
            waitForItemPolished(part("delBtn").parent)
            click("kyvconvertBtn")
            compare(home.takeCalls(), ["serviceConvertMgr.checkServiceConvert(g1)"])
            wait(row.taken ? 0 : 300)
            tryVerify(function() { return (home.findShown("kyvPage") !== null) === row.taken })
            if (!row.taken)
                return
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("kyvPage") === null })
            compare(home.takeCalls(), ["serviceConvertMgr.clearCurBimProj()"])
        }

        function test_actionsReachTheController_data() {
            return [
                { tag: "serviceBtn", call: "editorControl.openWebProj(g1)" },
                { tag: "consoleBtn", call: "editorControl.openWebConsole()" }
            ]
        }

        function test_actionsReachTheController(row) {
            click(row.tag)
            compare(home.takeCalls(), [row.call])
            compare(home.findShown("yesBtn"), null)
        }

        function test_confirmedActionsReachTheController_data() {
            return [
                { tag: "delBtn", title: "删除工程", text: "删除操作将从工程列表中删除工程。\n请确认后再进行操作！",
                  call: "editorControl.slotRemoveProject(g1)" },
                { tag: "updateBtn", title: "更新工程", text: "更新操作将本地工程更新为服务器版本。\n请确认后再进行操作！",
                  call: "editorControl.slotSyncProject(g1)" },
                { tag: "uploadBtn", title: "上传工程", text: "上传操作将本地工程上传到服务器。\n请确认后再进行操作！",
                  call: "editorControl.slotUploadProject(g1)" }
            ]
        }

        function test_confirmedActionsReachTheController(row) {
            click(row.tag)
            waitForBox()
            compare(home.findShown("dialogTitle").text, row.title)
            compare(home.findShown("messageText").text, row.text)
            compare(home.takeCalls(), [])
            mouseClick(home.findShown("yesBtn"))
            compare(home.takeCalls(), [row.call])
            waitForNoBox()
        }

        function test_aRefusedActionReachesNobody_data() {
            return [{ tag: "delBtn" }, { tag: "updateBtn" }, { tag: "uploadBtn" }]
        }

        function test_aRefusedActionReachesNobody(row) {
            click(row.tag)
            waitForBox()
            mouseClick(home.findShown("noBtn"))
            waitForNoBox()
            compare(home.takeCalls(), [])
        }

        function test_theCoverOfAnOldProjectUpgradesIt_data() {
            return [{ tag: "waiting", isUpgrade: false }, { tag: "running", isUpgrade: true }]
        }

        function test_theCoverOfAnOldProjectUpgradesIt(row) {
            const data = gridViewModel.getDataByGuid("g1")
            data.needUpgrade = true
            data.isUpgrade = row.isUpgrade
            mouseClick(home.find(main, "card_g1"))
            compare(home.takeCalls(), ["editorControl.upgradeProj(g1)"])
        }

        function test_anActionThatIsRefusedTwiceShowsOneBox() {
            messageBoxMgr.sigShowTip("提示", "工程上传中，请稍后重试")
            messageBoxMgr.sigShowTip("提示", "工程上传中，请稍后重试")
            waitForBox()
            compare(home.findShown("messageText").text, "工程上传中，请稍后重试")
            mouseClick(home.findShown("yesBtn"))
            waitForNoBox()
            compare(home.takeCalls(), ["messageBoxMgr.callResultCallBack(true)"])
        }

        // Info card.

        function waitForCard() {
            tryVerify(function() { return home.findShown("infoOkBtn") !== null })
            tryVerify(function() { return home.findShown("infoOkBtn").mapToItem(home, 0, 0).x < home.width - 100 })
        }

        function closeCard() {
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("infoOkBtn") === null })
        }

        function test_theInfoButtonOfACardOpensTheInfoCard() {
            click("proInfoBtn")
            waitForCard()
            compare(home.takeCalls(), ["infoCardCtrl.showProjectInfo(g1)"])
            closeCard()
        }

        function test_aClickInTheTreeOpensTheInfoCard() {
            tryVerify(function() { return home.find(main, "treeRow_a") !== null })
            mouseClick(home.find(main, "treeRow_a"), 60, 20)
            compare(home.takeCalls(), [])
            waitForCard()
            compare(home.takeCalls(), ["infoCardCtrl.showProjectInfo(a)"])
            closeCard()
        }

        function test_theInfoCardSlidesInFromTheRightEdgeAndOutAgain() {
            const place = part("infoDialogContainer")
            compare(place.width, 360)
            compare(place.mapToItem(main, 360, 0), Qt.point(1360, 34))
            compare(place.height, 826)
            click("proInfoBtn")
            const start = Date.now()
            tryVerify(function() { return home.findShown("infoOkBtn") !== null })
            const card = home.findShown("infoOkBtn").parent.parent
            verify(place.mapFromItem(card, 0, 0).x > 180)
            tryVerify(function() { return place.mapFromItem(card, 0, 0).x === 0 })
            verify(Date.now() - start >= 400, Date.now() - start)
            compare(place.mapFromItem(card, 0, 0).y, 0)
            compare(card.height, 826)
            mouseClick(home.findShown("infoCancelBtn"))
            wait(50)
            verify(home.findShown("infoOkBtn") !== null)
            tryVerify(function() { return home.findShown("infoOkBtn") === null })
            verify(place.mapFromItem(card, 0, 0).x > 180)
        }

        function test_theKeyboardGoesBackToTheTreeWhenTheInfoCardCloses() {
            tryVerify(function() { return home.find(main, "treeRow_a") !== null })
            const tree = part("projectTree")
            tree.forceActiveFocus()
            keyClick(Qt.Key_Space)
            waitForCard()
            compare(home.takeCalls(), ["infoCardCtrl.showProjectInfo(a)"])
            verify(!tree.activeFocus)
            closeCard()
            tryCompare(tree, "activeFocus", true)
        }

        function test_aPressBesideTheInfoCardDoesNotCloseIt() {
            click("proInfoBtn")
            waitForCard()
            home.takeCalls()
            const place = part("infoDialogContainer")
            const card = home.findShown("infoOkBtn").parent.parent
            tryVerify(function() { return place.mapFromItem(card, 0, 0).x === 0 })
            mouseClick(main, 600, 600)
            wait(600)
            compare(home.takeCalls(), [])
            compare(place.mapFromItem(card, 0, 0).x, 0)
            verify(home.findShown("infoOkBtn") !== null)
            closeCard()
        }

        function test_aProjectThatIsAskedForWhileAnotherIsShownTakesItsPlace() {
            proInfoModel.projInfo = [{ key: "工程名称", value: "甲", visible: true, readOnly: false, type: 0 }]
            main.showProjectInfo("a")
            waitForCard()
            proInfoModel.projInfo = [{ key: "工程名称", value: "乙", visible: true, readOnly: false, type: 0 }]
            main.showProjectInfo("b")
            tryVerify(function() { return home.findShown("cardField") !== null && home.findShown("cardField").text === "乙" })
            closeCard()
        }

        function test_aDoubleClickInTheTreeDoesNotOpenTheInfoCard() {
            tryVerify(function() { return home.find(main, "treeRow_a") !== null })
            mouseDoubleClickSequence(home.find(main, "treeRow_a"), 60, 20)
            wait(400)
            compare(home.takeCalls(), ["editorControl.slotTreeDblClick(a)"])
            compare(home.findShown("infoOkBtn"), null)
        }

        function test_theCreateButtonLeadsToANewProject() {
            click("createBtn")
            tryVerify(function() { return home.findShown("nameField") !== null && home.findShown("nameField").activeFocus })
            home.findShown("nameField").text = "新区"
            mouseClick(home.findShown("newProjectBtn"))
            const calls = home.takeCalls().slice(-2)
            // The type is that of the last time.
            verify(/^proInfoModel.setProjInfo\(新区,(CIM|BIM),,,,,\)$/.test(calls[0]), calls[0])
            compare(calls[1], "editorControl.slotCreateProject()")
            tryVerify(function() { return home.findShown("nameField") === null })
        }

        function test_aChildThatWantsANewBuildingGetsTheFormForIt() {
            tabMgr.sigCreateBimProj()
            tryVerify(function() { return home.findShown("nameField") !== null && home.findShown("nameField").activeFocus })
            home.findShown("nameField").text = "新楼"
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["proInfoModel.setProjInfo(新楼,BIM,,,,,)", "editorControl.slotCreateProject()"])
            tryVerify(function() { return home.findShown("nameField") === null })
        }

        // Messages.

        function test_aTipHasOneButtonAndAnswersYes() {
            messageBoxMgr.sigShowTip("提示", "工程正在上传中!")
            waitForBox()
            compare(home.findShown("dialogTitle").text, "提示")
            compare(home.findShown("messageText").text, "工程正在上传中!")
            compare(home.findShown("noBtn"), null)
            mouseClick(home.findShown("yesBtn"))
            compare(home.takeCalls(), ["messageBoxMgr.callResultCallBack(true)"])
            waitForNoBox()
        }

        function test_aQuestionHasTwoButtons_data() {
            return [{ tag: "yesBtn", answer: "true" }, { tag: "noBtn", answer: "false" }]
        }

        function test_aQuestionHasTwoButtons(row) {
            messageBoxMgr.sigCheckBox("提示", "是否继续?")
            waitForBox()
            compare(home.findShown("dialogTitle").text, "提示")
            compare(home.findShown("messageText").text, "是否继续?")
            compare(home.findShown("noBtn").text, "取消")
            mouseClick(home.findShown(row.tag))
            compare(home.takeCalls(), ["messageBoxMgr.callResultCallBack(" + row.answer + ")"])
            waitForNoBox()
        }

        function test_aMessageTakesThePlaceOfTheOneThatIsShown() {
            messageBoxMgr.sigCheckBox("一", "第一")
            waitForBox()
            messageBoxMgr.sigShowTip("二", "第二")
            tryVerify(function() { return home.findShown("yesBtn") !== null && home.findShown("noBtn") === null })
            compare(home.findShown("dialogTitle").text, "二")
            compare(home.findShown("messageText").text, "第二")
            messageBoxMgr.sigCheckBox("三", "第三")
            tryVerify(function() { return home.findShown("noBtn") !== null })
            compare(home.findShown("messageText").text, "第三")
            compare(home.takeCalls(), [])
            waitForBox()
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["messageBoxMgr.callResultCallBack(true)"])
            waitForNoBox()
        }

        function test_escapeAnswersNoToAQuestionAndYesToATip_data() {
            return [{ tag: "question", asks: true, answer: "false" }, { tag: "tip", asks: false, answer: "true" }]
        }

        function test_escapeAnswersNoToAQuestionAndYesToATip(row) {
            if (row.asks)
                messageBoxMgr.sigCheckBox("提示", "x")
            else
                messageBoxMgr.sigShowTip("提示", "x")
            waitForBox()
            keyClick(Qt.Key_Escape)
            compare(home.takeCalls(), ["messageBoxMgr.callResultCallBack(" + row.answer + ")"])
            waitForNoBox()
        }

        function test_aMessageIsNoMarkupButBreaksLines() {
            messageBoxMgr.sigShowTip("提示", "<b>a</b><br/>b\nc")
            waitForBox()
            compare(home.findShown("messageText").text, "<b>a</b>\nb\nc")
            compare(home.findShown("messageText").textFormat, Text.PlainText)
            keyClick(Qt.Key_Return)
            waitForNoBox()
        }

        function test_whileAMessageIsShownTheScreenBehindTakesNoClick() {
            messageBoxMgr.sigShowTip("提示", "x")
            waitForBox()
            mouseDoubleClickSequence(part("pictureArea"))
            compare(home.takeCalls(), [])
            keyClick(Qt.Key_Return)
            waitForNoBox()
        }

        function test_aMessageMovesWithItsTitle() {
            messageBoxMgr.sigShowTip("提示", "x")
            waitForBox()
            const title = home.findShown("dialogTitle").parent
            const before = home.mapFromItem(title, 0, 0)
            mousePress(title, 30, 10)
            mouseMove(title, 50, 25, -1, Qt.LeftButton)
            mouseRelease(title, 50, 25)
            const after = home.mapFromItem(home.findShown("dialogTitle").parent, 0, 0)
            verify(after.x > before.x && after.y > before.y)
            keyClick(Qt.Key_Return)
            waitForNoBox()
        }

        function test_theKeyboardStaysInTheBox() {
            messageBoxMgr.sigCheckBox("提示", "x")
            waitForBox()
            for (let i = 0; i < 6; ++i) {
                keyClick(Qt.Key_Tab)
                const focused = ["yesBtn", "noBtn", "dialogCloseBtn"].filter(function(name) {
                    return home.findShown(name).activeFocus
                })
                compare(focused.length, 1)
            }
            keyClick(Qt.Key_Escape)
            waitForNoBox()
        }
    }
}
