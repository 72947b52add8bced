// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import myData.CGridViewData 1.0
import "qrc:/EditorCommon/qmls/Config"

HomeTest {
    id: home

    property var data: null

    CardCase {
        name: "cardmotion"

        // Upgrade.

        function test_theCoverLiesOnCardsThatMustBeUpgraded_data() {
            return [
                { tag: "no", upgrade: false, deal: 0, shown: false },
                { tag: "yes", upgrade: true, deal: 0, shown: true },
                { tag: "while a download runs", upgrade: true, deal: 2, shown: false }
            ]
        }

        function test_theCoverLiesOnCardsThatMustBeUpgraded(row) {
            home.data.needUpgrade = row.upgrade
            home.data.dealState = row.deal
            const cover = part("upgradeCover")
            compare(cover.visible, row.shown)
            compare(cover.width, 215)
            compare(cover.height, 160)
            compare(part("upgradeGround").color, EConfig.eGridBackGround)
            fuzzyCompare(part("upgradeGround").opacity, 0.8, 0.001)
        }

        function test_theCoverSaysWhatIsToBeDone() {
            home.data.needUpgrade = true
            compare(part("upgradeText").visible, true)
            compare(part("upgradeText").text, "数据需要升级,点此升级")
            compare(part("upgradingText").visible, false)
        }

        function test_theCoverSaysThatAnUpgradeRuns() {
            home.data.needUpgrade = true
            home.data.isUpgrade = true
            compare(part("upgradeText").visible, false)
            compare(part("upgradingText").visible, true)
            compare(part("upgradingText").text, "数据升级中...")
        }

        function test_aClickOnTheCoverAsksForTheUpgrade_data() {
            return [
                { tag: "waiting", running: false, tabs: [] }, { tag: "running", running: true, tabs: [] },
                { tag: "with a tab open", running: false, tabs: ["g1"] }
            ]
        }

        function test_aClickOnTheCoverAsksForTheUpgrade(row) {
            home.data.needUpgrade = true
            home.data.isUpgrade = row.running
            tab.tabList = row.tabs
            mouseClick(card, 10, 10)
            mouseClick(card, 200, 150)
            compare(home.takeCalls(), ["upgrade(g1)", "upgrade(g1)"])
        }

        // Motion.

        function test_anUploadMovesAnArrowUp() {
            home.data.dealState = CGridViewData.DS_UploadState
            const arrow = part("uploadImage")
            compare(arrow.visible, true)
            compare(arrow.source, "qrc:/images/upload2.png")
            compare(arrow.rotation, 0)
            compare(part("uploadImageBelow").rotation, 0)
            compare(part("uploadImageBelow").y, arrow.y + arrow.height)
            compare(part("uploadAnimationId").running, true)
            compare(part("downloadAnimationId").running, false)
            tryVerify(function() { return arrow.y < 0 })
        }

        function test_aDownloadMovesAnArrowDown() {
            home.data.dealState = CGridViewData.DS_DownloadState
            const arrow = part("uploadImage")
            compare(arrow.visible, true)
            compare(arrow.rotation, 180)
            compare(part("uploadImageBelow").rotation, 180)
            compare(part("downloadAnimationId").running, true)
            compare(part("uploadAnimationId").running, false)
            tryVerify(function() { return arrow.y > 0 })
        }

        function test_anUpdateTurnsTwoArrows() {
            home.data.dealState = CGridViewData.DS_UpDateState
            const arrows = part("updateImage")
            compare(arrows.visible, true)
            compare(arrows.source, "qrc:/images/update2.png")
            compare(part("updateAnimationId").running, true)
            compare(part("uploadImage").visible, false)
            tryVerify(function() { return arrows.rotation > 0 })
        }

        function test_theAnimationsHaveTheirRangesAndTimes_data() {
            return [
                { tag: "downloadAnimationId", from: 0, to: 40 }, { tag: "uploadAnimationId", from: 0, to: -40 },
                { tag: "updateAnimationId", from: 0, to: 180 }
            ]
        }

        function test_theAnimationsHaveTheirRangesAndTimes(row) {
            const animation = part(row.tag)
            compare(animation.from, row.from)
            compare(animation.to, row.to)
            compare(animation.duration, 500)
            verify(animation.loops < 0)
        }

        function test_theArrowStaysInItsBox() {
            compare(part("uploadImage").parent.clip, true)
            compare(part("uploadImage").parent.height, part("uploadImage").height)
        }

        function test_theLineFillsInASecondAndBeginsAgain() {
            const line = part("progressbarId")
            compare(line.value, 0)
            compare(part("timerId").interval, 20)
            home.data.dealState = CGridViewData.DS_DownloadState
            compare(part("timerId").running, true)
            tryVerify(function() { return line.value > 0.5 })
            tryVerify(function() { return line.value < 0.2 })
            fuzzyCompare(line.contentItem.children[0].width, line.visualPosition * 215, 0.01)
            compare(line.contentItem.children[0].color, "#00c7f5")
        }

        function test_theLineGoesUpByAFiftiethEachTime() {
            const line = part("progressbarId")
            const timer = part("timerId")
            card.count = 980
            timer.triggered()
            fuzzyCompare(line.value, 0.98, 0.0001)
            timer.triggered()
            compare(line.value, 1)
            compare(card.count, 1020)
            timer.triggered()
            compare(line.value, 1)
            compare(card.count, 20)
        }

        function test_whatMovesEndsWithTheOperation_data() {
            return [
                { tag: "upload", deal: 1, picture: "uploadImage", animation: "uploadAnimationId" },
                { tag: "download", deal: 2, picture: "uploadImage", animation: "downloadAnimationId" },
                { tag: "update", deal: 3, picture: "updateImage", animation: "updateAnimationId" }
            ]
        }

        function test_whatMovesEndsWithTheOperation(row) {
            home.data.dealState = row.deal
            compare(part(row.animation).running, true)
            home.data.dealState = CGridViewData.DS_NonState
            compare(part(row.animation).running, false)
            compare(part("timerId").running, false)
            compare(part("progressbarId").value, 1)
            compare(part(row.picture).visible, true)
            tryCompare(part(row.picture), "visible", false)
            tryCompare(part("progressbarId"), "value", 0)
        }

        function test_aCardWithoutAnOperationHasAnEmptyLine() {
            home.data.dealState = CGridViewData.DS_NonState
            compare(part("progressbarId").value, 0)
        }

        function test_aCardThatIsMadeDuringAnOperationMovesToo() {
            make({ dealState: 2 })
            compare(part("downloadAnimationId").running, true)
            compare(part("timerId").running, true)
            compare(part("uploadImage").visible, true)
        }
    }
}
