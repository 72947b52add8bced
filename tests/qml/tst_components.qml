// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"
import "qrc:/qmls/component"

HomeTest {
    id: home

    Column {
        x: 20
        y: 20
        spacing: 10

        ETextBtn {
            id: textBtn

            text: "按钮"
            tipText: "提示文字"
            onClick: home.called("text")
        }

        EImageBtn {
            id: imageBtn

            imageUrl: "qrc:/images/help.png"
            tipText: "帮助"
            onClick: home.called("image")
        }

        EHoverImageBtn {
            id: hoverBtn

            img: "qrc:/images/ic_refresh.png"
            hoveredImg: "qrc:/images/ic_refresh_hover.png"
            onClick: home.called("hover")
        }

        EOColorImgBtn {
            id: colorBtn

            width: 28
            height: 21
            btnColor: "#010101"
            hoveredBtnColor: "#020202"
            selectedBtnColor: "#030303"
            disabledBtnColor: "#040404"
            opacityImageUrl: "qrc:/images/card_ic_del.png"
            onClick: home.called("color")
        }

        EImgTextBtn {
            id: imgTextBtn

            imageUrl: "qrc:/images/bt_ic_add.png"
            text: "新建"
            onClick: home.called("imgText")
        }

        EDialogTextBtn {
            id: primaryBtn

            text: "保存"
            primary: true
        }

        EDialogTextBtn {
            id: dialogBtn

            text: "确定"
            onClick: home.called("dialog")
        }

        ESearchBox {
            id: searchBox

            onTextChanged: home.called("search", text)
        }

        EScrollView {
            id: scroll

            width: 200
            height: 60
            barOffset: 12

            ListView {
                id: scrolled

                model: 10
                delegate: Item {
                    width: 200
                    height: 20
                }
            }
        }

        ECheckBox {
            id: check

            width: 14
            height: 14
            eCheckedUrl: "qrc:/images/ic_xuanzhong.png"
            eUnCheckedUrl: "qrc:/images/help.png"
            partCheckColor: "#1473e6"
            text: "删除空楼层"
        }

        ETextField {
            id: field

            text: "值"
        }
    }

    Rectangle {
        id: hovered

        x: 500
        y: 20
        width: 100
        height: 20

        EToolTip {
            id: tip

            delay: 0
            text: "说明"
        }
    }

    Item {
        id: leaving

        EToolTip {
            id: leavingTip

            delay: 20
            text: "x"
        }
    }

    EToolTip {
        id: laterTip

        delay: 100
        text: "后来"
    }

    EMessageBox {
        id: box

        parent: home
        title: "标题"
        contentText: "正文"
        onYesClick: home.called("yes")
        onNoClick: home.called("no")
    }

    EDialog {
        id: dialog

        parent: home
        width: 300
        height: 200
        onOpened: home.called("opened")
        onClosed: home.called("closed")
        contentItem: Item {}
    }

    TestCase {
        name: "components"
        when: windowShown

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            home.forceActiveFocus()
            mouseMove(home, 1300, 800)
            searchBox.text = ""
            box.noText = "取消"
            box.needsAnswer = true
            home.calls = []
        }

        function cleanup() {
            for (const button of [textBtn, imageBtn, hoverBtn, colorBtn, imgTextBtn, dialogBtn])
                button.enabled = true
            compare(screens.takeWarnings(), [])
        }

        // Buttons.

        function buttons() {
            return [
                { tag: "text", item: textBtn }, { tag: "image", item: imageBtn }, { tag: "hover", item: hoverBtn },
                { tag: "color", item: colorBtn }, { tag: "imgText", item: imgTextBtn }, { tag: "dialog", item: dialogBtn }
            ]
        }

        function test_aClickPressesOnceAndTheFocusStays_data() { return buttons() }
        function test_aClickPressesOnceAndTheFocusStays(row) {
            mouseClick(row.item)
            compare(home.takeCalls(), [row.tag + "()"])
            compare(row.item.activeFocus, false)
        }

        function test_enterAndSpacePressOnce_data() { return buttons() }
        function test_enterAndSpacePressOnce(row) {
            row.item.forceActiveFocus(Qt.TabFocusReason)
            compare(row.item.visualFocus, true)
            for (const key of [Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space]) {
                keyClick(key)
                compare(home.takeCalls(), [row.tag + "()"])
            }
        }

        function test_aDisabledButtonTakesNothing_data() { return buttons() }
        function test_aDisabledButtonTakesNothing(row) {
            row.item.enabled = false
            mouseClick(row.item)
            compare(home.takeCalls(), [])
        }

        function test_aButtonIsPressedByAScreenReader_data() { return buttons() }
        function test_aButtonIsPressedByAScreenReader(row) {
            compare(row.item.Accessible.role, Accessible.Button)
            screens.pressBySpeech(row.item)
            compare(home.takeCalls(), [row.tag + "()"])
        }

        function test_theTipIsSpokenAndWithoutOneTheText() {
            compare(screens.spoken(textBtn).name, "提示文字")
            compare(screens.spoken(imgTextBtn).name, "新建")
        }

        function test_theTipOfAButtonComesWithThePointer() {
            compare(home.findText("提示文字"), null)
            mouseMove(textBtn, 5, 5)
            compare(textBtn.containsMouse, true)
            tryVerify(function() { return home.findText("提示文字") !== null })
            mouseMove(home, 1300, 800)
            tryVerify(function() { return home.findText("提示文字") === null })
        }

        function test_aStateWithoutAPictureShowsThePlainOne() {
            compare(hoverBtn.currentImg, "qrc:/images/ic_refresh.png")
            mouseMove(hoverBtn, 5, 5)
            tryCompare(hoverBtn, "currentImg", "qrc:/images/ic_refresh_hover.png")
            mousePress(hoverBtn, 5, 5)
            compare(hoverBtn.currentImg, "qrc:/images/ic_refresh_hover.png")
            mouseRelease(hoverBtn, 5, 5)
            hoverBtn.enabled = false
            compare(hoverBtn.currentImg, "qrc:/images/ic_refresh.png")
        }

        function test_aPictureTakesTheSizeThatIsAskedFor() {
            compare(hoverBtn.implicitWidth, 16)
            hoverBtn.sourceWidth = 24
            hoverBtn.sourceHeight = 20
            compare(hoverBtn.implicitWidth, 24)
            compare(hoverBtn.implicitHeight, 20)
            hoverBtn.sourceWidth = 0
            hoverBtn.sourceHeight = 0
        }

        function test_theGroundFollowsTheState() {
            compare(colorBtn.color, "#010101")
            mouseMove(colorBtn, 5, 5)
            tryCompare(colorBtn, "color", "#020202")
            mousePress(colorBtn, 5, 5)
            compare(colorBtn.color, "#030303")
            mouseRelease(colorBtn, 5, 5)
            colorBtn.enabled = false
            compare(colorBtn.color, "#040404")
        }

        function test_thePrimaryButtonStandsOut() {
            compare(primaryBtn.color, EConfig.eAccent)
            compare(primaryBtn.textColor, EConfig.eTextHighColor)
            mouseMove(primaryBtn, 5, 5)
            tryCompare(primaryBtn, "color", EConfig.eAccentHover)
            compare(dialogBtn.color, EConfig.eDialogBtn)
            compare(dialogBtn.textColor, EConfig.eDialogBtnText)
        }

        function test_aLongTextOfAButtonIsElided() {
            compare(textBtn.textItem.elide, Text.ElideRight)
            compare(textBtn.textHorizontalAlignment, Text.AlignHCenter)
        }

        // Fields.

        function test_theSearchBoxTellsItsText() {
            mouseClick(searchBox)
            keyClick("a")
            keyClick("b")
            compare(searchBox.text, "ab")
            compare(home.takeCalls(), ["search(a)", "search(ab)"])
        }

        function test_theCrossEmptiesTheSearchBoxAndKeepsTheKeyboardThere() {
            searchBox.text = "ab"
            home.takeCalls()
            mouseClick(home.find(searchBox, "clearBtn"))
            compare(searchBox.text, "")
            compare(home.takeCalls(), ["search()"])
            compare(searchBox.activeFocus, true)
        }

        function test_theCrossIsThereWithATextOnly() {
            compare(home.find(searchBox, "clearBtn"), null)
            searchBox.text = "a"
            verify(home.find(searchBox, "clearBtn") !== null)
        }

        function test_escapeEmptiesTheSearchBox() {
            searchBox.forceActiveFocus()
            keyClick("a")
            keyClick(Qt.Key_Escape)
            compare(searchBox.text, "")
        }

        function test_aFieldThatIsReadOnlyKeepsItsText() {
            field.readOnly = true
            mouseClick(field)
            keyClick("x")
            compare(field.text, "值")
            compare(field.displayText, "值")
            field.readOnly = false
            keyClick("x")
            compare(field.text, "值x")
            field.text = "值"
        }

        function test_aFieldsBorderIsAsWideAsAskedFor() {
            compare(field.background.border.width, 1)
            field.backgroundBorderWidth = 0
            compare(field.background.border.width, 0)
            field.backgroundBorderWidth = 1
        }

        function test_aFieldSaysWhetherThePointerIsOnIt() {
            mouseMove(field, 5, 5)
            tryCompare(field, "hovered", true)
            compare(field.background.border.color, EConfig.eHoverBorderColor)
        }

        // What scrolls.

        function test_aListHasABarForItsHeightAlone() {
            compare(findChild(scroll, "verticalBar").visible, true)
            compare(findChild(scroll, "horizontalBar").visible, false)
            scrolled.model = 2
            tryCompare(findChild(scroll, "verticalBar"), "visible", false)
            scrolled.model = 10
        }

        function test_theBarStandsWhereItIsAskedFor() {
            const bar = findChild(scroll, "verticalBar")
            compare(bar.x + bar.width, 212)
            compare(bar.height, 60)
            scroll.barOffset = 0
            compare(bar.x + bar.width, 200)
            scroll.barOffset = 12
        }

        function test_theBarMovesTheList() {
            const bar = findChild(scroll, "verticalBar")
            scrolled.contentY = 0
            bar.increase()
            verify(scrolled.contentY > 0)
            scrolled.contentY = 0
        }

        // Check boxes.

        function test_theCheckBoxShowsItsState() {
            check.checked = false
            compare(findChild(check, "checkImage").source, "qrc:/images/help.png")
            mouseClick(check, 7, 7)
            compare(check.checked, true)
            compare(findChild(check, "checkImage").source, "qrc:/images/ic_xuanzhong.png")
            verify(findChild(check, "checkImage").visible)
            compare(home.find(check, "partSquare"), null)
        }

        function test_aPartCheckIsASquareOfHalfTheSize() {
            check.partCheck = true
            const square = home.find(check, "partSquare")
            compare(Qt.size(square.width, square.height), Qt.size(7, 7))
            compare(square.color, "#1473e6")
            // In the middle, as far as whole points allow.
            compare(square.mapToItem(check, 0, 0), Qt.point(3, 3))
            compare(home.find(check, "checkImage"), null)
            check.partCheck = false
            compare(home.find(check, "partSquare"), null)
        }

        function test_theKeyboardTogglesTheCheckBox() {
            check.checked = false
            check.forceActiveFocus()
            keyClick(Qt.Key_Space)
            compare(check.checked, true)
        }

        function test_theCheckBoxSpeaks() {
            compare(screens.spoken(check).name, "删除空楼层")
        }

        // Tool tips and boxes.

        function test_aToolTipOpensAndCloses() {
            compare(tip.opened, false)
            tip.open()
            tryCompare(tip, "opened", true)
            verify(home.findText("说明") !== null)
            tip.close()
            tryCompare(tip, "opened", false)
        }

        function test_aToolTipThatWaitsGoesWithItsItem() {
            leavingTip.open()
            leaving.parent = null
            laterTip.open()
            tryCompare(laterTip, "opened", true)
            laterTip.close()
            compare(leavingTip.opened, false)
            leaving.parent = home
            // As long as it fades it takes Escape.
            tryVerify(function() { return home.findText("后来") === null })
        }

        function openBox() {
            box.open()
            tryVerify(function() { return home.findShown("yesBtn") !== null && home.findShown("yesBtn").activeFocus })
        }

        function test_aBoxTellsTheAnswerOnce_data() {
            return [{ tag: "yesBtn", call: "yes()" }, { tag: "noBtn", call: "no()" }]
        }

        function test_aBoxTellsTheAnswerOnce(row) {
            openBox()
            mouseClick(home.findShown(row.tag))
            compare(home.takeCalls(), [row.call])
            tryCompare(box, "visible", false)
            compare(home.takeCalls(), [])
        }

        function test_aBoxWithoutANoHasOneButton() {
            box.noText = ""
            openBox()
            compare(home.findShown("noBtn"), null)
            mouseClick(home.findShown("dialogCloseBtn"))
            compare(home.takeCalls(), ["yes()"])
            tryCompare(box, "visible", false)
        }

        function test_theCrossOfAQuestionMeansNo() {
            openBox()
            mouseClick(home.findShown("dialogCloseBtn"))
            compare(home.takeCalls(), ["no()"])
            tryCompare(box, "visible", false)
        }

        function test_aBoxSpeaks() {
            openBox()
            compare(box.contentItem.Accessible.role, Accessible.Dialog)
            compare(box.contentItem.Accessible.name, "标题")
            compare(box.contentItem.Accessible.description, "正文")
            keyClick(Qt.Key_Escape)
            tryCompare(box, "visible", false)
        }

        function test_aDialogOpensInTheMiddleAndEscapeClosesIt() {
            dialog.open()
            tryVerify(function() { return dialog.opened })
            compare(dialog.x, (home.width - 300) / 2)
            compare(dialog.y, (home.height - 200) / 2)
            compare(dialog.backgroundItem.color, EConfig.eDialogBackground)
            keyClick(Qt.Key_Escape)
            tryCompare(dialog, "visible", false)
            compare(home.takeCalls(), ["opened()", "closed()"])
        }
    }
}
