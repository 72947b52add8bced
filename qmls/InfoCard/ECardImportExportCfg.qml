// SPDX-License-Identifier: MIT
import QtQuick 2.15
import Tools 1.0
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The row of the property template: its name, and buttons to write it to a folder, to take another one from a file, and
/// to edit it.
ECardView {
    id: root

    property string fileSelectName: root.strValue
    readonly property bool hasTemplate: root.fileSelectName !== ""
    /// The host may come without a web service.
    readonly property var webViews: typeof webViewMgr !== "undefined" ? webViewMgr : null

    function importTemplate() {
        globalFileDialog.reset()
        globalFileDialog.title = qsTr("请选择文件")
        globalFileDialog.nameFilters = ["JSON(*.json)"]
        globalFileDialog.open(function(file) {
            proInfoModel.setJsonData(root.strKey, file, true)
            root.fileSelectName = file
        })
    }

    function editTemplate() {
        root.webViews.openWeb(appPath + "/EditorWebExtern/PropertyEditor/index.html", Qt.rect(0, 0, 1024, 800))
    }

    CardLabel {
        font.pixelSize: root.normalFontSize
        text: root.strKey
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 32
        color: EConfig.eInputFieldBackGround
        border.width: 1
        border.color: field.activeFocus ? EConfig.eAccent : EConfig.eInputFieldBorder
        radius: EConfig.radius

        CardField {
            id: field

            objectName: "templateField"
            anchors.left: parent.left
            anchors.right: buttons.left
            height: parent.height
            focus: true
            backgroundBorderWidth: 0
            background: null
            readOnly: true
            text: Tools.fileName(root.fileSelectName)
            Accessible.name: root.strKey
        }

        Row {
            id: buttons

            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            TemplateBtn {
                objectName: "exportBtn"
                enabled: root.hasTemplate
                img: "qrc:/images/pop_box_export.png"
                hoveredImg: "qrc:/images/pop_box_ic__export_hover.png"
                tipText: qsTr("导出")
                onClick: proInfoModel.exportConfigFile()
            }

            TemplateBtn {
                objectName: "importBtn"
                img: "qrc:/images/pop_box_ic_file.png"
                hoveredImg: "qrc:/images/pop_box_ic_file_hover.png"
                tipText: qsTr("导入")
                onClick: root.importTemplate()
            }

            Item {
                width: 14
                height: 14
                visible: editorControl.isBimSdk

                TemplateBtn {
                    objectName: "editBtn"
                    enabled: editorControl.isBimSdk && root.hasTemplate && root.webViews !== null
                    img: "qrc:/images/box_ic_eidt.png"
                    hoveredImg: "qrc:/images/box_ic_eidt_hove.png"
                    tipText: qsTr("属性编辑")
                    onClick: root.editTemplate()
                }

                // A button that is disabled does not see the pointer, and could not say why.
                HoverHandler {
                    enabled: root.webViews === null
                    onHoveredChanged: hovered ? missingTip.open() : missingTip.close()
                }

                EToolTip {
                    id: missingTip

                    objectName: "missingTip"
                    text: qsTr("网页服务不可用，无法编辑属性")
                }
            }
        }
    }
}
