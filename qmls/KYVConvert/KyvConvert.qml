// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The dialog of the models of one building project that are converted on the server: its list, and the pages on which an
/// archive is chosen and told what to do with.
EDialog {
    id: root

    property string strFilePath: ""
    /// 0: levels, performance first; 1: levels, quality first; 2: static. Stays for the next archive.
    property int convertType: 0

    function showInfo() { root.show("ProjInfo.qml", 444) }
    function showFailedInfo() { root.show("ProjFaildInfo.qml", 444) }
    function showSelecter() { root.show("Selecter.qml", 240) }
    function showList() { root.show("ProjLister.qml", 444) }
    function showOptionSelecter(file) {
        root.strFilePath = file
        root.show("OptionSelecter.qml", 260)
    }

    function show(page, pageHeight) {
        root.height = pageHeight
        pageLoader.source = "qrc:/qmls/KYVConvert/" + page
    }

    width: 360
    height: 444
    onAboutToShow: {
        root.xOffset = 0
        root.yOffset = 0
    }
    onOpened: root.showInfo()

    contentItem: FocusScope {
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("转化BIM工程")

        Loader {
            id: pageLoader

            objectName: "kyvPage"
            anchors.fill: parent
            focus: true
        }
    }
}
