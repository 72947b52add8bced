// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/EditorCommon/qmls/BasicComponent"
import "qrc:/EditorCommon/qmls/BizComponent"
import "component"

/// The form of a new project. It enters what it holds in `proInfoModel` and then tells; a type, a department or a number
/// once given stays for the next project.
EDialog {
    id: root

    property string iniAttrDescribe: ""
    property string iniAttrTemplate: ""
    property string projType: editorControl.isBimSdk || editorControl.appVer !== 0 ? "CIM" : "BIM"
    property int normalFontSize: 12
    /// Where a scene lies as long as nobody says otherwise.
    property real nLongitude: 121.0
    property real nLatitude: 31.0
    /// The level down to which a region has to be chosen: 1 province, 2 city, 3 district.
    property int nValidType: 3

    signal sendClicked(string guid)

    /// Opens the form for a building.
    function openBimProj() {
        projBox.typeName = qsTr("BIM工程")
        root.projType = "BIM"
        root.open()
    }

    function selectedProvince() {
        cityBox.clear()
        regionBox.clear()
        root.nValidType = 3
        // A directly governed city is a province and its only city at once.
        if (/市/.test(province.regionName)) {
            root.takeProvinceAsCity()
        } else {
            cityBox.reagionArray = regionModel.getChildRegionList(province.regionID)
            if (cityBox.reagionArray.length === 0)
                root.nValidType = 1
        }
        root.placeAt(province)
    }

    function takeProvinceAsCity() {
        cityBox.reagionArray = [{ name: province.regionName, id: province.regionID,
                                  longitude: province.regionLongitude, latitude: province.regionLatitude }]
        cityBox.take(cityBox.reagionArray[0])
    }

    function selectedCity() {
        regionBox.clear()
        regionBox.reagionArray = regionModel.getChildRegionList(cityBox.regionID)
        if (regionBox.reagionArray.length === 0)
            root.nValidType = 2
        root.placeAt(cityBox)
    }

    function placeAt(box) {
        root.nLongitude = box.regionLongitude
        root.nLatitude = box.regionLatitude
    }

    function hasRegion() {
        const last = [province, cityBox, regionBox][root.nValidType - 1]
        return root.projType !== "CIM" || last.regionID !== ""
    }

    function isComplete() {
        editProNameId.valid = editProNameId.displayText !== ""
        if (!editProNameId.valid) {
            editProNameId.forceActiveFocus(Qt.OtherFocusReason)
            return false
        }
        deptSelect.valid = !editorControl.isBimSdk || deptSelect.deptID !== ""
        if (!deptSelect.valid) {
            deptSelect.forceActiveFocus(Qt.OtherFocusReason)
            return false
        }
        orgText.valid = root.hasRegion()
        return orgText.valid
    }

    function create() {
        if (!root.isComplete())
            return
        if (root.projType === "CIM")
            proInfoModel.setBelongRegion(province.regionID, province.regionName, cityBox.regionID, cityBox.regionName,
                                         regionBox.regionID, regionBox.regionName, root.nLongitude, root.nLatitude)
        proInfoModel.setProjInfo(editProNameId.displayText.trim(), root.projType, selectAttrTemplateId.fileSelectName,
                                 deptSelect.deptID, deptSelect.deptName, editProjIotCode.displayText.trim(), "")
        root.sendClicked(proInfoModel.projGuid)
        root.close()
    }

    width: 360
    height: 465
    onAboutToShow: {
        root.xOffset = 0
        root.yOffset = 0
        editProNameId.clear()
        editProNameId.valid = true
        selectAttrTemplateId.fileSelectName = root.iniAttrTemplate
    }
    onOpened: editProNameId.forceActiveFocus(Qt.OtherFocusReason)

    contentItem: FocusScope {
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("新建工程")

        EDialogTitle {
            id: titleRow

            width: parent.width
            title: qsTr("新建工程")
            onClick: root.close()
            onMove: {
                root.xOffset += xOffset
                root.yOffset += yOffset
            }
        }

        Column {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: titleRow.bottom
            anchors.margins: 20
            spacing: 12

            FormRow {
                objectName: "nameRow"
                width: parent.width
                fontSize: root.normalFontSize
                label: valid ? qsTr("工程名称") : qsTr("工程名称 *请输入工程名称*")
                valid: editProNameId.valid

                ETextField {
                    id: editProNameId

                    property bool valid: true

                    objectName: "nameField"
                    width: parent.width
                    Keys.onReturnPressed: root.create()
                    Keys.onEnterPressed: root.create()
                    Accessible.name: qsTr("工程名称")
                }
            }

            FormRow {
                objectName: "typeRow"
                width: parent.width
                fontSize: root.normalFontSize
                label: qsTr("工程类型")

                ETextField {
                    objectName: "typeField"
                    width: parent.width
                    readOnly: true
                    text: editorControl.isBimSdk ? qsTr("场景工程") : qsTr("BIM工程")
                    visible: editorControl.appVer === 0 || editorControl.isBimSdk
                    Accessible.name: qsTr("工程类型")
                }

                EProjTypeBox {
                    id: projBox

                    objectName: "typeBox"
                    width: parent.width
                    visible: editorControl.appVer === 1
                    onSigSelect: root.projType = projBox.typeID
                }

                // A choice in the box takes the place of a plain binding.
                Binding {
                    target: projBox
                    property: "typeID"
                    value: root.projType
                }
            }

            FormRow {
                objectName: "departmentRow"
                width: parent.width
                fontSize: root.normalFontSize
                label: valid ? qsTr("所属项目部") : qsTr("所属项目部 *请选择项目部*")
                valid: deptSelect.valid
                visible: editorControl.isBimSdk

                EProjOrgCheck {
                    id: deptSelect

                    objectName: "departmentBox"
                    width: parent.width
                }
            }

            FormRow {
                objectName: "templateRow"
                width: parent.width
                fontSize: root.normalFontSize
                label: qsTr("属性模板")
                visible: root.projType !== "BIM"

                EditFileSelect {
                    id: selectAttrTemplateId

                    objectName: "templateSelect"
                    width: parent.width
                    enableSelect: root.projType !== "BIM"
                    fontSize: root.normalFontSize
                    initFileName: root.iniAttrTemplate
                }
            }

            FormRow {
                id: orgText

                objectName: "locationRow"
                width: parent.width
                spacing: 3
                fontSize: root.normalFontSize
                label: valid ? qsTr("项目地点") : qsTr("项目地点 * 行政区域必须选取到县级")
                visible: root.projType !== "BIM"

                ERegionBox {
                    id: province

                    objectName: "provinceBox"
                    width: Math.round(parent.width / 3 - 2)
                    popHeigh: 200
                    isField: true
                    fontSize: root.normalFontSize
                    purpose: qsTr("省")
                    reagionArray: regionModel.cityArray
                    onSigSelect: root.selectedProvince()
                }

                ERegionBox {
                    id: cityBox

                    objectName: "cityBox"
                    width: Math.round(parent.width / 3 - 10)
                    anchors.left: province.right
                    anchors.leftMargin: 10
                    popHeigh: 200
                    isField: true
                    fontSize: root.normalFontSize
                    purpose: qsTr("市")
                    onSigSelect: root.selectedCity()
                }

                ERegionBox {
                    id: regionBox

                    objectName: "regionBox"
                    width: Math.round(parent.width / 3 - 10)
                    anchors.right: parent.right
                    popHeigh: 200
                    isField: true
                    fontSize: root.normalFontSize
                    purpose: qsTr("区县")
                    onSigSelect: root.placeAt(regionBox)
                }
            }

            FormRow {
                objectName: "iotRow"
                width: parent.width
                fontSize: root.normalFontSize
                label: qsTr("物联资产编号")
                visible: editorControl.isBimSdk

                ETextField {
                    id: editProjIotCode

                    objectName: "iotField"
                    width: parent.width
                    Accessible.name: qsTr("物联资产编号")
                }
            }
        }

        EDialogTextBtn {
            objectName: "newProjectBtn"
            width: 82
            height: 32
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 10
            anchors.horizontalCenter: parent.horizontalCenter
            primary: true
            text: qsTr("新建工程")
            onClick: root.create()
        }
    }
}
