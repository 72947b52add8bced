// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"

HomeTest {
    id: home

    PanelCase {
        name: "panel"

        // The panel.

        function test_thePartsStandFromTopToBottom_data() {
            return [
                { tag: "headArea", x: 5, y: 0, width: 270 - 5 - 10 - 16, height: 32 },
                { tag: "refreshBtn", x: 270 - 10 - 16, y: 8, width: 16, height: 16 },
                { tag: "upperLine", x: 0, y: 32, width: 270, height: 1 },
                { tag: "lowerLine", x: 0, y: 33, width: 270, height: 1 },
                { tag: "searchBox", x: 11, y: 34 + 11, width: 270 - 22, height: 26 },
                { tag: "projectTree", x: 10, y: 34 + 11 + 26, width: 260, height: 700 - 40 - 71 },
                { tag: "createBtn", x: 0, y: 660, width: 270, height: 40 }
            ]
        }

        function test_thePartsStandFromTopToBottom(row) {
            const item = part(row.tag)
            compare(place(row.tag).x, row.x)
            compare(place(row.tag).y, row.y)
            compare(item.width, row.width)
            compare(item.height, row.height)
        }

        function test_thePanelAndItsLinesHaveTheirColours() {
            compare(panel.color, EConfig.eBackGround)
            compare(part("upperLine").color, EConfig.eBorder)
            compare(part("lowerLine").color, EConfig.eBorder)
        }

        function test_theHeadFiltersByTypeOrCountsAll_data() {
            return [{ tag: "normal", ver: 1, filter: true }, { tag: "lite", ver: 0, filter: false },
                    { tag: "other", ver: -1, filter: false }]
        }

        function test_theHeadFiltersByTypeOrCountsAll(row) {
            editorControl.appVer = row.ver
            compare(part("projTypeCheck").visible, row.filter)
            compare(part("totalLabel").visible, !row.filter)
            compare(part("totalText").visible, !row.filter)
        }

        function test_theTotalCountsBothTypes() {
            editorControl.appVer = 0
            compare(part("totalLabel").text, "全部工程数量")
            compare(part("totalLabel").color, "#f0f0f0")
            compare(part("totalLabel").clip, true)
            compare(place("totalLabel").x, 5 + 10)
            compare(part("totalText").text, "7个")
            const head = part("headArea")
            compare(place("totalText").x + part("totalText").width, 5 + head.width - 25)
            leftPanelModel.bimProjCount = 10
            compare(part("totalText").text, "12个")
        }

        function test_theChosenTypeFiltersTheTree() {
            mouseClick(part("projTypeCheck"))
            tryCompare(part("projTypeCheck").popup, "opened", true)
            mouseClick(home.findShown("type_BIM"))
            compare(home.takeCalls(), ["leftPanelModel.filterTree(BIM)"])
        }

        function test_refreshReadsTheListAnew() {
            const button = part("refreshBtn")
            compare(button.img, "qrc:/images/ic_refresh.png")
            compare(button.hoveredImg, "qrc:/images/ic_refresh_hover.png")
            compare(button.selectedImg, "qrc:/images/ic_refresh_hover.png")
            compare(button.disabledImg, "qrc:/images/ic_refresh.png")
            compare(button.tipText, "刷新列表")
            mouseClick(button)
            compare(home.takeCalls(), ["editorControl.reflushProjTree()"])
        }

        function test_createAsksForANewProject() {
            const button = part("createBtn")
            compare(button.text, "新建工程")
            compare(button.border.width, 1)
            compare(button.border.color, EConfig.eGlobalBackGround)
            mouseClick(button)
            compare(home.takeCalls(), ["create()"])
        }

        function test_createLightsUpUnderThePointer() {
            const button = part("createBtn")
            compare(button.imageUrl, "qrc:/images/bt_ic_add.png")
            compare(button.textColor, EConfig.textColor)
            mouseMove(button, 10, 10)
            tryCompare(button, "imageUrl", "qrc:/images/bt_ic_add_hover.png")
            compare(button.textColor, EConfig.eTextHighColor)
        }

        // Search.

        function search(text) {
            part("searchBox").text = text
        }

        function test_aSearchShowsWhatItFindsAllOpen() {
            showOrganisation()
            search("乙")
            waitForRow("b")
            compare(shownRows(), ["org1", "org2", "b"])
            verify(tree().model !== leftPanelModel.treeModel)
            search("")
            compare(tree().model, leftPanelModel.treeModel)
        }

        function test_anotherSearchShowsWhatThatFinds() {
            search("乙")
            waitForNoRow("a")
            search("甲")
            waitForRow("a")
            waitForNoRow("b")
        }

        function test_aRebuildDuringASearchKeepsTheSearch() {
            search("乙")
            waitForNoRow("a")
            leftPanelModel.treeModel = screens.makeTree([{ text1: "丙楼", text2: "c" }, { text1: "乙塔", text2: "d" }])
            waitForRow("d")
            compare(row("c"), null)
            compare(row("b"), null)
            search("")
            waitForRow("c")
            compare(tree().model, leftPanelModel.treeModel)
        }

        function test_aRebuildWithoutASearchShowsTheNewTree() {
            leftPanelModel.treeModel = screens.makeTree([{ text1: "丙楼", text2: "c" }])
            waitForRow("c")
            compare(row("a"), null)
            compare(tree().model, leftPanelModel.treeModel)
        }

        function test_theModelOpensAndClosesRows() {
            showOrganisation()
            const model = tree().model
            model.expand(model.index(0, 0))
            waitForRow("org2")
            model.collapse(model.index(0, 0))
            waitForNoRow("org2")
        }

        function test_typingSearchesAndEscapeEndsIt() {
            mouseClick(part("searchBox"))
            keyClick("x")
            tryVerify(function() { return row("a") === null && row("b") === null })
            compare(part("treePlaceholder").visible, true)
            compare(part("treePlaceholder").text, "没有找到“x”")
            keyClick(Qt.Key_Escape)
            waitForRow("a")
            compare(part("treePlaceholder").visible, false)
        }

        function test_anEmptyTreeSaysWhatToDo() {
            leftPanelModel.treeModel = screens.makeTree([])
            tryCompare(part("treePlaceholder"), "visible", true)
            compare(part("treePlaceholder").text, "还没有工程")
            verify(part("treePlaceholder").hint !== "")
        }

        function test_aTreeOfTenThousandMakesOnlyTheRowsThatAreShown() {
            const rows = []
            for (let i = 0; i < 10000; ++i)
                rows.push({ text1: "工程" + i, text2: "p" + i, image1: bim, image2: state })
            leftPanelModel.treeModel = screens.makeTree(rows)
            waitForRow("p0")
            let made = 0
            for (let i = 0; i < 10000; i += 1) {
                if (i < 60 || i % 997 === 0)
                    made += findChild(panel, "treeRow_p" + i) !== null ? 1 : 0
            }
            verify(made < 60, made)
            tree().flickableItem.contentY = tree().flickableItem.contentHeight - tree().flickableItem.height
            waitForRow("p9999")
        }

        // Keyboard and speech.

        function test_tabGoesThroughThePanel() {
            part("projTypeCheck").forceActiveFocus(Qt.TabFocusReason)
            for (const name of ["refreshBtn", "searchBox", "projectTree", "createBtn"]) {
                keyClick(Qt.Key_Tab)
                verify(part(name).activeFocus, name)
            }
        }

        function test_arrowsMoveThroughTheTree() {
            tree().forceActiveFocus(Qt.TabFocusReason)
            tryVerify(function() { return tree().currentIndex.valid })
            const first = tree().model.data(tree().currentIndex, Qt.UserRole + 1).text2
            keyClick(Qt.Key_Down)
            tryVerify(function() { return tree().model.data(tree().currentIndex, Qt.UserRole + 1).text2 !== first })
            keyClick(Qt.Key_Up)
            tryVerify(function() { return tree().model.data(tree().currentIndex, Qt.UserRole + 1).text2 === first })
        }

        function test_arrowsOpenAndCloseADepartment() {
            showOrganisation()
            tree().forceActiveFocus(Qt.TabFocusReason)
            tryVerify(function() { return tree().currentIndex.valid })
            keyClick(Qt.Key_Right)
            waitForRow("org2")
            keyClick(Qt.Key_Left)
            waitForNoRow("org2")
        }

        function test_enterBringsTheProject() {
            mouseClick(row("a"), 60, 20)
            tryVerify(function() { return home.calls.length > 0 })
            home.takeCalls()
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["editorControl.slotTreeDblClick(a)"])
        }

        function test_spaceAsksForTheProperties() {
            mouseClick(row("a"), 60, 20)
            tryVerify(function() { return home.calls.length > 0 })
            home.takeCalls()
            keyClick(Qt.Key_Space)
            compare(home.takeCalls(), ["info(a)"])
        }

        function test_enterAndSpaceToggleADepartment() {
            showOrganisation()
            tree().forceActiveFocus(Qt.TabFocusReason)
            tryVerify(function() { return tree().currentIndex.valid })
            keyClick(Qt.Key_Return)
            waitForRow("org2")
            keyClick(Qt.Key_Space)
            waitForNoRow("org2")
            compare(home.takeCalls(), [])
        }

        function test_eachControlSpeaks_data() {
            return [
                { tag: "projTypeCheck", role: Accessible.ComboBox, spoken: "全部工程类型" },
                { tag: "refreshBtn", role: Accessible.Button, spoken: "刷新列表" },
                { tag: "projectTree", role: Accessible.Tree, spoken: "工程列表" },
                { tag: "createBtn", role: Accessible.Button, spoken: "新建工程" },
                { tag: "treeRow_a", role: Accessible.TreeItem, spoken: "甲楼" }
            ]
        }

        function test_eachControlSpeaks(row) {
            compare(part(row.tag).Accessible.role, row.role)
            compare(screens.spoken(part(row.tag)).name, row.spoken)
        }

        function test_aScreenReaderPressesARow() {
            screens.pressBySpeech(row("a"))
            tryVerify(function() { return home.calls.length > 0 })
            compare(home.takeCalls(), ["info(a)"])
        }
    }
}
