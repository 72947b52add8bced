// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A message with a yes button and, unless `noText` is empty, a no button. Either closes the box and then tells.
/// Escape and the cross mean no, or yes where there is no other answer.
EDialog {
    id: root

    property string title: ""
    /// Plain text; "<br/>" and line feeds break lines.
    property string contentText: ""
    property string yesText: qsTr("确定")
    property string noText: qsTr("取消")
    /// Somebody waits for the answer, so that there is no way past it.
    property bool needsAnswer: true

    signal yesClick()
    signal noClick()

    function answer(isYes) {
        root.close()
        if (isYes)
            root.yesClick()
        else
            root.noClick()
    }

    function dismiss() {
        if (root.needsAnswer)
            root.answer(root.noText === "")
        else
            root.close()
    }

    width: 360
    closePolicy: T.Popup.NoAutoClose
    onAboutToShow: {
        root.xOffset = 0
        root.yOffset = 0
    }
    onOpened: yesBtn.forceActiveFocus(Qt.OtherFocusReason)

    contentItem: FocusScope {
        implicitHeight: column.height
        focus: true
        Keys.onEscapePressed: root.dismiss()

        Accessible.role: Accessible.Dialog
        Accessible.name: root.title
        Accessible.description: content.text

        Column {
            id: column

            width: parent.width

            EDialogTitle {
                width: parent.width
                title: root.title
                onClick: root.dismiss()
                onMove: {
                    root.xOffset += xOffset
                    root.yOffset += yOffset
                }
            }

            EText {
                id: content

                objectName: "messageText"
                x: 24
                width: parent.width - 48
                topPadding: 24
                bottomPadding: 24
                wrapMode: Text.Wrap
                lineHeight: 1.25
                color: EConfig.textColor
                font.pixelSize: EConfig.textPixelSizeLarge
                text: root.contentText.replace(/<br\s*\/?>/gi, "\n")
            }

            Row {
                anchors.right: parent.right
                anchors.rightMargin: 16
                bottomPadding: 16
                spacing: 8

                EDialogTextBtn {
                    id: noBtn

                    objectName: "noBtn"
                    text: root.noText
                    visible: root.noText !== ""
                    onClick: root.answer(false)
                }

                EDialogTextBtn {
                    id: yesBtn

                    objectName: "yesBtn"
                    text: root.yesText
                    primary: true
                    focus: true
                    onClick: root.answer(true)
                }
            }
        }
    }
}
