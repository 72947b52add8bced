// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The buttons of a card.
Row {
    id: root

    property bool isFree: true
    property bool isBim: false
    /// The keyboard reaches the buttons of one card at a time: Tab through hundreds of cards leads nowhere.
    property bool hasKeyboard: false

    signal delClick()
    signal uploadClick()
    signal updateClick()
    signal convertClick()
    signal openWebClick()
    signal proInfoClick()

    layoutDirection: Qt.RightToLeft

    EOColorImgBtn {
        id: delBtn

        objectName: "delBtn"
        width: 28
        height: 21
        enabled: root.isFree
        focusPolicy: root.hasKeyboard ? Qt.TabFocus : Qt.NoFocus
        opacityImageUrl: enabled ? "qrc:/images/card_ic_del.png" : "qrc:/images/tab_bt_ic_del_disable.png"
        hoveredBtnColor: EConfig.eBorder
        selectedBtnColor: EConfig.eGlobalBackGround
        btnColor: EConfig.eGridBackGround
        disabledBtnColor: EConfig.eGridBackGround
        tipText: qsTr("从列表中移除")
        onClick: root.delClick()
    }

    CardBtn {
        objectName: "uploadBtn"
        enabled: root.isFree
        hasKeyboard: root.hasKeyboard
        picture: "card_ic_upload"
        tipText: qsTr("上传工程")
        onClick: root.uploadClick()
    }

    CardBtn {
        objectName: "updateBtn"
        enabled: root.isFree
        hasKeyboard: root.hasKeyboard
        picture: "card_ic_update"
        tipText: qsTr("更新工程")
        onClick: root.updateClick()
    }

    CardBtn {
        id: kyvconvertBtn

        objectName: "kyvconvertBtn"
        enabled: root.isFree
        hasKeyboard: root.hasKeyboard
        picture: "card_ic_web"
        tipText: qsTr("服务器转换kyv")
        visible: root.isBim && !editorControl.isBimSdk && serviceConvertMgr.isVisible
        onClick: root.convertClick()
    }

    CardBtn {
        id: serviceBtn

        objectName: "serviceBtn"
        enabled: root.isFree
        hasKeyboard: root.hasKeyboard
        picture: "card_ic_bim"
        tipText: qsTr("打开服务端工程")
        visible: !editorControl.isBimSdk
        onClick: root.openWebClick()
    }

    CardBtn {
        id: proInfoBtn

        objectName: "proInfoBtn"
        enabled: root.isFree
        hasKeyboard: root.hasKeyboard
        picture: "card_ic_list"
        tipText: qsTr("工程信息")
        onClick: root.proInfoClick()
    }
}
