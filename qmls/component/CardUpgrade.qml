// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// Lies over the card of a project whose data are of an older format. A click upgrades them.
Item {
    id: root

    property bool isUpgrade: false

    signal upgradeClick()

    Rectangle {
        anchors.fill: parent
        color: EConfig.eGridBackGround
        opacity: 0.8
    }

    EText {
        anchors.centerIn: parent
        color: EConfig.eTextHighColor
        font.pixelSize: EConfig.textPixelSizeLarge
        text: qsTr("数据需要升级,点此升级")
        visible: !root.isUpgrade
    }

    EText {
        id: upgradingText

        anchors.centerIn: parent
        color: EConfig.eTextHighColor
        font.pixelSize: EConfig.textPixelSizeLarge
        text: qsTr("数据升级中...")
        visible: root.isUpgrade

        OpacityAnimator on opacity {
            from: 0
            to: 1
            duration: 1000
            loops: Animation.Infinite
            running: upgradingText.visible
        }
    }

    MouseArea {
        objectName: "upgradeArea"
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: root.upgradeClick()
    }

    Accessible.role: Accessible.Button
    Accessible.name: root.isUpgrade ? upgradingText.text : qsTr("数据需要升级,点此升级")
    Accessible.onPressAction: root.upgradeClick()
}
