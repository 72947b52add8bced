// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15

/// Tests of the title bar `bar`.
TestCase {
    id: barCase

    when: windowShown

    function init() {
        home.reset()
        tabMgr.uploadCountChanged(0)
        tabMgr.isConvertingChanged(false)
        tabMgr.dialogShow(false)
        mouseMove(bar, 600, 400)
        wait(0)
    }

    function cleanup() {
        compare(screens.takeWarnings(), [])
    }

    function button(name) {
        const found = findChild(bar, name)
        verify(found !== null, name)
        return found
    }

    function click(name) {
        mouseClick(button(name))
    }

    function inBox(name) {
        return home.findShown(name)
    }

    function waitForBox() {
        tryVerify(function() { return inBox("yesBtn") !== null && inBox("yesBtn").activeFocus }, 5000)
    }

    function waitForNoBox() {
        tryVerify(function() { return inBox("yesBtn") === null }, 5000)
    }

    function boxTitle() {
        return inBox("dialogTitle").text
    }

    function boxText() {
        return inBox("messageText").text
    }
}
