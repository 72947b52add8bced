// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/qmls/component"

/// Boxes that open a list to choose from.
HomeTest {
    id: home

    Column {
        x: 20
        y: 20
        spacing: 10

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

    TestCase {
        name: "choices"
        when: windowShown

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            home.forceActiveFocus()
            mouseMove(home, 1300, 800)
            typeCheck.strType = ""
            typeCheck.typeName = "全部工程类型"
        }

        function cleanup() {
            compare(screens.takeWarnings(), [])
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

        function test_aBoxAmongFieldsHasAFieldsBorder() {
            compare(combo.background.border.width, 0)
            combo.isField = true
            compare(combo.background.border.width, 1)
            compare(combo.background.border.color, EConfig.eInputFieldBorder)
            mouseMove(combo, 5, 5)
            tryCompare(combo, "hovered", true)
            compare(combo.background.border.color, EConfig.eHoverBorderColor)
            openList(combo)
            compare(combo.background.border.color, EConfig.eAccent)
            keyClick(Qt.Key_Escape)
            tryCompare(combo.popup, "visible", false)
            combo.isField = false
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
    }
}
