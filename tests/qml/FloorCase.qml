// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls/FloorMatch"

/// The floor dialog over the real managers. A project with three floors and two models with floors is stored.
TestCase {
    id: root

    property var home: null
    property var dialog: null

    readonly property var models: [
        { guid: "a", name: "塔楼", floors: ["1F", "2F", "3F", "4F"] },
        { guid: "b", name: "裙房", floors: ["B1", "1F"] }
    ]
    readonly property var stored: [
        { name: "一层", models: { a: ["1F", "2F"], b: ["1F"] } },
        { name: "二层", models: {} },
        { name: "三层", models: { a: ["3F"] } }
    ]
    readonly property var fresh: [ { name: "首层", models: { b: ["B1"] } } ]

    property Component dialogComponent: Component {
        FloorMatch { parent: root.home }
    }

    when: windowShown

    function initTestCase() {
        screens.listen()
    }

    function init() {
        home.reset()
        mouseMove(home, 1300, 850)
        begin(stored, models)
    }

    function cleanup() {
        if (dialog.visible) {
            dialog.close()
            tryCompare(dialog, "visible", false)
        }
        dialog.destroy()
        wait(0)
        compare(screens.takeWarnings(), [])
    }

    /// Opens the dialog on a project.
    function begin(storedFloors, projectModels) {
        floors.start(storedFloors, fresh, projectModels)
        screens.takeWarnings() // of managers that find no files of their own here
        home.floorModel = floors.model
        home.floorMatchedCtrl = floors.ctrl
        root.dialog = dialogComponent.createObject(home)
        open()
    }

    function open() {
        dialog.open()
        tryCompare(dialog, "opened", true)
    }

    /// The same with another project, in a test.
    function beginAnew(storedFloors, projectModels) {
        cleanup()
        begin(storedFloors, projectModels)
    }

    function part(name) {
        return home.findShown(name)
    }

    function partOf(column, name) {
        return home.find(part(column), name)
    }

    function waitFor(column, name) {
        let found = null
        tryVerify(function() { return (found = partOf(column, name)) !== null }, 5000, column + "/" + name)
        return found
    }

    function click(name) {
        const item = part(name)
        verify(item !== null, name)
        mouseClick(item)
    }

    function clickFloor(index, modifiers) {
        mouseClick(waitFor("floorAll", "floor_" + index), 60, 20, Qt.LeftButton, modifiers || Qt.NoModifier)
    }

    function doubleClick(column, index) {
        mouseDoubleClickSequence(waitFor(column, "item_" + index), 60, 20)
    }

    function isMarked(index) {
        return home.find(waitFor("floorUnMatched", "item_" + index), "rowMark") !== null
    }

    function list() {
        return part("floorList")
    }

    function askName(button) {
        click(button)
        tryVerify(function() { return part("floorNameInput") !== null && part("floorNameInput").activeFocus })
    }

    function tryNoName() {
        tryVerify(function() { return part("floorNameInput") === null })
    }

    function type(text) {
        part("floorNameInput").text = text
    }

    function press(key, modifiers) {
        keyClick(key, modifiers || Qt.NoModifier)
    }
}
