// SPDX-License-Identifier: MIT
import QtQuick 2.15
import myData.CGridViewData 1.0
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "component"

/// The card of a project: picture, name, state, buttons. It follows its CGridViewData and nothing else.
Rectangle {
    id: root

    property var dataModel: null
    property int currProState: dataModel ? dataModel.stateType : -1
    property int currDealState: dataModel ? dataModel.dealState : CGridViewData.DS_NonState
    property var opendList: tab.tabList
    property bool tabOpened: dataModel ? opendList.indexOf(dataModel.guid) !== -1 : false
    /// Where the arrow of an upload starts, and how far the line below the picture is, in thousandths.
    property alias yPos: motion.yPos
    property alias count: motion.count
    readonly property var sourceList: [
        "qrc:/images/state_ic_unmatched.png",
        "qrc:/images/state_ic_matched.png",
        "qrc:/images/modify.png",
        "qrc:/images/update.png",
        "qrc:/images/conflict.png",
        "qrc:/images/fail.png"
    ]

    readonly property string guid: dataModel ? dataModel.guid : ""
    readonly property string tipText: dataModel ? dataModel.tipText : ""
    /// Nothing locks the card: no open tab, no running operation.
    readonly property bool isFree: !tabOpened && currDealState === CGridViewData.DS_NonState

    /// It is the grid's current card, and the grid has the keyboard.
    property bool hasKeyboard: false

    signal sendDelBtn(string guid)
    signal sendProInfoBtn(string guid)
    signal sendUpdateBtn(string guid)
    signal sendUploadBtn(string guid)
    signal sendImageDoubleClicked(string guid)
    signal sendUpgrade(string guid)
    signal sendConvert(string guid)
    signal sendOpenWeb(string guid)
    signal pressedInside()

    /// What a double click on the picture does, or the click on what lies over it.
    function open() {
        if (upgradeCover.visible)
            root.sendUpgrade(root.guid)
        else if (root.isFree)
            root.sendImageDoubleClicked(root.guid)
    }

    function showInfo() {
        if (root.isFree)
            root.sendProInfoBtn(root.guid)
    }

    function remove() {
        if (root.isFree)
            root.sendDelBtn(root.guid)
    }

    function showState() {
        if (root.currProState >= 0)
            stateIcon.source = root.sourceList[root.currProState]
    }

    function stateText(state) {
        switch (state) {
        case 0: return qsTr("工程未上传服务器")
        case 1: return qsTr("工程已更新至最新")
        case 2: return qsTr("本地工程有更新")
        case 3: return qsTr("工程有更新")
        case 4: return qsTr("工程数据于服务器冲突")
        case 5: return qsTr("工程上传失败")
        default: return ""
        }
    }

    objectName: "card_" + guid
    width: 230
    height: 160
    color: EConfig.eGridBackGround
    onCurrProStateChanged: root.showState()
    // The first state is no change when it is 0.
    Component.onCompleted: root.showState()

    Accessible.role: Accessible.ListItem
    Accessible.name: dataModel ? dataModel.name : ""
    Accessible.description: stateText(currProState)
    Accessible.onPressAction: root.open()

    Item {
        id: iconItem

        objectName: "iconItem"
        width: parent.width
        height: 108
        clip: true
        enabled: root.isFree

        Image {
            id: picture

            objectName: "picture"
            anchors.centerIn: parent
            width: parent.width
            height: parent.height
            // The picture's file is rewritten under the same name.
            cache: false
            asynchronous: true
            fillMode: Image.PreserveAspectFit
            source: root.dataModel ? root.dataModel.imag : ""
            sourceSize: Qt.size(width, height)
        }

        Rectangle {
            anchors.fill: parent
            color: EConfig.eShade
            visible: root.tipText !== ""
        }

        EText {
            objectName: "tipText"
            anchors.centerIn: parent
            width: parent.width - 20
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            color: "#d9a44c"
            font.pixelSize: 12
            font.weight: Font.ExtraLight
            lineHeight: 1.25
            text: root.tipText
            visible: text !== ""
        }

        MouseArea {
            objectName: "pictureArea"
            anchors.fill: parent
            onPressed: root.pressedInside()
            onDoubleClicked: root.sendImageDoubleClicked(root.guid)
        }
    }

    Rectangle {
        x: 4
        y: 4
        width: 20
        height: 20
        radius: EConfig.radius
        color: EConfig.eGlobalBackGround
        opacity: 0.8
    }

    Image {
        objectName: "typeIcon"
        x: 6
        y: 6
        source: root.dataModel && root.dataModel.typeImag ? root.dataModel.typeImag : ""
    }

    CardMotion {
        id: motion

        anchors.fill: parent
        dealState: root.currDealState
    }

    Item {
        id: titleRow

        objectName: "titleRow"
        anchors.left: parent.left
        anchors.leftMargin: 9
        anchors.right: parent.right
        anchors.rightMargin: 9
        y: 109 + 10
        height: 15

        Image {
            id: stateIcon

            property real curState: root.currProState

            objectName: "stateIcon"
            y: 1

            MouseArea {
                objectName: "stateArea"
                anchors.fill: parent
                hoverEnabled: true
                onEntered: {
                    stateTip.place = Qt.point(mouseX + 8, mouseY + 16)
                    stateTip.open()
                }
                onExited: stateTip.close()
            }

            EToolTip {
                id: stateTip

                objectName: "stateTip"
                delay: 200
                pixelSize: 13
                text: root.stateText(stateIcon.curState)
            }
        }

        EText {
            objectName: "nameText"
            anchors.left: stateIcon.right
            anchors.leftMargin: 6
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: EConfig.eTextHighColor
            elide: Text.ElideRight
            font.pixelSize: 14
            text: root.dataModel ? root.dataModel.name : ""
            Accessible.ignored: true
        }
    }

    Image {
        id: name

        objectName: "convertIcon"
        x: 10
        anchors.verticalCenter: buttons.verticalCenter
        source: "qrc:/images/ic_change.png"
        visible: root.tipText !== ""
    }

    EText {
        objectName: "convertText"
        anchors.left: name.right
        anchors.leftMargin: 3
        anchors.verticalCenter: buttons.verticalCenter
        color: EConfig.tipTextColor
        font.pixelSize: 12
        // Beside six buttons there is room for two of the three signs, which say the same.
        width: Math.min(implicitWidth, buttons.x + 4 - x)
        wrapMode: Text.WrapAnywhere
        maximumLineCount: 1
        text: qsTr("转化中")
        visible: root.tipText !== ""
    }

    CardButtons {
        id: buttons

        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 3
        isFree: root.isFree
        isBim: root.dataModel ? root.dataModel.projType === "BIM" : false
        hasKeyboard: root.hasKeyboard && !upgradeCover.visible
        onDelClick: root.sendDelBtn(root.guid)
        onUploadClick: root.sendUploadBtn(root.guid)
        onUpdateClick: root.sendUpdateBtn(root.guid)
        onConvertClick: root.sendConvert(root.guid)
        onOpenWebClick: root.sendOpenWeb(root.guid)
        onProInfoClick: root.sendProInfoBtn(root.guid)
    }

    CardUpgrade {
        id: upgradeCover

        objectName: "upgradeCover"
        anchors.fill: parent
        isUpgrade: root.dataModel ? root.dataModel.isUpgrade : false
        visible: root.dataModel ? root.dataModel.needUpgrade && root.currDealState === CGridViewData.DS_NonState : false
        onUpgradeClick: root.sendUpgrade(root.guid)
    }

    EFocusFrame {
        visible: root.hasKeyboard
    }
}
