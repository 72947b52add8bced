// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"

/// The login window: account, password, and in words what went wrong.
Rectangle {
    id: root

    function logIn() {
        loginController.logIn(accountField.text, passwordField.text)
    }

    function focusFirstEmptyField() {
        const first = accountField.text === "" ? accountField : passwordField
        first.field.forceActiveFocus(Qt.OtherFocusReason)
    }

    width: 400
    height: 440
    color: EConfig.eBackGround
    border.width: 1
    border.color: EConfig.eBorder
    Keys.onEscapePressed: loginWindow.close()
    Component.onCompleted: root.focusFirstEmptyField()

    EDialogTitle {
        x: 1
        y: 1
        width: parent.width - 2
        title: qsTr("登录")
        onClick: loginWindow.close()
        onMove: loginWindow.move(xOffset, yOffset)
    }

    Column {
        x: 48
        y: 64
        width: parent.width - 96
        spacing: 20

        Column {
            width: parent.width
            spacing: 8

            EText {
                color: EConfig.eTextHighColor
                font.pixelSize: 24
                text: "Torvo Home"
                Accessible.role: Accessible.Heading
            }

            EText {
                objectName: "serverText"
                width: parent.width
                color: EConfig.eQuietText
                elide: Text.ElideMiddle
                text: loginController.server
            }
        }

        LoginField {
            id: accountField

            width: parent.width
            label: qsTr("账号")
            text: loginController.account
            field.objectName: "accountField"
            enabled: !loginController.busy
            onAccepted: passwordField.field.forceActiveFocus(Qt.TabFocusReason)
        }

        LoginField {
            id: passwordField

            width: parent.width
            label: qsTr("密码")
            field.objectName: "passwordField"
            field.echoMode: TextInput.Password
            field.inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText
            enabled: !loginController.busy
            onAccepted: root.logIn()
        }

        EDialogTextBtn {
            objectName: "loginBtn"
            width: parent.width
            height: 36
            primary: true
            text: loginController.busy ? qsTr("正在登录…") : qsTr("登录")
            enabled: !loginController.busy
            onClick: root.logIn()
        }

        EText {
            objectName: "messageText"
            width: parent.width
            wrapMode: Text.Wrap
            lineHeight: 1.25
            color: EConfig.eInputFieldTextInvalid
            text: loginController.message
            visible: text !== ""
            Accessible.role: Accessible.AlertMessage
        }
    }

    Connections {
        target: loginController

        function onMessageChanged() {
            if (loginController.message !== "")
                root.focusFirstEmptyField()
        }
    }
}
