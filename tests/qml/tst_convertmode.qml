// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls/InfoCard"

HomeTest {
    id: home

    Component {
        id: dialogComponent

        ConvertMode { parent: home }
    }

    TestCase {
        name: "convertmode"
        when: windowShown

        property var dialog: null

        function init() {
            home.reset()
            mouseMove(home, 1300, 850)
            dialog = createTemporaryObject(dialogComponent, home)
            dialog.show(function(isLevel, isFast) { home.called("chosen", isLevel, isFast) })
            tryCompare(dialog, "opened", true)
        }

        function cleanup() {
            dialog.close()
            tryCompare(dialog, "visible", false)
            compare(screens.takeWarnings(), [])
        }

        function test_sizeAndTitle() {
            compare(dialog.width, 360)
            compare(dialog.height, 240)
            compare(dialog.padding, 0)
            compare(home.findShown("dialogTitle").text, "选择转换模式")
        }

        function test_choiceIsTold_data() {
            return [
                { tag: "levelModelBtn1", text: "极速", told: "chosen(true,true)" },
                { tag: "levelModelBtn2", text: "平衡", told: "chosen(true,false)" },
                { tag: "staticModelBtn", text: "效果", told: "chosen(false,false)" }
            ]
        }

        function test_choiceIsTold(row) {
            const ring = home.findShown(row.tag)
            compare(ring.text, row.text)
            compare(ring.height, 24)
            verify(home.findShown("staticModelBtn").checked)
            mouseClick(ring)
            mouseClick(home.findShown("okBtn"))
            compare(home.takeCalls(), [row.told])
            tryCompare(dialog, "visible", false)
        }

        function test_leavingTellsNothing_data() {
            return [{ tag: "cancelBtn" }, { tag: "dialogCloseBtn" }]
        }

        function test_leavingTellsNothing(row) {
            mouseClick(home.findShown(row.tag))
            tryCompare(dialog, "visible", false)
            compare(home.takeCalls(), [])
        }
    }
}
