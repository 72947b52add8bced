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
            compare(screens.takeWarnings(), [])
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

        function test_anEndThatNobodyWaitsForIsFine() {
            fileDialog.finish(null)
            compare(home.takeCalls(), [])
        }
    }
}
