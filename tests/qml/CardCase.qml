// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls"

/// Tests of one card of a project, whose data are `home.data`.
TestCase {
    id: cardCase

    readonly property Component cardComponent: Component {
        ProjectView {
            dataModel: home.data
            onSendDelBtn: home.called("del", guid)
            onSendProInfoBtn: home.called("info", guid)
            onSendUpdateBtn: home.called("update", guid)
            onSendUploadBtn: home.called("upload", guid)
            onSendImageDoubleClicked: home.called("open", guid)
            onSendUpgrade: home.called("upgrade", guid)
            onSendConvert: home.called("convert", guid)
            onSendOpenWeb: home.called("web", guid)
        }
    }
    property var model: null
    property var card: null

    readonly property var buttonNames: ["delBtn", "uploadBtn", "updateBtn", "serviceBtn", "proInfoBtn"]

    function initTestCase() {
        screens.listen()
        model = screens.makeCards()
    }

    function init() {
        home.reset()
        mouseMove(home, 900, 700)
        make({})
    }

    function cleanup() {
        card = null
        compare(screens.takeWarnings(), [])
    }

    /// A card with the data of a project, changed by `values`.
    function make(values) {
        home.data = null
        model.clear()
        home.data = screens.addCard(model, Object.assign({ guid: "g1", name: "小楼" }, values))
        card = createTemporaryObject(cardComponent, home, { x: 100, y: 100, width: 215 })
        verify(card !== null)
    }

    function part(name) {
        const found = findChild(card, name)
        verify(found !== null, name)
        return found
    }

    /// Where a part stands on the card.
    function place(name) {
        const item = part(name)
        return card.mapFromItem(item, 0, 0)
    }

    when: windowShown
}
