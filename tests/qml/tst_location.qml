// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import "qrc:/EditorCommon/qmls/Config"
import "qrc:/qmls"

/// The place of a new project, and the box that a region is chosen in.
HomeTest {
    id: home

    readonly property var provinces: [region("110000", "北京市", 116.397, 39.908), region("320000", "江苏省", 119.4, 32.9),
                                      region("440000", "广东省", 113.3, 23.1), region("710000", "台湾省", 120.7, 24.1),
                                      region("500000", "重庆市", 106.6, 29.6)]
    readonly property var regions: ({
        "110000": [region("110101", "东城区", 116.42, 39.93), region("110112", "通州区", 116.66, 39.9)],
        "320000": [region("320100", "南京市", 118.78, 32.06), region("320500", "苏州市", 120.6, 31.3)],
        "320100": [region("320102", "玄武区", 118.8, 32.05), region("320104", "秦淮区", 118.79, 32.04)],
        "320500": [region("320583", "昆山市", 120.95, 31.38)],
        "440000": [region("440100", "广州市", 113.25, 23.12), region("441900", "东莞市", 113.75, 23.02)],
        "440100": [region("440103", "荔湾区", 113.24, 23.12)]
    })

    function region(id, name, longitude, latitude) {
        return { id: id, name: name, longitude: longitude, latitude: latitude }
    }

    Component {
        id: dialogComponent

        NewProjectDialog {
            parent: home
            onSendClicked: home.called("sendClicked")
        }
    }

    TestCase {
        name: "location"
        when: windowShown

        property var dialog: null

        function initTestCase() {
            screens.listen()
            home.orgModel = screens.makeTree([
                { text1: "1", id: "d1", name: "设计所", canSelect: true }
            ])
        }

        function init() {
            home.reset()
            regionModel.cityArray = home.provinces
            regionModel.children = home.regions
            mouseMove(home, 1300, 850)
            make()
        }

        function cleanup() {
            dialog.close()
            tryCompare(dialog, "visible", false)
            dialog = null
            compare(screens.takeWarnings(), [])
        }

        function make() {
            dialog = createTemporaryObject(dialogComponent, home)
            verify(dialog !== null)
            dialog.open()
            tryVerify(function() { return part("nameField") !== null && part("nameField").activeFocus })
        }

        function part(name) {
            return home.findShown(name)
        }

        function label() {
            return home.find(part("locationRow"), "formLabel")
        }

        function openList(box) {
            mouseClick(part(box))
            tryVerify(function() { return part(box).popup.opened })
        }

        function choose(box, id) {
            openList(box)
            const row = part("region_" + id)
            verify(row !== null, id)
            mouseClick(row)
            tryVerify(function() { return !part(box).popup.visible })
        }

        function create() {
            part("nameField").text = "新区"
            home.takeCalls()
            mouseClick(part("newProjectBtn"))
            return home.takeCalls()
        }

        function compareBox(name, id, shown, longitude, latitude) {
            compare(part(name).regionID, id)
            compare(part(name).displayText, shown)
            compare(part(name).regionLongitude, longitude)
            compare(part(name).regionLatitude, latitude)
        }

        function compareEmpty(name, count) {
            compareBox(name, "", "", 121, 31)
            compare(part(name).reagionArray.length, count)
        }

        // Looks.

        function test_theRowHasThreeBoxesBelowItsLabel() {
            compare(label().text, "项目地点")
            compare(label().color, EConfig.eInputFieldText)
            const boxes = ["provinceBox", "cityBox", "regionBox"].map(part)
            const third = part("locationRow").width / 3
            fuzzyCompare(boxes[0].width, third - 2, 0.5)
            fuzzyCompare(boxes[1].width, third - 10, 0.5)
            fuzzyCompare(boxes[2].width, third - 10, 0.5)
            compare(boxes[1].x, boxes[0].width + 10)
            compare(boxes[2].x + boxes[2].width, part("locationRow").width)
            verify(boxes[2].x >= boxes[1].x + boxes[1].width + 10)
            for (const box of boxes) {
                compare(box.height, 32)
                compare(box.popHeigh, 200)
                compare(label().mapToItem(box, 0, label().height).y, -3)
            }
        }

        function test_itStandsBetweenTemplateAndNumber() {
            editorControl.isBimSdk = true
            tryVerify(function() { return part("iotRow") !== null && part("iotRow").y > part("locationRow").y })
            const order = ["templateRow", "locationRow", "iotRow"].map(part)
            verify(order[0].y < order[1].y && order[1].y < order[2].y)
            verify(dialog.contentItem.mapFromItem(order[2], 0, order[2].height).y <= part("newProjectBtn").y)
        }

        function test_aBuildingHasNoLocation() {
            dialog.projType = "BIM"
            compare(part("locationRow"), null)
            compare(create(), ["proInfoModel.setProjInfo(新区,BIM,,,,,)", "sendClicked()"])
        }

        function test_provincesThatComeLaterAreThere() {
            regionModel.cityArray = []
            compare(part("provinceBox").count, 0)
            regionModel.cityArray = home.provinces
            compare(part("provinceBox").count, 5)
        }

        // The three levels.

        function test_aDirectlyGovernedCityIsItsOwnCity() {
            choose("provinceBox", "110000")
            compare(home.takeCalls(), ["regionModel.getChildRegionList(110000)"])
            compareBox("cityBox", "110000", "北京市", 116.397, 39.908)
            compare(part("cityBox").reagionArray, [home.region("110000", "北京市", 116.397, 39.908)])
            compareEmpty("regionBox", 2)
            compare(dialog.nValidType, 3)
            compare(dialog.nLongitude, 116.397)
            compare(dialog.nLatitude, 39.908)
            choose("regionBox", "110101")
            compare(create(), ["proInfoModel.setBelongRegion(110000,北京市,110000,北京市,110101,东城区,116.42,39.93)",
                               "proInfoModel.setProjInfo(新区,CIM,,,,,)", "sendClicked()"])
        }

        function test_aDirectlyGovernedCityWithoutDistrictsIsEnough() {
            choose("provinceBox", "500000")
            compare(dialog.nValidType, 2)
            compare(create()[0], "proInfoModel.setBelongRegion(500000,重庆市,500000,重庆市,,,106.6,29.6)")
        }

        function test_aProvinceHasItsCities() {
            choose("provinceBox", "320000")
            compare(home.takeCalls(), ["regionModel.getChildRegionList(320000)"])
            compareBox("provinceBox", "320000", "江苏省", 119.4, 32.9)
            compareEmpty("cityBox", 2)
            compareEmpty("regionBox", 0)
            compare(dialog.nValidType, 3)
            compare(dialog.nLongitude, 119.4)
            compare(dialog.nLatitude, 32.9)
            choose("cityBox", "320500")
            compare(home.takeCalls(), ["regionModel.getChildRegionList(320500)"])
            compareEmpty("regionBox", 1)
            compare(dialog.nLongitude, 120.6)
            compare(dialog.nLatitude, 31.3)
            choose("regionBox", "320583")
            compare(home.takeCalls(), [])
            compare(dialog.nLongitude, 120.95)
            compare(dialog.nLatitude, 31.38)
            compare(create()[0], "proInfoModel.setBelongRegion(320000,江苏省,320500,苏州市,320583,昆山市,120.95,31.38)")
        }

        function test_aCityWithoutDistrictsIsEnough() {
            choose("provinceBox", "440000")
            choose("cityBox", "441900")
            compare(dialog.nValidType, 2)
            compare(create()[0], "proInfoModel.setBelongRegion(440000,广东省,441900,东莞市,,,113.75,23.02)")
        }

        function test_aProvinceWithoutCitiesIsEnough() {
            choose("provinceBox", "710000")
            compare(dialog.nValidType, 1)
            compare(create()[0], "proInfoModel.setBelongRegion(710000,台湾省,,,,,120.7,24.1)")
        }

        function test_afterACityWithoutDistrictsAnotherNeedsNone() {
            choose("provinceBox", "440000")
            choose("cityBox", "441900")
            choose("cityBox", "440100")
            compareEmpty("regionBox", 1)
            compare(dialog.nValidType, 2)
            compare(create()[0], "proInfoModel.setBelongRegion(440000,广东省,440100,广州市,,,113.25,23.12)")
        }

        function test_anotherProvinceClearsCityAndDistrict() {
            choose("provinceBox", "320000")
            choose("cityBox", "320100")
            choose("regionBox", "320104")
            choose("provinceBox", "440000")
            compareEmpty("cityBox", 2)
            compareEmpty("regionBox", 0)
            compare(dialog.nLongitude, 113.3)
            compare(dialog.nLatitude, 23.1)
        }

        function test_anotherProvinceIsNeededDownToTheDistrictAgain() {
            choose("provinceBox", "710000")
            choose("provinceBox", "320000")
            compare(dialog.nValidType, 3)
            compare(create(), [])
        }

        function test_anotherCityClearsTheDistrict() {
            choose("provinceBox", "320000")
            choose("cityBox", "320100")
            choose("regionBox", "320104")
            choose("cityBox", "320500")
            compareEmpty("regionBox", 1)
            compare(dialog.nLongitude, 120.6)
            compare(create(), [])
        }

        function test_theSameChoiceAgainBeginsAnewBelow() {
            choose("provinceBox", "320000")
            choose("cityBox", "320100")
            choose("provinceBox", "320000")
            compareEmpty("cityBox", 2)
        }

        // The check.

        function test_whatIsMissingIsSaid_data() {
            return [{ tag: "nothing chosen", ids: [] }, { tag: "a province", ids: ["320000"] },
                    { tag: "a city", ids: ["320000", "320100"] }, { tag: "a directly governed city", ids: ["110000"] }]
        }

        function test_whatIsMissingIsSaid(row) {
            const boxes = ["provinceBox", "cityBox", "regionBox"]
            row.ids.forEach(function(id, i) { choose(boxes[i], id) })
            compare(label().text, "项目地点")
            compare(create(), [])
            compare(label().text, "项目地点 * 行政区域必须选取到县级")
            compare(label().color, EConfig.eInputFieldTextInvalid)
            verify(!label().truncated)
            verify(dialog.visible)
        }

        function test_theMessageGoesWithTheNextGoodClick() {
            compare(create(), [])
            choose("provinceBox", "710000")
            compare(label().text, "项目地点 * 行政区域必须选取到县级")
            compare(create().length, 3)
            tryCompare(dialog, "visible", false)
            dialog.open()
            tryVerify(function() { return part("locationRow") !== null })
            compare(label().text, "项目地点")
        }

        function test_nameAndDepartmentAreCheckedFirst() {
            editorControl.isBimSdk = true
            mouseClick(part("newProjectBtn"))
            compare(label().text, "项目地点")
            compare(create(), [])
            compare(home.find(part("departmentRow"), "formLabel").text, "所属项目部 *请选择项目部*")
            compare(label().text, "项目地点")
            part("departmentBox").deptID = "d1"
            compare(create(), [])
            compare(home.find(part("departmentRow"), "formLabel").text, "所属项目部")
            compare(label().text, "项目地点 * 行政区域必须选取到县级")
        }

        function test_theMessageStaysWhileTheNameIsMissing() {
            compare(create(), [])
            choose("provinceBox", "710000")
            part("nameField").text = ""
            mouseClick(part("newProjectBtn"))
            compare(label().text, "项目地点 * 行政区域必须选取到县级")
        }

        function test_theLocationIsKeptForTheNextProject() {
            choose("provinceBox", "110000")
            choose("regionBox", "110112")
            dialog.close()
            tryCompare(dialog, "visible", false)
            dialog.open()
            tryVerify(function() { return part("nameField") !== null && part("nameField").activeFocus })
            compareBox("regionBox", "110112", "通州区", 116.66, 39.9)
            compare(create()[0], "proInfoModel.setBelongRegion(110000,北京市,110000,北京市,110112,通州区,116.66,39.9)")
        }

        // The box.

        function test_nothingIsCurrentBeforeAChoice() {
            compare(part("provinceBox").currentIndex, -1)
            openList("provinceBox")
            for (const province of home.provinces)
                verify(!part("region_" + province.id).highlighted, province.name)
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return !part("provinceBox").popup.visible })
            verify(dialog.visible)
            compareBox("provinceBox", "", "", 121, 31)
        }

        function test_theChosenRowIsHighlighted() {
            choose("provinceBox", "440000")
            openList("provinceBox")
            mouseMove(part("region_110000"), 40, 16)
            tryVerify(function() { return part("region_110000").highlighted })
            verify(part("region_440000").highlighted)
            verify(!part("region_320000").highlighted)
        }

        function test_aChoiceFromOutsideIsShownAndMarked() {
            part("provinceBox").regionName = "广东省"
            part("provinceBox").regionID = "440000"
            compare(part("provinceBox").displayText, "广东省")
            compare(part("provinceBox").currentIndex, 2)
            openList("provinceBox")
            verify(part("region_440000").highlighted)
        }

        function test_clearPutsTheFirstValuesBack() {
            choose("provinceBox", "320000")
            choose("cityBox", "320100")
            compare(part("cityBox").reagionArray.length, 2)
            part("cityBox").clear()
            compareEmpty("cityBox", 0)
            compare(part("cityBox").currentIndex, -1)
        }

        function test_theKeyboardChooses() {
            part("provinceBox").forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Space)
            tryVerify(function() { return part("provinceBox").popup.opened })
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            tryVerify(function() { return !part("provinceBox").popup.visible })
            compare(part("provinceBox").regionID, "320000")
            verify(dialog.visible)
            keyClick(Qt.Key_Tab)
            verify(part("cityBox").activeFocus)
            keyClick(Qt.Key_Space)
            tryVerify(function() { return part("cityBox").popup.opened })
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(part("cityBox").regionID, "320100")
        }

        function test_theKeyboardGoesOnFromTheChoice() {
            choose("provinceBox", "440000")
            part("provinceBox").forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Space)
            tryVerify(function() { return part("provinceBox").popup.opened })
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(part("provinceBox").regionID, "710000")
        }

        function test_screenReadersHearPurposeThenChoice_data() {
            return [{ tag: "provinceBox", purpose: "省" }, { tag: "cityBox", purpose: "市" },
                    { tag: "regionBox", purpose: "区县" }]
        }

        function test_screenReadersHearPurposeThenChoice(row) {
            compare(screens.spoken(part(row.tag)).name, row.purpose)
            part(row.tag).regionName = "江苏省"
            compare(screens.spoken(part(row.tag)).name, "江苏省")
        }

        function test_theBoxHasATipWithItsText() {
            const tip = home.find(part("cityBox"), "boxTip")
            mouseMove(part("cityBox"), 40, 16)
            wait(700)
            verify(!tip.opened)
            mouseMove(home, 1300, 850)
            part("cityBox").regionName = "克孜勒苏柯尔克孜自治州"
            mouseMove(part("cityBox"), 40, 16)
            tryVerify(function() { return tip.opened })
            compare(tip.text, "克孜勒苏柯尔克孜自治州")
            mouseMove(home, 1300, 850)
            tryVerify(function() { return !tip.opened })
        }

        function test_aRowHasATipWithItsText() {
            openList("provinceBox")
            const tip = home.find(part("region_320000"), "tip")
            mouseMove(part("region_320000"), 40, 16)
            tryVerify(function() { return tip.opened })
            compare(tip.text, "江苏省")
            mouseMove(part("region_440000"), 40, 16)
            tryVerify(function() { return !tip.opened })
        }

        function test_aLongListScrolls() {
            const many = []
            for (let i = 0; i < 40; ++i)
                many.push(home.region("r" + i, "地区" + i, i, i))
            regionModel.cityArray = many
            openList("provinceBox")
            const list = part("provinceBox").popup.contentItem
            compare(part("provinceBox").popup.height, 200)
            verify(list.contentHeight > 200)
            compare(list.contentY, 0)
            mouseWheel(list, 20, 50, 0, -240)
            tryVerify(function() { return list.contentY > 0 })
            keyClick(Qt.Key_End)
            tryVerify(function() { return part("region_r39") !== null })
            keyClick(Qt.Key_Return)
            compare(part("provinceBox").regionID, "r39")
        }

        function test_aShortListIsAsHighAsItsRows() {
            openList("provinceBox")
            compare(part("provinceBox").popup.height, 5 * 32 + 2)
        }
    }
}
