// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"

/// A box that opens a list to choose from.
T.ComboBox {
    id: root

    property int fontSize: EConfig.textPixelSize
    property color fontColor: EConfig.textColor
    property color fontSelectedColor: EConfig.eTextHighColor
    /// Grounds: of the box and its list, of the row under the pointer, of the other rows.
    property color backGroundColor: EConfig.eBackGround
    property color highlightColor: EConfig.eDialogBackground
    property color normalColor: root.backGroundColor
    /// It stands among fields, and has a border like them.
    property bool isField: false
    /// Height at which the list begins to scroll.
    property real popHeigh: 320

    /// Pictures of the mark at the right, with the list closed and open.
    property string closedImage: "qrc:/EditorCommon/images/down.png"
    property string openImage: "qrc:/EditorCommon/images/down_hover.png"

    implicitWidth: 200
    implicitHeight: 32
    leftPadding: 10
    rightPadding: 28
    hoverEnabled: true
    font.family: EConfig.fontFamily
    font.pixelSize: root.fontSize
    font.weight: EConfig.fontWeight

    Accessible.role: Accessible.ComboBox
    Accessible.name: root.displayText

    contentItem: EText {
        text: root.displayText
        color: root.fontColor
        font.pixelSize: root.fontSize
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    indicator: Image {
        x: root.width - width - 10
        y: Math.round((root.height - height) / 2)
        source: root.popup.opened ? root.openImage : root.closedImage
    }

    background: Rectangle {
        color: root.backGroundColor
        border.width: root.visualFocus ? 2 : root.isField ? 1 : 0
        border.color: root.visualFocus || root.popup.visible ? EConfig.eAccent
                                                             : root.hovered ? EConfig.eHoverBorderColor : EConfig.eInputFieldBorder
        radius: EConfig.radius
    }

    delegate: T.ItemDelegate {
        width: root.width
        height: 32
        leftPadding: 10
        rightPadding: 10
        highlighted: root.highlightedIndex === index
        text: root.textRole !== "" ? model[root.textRole] : modelData

        Accessible.role: Accessible.ListItem
        Accessible.name: text

        contentItem: EText {
            text: parent.text
            color: root.currentIndex === index ? root.fontSelectedColor : root.fontColor
            font.pixelSize: root.fontSize
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        background: Rectangle {
            color: parent.highlighted ? root.highlightColor : root.normalColor
        }
    }

    popup: T.Popup {
        y: root.height
        width: root.width
        height: Math.min(contentItem.implicitHeight + topPadding + bottomPadding, root.popHeigh)
        margins: 4
        padding: 1

        enter: Transition {
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: EConfig.motion }
        }
        exit: Transition {
            NumberAnimation { property: "opacity"; from: 1; to: 0; duration: EConfig.motion }
        }
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: root.delegateModel
            currentIndex: root.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: EScrollBar {}

            Accessible.role: Accessible.List
            Accessible.name: root.displayText
        }
        background: Rectangle {
            color: root.backGroundColor
            border.width: 1
            border.color: EConfig.eBorder
            radius: EConfig.radius
        }
    }
}
