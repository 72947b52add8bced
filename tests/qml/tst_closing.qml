// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls"

HomeTest {
    id: home

    ETitleBar {
        id: bar

        width: home.width
        height: 34
        onOpenWebConsole: home.called("openWebConsole")
    }

    TitleBarCase {
        name: "closing"

        // Closing.

        function test_closingWithNothingOpenAsksNothing() {
            click("closeBtn")
            compare(home.takeCalls(), ["rootView.close(false)"])
            compare(inBox("yesBtn"), null)
        }

        function prepare(row) {
            tab.tabList = row.tabs
            tabMgr.uploadCountChanged(row.uploads)
            tabMgr.isConvertingChanged(row.converts)
            serviceConvertMgr.isUploading = row.serves
        }

        function test_closingAsksByWhatRuns_data() {
            const save = "是否保存所有打开工程"
            return [
                { tag: "converting", tabs: ["a"], uploads: 1, converts: true, serves: true, title: "是否保存",
                  text: "工程正在转换中，退出将会转换失败。\n" + save },
                { tag: "uploading", tabs: ["a"], uploads: 1, converts: false, serves: true, title: "是否保存",
                  text: "工程正在上传中，退出将会上传失败。\n" + save },
                { tag: "server conversion", tabs: ["a"], uploads: 0, converts: false, serves: true, title: "是取消删除",
                  text: "服务端转换有工程在上传中，退出将会失去上\n传中的kyv工程。是否退出" },
                { tag: "server conversion without tabs", tabs: [], uploads: 0, converts: false, serves: true,
                  title: "是取消删除", text: "服务端转换有工程在上传中，退出将会失去上\n传中的kyv工程。是否退出" },
                { tag: "tabs", tabs: ["a"], uploads: 0, converts: false, serves: false, title: "是否保存", text: save }
            ]
        }

        function test_closingAsksByWhatRuns(row) {
            prepare(row)
            click("closeBtn")
            compare(home.takeCalls(), ["tabMgr.openTab(main)"])
            compare(inBox("yesBtn"), null)
            waitForBox()
            compare(boxTitle(), row.title)
            compare(boxText(), row.text)
            mouseClick(inBox("yesBtn"))
            compare(home.takeCalls(), ["rootView.close(true)"])
            waitForNoBox()
            click("closeBtn")
            home.takeCalls()
            waitForBox()
            mouseClick(inBox("noBtn"))
            compare(home.takeCalls(), ["rootView.close(false)"])
            waitForNoBox()
        }

        function test_logoutWithNothingOpenAsksNothing() {
            editorControl.isBimSdk = true
            click("logoutBtn")
            compare(home.takeCalls(), ["rootView.logout(false)"])
        }

        function test_logoutDoesNotAskAboutTheServersConversion() {
            editorControl.isBimSdk = true
            serviceConvertMgr.isUploading = true
            click("logoutBtn")
            compare(home.takeCalls(), ["rootView.logout(false)"])
        }

        function test_logoutAsksByWhatRuns_data() {
            const save = "是否保存所有打开工程"
            return [
                { tag: "converting", tabs: ["a"], uploads: 1, converts: true, serves: false,
                  text: "工程正在转换中，注销将会转换失败。\n" + save },
                { tag: "uploading", tabs: [], uploads: 1, converts: false, serves: true,
                  text: "工程正在上传中，退出将会上传失败。\n" + save },
                { tag: "tabs", tabs: ["a"], uploads: 0, converts: false, serves: true, text: save }
            ]
        }

        function test_logoutAsksByWhatRuns(row) {
            editorControl.isBimSdk = true
            prepare(row)
            click("logoutBtn")
            compare(home.takeCalls(), ["tabMgr.openTab(main)"])
            compare(inBox("yesBtn"), null)
            waitForBox()
            compare(boxTitle(), "是否保存")
            compare(boxText(), row.text)
            mouseClick(inBox("yesBtn"))
            compare(home.takeCalls(), ["rootView.logout(true)"])
            waitForNoBox()
            click("logoutBtn")
            home.takeCalls()
            waitForBox()
            mouseClick(inBox("noBtn"))
            compare(home.takeCalls(), ["rootView.logout(false)"])
            waitForNoBox()
        }

        function test_escapeLeavesTheQuestionWithoutAnAnswer() {
            tab.tabList = ["a"]
            click("closeBtn")
            waitForBox()
            home.takeCalls()
            keyClick(Qt.Key_Escape)
            waitForNoBox()
            compare(home.takeCalls(), [])
        }
    }
}
