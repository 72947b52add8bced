// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The choice of one administrative region out of a list of them. The choice may also be put in from outside, of a
/// region that the list does not hold (yet).
EComboBox {
    id: root

    property var reagionArray: []
    property string regionName: ""
    property string regionID: ""
    property real regionLongitude: 121.0
    property real regionLatitude: 31.0
    /// What is read out as long as nothing is chosen.
    property string purpose: ""

    readonly property bool wantsTip: root.hovered && !root.popup.visible && root.displayText !== ""

    signal sigSelect()

    function clear() {
        root.reagionArray = []
        root.regionName = ""
        root.regionID = ""
        root.regionLongitude = 121.0
        root.regionLatitude = 31.0
    }

    function take(region) {
        root.regionName = region.name
        root.regionID = region.id
        root.regionLongitude = region.longitude
        root.regionLatitude = region.latitude
        root.sigSelect()
    }

    /// A box makes the first row of a new list its current one. Here nobody has chosen that, and the keyboard goes on
    /// from what is chosen.
    function showChoice() {
        let current = -1
        for (let i = 0; current < 0 && root.regionID !== "" && i < root.reagionArray.length; ++i) {
            if (root.reagionArray[i].id === root.regionID)
                current = i
        }
        root.currentIndex = current
    }

    backGroundColor: EConfig.eInputFieldBackGround
    displayText: root.regionName
    textRole: "name"
    model: root.reagionArray
    onActivated: root.take(root.reagionArray[index])
    onModelChanged: root.showChoice()
    onRegionIDChanged: root.showChoice()
    onWantsTipChanged: root.wantsTip ? tip.open() : tip.close()
    Component.onCompleted: root.showChoice()

    Accessible.name: root.regionName !== "" ? root.regionName : root.purpose

    delegate: T.ItemDelegate {
        id: row

        objectName: "region_" + modelData.id
        width: root.width
        height: 32
        leftPadding: 10
        rightPadding: 10
        hoverEnabled: true
        highlighted: root.highlightedIndex === index || modelData.id === root.regionID
        text: modelData.name
        onHoveredChanged: row.hovered ? rowTip.open() : rowTip.close()

        Accessible.role: Accessible.ListItem
        Accessible.name: row.text
        Accessible.selected: modelData.id === root.regionID

        contentItem: EText {
            color: modelData.id === root.regionID ? root.fontSelectedColor : root.fontColor
            elide: Text.ElideRight
            font.pixelSize: root.fontSize
            text: row.text
            Accessible.ignored: true
        }
        background: Rectangle {
            color: row.highlighted ? root.highlightColor : root.normalColor
        }

        EToolTip {
            id: rowTip

            objectName: "tip"
            text: row.text
        }
    }

    EToolTip {
        id: tip

        objectName: "boxTip"
        text: root.displayText
    }
}
