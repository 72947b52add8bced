// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls"

HomeTest {
    id: home

    ETitleBar {
        id: bar

        width: home.width
        height: 34
        onOpenWebConsole: home.called("openWebConsole")
    }

    TitleBarCase {
        name: "titlebar"

        function test_theBarHasTheGroundOfPanels() {
            compare(bar.color, EConfig.eBackGround)
            compare(bar.uploadCount, 0)
            compare(bar.isConverting, false)
        }

        function test_isMaxedFollowsTheWindow() {
            compare(bar.isMaxed, false)
            rootView.isMaxed = true
            compare(bar.isMaxed, true)
        }

        function test_theHomeTabShowsTheLoginName() {
            const tabBtn = button("mainPageBtn")
            compare(tabBtn.text, "王工")
            compare(tabBtn.x, 0)
            compare(tabBtn.width, 270)
            compare(tabBtn.height, 34)
            compare(tabBtn.textAnchors.leftMargin, 10)
            compare(tabBtn.textHorizontalAlignment, Text.AlignLeft)
            compare(tabBtn.textItem.font.pixelSize, EConfig.textPixelSize + 2)
        }

        function test_theHomeTabLooksCurrentOnTheHomeScreenOnly() {
            const tabBtn = button("mainPageBtn")
            compare(tabBtn.color, EConfig.eTitleBtnActived)
            compare(tabBtn.textColor, EConfig.eTitleTextActived)
            tab.currentTab = "a"
            compare(tabBtn.color, EConfig.eBackGround)
            compare(tabBtn.textColor, EConfig.eTitleText)
        }

        function test_theHomeTabOpensTheHomeScreen() {
            click("mainPageBtn")
            compare(home.takeCalls(), ["tabMgr.openTab(main)"])
        }

        function test_theStripLiesBetweenTheHomeTabAndTheButtons() {
            const strip = button("tabListView")
            compare(strip.x, 270)
            compare(strip.x + strip.width, button("minimizeBtn").parent.x)
            compare(strip.height, 34)
            compare(strip.orientation, ListView.Horizontal)
            compare(strip.interactive, false)
        }

        function test_tabsAre270WideUpToFour_data() {
            return [{ tag: "1", tabs: ["a"] }, { tag: "4", tabs: ["a", "b", "c", "d"] }]
        }

        function test_tabsAre270WideUpToFour(row) {
            tab.tabList = row.tabs
            waitForItemPolished(button("tabListView"))
            for (const name of row.tabs)
                compare(button("tab_" + name).width, 270)
        }

        function test_fourTabsStay270WideEvenWhereTheStripIsNarrower() {
            bar.width = 900
            tab.tabList = ["a", "b", "c", "d"]
            compare(button("tab_a").width, 270)
            verify(button("tabListView").width < 4 * 270)
            bar.width = home.width
        }

        function test_moreThanFourTabsShareTheStrip_data() {
            return [{ tag: "5", count: 5 }, { tag: "12", count: 12 }]
        }

        function test_moreThanFourTabsShareTheStrip(row) {
            tab.tabList = Array.from({ length: row.count }, function(unused, i) { return "t" + i })
            const strip = button("tabListView")
            compare(button("tab_t0").width, strip.width / row.count)
            compare(button("tab_t" + (row.count - 1)).width, strip.width / row.count)
        }

        function test_aTabShowsTheNameOfItsProject() {
            tab.tabList = ["a"]
            const tabBtn = button("tab_a")
            compare(tabBtn.text, "工程a")
            compare(tabBtn.textAnchors.leftMargin, 8)
            compare(tabBtn.textAnchors.rightMargin, 34 / 2 + 4)
            compare(tabBtn.textHorizontalAlignment, Text.AlignLeft)
            compare(tabBtn.textItem.font.pixelSize, EConfig.textPixelSize + 2)
        }

        function test_theCurrentTabLooksCurrent() {
            tab.tabList = ["a", "b"]
            tab.currentTab = "b"
            compare(button("tab_b").color, EConfig.eTitleBtnActived)
            compare(button("tab_b").textColor, EConfig.eTitleTextActived)
            compare(button("tab_a").color, EConfig.eBackGround)
            compare(button("tab_a").textColor, EConfig.eTitleText)
        }

        function test_aClickOnATabOpensIt() {
            tab.tabList = ["a", "b"]
            mouseClick(button("tab_b"), 40, 17)
            compare(home.takeCalls(), ["tabMgr.openTab(b)"])
        }

        function test_theCrossOfATabMakesItCurrentAndThenClosesIt() {
            tab.tabList = ["a", "b"]
            mouseClick(findChild(button("tab_b"), "tabCloseBtn"))
            compare(home.takeCalls(), ["tabMgr.openTab(b)", "tabMgr.closeTab(b)"])
        }

        function test_theCrossOfATabIsASmallSquareAtItsEnd() {
            tab.tabList = ["a"]
            const cross = findChild(button("tab_a"), "tabCloseBtn")
            compare(cross.width, 17)
            compare(cross.height, 17)
            compare(cross.x + cross.width, 270 - 4)
            compare(cross.border.width, 0)
            compare(cross.img, "qrc:/images/pop_ic_close.png")
            compare(cross.hoveredImg, "qrc:/images/pop_ic_close_hover.png")
            compare(cross.selectedImg, "qrc:/images/pop_ic_close_selected.png")
        }

        function test_helpIsThereOnProjectTabsOnly() {
            const help = button("helpBtn")
            compare(help.visible, false)
            tab.currentTab = "a"
            compare(help.visible, true)
            compare(help.width, 16)
            compare(help.height, 16)
            compare(help.y, 2)
            compare(help.x + help.width, button("minimizeBtn").parent.x - 8)
            compare(help.color, EConfig.eBackGround)
            compare(help.imageUrl, "qrc:/images/help.png")
            mouseClick(help)
            compare(home.takeCalls(), ["tabMgr.showHelp()"])
        }

        function test_theButtonsStandAtTheRightEdge() {
            const row = button("minimizeBtn").parent
            compare(row.x + row.width, bar.width - 4)
        }

        function test_textButtonsHaveOneSize_data() {
            return [{ tag: "console", name: "consoleBtn", sdk: false }, { tag: "logout", name: "logoutBtn", sdk: true },
                    { tag: "version", name: "versionBtn", sdk: false }]
        }

        function test_textButtonsHaveOneSize(row) {
            editorControl.isBimSdk = row.sdk
            const btn = button(row.name)
            compare(btn.visible, true)
            compare(btn.width, 55)
            compare(btn.height, 20)
            compare(btn.textColor, EConfig.eDialogBtnText)
            compare(btn.textItem.font.pixelSize, 13)
            compare(btn.textHorizontalAlignment, Text.AlignHCenter)
            compare(btn.border.width, 1)
            compare(btn.border.color, EConfig.eGridBtnBorder)
        }

        function test_textButtonsLightUpUnderThePointer_data() {
            return test_textButtonsHaveOneSize_data()
        }

        function test_textButtonsLightUpUnderThePointer(row) {
            editorControl.isBimSdk = row.sdk
            const btn = button(row.name)
            fuzzyCompare(btn.opacity, 0.7, 0.001)
            compare(btn.color, EConfig.eBackGround)
            mouseMove(btn, 5, 5)
            tryCompare(btn, "opacity", 1)
            compare(btn.color, EConfig.eTreeHover)
        }

        function test_logoutStandsWhereTheConsoleStandsOtherwise() {
            compare(button("consoleBtn").visible, true)
            compare(button("logoutBtn").visible, false)
            editorControl.isBimSdk = true
            compare(button("consoleBtn").visible, false)
            compare(button("logoutBtn").visible, true)
            compare(button("consoleBtn").text, "控制台")
            compare(button("logoutBtn").text, "注销")
        }

        function test_theConsoleButtonAsksForTheConsole() {
            click("consoleBtn")
            compare(home.takeCalls(), ["openWebConsole()"])
        }

        function test_theVersionIsShownAndAClickOnItDoesNothing() {
            compare(button("versionBtn").text, "V1.2")
            click("versionBtn")
            compare(home.takeCalls(), [])
        }

        function test_windowButtonsHaveTheirPictures_data() {
            return [
                { tag: "minimize", name: "minimizeBtn", maxed: false, base: "head_ic_minimum", end: "" },
                { tag: "maximize", name: "maximizeBtn", maxed: false, base: "head_ic_maximum", end: "" },
                { tag: "restore", name: "maximizeBtn", maxed: true, base: "head_ic_maximum", end: "_02" },
                { tag: "close", name: "closeBtn", maxed: false, base: "head_ic_close", end: "" }
            ]
        }

        function test_windowButtonsHaveTheirPictures(row) {
            rootView.isMaxed = row.maxed
            const btn = button(row.name)
            compare(btn.width, 28)
            compare(btn.height, 20)
            compare(btn.img, "qrc:/images/" + row.base + row.end + ".png")
            compare(btn.hoveredImg, "qrc:/images/" + row.base + "_hover" + row.end + ".png")
            compare(btn.selectedImg, "qrc:/images/" + row.base + "_selected" + row.end + ".png")
            for (const picture of [btn.img, btn.hoveredImg, btn.selectedImg])
                verify(screens.pictureWidth(picture) > 0, picture)
        }

        function test_aWindowButtonShowsTheStateOfThePointer() {
            const btn = button("minimizeBtn")
            compare(btn.currentImg, btn.img)
            mouseMove(btn, 5, 5)
            tryCompare(btn, "currentImg", btn.hoveredImg)
            mousePress(btn, 5, 5)
            compare(btn.currentImg, btn.selectedImg)
            mouseRelease(btn, 5, 5)
        }

        function test_minimizeMinimizes() {
            click("minimizeBtn")
            compare(home.takeCalls(), ["rootView.showMinimized()"])
        }

        function test_maximizeMaximizes() {
            click("maximizeBtn")
            compare(home.takeCalls(), ["rootView.showMaximized()"])
        }

        function test_maximizeOfAMaximizedWindowRestoresIt() {
            rootView.isMaxed = true
            click("maximizeBtn")
            compare(home.takeCalls(), ["rootView.showNormal()"])
        }

        // Dragging.

        function test_aDragMovesTheWindowByWhatThePointerMoved() {
            mousePress(bar, 700, 10)
            mouseMove(bar, 705, 13, -1, Qt.LeftButton)
            mouseMove(bar, 703, 9, -1, Qt.LeftButton)
            mouseRelease(bar, 703, 9)
            compare(home.takeCalls(), ["rootView.move(5,3)", "rootView.move(3,-1)"])
        }

        function test_aMoveBackToThePressedPlaceIsNone() {
            mousePress(bar, 700, 10)
            mouseMove(bar, 701, 10, -1, Qt.LeftButton)
            home.takeCalls()
            mouseMove(bar, 700, 10, -1, Qt.LeftButton)
            mouseRelease(bar, 700, 10)
            compare(home.takeCalls(), [])
        }

        function test_theFirstMoveOfAMaximizedWindowOnlyRestoresIt() {
            rootView.isMaxed = true
            mousePress(bar, 700, 10)
            mouseMove(bar, 705, 13, -1, Qt.LeftButton)
            compare(home.takeCalls(), ["rootView.changeSize()"])
            rootView.isMaxed = false
            mouseMove(bar, 500, 12, -1, Qt.LeftButton)
            compare(home.takeCalls(), [])
            mouseMove(bar, 510, 14, -1, Qt.LeftButton)
            mouseRelease(bar, 510, 14)
            compare(home.takeCalls(), ["rootView.move(10,2)"])
        }

        function test_aDoubleClickMaximizesAndIsNoDragForAMoment() {
            const area = button("dragArea")
            mouseDoubleClickSequence(bar, 700, 10)
            compare(home.takeCalls(), ["rootView.showMaximized()"])
            compare(area.mask, true)
            mousePress(bar, 700, 10)
            mouseMove(bar, 705, 13, -1, Qt.LeftButton)
            compare(home.takeCalls(), [])
            mouseRelease(bar, 705, 13)
            tryCompare(area, "mask", false)
            mousePress(bar, 700, 10)
            mouseMove(bar, 705, 13, -1, Qt.LeftButton)
            mouseRelease(bar, 705, 13)
            compare(home.takeCalls(), ["rootView.move(5,3)"])
        }

        function test_aDoubleClickOnAMaximizedWindowRestoresItWithoutTheMask() {
            rootView.isMaxed = true
            mouseDoubleClickSequence(bar, 700, 10)
            compare(home.takeCalls(), ["rootView.showNormal()"])
            compare(button("dragArea").mask, false)
        }

        function test_theBarShowsThatItCanBeDragged() {
            compare(button("dragArea").cursorShape, Qt.OpenHandCursor)
        }

        // The bar while a child shows a dialog.

        function test_theWholeBarIsDeadWhileAChildShowsADialog() {
            tab.tabList = ["a"]
            tab.currentTab = "a"
            tabMgr.dialogShow(true)
            compare(button("maskArea").enabled, true)
            compare(button("maskArea").hoverEnabled, true)
            for (const name of ["mainPageBtn", "tab_a", "helpBtn", "consoleBtn", "minimizeBtn", "maximizeBtn", "closeBtn"])
                click(name)
            mousePress(bar, 800, 10)
            mouseMove(bar, 805, 13, -1, Qt.LeftButton)
            mouseRelease(bar, 805, 13)
            compare(home.takeCalls(), [])
            tabMgr.dialogShow(false)
            compare(button("maskArea").enabled, false)
            click("minimizeBtn")
            compare(home.takeCalls(), ["rootView.showMinimized()"])
        }

        function test_theKeyboardDoesNotReachTheDeadBarEither() {
            button("minimizeBtn").forceActiveFocus(Qt.TabFocusReason)
            tabMgr.dialogShow(true)
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), [])
        }

        // Keyboard and screen reader.

        function test_tabGoesThroughTheBarFromLeftToRight() {
            tab.tabList = ["a"]
            tab.currentTab = "a"
            waitForItemPolished(button("tabListView"))
            button("mainPageBtn").forceActiveFocus(Qt.TabFocusReason)
            for (const name of ["tab_a", "tabCloseBtn", "helpBtn", "consoleBtn", "versionBtn", "minimizeBtn", "maximizeBtn",
                                "closeBtn"]) {
                keyClick(Qt.Key_Tab)
                verify(button(name).activeFocus, name)
                verify(button(name).visualFocus, name)
            }
        }

        function test_enterAndSpacePressTheButtonThatHasTheFocus_data() {
            return [{ tag: "enter", key: Qt.Key_Enter }, { tag: "return", key: Qt.Key_Return },
                    { tag: "space", key: Qt.Key_Space }]
        }

        function test_enterAndSpacePressTheButtonThatHasTheFocus(row) {
            button("minimizeBtn").forceActiveFocus(Qt.TabFocusReason)
            keyClick(row.key)
            compare(home.takeCalls(), ["rootView.showMinimized()"])
        }

        function test_eachControlSpeaks_data() {
            return [
                { tag: "mainPageBtn", role: Accessible.PageTab, spoken: "王工" },
                { tag: "tab_a", role: Accessible.PageTab, spoken: "工程a" },
                { tag: "tabCloseBtn", role: Accessible.Button, spoken: "关闭工程a" },
                { tag: "tabListView", role: Accessible.PageTabList, spoken: "打开的工程" },
                { tag: "helpBtn", role: Accessible.Button, spoken: "帮助" },
                { tag: "consoleBtn", role: Accessible.Button, spoken: "控制台" },
                { tag: "versionBtn", role: Accessible.Button, spoken: "V1.2" },
                { tag: "minimizeBtn", role: Accessible.Button, spoken: "最小化" },
                { tag: "maximizeBtn", role: Accessible.Button, spoken: "最大化" },
                { tag: "closeBtn", role: Accessible.Button, spoken: "关闭" }
            ]
        }

        function test_eachControlSpeaks(row) {
            tab.tabList = ["a"]
            tab.currentTab = "a"
            compare(button(row.tag).Accessible.role, row.role)
            compare(screens.spoken(button(row.tag)).name, row.spoken)
        }

        function test_aScreenReaderPressesAButton() {
            screens.pressBySpeech(button("minimizeBtn"))
            compare(home.takeCalls(), ["rootView.showMinimized()"])
        }
    }
}
