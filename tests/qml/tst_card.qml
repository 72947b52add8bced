// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import myData.CGridViewData 1.0
import "qrc:/EditorCommon/qmls/Config"

HomeTest {
    id: home

    property var data: null

    CardCase {
        name: "card"

        // Data.

        function test_withoutDataTheCardHasNoState() {
            const empty = createTemporaryObject(cardComponent, home, { dataModel: null })
            compare(empty.currProState, -1)
            compare(empty.currDealState, CGridViewData.DS_NonState)
            compare(empty.tabOpened, false)
        }

        function test_theCardHasItsSizeAndGround() {
            const plain = createTemporaryObject(cardComponent, home)
            compare(plain.width, 230)
            compare(plain.height, 160)
            compare(plain.color, EConfig.eGridBackGround)
            compare(plain.count, 0)
            compare(plain.yPos, 0)
        }

        function test_theCardFollowsItsData() {
            home.data.stateType = 3
            home.data.dealState = 2
            compare(card.currProState, 3)
            compare(card.currDealState, CGridViewData.DS_DownloadState)
            home.data.name = "大楼"
            compare(part("nameText").text, "大楼")
        }

        function test_aTabOfTheProjectLocksTheCard() {
            compare(card.tabOpened, false)
            tab.tabList = ["g2", "g1"]
            compare(card.tabOpened, true)
            tab.tabList = ["g2"]
            compare(card.tabOpened, false)
        }

        // States.

        function test_eachStateHasAPictureAndAText_data() {
            return [
                { tag: "0", state: 0, icon: "state_ic_unmatched", text: "工程未上传服务器" },
                { tag: "1", state: 1, icon: "state_ic_matched", text: "工程已更新至最新" },
                { tag: "2", state: 2, icon: "modify", text: "本地工程有更新" },
                { tag: "3", state: 3, icon: "update", text: "工程有更新" },
                { tag: "4", state: 4, icon: "conflict", text: "工程数据于服务器冲突" },
                { tag: "5", state: 5, icon: "fail", text: "工程上传失败" }
            ]
        }

        function test_eachStateHasAPictureAndAText(row) {
            home.data.stateType = row.state
            compare(card.sourceList[row.state], "qrc:/images/" + row.icon + ".png")
            compare(part("stateIcon").source, "qrc:/images/" + row.icon + ".png")
            compare(part("stateIcon").status, Image.Ready)
            compare(part("stateTip").text, row.text)
            compare(screens.spoken(card).description, row.text)
        }

        function test_theStatesPictureIsThereFromTheStart_data() {
            return test_eachStateHasAPictureAndAText_data()
        }

        function test_theStatesPictureIsThereFromTheStart(row) {
            make({ stateType: row.state })
            compare(part("stateIcon").source, "qrc:/images/" + row.icon + ".png")
        }

        function test_theStatesTextAppearsAtThePointer() {
            const tip = part("stateTip")
            compare(tip.delay, 200)
            compare(tip.pixelSize, 13)
            mouseMove(part("stateArea"), 4, 4)
            tryCompare(tip, "opened", true)
            compare(tip.place.x, 12)
            mouseMove(home, 900, 700)
            tryCompare(tip, "opened", false)
        }

        // Places.

        function test_thePartsStandWhereTheyBelong_data() {
            return [
                { tag: "iconItem", x: 0, y: 0, width: 215, height: 108 },
                { tag: "splitLine", x: 0, y: 108, width: 215, height: 1 },
                { tag: "progressbarId", x: 0, y: 108, width: 215, height: 1 },
                { tag: "typeIcon", x: 6, y: 6, width: 16, height: 16 },
                { tag: "titleRow", x: 9, y: 119, width: 197, height: 15 },
                { tag: "stateIcon", x: 9, y: 120, width: 14, height: 14 }
            ]
        }

        function test_thePartsStandWhereTheyBelong(row) {
            const item = part(row.tag)
            const at = place(row.tag)
            compare(at.x, row.x)
            compare(at.y, row.y)
            compare(item.width, row.width)
            compare(item.height, row.height)
        }

        function test_thePictureKeepsItsAspectAndIsReadAnew() {
            const picture = part("picture")
            compare(picture.source, "qrc:/images/card_ic_default.png")
            compare(picture.fillMode, Image.PreserveAspectFit)
            compare(picture.cache, false)
            compare(part("iconItem").clip, true)
            compare(part("splitLine").color, EConfig.eGlobalBackGround)
            compare(part("typeIcon").source, "qrc:/images/bar_ic_bim.png")
        }

        function test_aPictureThatIsNotThereLeavesTheCardWhole() {
            ignoreWarning(/Cannot open/)
            make({ imag: "file:///nowhere/picture.jpg" })
            tryCompare(part("picture"), "status", Image.Error)
            verify(screens.takeWarnings().length > 0)
            compare(part("nameText").text, "小楼")
        }

        function test_theNameIsElided() {
            home.data.name = "非常长的工程名称非常长的工程名称非常长的工程名称"
            compare(part("nameText").truncated, true)
            verify(place("nameText").x + part("nameText").width <= 215)
            compare(part("nameText").font.pixelSize, 14)
        }

        function test_aNameIsNoMarkup() {
            home.data.name = "<b>x</b>"
            compare(part("nameText").textFormat, Text.PlainText)
        }

        // What is converted on the server.

        function test_theTipTextStandsOverThePicture() {
            const tip = part("tipText")
            compare(tip.visible, false)
            screens.setTip(home.data, "共有1个文件转化中,\n你的第一个文件转换中")
            compare(tip.visible, true)
            compare(tip.text, "共有1个文件转化中,\n你的第一个文件转换中")
            compare(tip.color, "#d9a44c")
            compare(tip.font.pixelSize, 12)
            compare(tip.font.weight, Font.ExtraLight)
            compare(tip.horizontalAlignment, Text.AlignHCenter)
        }

        function test_theMarkOfAConversionComesWithTheTipText() {
            compare(part("convertIcon").visible, false)
            compare(part("convertText").visible, false)
            screens.setTip(home.data, "x")
            compare(part("convertIcon").visible, true)
            compare(part("convertIcon").source, "qrc:/images/ic_change.png")
            compare(place("convertIcon").x, 10)
            compare(part("convertText").visible, true)
            compare(part("convertText").text, "转化中")
            compare(place("convertText").x, 10 + part("convertIcon").width + 3)
            compare(part("convertText").color, EConfig.tipTextColor)
            compare(part("convertText").font.pixelSize, 12)
        }

        function test_theMarkOfAConversionLeavesRoomForTheButtons() {
            serviceConvertMgr.isVisible = true
            screens.setTip(home.data, "x")
            // The outermost button's picture begins 6 points from its edge.
            verify(place("convertText").x + part("convertText").width < place("proInfoBtn").x + 6)
            verify(part("convertText").width > 0)
        }

        // Buttons.

        function test_theButtonsStandFromRightToLeft() {
            serviceConvertMgr.isVisible = true
            waitForItemPolished(part("delBtn").parent)
            let right = 215
            for (const name of ["delBtn", "uploadBtn", "updateBtn", "kyvconvertBtn", "serviceBtn", "proInfoBtn"]) {
                const button = part(name)
                compare(button.width, 28, name)
                compare(button.height, 21, name)
                compare(place(name).x + 28, right, name)
                right -= 28
            }
        }

        function test_aHiddenButtonLeavesNoGap() {
            editorControl.isBimSdk = true
            waitForItemPolished(part("delBtn").parent)
            compare(place("proInfoBtn").x + 28, place("updateBtn").x)
        }

        function test_eachButtonHasItsPicturesAndTip_data() {
            return [
                { tag: "uploadBtn", base: "card_ic_upload", tip: "上传工程" },
                { tag: "updateBtn", base: "card_ic_update", tip: "更新工程" },
                { tag: "kyvconvertBtn", base: "card_ic_web", tip: "服务器转换kyv" },
                { tag: "serviceBtn", base: "card_ic_bim", tip: "打开服务端工程" },
                { tag: "proInfoBtn", base: "card_ic_list", tip: "工程信息" }
            ]
        }

        function test_eachButtonHasItsPicturesAndTip(row) {
            const button = part(row.tag)
            compare(button.tipText, row.tip)
            compare(button.img, "qrc:/images/" + row.base + ".png")
            compare(button.hoveredImg, "qrc:/images/" + row.base + "_hover.png")
            compare(button.selectedImg, "qrc:/images/" + row.base + "_selected.png")
            compare(button.disabledImg, "qrc:/images/" + row.base + "_disable.png")
            for (const picture of [button.img, button.hoveredImg, button.selectedImg, button.disabledImg])
                verify(screens.pictureWidth(picture) > 0, picture)
            tab.tabList = ["g1"]
            compare(button.currentImg, button.disabledImg)
            compare(screens.spoken(button).name, row.tip)
        }

        function test_theDeleteButtonHasGroundsInsteadOfPictures() {
            const button = part("delBtn")
            compare(button.tipText, "从列表中移除")
            compare(button.opacityImageUrl, "qrc:/images/card_ic_del.png")
            compare(button.hoveredBtnColor, EConfig.eBorder)
            compare(button.selectedBtnColor, EConfig.eGlobalBackGround)
            compare(button.btnColor, EConfig.eGridBackGround)
            compare(button.disabledBtnColor, EConfig.eGridBackGround)
            tab.tabList = ["g1"]
            compare(button.opacityImageUrl, "qrc:/images/tab_bt_ic_del_disable.png")
            verify(screens.pictureWidth("qrc:/images/tab_bt_ic_del_disable.png") > 0)
        }

        function test_theDeleteButtonShowsTheStateOfThePointer() {
            const button = part("delBtn")
            compare(button.color, EConfig.eGridBackGround)
            mouseMove(button, 5, 5)
            tryCompare(button, "color", EConfig.eBorder)
            mousePress(button, 5, 5)
            compare(button.color, EConfig.eGlobalBackGround)
            mouseRelease(button, 5, 5)
        }

        function test_eachButtonTellsTheGuid_data() {
            return [
                { tag: "delBtn", call: "del(g1)" }, { tag: "uploadBtn", call: "upload(g1)" },
                { tag: "updateBtn", call: "update(g1)" }, { tag: "kyvconvertBtn", call: "convert(g1)" },
                { tag: "serviceBtn", call: "web(g1)" }, { tag: "proInfoBtn", call: "info(g1)" }
            ]
        }

        function test_eachButtonTellsTheGuid(row) {
            serviceConvertMgr.isVisible = true
            waitForItemPolished(part("delBtn").parent)
            mouseClick(part(row.tag))
            compare(home.takeCalls(), [row.call])
        }

        function test_theConversionButtonIsForBuildingsWithTheServerSwitchedOn_data() {
            return [
                { tag: "building", type: "BIM", sdk: false, on: true, shown: true },
                { tag: "scene", type: "CIM", sdk: false, on: true, shown: false },
                { tag: "sdk", type: "BIM", sdk: true, on: true, shown: false },
                { tag: "off", type: "BIM", sdk: false, on: false, shown: false }
            ]
        }

        function test_theConversionButtonIsForBuildingsWithTheServerSwitchedOn(row) {
            make({ projType: row.type })
            editorControl.isBimSdk = row.sdk
            serviceConvertMgr.isVisible = row.on
            compare(part("kyvconvertBtn").visible, row.shown)
        }

        function test_theServersProjectIsForEverybodyButTheSdk() {
            compare(part("serviceBtn").visible, true)
            editorControl.isBimSdk = true
            compare(part("serviceBtn").visible, false)
            for (const name of ["delBtn", "uploadBtn", "updateBtn", "proInfoBtn"])
                compare(part(name).visible, true, name)
        }

        function test_anythingThatRunsLocksButtonsAndPicture_data() {
            return [
                { tag: "tab", tabs: ["g1"], deal: 0 }, { tag: "upload", tabs: [], deal: 1 },
                { tag: "download", tabs: [], deal: 2 }, { tag: "update", tabs: [], deal: 3 }
            ]
        }

        function test_anythingThatRunsLocksButtonsAndPicture(row) {
            tab.tabList = row.tabs
            home.data.dealState = row.deal
            serviceConvertMgr.isVisible = true
            waitForItemPolished(part("delBtn").parent)
            for (const name of buttonNames.concat(["kyvconvertBtn"])) {
                compare(part(name).enabled, false, name)
                mouseClick(part(name))
            }
            compare(part("iconItem").enabled, false)
            mouseDoubleClickSequence(part("pictureArea"))
            card.open()
            card.showInfo()
            card.remove()
            compare(home.takeCalls(), [])
            home.data.dealState = 0
            tab.tabList = []
            for (const name of buttonNames)
                compare(part(name).enabled, true, name)
            compare(part("iconItem").enabled, true)
        }

        function test_aDoubleClickOnThePictureOpensTheProject() {
            mouseDoubleClickSequence(part("pictureArea"))
            compare(home.takeCalls(), ["open(g1)"])
        }

        function test_aSingleClickOnThePictureDoesNotOpenTheProject() {
            mouseClick(part("pictureArea"))
            compare(home.takeCalls(), [])
        }

        function test_aTipOfAButtonAppears() {
            mouseMove(part("uploadBtn"), 5, 5)
            tryVerify(function() { return home.findText("上传工程") !== null })
            mouseMove(home, 900, 700)
            tryVerify(function() { return home.findText("上传工程") === null })
        }

        // Speech.

        function test_theCardSpeaks() {
            const said = screens.spoken(card)
            compare(card.Accessible.role, Accessible.ListItem)
            compare(said.name, "小楼")
            screens.pressBySpeech(card)
            compare(home.takeCalls(), ["open(g1)"])
        }

        function test_theCoverSpeaks() {
            home.data.needUpgrade = true
            compare(screens.spoken(part("upgradeCover")).name, "数据需要升级,点此升级")
            home.data.isUpgrade = true
            compare(screens.spoken(part("upgradeCover")).name, "数据升级中...")
            screens.pressBySpeech(part("upgradeCover"))
            compare(home.takeCalls(), ["upgrade(g1)"])
        }
    }
}
