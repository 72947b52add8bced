// SPDX-License-Identifier: MIT
import QtQuick 2.15
import Tools 1.0
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A field for a JSON file, with a button that lets one choose it.
Rectangle {
    id: root

    property string initFileName: ""
    property string fileSelectName: root.initFileName
    property alias enableSelect: selectBtn.enabled
    property int fontSize: 12

    function choose() {
        globalFileDialog.reset()
        globalFileDialog.title = qsTr("请选择文件")
        globalFileDialog.nameFilters = [qsTr("json文件 (*.json)")]
        globalFileDialog.open(function(file) { root.fileSelectName = file })
    }

    implicitWidth: 200
    implicitHeight: 32
    color: EConfig.eInputFieldBackGround
    border.width: 1
    border.color: field.activeFocus ? EConfig.eAccent : EConfig.eInputFieldBorder
    radius: EConfig.radius

    ETextField {
        id: field

        objectName: "fileField"
        anchors.left: parent.left
        anchors.right: selectBtn.left
        height: parent.height
        backgroundBorderWidth: 0
        background: null
        font.pixelSize: root.fontSize
        readOnly: true
        text: Tools.fileName(root.fileSelectName)
        Accessible.name: qsTr("属性模板")
    }

    EHoverImageBtn {
        id: selectBtn

        objectName: "fileBtn"
        width: height + 8
        height: parent.height / 2
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        img: "qrc:/images/pop_box_ic_file.png"
        hoveredImg: "qrc:/images/pop_box_ic_file_hover.png"
        tipText: qsTr("请选择文件")
        onClick: root.choose()
    }
}
