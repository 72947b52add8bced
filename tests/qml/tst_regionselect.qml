// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/qmls/InfoCard"

/// The row of the info card in which the administrative region is chosen.
HomeTest {
    id: home

    readonly property var provinces: [
        { id: "11", name: "北京市", longitude: 116.4, latitude: 39.9 },
        { id: "33", name: "浙江省", longitude: 120.2, latitude: 30.3 },
        { id: "81", name: "香港特别行政区", longitude: 114.2, latitude: 22.3 }
    ]
    readonly property var regions: ({
        "11": [{ id: "110101", name: "东城区", longitude: 116.42, latitude: 39.93 }],
        "33": [{ id: "3301", name: "杭州市", longitude: 120.15, latitude: 30.28 },
               { id: "3302", name: "宁波市", longitude: 121.55, latitude: 29.88 }],
        "3301": [{ id: "330106", name: "西湖区", longitude: 120.13, latitude: 30.26 },
                 { id: "330108", name: "滨江区", longitude: 120.21, latitude: 30.21 }]
    })

    Component {
        id: rowComponent

        DelegateView {
            width: 330
            height: 50
            strKey: "所属行政区"
            bReadonly: false
            qmlType: 3
        }
    }

    TestCase {
        name: "regionselect"
        when: windowShown

        readonly property var westLake: ({ pId: "33", pName: "浙江省", cId: "3301", cName: "杭州市", rId: "330106", rName: "西湖区" })
        readonly property var nowhere: ({ pId: "", pName: "", cId: "", cName: "", rId: "", rName: "" })
        property var row: null

        function initTestCase() {
            screens.listen()
        }

        function init() {
            home.reset()
            regionModel.cityArray = home.provinces
            regionModel.children = home.regions
            mouseMove(home, 1300, 850)
        }

        function cleanup() {
            row = null
            compare(screens.takeWarnings(), [])
        }

        function make(value) {
            row = createTemporaryObject(rowComponent, home, { strValue: value })
            verify(row !== null)
        }

        function part(name) {
            return home.find(row, name)
        }

        function texts() {
            return ["provinceBox", "cityBox", "regionBox"].map(function(name) { return part(name).displayText })
        }

        function ids() {
            return ["provinceBox", "cityBox", "regionBox"].map(function(name) { return part(name).regionID })
        }

        function choose(box, id) {
            mouseClick(part(box))
            tryVerify(function() { return part(box).popup.opened && home.findShown("region_" + id) !== null })
            mouseClick(home.findShown("region_" + id))
            tryVerify(function() { return !part(box).popup.visible })
        }

        // Looks.

        function test_theBoxesShareTheRow() {
            make(westLake)
            compare(part("cardLabel").text, "所属行政区")
            compare(part("cardLabel").height, 12)
            const places = { provinceBox: [0, 108], cityBox: [118, 100], regionBox: [230, 100] }
            for (const name in places) {
                compare(part(name).x, places[name][0], name)
                compare(part(name).width, places[name][1], name)
                compare(part(name).height, 32, name)
                compare(part(name).popHeigh, 200, name)
            }
        }

        function test_theProvincesAreThoseOfTheModel() {
            make(nowhere)
            compare(part("provinceBox").reagionArray.length, 3)
        }

        // Filling.

        function test_theRowShowsTheRegionOfTheProject() {
            make(westLake)
            compare(texts(), ["浙江省", "杭州市", "西湖区"])
            compare(ids(), ["33", "3301", "330106"])
        }

        function test_fillingAsksForTheListsAndChoosesNothing() {
            make(westLake)
            compare(home.takeCalls(), ["regionModel.getChildRegionList(33)", "regionModel.getChildRegionList(3301)"])
            compare(part("cityBox").reagionArray.length, 2)
            compare(part("regionBox").reagionArray.length, 2)
        }

        function test_aProjectWithoutARegionAsksWithEmptyIds() {
            make(nowhere)
            compare(texts(), ["", "", ""])
            compare(home.takeCalls(), ["regionModel.getChildRegionList()", "regionModel.getChildRegionList()"])
        }

        function test_aDirectlyGovernedCityIsItsOwnCity() {
            make({ pId: "11", pName: "北京市", cId: "11", cName: "北京市", rId: "110101", rName: "东城区" })
            compare(texts(), ["北京市", "北京市", "东城区"])
            compare(part("cityBox").reagionArray.length, 1)
            compare(part("cityBox").reagionArray[0].id, "11")
            compare(part("regionBox").reagionArray[0].name, "东城区")
            // Once for the province as a city, once for the city of the project.
            compare(home.takeCalls(), ["regionModel.getChildRegionList(11)", "regionModel.getChildRegionList(11)"])
        }

        function test_namesThatTheListsDoNotHoldAreShownAllTheSame() {
            make({ pId: "99", pName: "旧省", cId: "9901", cName: "旧城", rId: "990101", rName: "旧区" })
            compare(texts(), ["旧省", "旧城", "旧区"])
            compare(part("regionBox").reagionArray, [])
        }

        function test_anotherRegionTakesThePlaceOfTheFirst() {
            make(westLake)
            row.strValue = { pId: "11", pName: "北京市", cId: "11", cName: "北京市", rId: "110101", rName: "东城区" }
            compare(texts(), ["北京市", "北京市", "东城区"])
            row.strValue = nowhere
            compare(texts(), ["", "", ""])
            compare(part("cityBox").reagionArray, [])
        }

        // Choosing.

        function test_aProvinceEmptiesCityAndDistrictAndCountsForNothing() {
            make(westLake)
            home.takeCalls()
            choose("provinceBox", "81")
            compare(texts(), ["香港特别行政区", "", ""])
            compare(part("cityBox").reagionArray, [])
            compare(part("regionBox").reagionArray, [])
            compare(home.takeCalls(), ["regionModel.getChildRegionList(81)"])
        }

        function test_aDirectlyGovernedCityGoesOnToItsDistricts() {
            make(westLake)
            home.takeCalls()
            choose("provinceBox", "11")
            compare(texts(), ["北京市", "北京市", ""])
            compare(part("cityBox").regionLongitude, 116.4)
            compare(part("cityBox").regionLatitude, 39.9)
            compare(home.takeCalls(), ["regionModel.getChildRegionList(11)"])
            choose("regionBox", "110101")
            compare(home.takeCalls(), ["proInfoModel.setBelongRegion(11,北京市,11,北京市,110101,东城区,116.42,39.93)"])
        }

        function test_aCityEmptiesTheDistrictAndCountsForNothing() {
            make(westLake)
            home.takeCalls()
            choose("cityBox", "3302")
            compare(texts(), ["浙江省", "宁波市", ""])
            compare(home.takeCalls(), ["regionModel.getChildRegionList(3302)"])
        }

        function test_aDistrictCountsWithItsLongitudeAndLatitude() {
            make(westLake)
            home.takeCalls()
            choose("regionBox", "330108")
            compare(texts(), ["浙江省", "杭州市", "滨江区"])
            compare(home.takeCalls(), ["proInfoModel.setBelongRegion(33,浙江省,3301,杭州市,330108,滨江区,120.21,30.21)"])
        }

        function test_aRegionIsChosenFromTheTopToTheDistrict() {
            make(nowhere)
            choose("provinceBox", "33")
            choose("cityBox", "3301")
            home.takeCalls()
            choose("regionBox", "330106")
            compare(home.takeCalls(), ["proInfoModel.setBelongRegion(33,浙江省,3301,杭州市,330106,西湖区,120.13,30.26)"])
        }

        function test_aReadOnlyRegionCannotBeChosen() {
            make(westLake)
            row.bReadonly = true
            mouseClick(part("provinceBox"))
            verify(!part("provinceBox").popup.visible)
        }

        // Keyboard and speech.

        function test_theKeyboardGoesThroughTheBoxesAndChooses() {
            make(westLake)
            part("provinceBox").forceActiveFocus()
            keyClick(Qt.Key_Tab)
            verify(part("cityBox").activeFocus)
            keyClick(Qt.Key_Tab)
            verify(part("regionBox").activeFocus)
            home.takeCalls()
            keyClick(Qt.Key_Space)
            tryVerify(function() { return part("regionBox").popup.opened })
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(home.takeCalls(), ["proInfoModel.setBelongRegion(33,浙江省,3301,杭州市,330108,滨江区,120.21,30.21)"])
        }

        function test_emptyBoxesSayWhatTheyAreFor() {
            make(nowhere)
            compare(screens.spoken(part("provinceBox")).name, "省")
            compare(screens.spoken(part("cityBox")).name, "市")
            compare(screens.spoken(part("regionBox")).name, "区县")
        }
    }
}
