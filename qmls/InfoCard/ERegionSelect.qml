// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "../component"

/// The row of the administrative region: province, city and district. A choice counts when the district is chosen, and
/// with it the place of the project.
ECardView {
    id: root

    property var regionObject: root.strValue

    /// Shows a region as the row has it.
    function show(region) {
        cityBox.clear()
        regionBox.clear()
        province.regionID = region.pId
        province.regionName = region.pName
        root.selectedProvince()
        cityBox.regionID = region.cId
        cityBox.regionName = region.cName
        root.selectedCity()
        regionBox.regionID = region.rId
        regionBox.regionName = region.rName
    }

    function selectedProvince() {
        cityBox.clear()
        regionBox.clear()
        // A directly governed city is a province and its only city at once.
        if (/市/.test(province.regionName))
            root.takeProvinceAsCity()
        else
            cityBox.reagionArray = regionModel.getChildRegionList(province.regionID)
    }

    function takeProvinceAsCity() {
        cityBox.reagionArray = [{ name: province.regionName, id: province.regionID,
                                  longitude: province.regionLongitude, latitude: province.regionLatitude }]
        cityBox.regionName = province.regionName
        cityBox.regionID = province.regionID
        cityBox.regionLongitude = province.regionLongitude
        cityBox.regionLatitude = province.regionLatitude
        root.selectedCity()
    }

    function selectedCity() {
        regionBox.clear()
        regionBox.reagionArray = regionModel.getChildRegionList(cityBox.regionID)
    }

    function selectedRegion() {
        proInfoModel.setBelongRegion(province.regionID, province.regionName, cityBox.regionID, cityBox.regionName,
                                     regionBox.regionID, regionBox.regionName, regionBox.regionLongitude,
                                     regionBox.regionLatitude)
    }

    onRegionObjectChanged: {
        if (root.regionObject)
            root.show(root.regionObject)
    }

    CardLabel {
        font.pixelSize: root.normalFontSize
        text: root.strKey
    }

    Item {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 32
        enabled: !root.bReadonly
        // Enter in a box is about the box, and not the end of the card.
        Keys.onReturnPressed: event.accepted = true
        Keys.onEnterPressed: event.accepted = true

        ERegionBox {
            id: province

            objectName: "provinceBox"
            width: root.width / 3 - 2
            height: parent.height
            focus: true
            fontSize: 12
            popHeigh: 200
            isField: true
            purpose: qsTr("省")
            reagionArray: regionModel.cityArray
            onSigSelect: root.selectedProvince()
        }

        ERegionBox {
            id: cityBox

            objectName: "cityBox"
            anchors.left: province.right
            anchors.leftMargin: 10
            width: root.width / 3 - 10
            height: parent.height
            fontSize: 12
            popHeigh: 200
            isField: true
            purpose: qsTr("市")
            onSigSelect: root.selectedCity()
        }

        ERegionBox {
            id: regionBox

            objectName: "regionBox"
            anchors.right: parent.right
            width: root.width / 3 - 10
            height: parent.height
            fontSize: 12
            popHeigh: 200
            isField: true
            purpose: qsTr("区县")
            onSigSelect: root.selectedRegion()
        }
    }
}
