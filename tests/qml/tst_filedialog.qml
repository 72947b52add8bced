// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls/component"

HomeTest {
    id: home

    EditFileDialog {
        id: fileDialog
    }

    TestCase {
        name: "filedialog"
        when: windowShown

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            fileDialog.reset()
        }

        function cleanup() {
            // Qt's own dialog, which stands in where there are no widgets, misses a place for its settings.
            compare(screens.takeWarnings().filter(function(line) { return line.indexOf("DefaultFileDialog.qml") < 0 }), [])
        }

        function test_resetGivesTheFirstValues() {
            fileDialog.title = "x"
            fileDialog.nameFilters = ["y"]
            fileDialog.selectFolder = true
            fileDialog.selectMultiple = true
            fileDialog.reset()
            compare(fileDialog.title, "Please select file")
            compare(fileDialog.nameFilters, ["All(*)"])
            compare(fileDialog.selectFolder, false)
            compare(fileDialog.selectMultiple, false)
        }

        function test_whatIsChosenIsALocalPath_data() {
            return [
                { tag: "file", folder: false, multiple: false, chosen: "/a/b.json" },
                { tag: "folder", folder: true, multiple: false, chosen: "/a" },
                { tag: "files", folder: false, multiple: true, chosen: ["/a/b.json", "/a/c.json"] }
            ]
        }

        function test_whatIsChosenIsALocalPath(row) {
            fileDialog.selectFolder = row.folder
            fileDialog.selectMultiple = row.multiple
            const chosen = fileDialog.chosen({
                folder: Qt.resolvedUrl("file:///a"),
                fileUrl: Qt.resolvedUrl("file:///a/b.json"),
                fileUrls: [Qt.resolvedUrl("file:///a/b.json"), Qt.resolvedUrl("file:///a/c.json")]
            })
            compare(chosen, row.chosen)
        }

        function test_theEndOfTheDialogIsToldToWhoAsked() {
            fileDialog.finish(function(file) { home.called("accepted", file) }, "/a")
            compare(home.takeCalls(), ["accepted(/a)"])
        }

        function dialogWindow() {
            return findChild(fileDialog, "fileDialogLoader").item
        }

        function test_theDialogIsMadeWhenItIsOpened() {
            fileDialog.title = "请选择文件"
            fileDialog.nameFilters = ["JSON(*.json)"]
            fileDialog.open(function(file) { home.called("accepted", file) }, function() { home.called("rejected") })
            const window = dialogWindow()
            tryVerify(function() { return window.visible })
            compare(window.title, "请选择文件")
            compare(window.nameFilters, ["JSON(*.json)"])
            compare(window.modality, Qt.ApplicationModal)
            window.reject()
            tryCompare(window, "visible", false)
            compare(home.takeCalls(), ["rejected()"])
        }

        function test_theSameDialogServesTheNext() {
            fileDialog.open(null, function() { home.called("first") })
            const window = dialogWindow()
            tryVerify(function() { return window.visible })
            window.reject()
            tryCompare(window, "visible", false)
            fileDialog.open(null, function() { home.called("second") })
            compare(dialogWindow(), window)
            tryVerify(function() { return window.visible })
            window.reject()
            tryCompare(window, "visible", false)
            compare(home.takeCalls(), ["first()", "second()"])
        }

        function test_anEndThatNobodyWaitsForIsFine() {
            fileDialog.finish(null)
            compare(home.takeCalls(), [])
        }
    }
}
