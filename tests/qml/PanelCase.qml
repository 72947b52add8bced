// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls"

/// Tests of the left panel.
TestCase {
    id: panelCase

    property var panel: null
    readonly property string bim: "qrc:/images/bar_ic_bim.png"
    readonly property string state: "qrc:/images/state_ic_matched.png"
    readonly property var flatRows: [
        { text1: "甲楼", text2: "a", image1: bim, image2: state, isDemo: false },
        { text1: "乙楼", text2: "b", image1: bim, image2: "", isDemo: true }
    ]
    readonly property var orgRows: [
        { text1: "公司", text2: "org1", type: "orgType", image1: "qrc:/images/ic_company.png", image2: "", rows: [
            { text1: "项目部", text2: "org2", type: "orgType", image1: "qrc:/images/ic_project.png", image2: "", rows: [
                { text1: "甲楼", text2: "a", image1: bim, image2: state },
                { text1: "乙楼", text2: "b", image1: bim, image2: state }
            ] },
            { text1: "空部门", text2: "org3", type: "orgType", image1: "qrc:/images/ic_project.png", image2: "" }
        ] }
    ]

    function init() {
        home.reset()
        mouseMove(home, 900, 750)
        leftPanelModel.treeModel = screens.makeTree(flatRows)
        panel = createTemporaryObject(panelComponent, home)
        verify(panel !== null)
        waitForRow("a")
        waitForRow("b")
    }

    function cleanup() {
        panel = null
        compare(screens.takeWarnings(), [])
    }

    function part(name) {
        const found = findChild(panel, name)
        verify(found !== null, name)
        return found
    }

    function place(name) {
        return panel.mapFromItem(part(name), 0, 0)
    }

    function tree() {
        return part("projectTree")
    }

    function row(guid) {
        return home.find(panel, "treeRow_" + guid)
    }

    function waitForRow(guid) {
        tryVerify(function() { return row(guid) !== null }, 5000, guid)
        return row(guid)
    }

    function waitForNoRow(guid) {
        tryVerify(function() { return row(guid) === null }, 5000, guid)
    }

    function inRow(guid, name) {
        return findChild(row(guid), name)
    }

    function showOrganisation() {
        leftPanelModel.treeModel = screens.makeTree(orgRows)
        waitForRow("org1")
    }

    function open(guid) {
        mouseClick(row(guid), 100, 20)
    }

    /// By tree: the rows that are shown, from the top.
    function shownRows() {
        const guids = []
        for (const guid of ["org1", "org2", "org3", "a", "b"]) {
            if (row(guid) !== null)
                guids.push(guid)
        }
        return guids
    }

    when: windowShown

    Component {
        id: panelComponent

        PanelProject {
            width: 270
            height: 700
            panelModel: leftPanelModel
            onSingInnerCreate: home.called("create")
            onSendProjectInfo: home.called("info", guid)
        }
    }
}
