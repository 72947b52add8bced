// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The rows of the info card.
EScrollView {
    id: root

    property alias model: list.model
    property int normalFontSize: 14

    /// Gives the keyboard to the first row.
    function focusFirst() {
        list.forceLayout()
        if (list.count > 0)
            list.itemAtIndex(0).forceActiveFocus(Qt.OtherFocusReason)
    }

    barOffset: 13

    ListView {
        id: list

        objectName: "infoRows"
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        // A row keeps what has been typed into it only as long as it lives, so that all rows stay, also those that are
        // out of sight.
        cacheBuffer: 10000

        Accessible.role: Accessible.List
        Accessible.name: qsTr("工程信息")

        delegate: FocusScope {
            id: row

            width: list.width
            height: 62
            onActiveFocusChanged: {
                if (row.activeFocus)
                    list.positionViewAtIndex(index, ListView.Contain)
            }

            DelegateView {
                objectName: "infoRow_" + modelData.key
                y: 12
                width: parent.width
                height: 50
                focus: true
                strKey: modelData.key
                strValue: modelData.value
                bReadonly: modelData.readOnly
                qmlType: modelData.type
                normalFontSize: root.normalFontSize
            }
        }
    }
}
