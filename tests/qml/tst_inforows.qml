// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls/InfoCard"

/// The rows of the info card, one at a time.
HomeTest {
    id: home

    property QtObject webViewMgr: null

    QtObject {
        id: webViews

        function openWeb(url, place) { home.called("webViewMgr.openWeb", url, place) }
    }

    Component {
        id: rowComponent

        DelegateView {
            width: 330
            height: 50
        }
    }

    Component {
        id: selectComponent

        ECardSelectFile {}
    }

    TestCase {
        name: "inforows"
        when: windowShown

        property var row: null

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            home.webViewMgr = null
            mouseMove(home, 1300, 850)
        }

        function cleanup() {
            row = null
            compare(screens.takeWarnings(), [])
        }

        function make(values) {
            row = createTemporaryObject(rowComponent, home, values)
            verify(row !== null)
        }

        function makeText(value, isReadonly) {
            make({ strKey: "工程名称", strValue: value, bReadonly: isReadonly === true, qmlType: 0 })
            return part("cardField")
        }

        function makeTemplate(file) {
            make({ strKey: "属性模板", strValue: file, bReadonly: true, qmlType: 2 })
        }

        function part(name) {
            return home.find(row, name)
        }

        // Types.

        function test_theTypeChoosesTheView_data() {
            return [
                { tag: "text", type: 0, field: "cardField" },
                { tag: "file", type: 1, field: "cardField" },
                { tag: "template", type: 2, field: "templateField" },
                { tag: "unknown at first", type: 7, field: "cardField" }
            ]
        }

        function test_theTypeChoosesTheView(data) {
            make({ strKey: "k", strValue: "v", qmlType: data.type })
            verify(part(data.field) !== null)
        }

        function test_anUnknownTypeKeepsTheView_data() {
            return [{ tag: "4", type: 4 }, { tag: "-1", type: -1 }, { tag: "0.5", type: 0.5 }]
        }

        function test_anUnknownTypeKeepsTheView(data) {
            makeTemplate("a.json")
            const view = part("rowLoader").item
            row.qmlType = data.type
            compare(part("rowLoader").item, view)
        }

        function test_anotherTypeChangesTheView() {
            makeTemplate("a.json")
            row.qmlType = 1
            verify(part("cardField") !== null)
            compare(part("templateField"), null)
        }

        function test_aRowIsReadOnlyAndEmptyUnlessToldOtherwise() {
            make({})
            compare(row.strKey, "")
            compare(row.strValue, "")
            compare(row.bReadonly, true)
            compare(row.qmlType, 0)
            verify(part("cardField").readOnly)
        }

        function test_aRowOfAFileShowsNothing() {
            const view = createTemporaryObject(selectComponent, home)
            compare(view.children.length, 0)
            compare(view.bReadonly, true)
        }

        // Text.

        function test_theLabelStandsAboveTheField() {
            makeText("滨江新区")
            compare(part("cardLabel").text, "工程名称")
            compare(part("cardLabel").height, 12)
            compare(part("cardLabel").font.pixelSize, 14)
            compare(part("cardLabel").color, EConfig.eInputFieldText)
            compare(part("cardField").height, 32)
            compare(part("cardField").y, 18)
            compare(part("cardField").width, 330)
            compare(part("cardField").text, "滨江新区")
        }

        function test_theFirstFillingGoesToTheData_data() {
            return [{ tag: "writable", isReadonly: false }, { tag: "read-only", isReadonly: true }]
        }

        function test_theFirstFillingGoesToTheData(data) {
            makeText("滨江新区", data.isReadonly)
            compare(home.takeCalls(), ["proInfoModel.setJsonData(工程名称,滨江新区)"])
        }

        function test_anEmptyTextIsNoChange() {
            makeText("")
            compare(home.takeCalls(), [])
        }

        function test_eachChangeGoesToTheData() {
            const field = makeText("a")
            home.takeCalls()
            field.forceActiveFocus()
            keyClick(Qt.Key_B)
            keyClick(Qt.Key_Backspace)
            keyClick(Qt.Key_Backspace)
            compare(home.takeCalls(), ["proInfoModel.setJsonData(工程名称,ab)", "proInfoModel.setJsonData(工程名称,a)",
                                       "proInfoModel.setJsonData(工程名称,)"])
        }

        function test_aReadOnlyRowCannotBeTypedIn() {
            const field = makeText("a", true)
            home.takeCalls()
            field.forceActiveFocus()
            keyClick(Qt.Key_B)
            compare(field.text, "a")
            compare(home.takeCalls(), [])
        }

        function test_oddTextsStayAsTheyAre_data() {
            return [{ tag: "blanks", text: "   " }, { tag: "emoji", text: "🏗️ 一期" },
                    { tag: "line breaks", text: "一\n二\r\n三" }, { tag: "markup", text: "<b>x</b>" },
                    { tag: "10000 signs", text: "长".repeat(10000) }]
        }

        function test_oddTextsStayAsTheyAre(data) {
            makeText(data.text)
            compare(home.takeCalls(), ["proInfoModel.setJsonData(工程名称," + data.text + ")"])
        }

        function test_aLongTextEndsInDotsAsLongAsNobodyIsInTheField() {
            const field = makeText("非常长的工程名称".repeat(10))
            verify(part("cutText") !== null)
            verify(part("cutText").truncated)
            compare(field.color, "#00000000")
            field.forceActiveFocus()
            compare(part("cutText"), null)
            compare(field.color, EConfig.textColor)
        }

        function test_aShortTextHasNeitherDotsNorTip() {
            const field = makeText("短")
            compare(part("cutText"), null)
            mouseMove(field, 20, 10)
            tryCompare(field, "hovered", true)
            wait(600)
            verify(!findChild(field, "fieldTip").opened)
        }

        function test_aLongTextStandsInATip_data() {
            return [{ tag: "whole", count: 100, tip: "名".repeat(100) },
                    { tag: "cut", count: 10000, tip: "名".repeat(300) + "…" }]
        }

        function test_aLongTextStandsInATip(data) {
            const field = makeText("名".repeat(data.count))
            const tip = findChild(field, "fieldTip")
            mouseMove(field, 20, 10)
            tryCompare(tip, "opened", true)
            compare(tip.text, data.tip)
            mouseMove(home, 1300, 850)
            tryCompare(tip, "opened", false)
        }

        // Template.

        function test_theTemplateIsShownByItsName() {
            makeTemplate("/data/templates/building.json")
            compare(part("cardLabel").text, "属性模板")
            compare(part("templateField").text, "building.json")
            verify(part("templateField").readOnly)
            compare(part("templateField").parent.color, EConfig.eInputFieldBackGround)
            compare(part("templateField").parent.border.color, EConfig.eInputFieldBorder)
            compare(part("templateField").parent.height, 32)
            compare(home.takeCalls(), [])
        }

        function test_theButtonsOfTheTemplateStandAtTheRight() {
            editorControl.isBimSdk = true
            makeTemplate("a.json")
            const places = { exportBtn: 330 - 10 - 14 - 48, importBtn: 330 - 10 - 14 - 24, editBtn: 330 - 10 - 14 }
            for (const name in places) {
                compare(part(name).mapToItem(row, 0, 0), Qt.point(places[name], 18 + 9), name)
                compare(Qt.size(part(name).width, part(name).height), Qt.size(14, 14), name)
            }
        }

        function test_theButtonsHaveTheirPicturesAndTips_data() {
            return [
                { tag: "exportBtn", img: "pop_box_export", lit: "pop_box_ic__export_hover", tip: "导出" },
                { tag: "importBtn", img: "pop_box_ic_file", lit: "pop_box_ic_file_hover", tip: "导入" },
                { tag: "editBtn", img: "box_ic_eidt", lit: "box_ic_eidt_hove", tip: "属性编辑" }
            ]
        }

        function test_theButtonsHaveTheirPicturesAndTips(data) {
            editorControl.isBimSdk = true
            makeTemplate("a.json")
            compare(part(data.tag).img, "qrc:/images/" + data.img + ".png")
            compare(part(data.tag).hoveredImg, "qrc:/images/" + data.lit + ".png")
            compare(part(data.tag).selectedImg, "qrc:/images/" + data.lit + ".png")
            compare(part(data.tag).tipText, data.tip)
            compare(screens.spoken(part(data.tag)).name, data.tip)
        }

        function test_theButtonsFollowTheTemplateAndTheVariant_data() {
            return [
                { tag: "nothing", file: "", isBimSdk: false, hasWeb: true, exports: false, shows: false, edits: false },
                { tag: "template", file: "a.json", isBimSdk: false, hasWeb: true, exports: true, shows: false, edits: false },
                { tag: "nothing in the variant", file: "", isBimSdk: true, hasWeb: true, exports: false, shows: true, edits: false },
                { tag: "template in the variant", file: "a.json", isBimSdk: true, hasWeb: true, exports: true, shows: true, edits: true },
                { tag: "no web service", file: "a.json", isBimSdk: true, hasWeb: false, exports: true, shows: true, edits: false }
            ]
        }

        function test_theButtonsFollowTheTemplateAndTheVariant(data) {
            editorControl.isBimSdk = data.isBimSdk
            home.webViewMgr = data.hasWeb ? webViews : null
            makeTemplate(data.file)
            compare(part("exportBtn").enabled, data.exports)
            verify(part("importBtn").enabled)
            compare(part("editBtn") !== null, data.shows)
            if (data.shows)
                compare(part("editBtn").enabled, data.edits)
        }

        function test_exportWritesTheTemplate() {
            makeTemplate("a.json")
            mouseClick(part("exportBtn"))
            compare(home.takeCalls(), ["proInfoModel.exportConfigFile()"])
        }

        function test_importTakesAFileOfTheDialog() {
            makeTemplate("")
            mouseClick(part("importBtn"))
            compare(home.takeCalls(), ["globalFileDialog.reset()", "globalFileDialog.open()"])
            compare(globalFileDialog.title, "请选择文件")
            compare(globalFileDialog.nameFilters, ["JSON(*.json)"])
            compare(part("templateField").text, "")
            globalFileDialog.accept("/data/new.json")
            compare(home.takeCalls(), ["proInfoModel.setJsonData(属性模板,/data/new.json,true)"])
            compare(part("templateField").text, "new.json")
            verify(part("exportBtn").enabled)
        }

        function test_editOpensTheEditorOfProperties() {
            editorControl.isBimSdk = true
            home.webViewMgr = webViews
            makeTemplate("a.json")
            mouseClick(part("editBtn"))
            compare(home.takeCalls(), ["webViewMgr.openWeb(/app/EditorWebExtern/PropertyEditor/index.html," +
                                       Qt.rect(0, 0, 1024, 800) + ")"])
        }

        function test_withoutAWebServiceTheEditButtonSaysWhy() {
            editorControl.isBimSdk = true
            makeTemplate("a.json")
            const tip = findChild(row, "missingTip")
            mouseMove(part("editBtn"), 7, 7)
            tryCompare(tip, "opened", true)
            mouseClick(part("editBtn"))
            compare(home.takeCalls(), [])
            mouseMove(home, 1300, 850)
            tryCompare(tip, "opened", false)
        }

        function test_theKeyboardPressesTheButtons() {
            makeTemplate("a.json")
            part("templateField").forceActiveFocus()
            compare(part("templateField").parent.border.color, EConfig.eAccent)
            keyClick(Qt.Key_Tab)
            verify(part("exportBtn").activeFocus)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Tab)
            verify(part("importBtn").activeFocus)
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["proInfoModel.exportConfigFile()", "globalFileDialog.reset()",
                                       "globalFileDialog.open()"])
        }
    }
}
