// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"

/// The choice of the department of a new project, from the tree of the organisation.
EComboBox {
    id: root

    property string deptID: ""
    property string deptName: ""
    property bool valid: true

    /// Chooses a department; of the organisation's other parts none can be.
    function take(department) {
        if (!department.canSelect)
            return
        root.deptID = department.id
        root.deptName = department.name
        root.popup.close()
    }

    function expandBelow(parentIndex) {
        for (let i = 0; i < orgModel.rowCount(parentIndex); ++i) {
            const index = orgModel.index(i, 0, parentIndex)
            treeLoader.item.expand(index)
            root.expandBelow(index)
        }
    }

    fontSize: 12
    fontColor: "#dddddd"
    backGroundColor: EConfig.eBtnSelected
    leftPadding: 15
    closedImage: "qrc:/images/bar_ic_shouqi.png"
    openImage: "qrc:/images/bar_ic_zhankai.png"
    displayText: root.deptName

    Accessible.name: root.deptName !== "" ? root.deptName : qsTr("所属项目部")

    popup: T.Popup {
        y: root.height
        width: root.width
        height: 280
        margins: 4
        padding: 1
        focus: true
        onAboutToShow: treeLoader.active = true
        onOpened: {
            root.expandBelow(treeLoader.item.rootIndex)
            treeLoader.item.forceActiveFocus(Qt.PopupFocusReason)
        }

        // A tree is the dearest part of the form, and most forms have none.
        contentItem: Loader {
            id: treeLoader

            active: false
            focus: true
            sourceComponent: ETree {
                objectName: "orgTree"
                focus: true
                model: orgModel
                treeStyleHeight: 32
                treeBackColor: "#272727"
                onEnterPressed: root.take(orgModel.data(index, Qt.UserRole + 1))

                Accessible.role: Accessible.Tree
                Accessible.name: qsTr("所属项目部")

                itemDelegate: OrgTreeRow {
                    chosenId: root.deptID
                    onTaken: root.take(department)
                }
            }
        }
        background: Rectangle {
            color: "#272727"
            border.width: 1
            border.color: EConfig.eBorder
            radius: EConfig.radius
        }
    }
}
