// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls"

HomeTest {
    id: home

    Item {
        id: area

        width: 800
        height: 600

        ProjectInfoGridView {
            id: grid

            model: gridViewModel
            onSendDeleteInfo: home.called("delete", guid)
            onSendProjectInfo: home.called("info", guid)
            onSendUpdate: home.called("update", guid)
            onSendUpload: home.called("upload", guid)
            onSendProDoubleClicked: home.called("open", guid)
            onSendUpgrade: home.called("upgrade", guid)
            onSendConvert: home.called("convert", guid)
            onSendOpenWeb: home.called("web", guid)
        }
    }

    TestCase {
        name: "grid"
        when: windowShown

        function initTestCase() {
            screens.listen()
            home.gridViewModel = screens.makeCards()
        }

        function init() {
            home.reset()
            mouseMove(home, 1300, 850)
            home.forceActiveFocus()
            gridViewModel.clear()
            grid.currentIndex = -1
            addCards(3)
        }

        function cleanup() {
            compare(screens.takeWarnings(), [])
        }

        function addCards(count) {
            for (let i = 0; i < count; ++i)
                screens.addCard(gridViewModel, { guid: "g" + i, name: "工程" + i })
            tryVerify(function() { return count === 0 || card("g0") !== null })
        }

        function card(guid) {
            return home.find(grid, "card_" + guid)
        }

        function button(guid, name) {
            const found = findChild(card(guid), name)
            verify(found !== null, name)
            return found
        }

        function waitForBox() {
            tryVerify(function() { return home.findShown("yesBtn") !== null && home.findShown("yesBtn").activeFocus })
        }

        function waitForNoBox() {
            tryVerify(function() { return home.findShown("yesBtn") === null })
        }

        // The grid.

        function test_theGridHasItsSizes() {
            compare(grid.spacing, 15)
            compare(grid.cW, 215)
            compare(grid.cH, 160)
            compare(grid.cellWidth, 230)
            compare(grid.cellHeight, 175)
            compare(grid.clip, true)
            compare(grid.width, area.width)
            compare(grid.height, area.height)
        }

        function test_cardsStandInRowsWithRoomBetweenThem_data() {
            return [
                { tag: "first", guid: "g0", x: 15, y: 15 }, { tag: "second", guid: "g1", x: 245, y: 15 },
                { tag: "next row", guid: "g3", x: 15, y: 190 }
            ]
        }

        function test_cardsStandInRowsWithRoomBetweenThem(row) {
            gridViewModel.clear()
            addCards(4)
            const item = card(row.guid)
            compare(item.width, 215)
            compare(item.height, 160)
            compare(grid.mapFromItem(item, 0, 0).x, row.x)
            compare(grid.mapFromItem(item, 0, 0).y, row.y)
        }

        function test_eachCardHasTheDataOfItsRow() {
            compare(card("g1").dataModel, gridViewModel.getProjectInfoData(1))
        }

        function test_aRemovedCardClosesTheGap() {
            gridViewModel.removeProjectInfo("g1")
            tryVerify(function() { return card("g1") === null })
            tryVerify(function() { return grid.mapFromItem(card("g2"), 0, 0).x === 245 })
        }

        function test_anEmptyGridSaysWhatToDo() {
            compare(findChild(grid, "gridPlaceholder").visible, false)
            gridViewModel.clear()
            compare(findChild(grid, "gridPlaceholder").visible, true)
            verify(findChild(grid, "gridPlaceholder").hint !== "")
        }

        function test_aGridOfTenThousandMakesOnlyTheCardsNearby() {
            const few = gridViewModel
            home.gridViewModel = screens.makeManyCards(10000)
            compare(grid.count, 10000)
            tryVerify(function() { return card("g0") !== null })
            let made = 0
            for (let i = 0; i < grid.contentItem.children.length; ++i)
                made += grid.contentItem.children[i].card !== undefined ? 1 : 0
            verify(made > 0 && made < 100, made)
            grid.positionViewAtEnd()
            tryVerify(function() { return card("g9999") !== null })
            home.gridViewModel = few
        }

        // Questions.

        function test_actionsThatCannotBeTakenBackAreAskedAbout_data() {
            return [
                { tag: "delBtn", title: "删除工程", text: "删除操作将从工程列表中删除工程。\n请确认后再进行操作！",
                  call: "delete(g1)", log: [] },
                { tag: "updateBtn", title: "更新工程", text: "更新操作将本地工程更新为服务器版本。\n请确认后再进行操作！",
                  call: "update(g1)", log: ["更新工程 g1"] },
                { tag: "uploadBtn", title: "上传工程", text: "上传操作将本地工程上传到服务器。\n请确认后再进行操作！",
                  call: "upload(g1)", log: ["上传工程 g1"] }
            ]
        }

        function test_actionsThatCannotBeTakenBackAreAskedAbout(row) {
            mouseClick(button("g1", row.tag))
            waitForBox()
            compare(home.takeCalls(), [])
            compare(home.findShown("dialogTitle").text, row.title)
            compare(home.findShown("messageText").text, row.text)
            screens.takeInfos()
            mouseClick(home.findShown("yesBtn"))
            compare(home.takeCalls(), [row.call])
            compare(screens.takeInfos().map(function(line) { return line.replace("qml: ", "") }), row.log)
            waitForNoBox()
        }

        function test_noToTheQuestionDoesNothing_data() {
            return [{ tag: "delBtn" }, { tag: "updateBtn" }, { tag: "uploadBtn" }]
        }

        function test_noToTheQuestionDoesNothing(row) {
            mouseClick(button("g1", row.tag))
            waitForBox()
            mouseClick(home.findShown("noBtn"))
            waitForNoBox()
            compare(home.takeCalls(), [])
        }

        function test_theQuestionIsAboutTheCardOfTheLastPress() {
            mouseClick(button("g1", "delBtn"))
            waitForBox()
            keyClick(Qt.Key_Escape)
            waitForNoBox()
            mouseClick(button("g2", "delBtn"))
            waitForBox()
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["delete(g2)"])
            waitForNoBox()
        }

        function test_othersAreToldAtOnce_data() {
            return [
                { tag: "proInfoBtn", call: "info(g1)" }, { tag: "serviceBtn", call: "web(g1)" },
                { tag: "kyvconvertBtn", call: "convert(g1)" }
            ]
        }

        function test_othersAreToldAtOnce(row) {
            serviceConvertMgr.isVisible = true
            waitForItemPolished(button("g1", "delBtn").parent)
            mouseClick(button("g1", row.tag))
            compare(home.takeCalls(), [row.call])
            compare(home.findShown("yesBtn"), null)
        }

        function test_aDoubleClickOnAPictureOpensTheProject() {
            mouseDoubleClickSequence(button("g2", "pictureArea"))
            compare(home.takeCalls(), ["open(g2)"])
        }

        function test_theCoverOfAnOldProjectAsksForTheUpgrade() {
            gridViewModel.getDataByGuid("g1").needUpgrade = true
            mouseClick(card("g1"))
            compare(home.takeCalls(), ["upgrade(g1)"])
        }

        // Keyboard.

        function focusGrid() {
            grid.forceActiveFocus(Qt.TabFocusReason)
            compare(grid.currentIndex, 0)
        }

        function test_theKeyboardStandsOnACardThatIsFramed() {
            focusGrid()
            compare(card("g0").hasKeyboard, true)
            compare(card("g1").hasKeyboard, false)
        }

        function test_arrowsGoFromCardToCard() {
            gridViewModel.clear()
            addCards(8)
            focusGrid()
            keyClick(Qt.Key_Right)
            compare(grid.currentIndex, 1)
            keyClick(Qt.Key_Down)
            compare(grid.currentIndex, 4)
            keyClick(Qt.Key_Left)
            compare(grid.currentIndex, 3)
            keyClick(Qt.Key_Up)
            compare(grid.currentIndex, 0)
        }

        function test_keysActOnTheCurrentCard_data() {
            return [
                { tag: "return", key: Qt.Key_Return, call: "open(g1)" },
                { tag: "enter", key: Qt.Key_Enter, call: "open(g1)" },
                { tag: "space", key: Qt.Key_Space, call: "info(g1)" }
            ]
        }

        function test_keysActOnTheCurrentCard(row) {
            focusGrid()
            keyClick(Qt.Key_Right)
            keyClick(row.key)
            compare(home.takeCalls(), [row.call])
        }

        function test_deleteAsksFirst() {
            focusGrid()
            keyClick(Qt.Key_Delete)
            waitForBox()
            compare(home.findShown("dialogTitle").text, "删除工程")
            keyClick(Qt.Key_Space)
            compare(home.takeCalls(), ["delete(g0)"])
            waitForNoBox()
        }

        function test_enterOnAnOldProjectAsksForTheUpgrade() {
            gridViewModel.getDataByGuid("g0").needUpgrade = true
            focusGrid()
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["upgrade(g0)"])
        }

        function test_tabGoesFromTheCardToItsButtons() {
            focusGrid()
            const reached = []
            for (let i = 0; i < 5; ++i) {
                keyClick(Qt.Key_Tab)
                for (const name of ["delBtn", "uploadBtn", "updateBtn", "serviceBtn", "proInfoBtn"]) {
                    if (button("g0", name).activeFocus)
                        reached.push(name)
                }
            }
            compare(reached.sort(), ["delBtn", "proInfoBtn", "serviceBtn", "updateBtn", "uploadBtn"])
        }

        function test_keysInAnEmptyGridDoNothing() {
            gridViewModel.clear()
            grid.forceActiveFocus(Qt.TabFocusReason)
            for (const key of [Qt.Key_Return, Qt.Key_Space, Qt.Key_Delete, Qt.Key_Right])
                keyClick(key)
            compare(home.takeCalls(), [])
        }

        function test_theKeyboardOnAnEmptyGridTakesTheFirstCardThatComes() {
            gridViewModel.clear()
            grid.forceActiveFocus(Qt.TabFocusReason)
            compare(grid.currentIndex, -1)
            addCards(1)
            compare(grid.currentIndex, 0)
        }

        function test_theGridSpeaks() {
            compare(grid.Accessible.role, Accessible.List)
            compare(screens.spoken(grid).name, "工程卡片")
        }
    }
}
