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

        ETextField {
            id: field

            text: "值"
        }

        EComboBox {
            id: combo

            model: ["一", "二", "三"]
            onActivated: home.called("combo", index)
        }

        EProjTypeCheck {
            id: typeCheck

            width: 240
            height: 32
            panelModel: leftPanelModel
            onSigTypeChecked: home.called("type", strType)
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
            typeCheck.strType = ""
            typeCheck.typeName = "全部工程类型"
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

        // Lists to choose from.

        function openList(box) {
            mouseClick(box)
            tryCompare(box.popup, "opened", true)
        }

        function test_aChoiceByPointer() {
            openList(combo)
            mouseClick(combo.popup.contentItem.itemAtIndex(1))
            compare(home.takeCalls(), ["combo(1)"])
            tryCompare(combo.popup, "visible", false)
            compare(combo.displayText, "二")
        }

        function test_aChoiceByKeyboard() {
            combo.currentIndex = 0
            combo.forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Space)
            tryCompare(combo.popup, "opened", true)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["combo(1)"])
            tryCompare(combo.popup, "visible", false)
        }

        function test_escapeClosesTheListWithoutAChoice() {
            openList(combo)
            keyClick(Qt.Key_Escape)
            tryCompare(combo.popup, "visible", false)
            compare(home.takeCalls(), [])
        }

        function test_aLongListScrolls() {
            combo.popHeigh = 50
            openList(combo)
            compare(combo.popup.height, 50)
            keyClick(Qt.Key_Escape)
            tryCompare(combo.popup, "visible", false)
            combo.popHeigh = 320
        }

        // The choice of a type.

        function test_typesAreAllAtFirst() {
            compare(typeCheck.typeName, "全部工程类型")
            compare(typeCheck.strType, "")
            compare(typeCheck.fontSize, 14)
            compare(typeCheck.fontColor, "#f0f0f0")
            compare(typeCheck.displayText, "全部工程类型")
        }

        function test_eachTypeHasNamePicturesAndCount_data() {
            return [
                { tag: "0", name: "全部工程类型", type: "", image: "bar_ic_default", hover: "bar_ic_hover", count: 7 },
                { tag: "1", name: "场景工程", type: "CIM", image: "bar_ic_scene", hover: "bar_ic_scene_hover", count: 2 },
                { tag: "2", name: "BIM工程", type: "BIM", image: "bar_ic_bim", hover: "bar_ic_bim_hover", count: 5 }
            ]
        }

        function test_eachTypeHasNamePicturesAndCount(row) {
            const entry = typeCheck.model[Number(row.tag)]
            compare(entry.name, row.name)
            compare(entry.type, row.type)
            compare(entry.image, "qrc:/images/" + row.image + ".png")
            compare(entry.hoverImage, "qrc:/images/" + row.hover + ".png")
            compare(typeCheck.countOf(row.type), row.count)
        }

        function test_aChoiceSetsNameAndTypeAndTells() {
            openList(typeCheck)
            mouseClick(home.findShown("type_CIM"))
            compare(home.takeCalls(), ["type(CIM)"])
            compare(typeCheck.typeName, "场景工程")
            compare(typeCheck.strType, "CIM")
            tryCompare(typeCheck.popup, "visible", false)
        }

        function test_rowsOfTypesHaveTheirLook() {
            typeCheck.strType = "BIM"
            openList(typeCheck)
            const line = home.findShown("type_BIM")
            compare(line.height, 40)
            compare(line.background.color, "#2e2e2e")
            compare(line.background.radius, 3)
            const inner = line.background.children[0]
            compare(inner.y, 6)
            compare(inner.height, 34)
            compare(inner.color, "#2a2a2a")
            compare(home.findTextIn(line, "BIM工程").color, "#1473e6")
            compare(home.findTextIn(line, "5").color, "#1473e6")
            const other = home.findShown("type_CIM")
            compare(home.findTextIn(other, "场景工程").color, "#dddddd")
            compare(other.mapFromItem(home.findTextIn(other, "2"), home.findTextIn(other, "2").width, 0).x, other.width - 25)
            mouseMove(other, 20, 20)
            tryCompare(other.background.children[0], "color", "#2a2a2a")
            keyClick(Qt.Key_Escape)
            tryCompare(typeCheck.popup, "visible", false)
        }

        function test_theMarkShowsWhetherTheListIsOpen() {
            compare(typeCheck.indicator.source, "qrc:/images/ic_xiala.png")
            openList(typeCheck)
            compare(typeCheck.indicator.source, "qrc:/images/ic_xiala_hover.png")
            keyClick(Qt.Key_Escape)
            tryCompare(typeCheck.popup, "visible", false)
            compare(typeCheck.indicator.source, "qrc:/images/ic_xiala.png")
        }

        function test_countsFollowThePanel() {
            leftPanelModel.bimProjCount = 9
            compare(typeCheck.bimProjCount, 9)
            compare(typeCheck.countOf(""), 11)
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
