// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"

HomeTest {
    id: home

    PanelCase {
        name: "tree"

        // The tree.

        function test_theTreeHasItsPictures() {
            compare(tree().downImg, "qrc:/images/bar_ic_zhankai.png")
            compare(tree().rightImg, "qrc:/images/bar_ic_shouqi.png")
            compare(tree().leftPaddingOffset, 16)
            compare(tree().model, leftPanelModel.treeModel)
            compare(tree().realTreeModel, leftPanelModel.treeModel)
        }

        function test_aProjectShowsItsMap() {
            compare(inRow("a", "txtName").text, "甲楼")
            compare(inRow("a", "txtName").rowIdentifier, "a")
            compare(inRow("a", "txtName").color, "#dddddd")
            compare(inRow("a", "txtName").elide, Text.ElideRight)
            compare(inRow("a", "headerImg").source, bim)
            compare(inRow("a", "stateImg").source, state)
            compare(inRow("a", "stateImg").visible, true)
            compare(inRow("a", "branchImage").visible, false)
            compare(inRow("b", "stateImg").source, "")
        }

        function test_aDemonstrationSaysSo() {
            compare(inRow("b", "txtName").text, "乙楼 (Demo工程)")
            compare(inRow("b", "tip").text, "乙楼 (Demo工程)")
        }

        function test_aRowWithoutAGuidHasAnEmptyIdentifier() {
            leftPanelModel.treeModel = screens.makeTree([{ text1: "无" }])
            compare(findChild(waitForRow(""), "txtName").rowIdentifier, "")
        }

        function test_partsOfARowStandWhereTheyBelong() {
            const line = row("a")
            const ground = inRow("a", "ground")
            compare(line.height, 40)
            compare(ground.y, 6)
            compare(ground.x + ground.width, line.width - 10)
            compare(ground.border.width, 1)
            compare(ground.mapFromItem(inRow("a", "headerImg"), 0, 0).x, 16)
            compare(ground.mapFromItem(inRow("a", "txtName"), 0, 0).x, 16 + 16 + 10)
            compare(ground.mapFromItem(inRow("a", "stateImg"), 14, 0).x, ground.width - 10)
        }

        function test_deeperRowsAreIndentedAndSmaller() {
            showOrganisation()
            open("org1")
            waitForRow("org2")
            open("org2")
            waitForRow("a")
            const depths = { org1: 0, org2: 1, a: 2 }
            for (const guid in depths) {
                const ground = inRow(guid, "ground")
                compare(ground.mapFromItem(inRow(guid, "headerImg"), 0, 0).x, 16 * (depths[guid] + 1), guid)
                compare(inRow(guid, "txtName").font.pixelSize, depths[guid] === 0 ? 14 : 12, guid)
            }
        }

        function test_aDepartmentShowsWhetherItIsOpen() {
            showOrganisation()
            const mark = inRow("org1", "branchImage")
            compare(mark.visible, true)
            compare(inRow("org1", "stateImg").visible, false)
            compare(mark.source, "qrc:/images/bar_ic_shouqi.png")
            compare(inRow("org1", "ground").mapFromItem(mark, 16, 0).x, inRow("org1", "ground").width - 10)
            open("org1")
            tryVerify(function() { return inRow("org1", "branchImage").source == "qrc:/images/bar_ic_zhankai.png" })
        }

        function test_aRowIsColouredByThePointer() {
            const ground = inRow("a", "ground")
            compare(ground.color, EConfig.eBackGround)
            compare(ground.border.color, EConfig.eBackGround)
            mouseMove(row("a"), 60, 20)
            tryCompare(ground, "color", EConfig.eTreeHover)
            compare(ground.border.color, EConfig.eHoverBorderColor)
            mousePress(row("a"), 60, 20)
            compare(ground.color, EConfig.eTreeSelected)
            compare(ground.border.color, EConfig.ePressedBorderColor)
            mouseRelease(row("a"), 60, 20)
            mouseMove(row("b"), 60, 20)
            compare(ground.color, EConfig.eTreeSelected)
            compare(inRow("b", "ground").color, EConfig.eTreeHover)
        }

        function test_theTipOfARowComesAndGoesWithThePointer() {
            const tip = inRow("a", "tip")
            compare(tip.delay, 300)
            compare(tip.pixelSize, 14)
            compare(tip.text, "甲楼")
            mouseMove(row("a"), 60, 20)
            tryCompare(tip, "opened", true)
            mouseMove(home, 900, 750)
            tryCompare(tip, "opened", false)
        }

        // Mouse.

        function test_aClickOnADepartmentTogglesItAndNothingElse() {
            showOrganisation()
            open("org1")
            waitForRow("org2")
            compare(tree().selection.hasSelection, false)
            open("org1")
            waitForNoRow("org2")
            compare(home.takeCalls(), [])
        }

        function test_aDoubleClickOnADepartmentDownloadsNothing() {
            showOrganisation()
            mouseDoubleClickSequence(row("org1"), 100, 20)
            waitForRow("org2")
            compare(home.takeCalls(), [])
        }

        function test_anEmptyDepartmentTakesNoClick() {
            showOrganisation()
            open("org1")
            waitForRow("org3")
            open("org3")
            mouseDoubleClickSequence(row("org3"), 100, 20)
            compare(tree().selection.hasSelection, false)
            compare(home.takeCalls(), [])
        }

        function test_aClickOnAProjectSelectsItAtOnceAndAsksForItsPropertiesAfterAMoment() {
            mouseClick(row("a"), 60, 20)
            compare(tree().selection.selectedIndexes.length, 1)
            compare(tree().model.data(tree().selection.currentIndex, Qt.UserRole + 1).text2, "a")
            compare(home.takeCalls(), [])
            tryVerify(function() { return home.calls.length > 0 })
            compare(home.takeCalls(), ["info(a)"])
            mouseClick(row("b"), 60, 20)
            compare(tree().selection.selectedIndexes.length, 1)
            tryVerify(function() { return home.calls.length > 0 })
            compare(home.takeCalls(), ["info(b)"])
        }

        function test_aDoubleClickDownloadsAndNeverAsksForTheProperties() {
            mouseDoubleClickSequence(row("a"), 60, 20)
            compare(home.takeCalls(), ["editorControl.slotTreeDblClick(a)"])
            // What comes next is the answer to the next click.
            mouseClick(row("b"), 60, 20)
            tryVerify(function() { return home.calls.length > 0 })
            compare(home.takeCalls(), ["info(b)"])
        }
    }
}
