// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls"

HomeTest {
    id: home

    Component {
        id: dialogComponent

        NewProjectDialog {
            parent: home
            onSendClicked: home.called("sendClicked")
        }
    }

    TestCase {
        name: "newproject"
        when: windowShown

        property var dialog: null

        function initTestCase() {
            screens.listen()
            home.orgModel = screens.makeTree([
                { text1: "1", id: "root", name: "公司", canSelect: false,
                  rows: [{ text1: "2", id: "d1", name: "设计所", canSelect: true },
                         { text1: "3", id: "d2", name: "工程部", canSelect: true }] }
            ])
        }

        function init() {
            home.reset()
            mouseMove(home, 1300, 850)
            make()
        }

        function cleanup() {
            if (dialog !== null) {
                dialog.close()
                tryCompare(dialog, "visible", false)
            }
            dialog = null
            compare(screens.takeWarnings(), [])
        }

        /// A form of the variant that `editorControl` now says.
        function make() {
            dialog = createTemporaryObject(dialogComponent, home)
            verify(dialog !== null)
        }

        function openForm() {
            dialog.open()
            waitForForm()
        }

        function waitForForm() {
            tryVerify(function() { return part("nameField") !== null && part("nameField").activeFocus })
            // Where a scene lies has tests of its own.
            if (part("provinceBox") !== null)
                part("provinceBox").take({ id: "710000", name: "台湾省", longitude: 120.7, latitude: 24.1 })
            home.takeCalls()
        }

        function part(name) {
            return home.findShown(name)
        }

        function labelOf(row) {
            return home.find(part(row), "formLabel")
        }

        function create(name) {
            part("nameField").text = name
            mouseClick(part("newProjectBtn"))
        }

        function useVariant(appVer, isBimSdk) {
            editorControl.appVer = appVer
            editorControl.isBimSdk = isBimSdk
            make()
            openForm()
        }

        // Looks.

        function test_theFormHasItsSizeAndTitle() {
            openForm()
            compare(dialog.width, 360)
            compare(dialog.height, 465)
            compare(part("dialogTitle").text, "新建工程")
            compare(part("newProjectBtn").text, "新建工程")
            compare(part("newProjectBtn").width, 82)
            compare(part("newProjectBtn").height, 32)
            compare(part("newProjectBtn").y + 32 + 10, part("newProjectBtn").parent.height)
        }

        function test_rowsFollowTheVariant_data() {
            return [
                { tag: "normal", appVer: 1, isBimSdk: false, type: "CIM",
                  rows: ["nameRow", "typeRow", "templateRow", "locationRow"], field: null, hasBox: true },
                { tag: "lite", appVer: 0, isBimSdk: false, type: "BIM", rows: ["nameRow", "typeRow"],
                  field: "BIM工程", hasBox: false },
                { tag: "other", appVer: -1, isBimSdk: false, type: "CIM",
                  rows: ["nameRow", "typeRow", "templateRow", "locationRow"], field: null, hasBox: false },
                { tag: "sdk", appVer: -1, isBimSdk: true, type: "CIM",
                  rows: ["nameRow", "typeRow", "departmentRow", "templateRow", "locationRow", "iotRow"],
                  field: "场景工程", hasBox: false },
                { tag: "lite sdk", appVer: 0, isBimSdk: true, type: "CIM",
                  rows: ["nameRow", "typeRow", "departmentRow", "templateRow", "locationRow", "iotRow"],
                  field: "场景工程", hasBox: false },
                { tag: "normal sdk", appVer: 1, isBimSdk: true, type: "CIM",
                  rows: ["nameRow", "typeRow", "departmentRow", "templateRow", "locationRow", "iotRow"],
                  field: "场景工程", hasBox: true }
            ]
        }

        function test_rowsFollowTheVariant(row) {
            useVariant(row.appVer, row.isBimSdk)
            compare(dialog.projType, row.type)
            const all = ["nameRow", "typeRow", "departmentRow", "templateRow", "locationRow", "iotRow"]
            const shown = all.filter(function(name) { return part(name) !== null })
            compare(shown, row.rows)
            compare(part("typeField") !== null ? part("typeField").text : null, row.field)
            compare(part("typeBox") !== null, row.hasBox)
            for (const name of row.rows) {
                const item = part(name)
                verify(dialog.contentItem.mapFromItem(item, 0, item.height).y <= part("newProjectBtn").y, name)
            }
        }

        function test_aBuildingHasNoTemplate() {
            openForm()
            dialog.projType = "BIM"
            compare(part("templateRow"), null)
            dialog.projType = "CIM"
            verify(part("templateRow") !== null)
        }

        // Creation.

        function test_aSceneIsEnteredAndTold() {
            openForm()
            create("  新区 ")
            compare(home.takeCalls(), ["proInfoModel.setBelongRegion(710000,台湾省,,,,,120.7,24.1)",
                                       "proInfoModel.setProjInfo(新区,CIM,,,,,)", "sendClicked()"])
            tryCompare(dialog, "visible", false)
        }

        function test_aBuildingHasNoRegion() {
            dialog.openBimProj()
            waitForForm()
            compare(dialog.projType, "BIM")
            compare(part("typeBox").displayText, "BIM工程")
            create("新楼")
            compare(home.takeCalls(), ["proInfoModel.setProjInfo(新楼,BIM,,,,,)", "sendClicked()"])
        }

        function test_withoutANameNothingIsMade() {
            openForm()
            compare(labelOf("nameRow").text, "工程名称")
            part("newProjectBtn").forceActiveFocus()
            mouseClick(part("newProjectBtn"))
            compare(home.takeCalls(), [])
            compare(labelOf("nameRow").text, "工程名称 *请输入工程名称*")
            compare(labelOf("nameRow").color, EConfig.eInputFieldTextInvalid)
            verify(part("nameField").activeFocus)
            verify(dialog.visible)
            create("新区")
            compare(labelOf("nameRow").text, "工程名称")
            compare(home.takeCalls().length, 3)
        }

        function test_aNameOfBlanksPassesAndIsEmpty() {
            openForm()
            create("   ")
            compare(home.takeCalls()[1], "proInfoModel.setProjInfo(,CIM,,,,,)")
        }

        function test_returnInTheNameMakesTheProject_data() {
            return [{ tag: "return", key: Qt.Key_Return }, { tag: "enter", key: Qt.Key_Enter }]
        }

        function test_returnInTheNameMakesTheProject(row) {
            openForm()
            keyClick(Qt.Key_A)
            keyClick(row.key)
            compare(home.takeCalls()[1], "proInfoModel.setProjInfo(a,CIM,,,,,)")
        }

        function test_theNameIsForgottenAndTheRestIsKept() {
            useVariant(1, true)
            part("iotField").text = "iot-1"
            part("nameField").text = "x"
            dialog.projType = "BIM"
            dialog.close()
            tryCompare(dialog, "visible", false)
            openForm()
            compare(part("nameField").text, "")
            compare(part("iotField").text, "iot-1")
            compare(dialog.projType, "BIM")
        }

        function test_escapeAndCrossMakeNothing_data() {
            return [{ tag: "escape" }, { tag: "cross" }]
        }

        function test_escapeAndCrossMakeNothing(row) {
            openForm()
            part("nameField").text = "x"
            if (row.tag === "escape")
                keyClick(Qt.Key_Escape)
            else
                mouseClick(part("dialogCloseBtn"))
            tryCompare(dialog, "visible", false)
            compare(home.takeCalls(), [])
        }

        function test_theFormMovesWithItsTitle() {
            openForm()
            const before = { x: dialog.x, y: dialog.y }
            const title = part("dialogTitle").parent
            mousePress(title, 30, 10)
            mouseMove(title, 50, 25, -1, Qt.LeftButton)
            mouseRelease(title, 50, 25)
            verify(dialog.x > before.x && dialog.y > before.y)
        }

        // Type.

        function chooseType(type) {
            mouseClick(part("typeBox"))
            tryVerify(function() { return part("projType_" + type) !== null })
            tryVerify(function() { return part("typeBox").popup.opened })
            mouseClick(part("projType_" + type))
        }

        function test_theTypeIsChosen() {
            openForm()
            compare(part("typeBox").displayText, "场景工程")
            chooseType("BIM")
            compare(dialog.projType, "BIM")
            compare(part("typeBox").displayText, "BIM工程")
            compare(part("templateRow"), null)
            tryVerify(function() { return !part("typeBox").popup.visible })
            chooseType("CIM")
            compare(dialog.projType, "CIM")
            compare(part("typeBox").displayText, "场景工程")
        }

        function test_theTypeOfTheBoxFollowsTheForm() {
            openForm()
            chooseType("CIM")
            tryVerify(function() { return !part("typeBox").popup.visible })
            dialog.close()
            tryCompare(dialog, "visible", false)
            dialog.openBimProj()
            waitForForm()
            compare(part("typeBox").typeID, "BIM")
            compare(part("typeBox").displayText, "BIM工程")
        }

        // Department.

        function openDepartments() {
            mouseClick(part("departmentBox"))
            tryVerify(function() { return part("departmentBox").popup.opened && part("orgRow_d1") !== null })
        }

        function test_withoutADepartmentNothingIsMade() {
            useVariant(1, true)
            create("新区")
            compare(home.takeCalls(), [])
            compare(labelOf("departmentRow").text, "所属项目部 *请选择项目部*")
            compare(labelOf("departmentRow").color, EConfig.eInputFieldTextInvalid)
            verify(part("departmentBox").activeFocus)
        }

        function test_theDepartmentIsChosenFromTheTree() {
            useVariant(1, true)
            openDepartments()
            mouseClick(part("orgRow_d2"))
            compare(part("departmentBox").deptID, "d2")
            compare(part("departmentBox").displayText, "工程部")
            tryVerify(function() { return !part("departmentBox").popup.visible })
            part("iotField").text = " iot-1 "
            create("新区")
            compare(home.takeCalls()[1], "proInfoModel.setProjInfo(新区,CIM,,d2,工程部,iot-1,)")
        }

        function test_whatIsNoDepartmentCannotBeChosen() {
            useVariant(1, true)
            openDepartments()
            mouseClick(part("orgRow_root"))
            compare(part("departmentBox").deptID, "")
            verify(part("departmentBox").popup.opened)
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return !part("departmentBox").popup.visible })
            verify(dialog.visible)
        }

        function test_theChosenDepartmentIsMarked() {
            useVariant(1, true)
            openDepartments()
            compare(home.find(part("orgRow_d1"), "orgMark"), null)
            mouseClick(part("orgRow_d1"))
            tryVerify(function() { return !part("departmentBox").popup.visible })
            openDepartments()
            verify(home.find(part("orgRow_d1"), "orgMark") !== null)
            compare(home.find(part("orgRow_d1"), "orgName").color, "#1473e6")
            compare(home.find(part("orgRow_d2"), "orgMark"), null)
            compare(home.find(part("orgRow_root"), "orgIcon").source, "qrc:/images/ic_company.png")
            compare(home.find(part("orgRow_d1"), "orgIcon").source, "qrc:/images/ic_project.png")
        }

        function test_theKeyboardChoosesADepartment() {
            useVariant(1, true)
            openDepartments()
            tryVerify(function() { return part("orgTree").activeFocus })
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(part("departmentBox").deptID, "d1")
        }

        // Template.

        function test_theTemplateIsAskedForAndShownByItsName() {
            openForm()
            mouseClick(part("fileBtn"))
            compare(home.takeCalls(), ["globalFileDialog.reset()", "globalFileDialog.open()"])
            compare(globalFileDialog.title, "请选择文件")
            compare(globalFileDialog.nameFilters, ["json文件 (*.json)"])
            globalFileDialog.accept("/data/building.json")
            compare(part("fileField").text, "building.json")
            create("新区")
            compare(home.takeCalls()[1], "proInfoModel.setProjInfo(新区,CIM,/data/building.json,,,,)")
        }

        function test_theTemplateIsForgotten() {
            openForm()
            mouseClick(part("fileBtn"))
            globalFileDialog.accept("/data/building.json")
            dialog.close()
            tryCompare(dialog, "visible", false)
            openForm()
            compare(part("fileField").text, "")
        }

        function test_everyFieldHasANameForScreenReaders() {
            useVariant(1, true)
            const names = { nameField: "工程名称", typeBox: "场景工程", departmentBox: "所属项目部", fileField: "属性模板",
                            provinceBox: "台湾省", cityBox: "市", regionBox: "区县", iotField: "物联资产编号",
                            newProjectBtn: "新建工程" }
            for (const name in names)
                compare(screens.spoken(part(name)).name, names[name], name)
        }
    }
}
