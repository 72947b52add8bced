// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15
import CKYVConvertState 1.0
import ".."

/// Takes pictures of the home window in the states that people see, without a server, into the folder that the
/// environment names as TORVO_SHOTS.
HomeTest {
    id: home

    Loader {
        id: loader

        width: home.width
        height: home.height
    }

    Component {
        id: modelComponent

        KYVConvertState {}
    }

    TestCase {
        name: "preview"
        when: windowShown

        readonly property string bim: "qrc:/images/bar_ic_bim.png"
        readonly property string scene: "qrc:/images/bar_ic_scene.png"
        readonly property string folder: screens.setting("TORVO_SHOTS")
        readonly property var states: ["state_ic_unmatched", "state_ic_matched", "modify", "update", "conflict", "fail"]

        function initTestCase() {
            home.gridViewModel = screens.makeCards()
            home.orgModel = screens.makeTree(departments())
            leftPanelModel.treeModel = screens.makeTree(projects())
            loader.source = "qrc:/qmls/main.qml"
            verify(loader.item !== null)
        }

        function init() {
            home.reset()
            regionModel.cityArray = [{ id: "33", name: "浙江省", longitude: 120.2, latitude: 30.3 },
                                     { id: "52", name: "贵州省", longitude: 106.7, latitude: 26.6 }]
            regionModel.children = { "33": [{ id: "3301", name: "杭州市", longitude: 120.15, latitude: 30.28 },
                                            { id: "3302", name: "宁波市", longitude: 121.55, latitude: 29.88 }] }
            gridViewModel.clear()
            mouseMove(home, 1000, 800)
        }

        function projects() {
            const names = ["滨江路综合楼", "一号住宅楼", "体育馆", "地铁换乘站", "老城区改造场景", "非常长的工程名称用来看省略号怎样出现的工程"]
            return names.map(function(name, i) {
                return { text1: name, text2: "p" + i, image1: i === 4 ? scene : bim, isDemo: i === 1,
                         image2: "qrc:/images/" + states[i] + ".png" }
            })
        }

        function organisation() {
            return [{ text1: "第一建设集团", text2: "o1", type: "orgType", image1: "qrc:/images/ic_company.png", rows: [
                { text1: "华东项目部", text2: "o2", type: "orgType", image1: "qrc:/images/ic_project.png", rows: projects() },
                { text1: "华南项目部", text2: "o3", type: "orgType", image1: "qrc:/images/ic_project.png", rows: [] }
            ] }]
        }

        function departments() {
            return [{ text1: "1", id: "o1", name: "第一建设集团", canSelect: false, rows: [
                { text1: "2", id: "o2", name: "华东项目部", canSelect: true },
                { text1: "3", id: "o3", name: "华南项目部", canSelect: true }
            ] }]
        }

        function addCards() {
            const rows = projects()
            for (let i = 0; i < 6; ++i)
                screens.addCard(gridViewModel, { guid: "p" + i, name: rows[i].text1, stateType: i, typeImag: rows[i].image1,
                                                 projType: i === 4 ? "CIM" : "BIM" })
        }

        function shoot(name) {
            wait(600)
            verify(screens.shoot(home, folder + "/" + name + ".png"))
        }

        function test_1_empty() {
            leftPanelModel.treeModel = screens.makeTree([])
            shoot("empty")
            leftPanelModel.treeModel = screens.makeTree(projects())
        }

        function test_2_states() {
            addCards()
            shoot("states")
        }

        function test_3_operations() {
            addCards()
            for (let i = 1; i < 4; ++i)
                gridViewModel.getDataByGuid("p" + i).dealState = i
            gridViewModel.getDataByGuid("p4").needUpgrade = true
            gridViewModel.getDataByGuid("p5").needUpgrade = true
            gridViewModel.getDataByGuid("p5").isUpgrade = true
            serviceConvertMgr.isVisible = true
            screens.setTip(gridViewModel.getDataByGuid("p0"), "共有2个文件转化中,\n你的第一个文件排在第2位.")
            shoot("operations")
        }

        function test_4_organisation() {
            addCards()
            leftPanelModel.treeModel = screens.makeTree(organisation())
            tryVerify(function() { return home.find(loader.item, "treeRow_o1") !== null })
            mouseClick(home.find(loader.item, "treeRow_o1"), 100, 20)
            tryVerify(function() { return home.find(loader.item, "treeRow_o2") !== null })
            mouseClick(home.find(loader.item, "treeRow_o2"), 100, 20)
            tryVerify(function() { return home.find(loader.item, "treeRow_p1") !== null })
            mouseMove(home.find(loader.item, "treeRow_p5"), 60, 20)
            shoot("organisation")
            leftPanelModel.treeModel = screens.makeTree(projects())
        }

        function test_5_tabs() {
            addCards()
            tab.tabList = ["p0", "p1", "p2", "p3", "p4", "p5"]
            tab.currentTab = "p2"
            shoot("tabs")
        }

        function test_6_question() {
            addCards()
            messageBoxMgr.sigCheckBox("提示", "工程已在服务器上更新，是否继续？")
            shoot("question")
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("yesBtn") === null })
        }

        function test_conversions() {
            addCards()
            home.serviceConvertModel = screens.makeModels([
                { guid: "m1", name: "1#住宅楼" }, { guid: "m2", name: "地下车库_2026年3月修订版_审图后" },
                { guid: "j1", name: "商业裙房", state: 6, sort: 0, process: 0.62 },
                { guid: "j2", name: "幼儿园", state: 5, sort: 3 }, { guid: "j3", name: "钢连廊", state: 9 },
                { guid: "t1", name: "消防水池", state: 4, sort: 0 }, { guid: "t2", name: "门卫室", state: 1, sort: 1 }
            ])
            serviceConvertMgr.failedArray = [{ name: "钢连廊", guid: "7", faildDate: "2026-03-09 17:05:00" }]
            const dialog = findChild(loader.item, "kyvDialog")
            dialog.open()
            tryCompare(dialog, "opened", true)
            shoot("conversions")
            dialog.showFailedInfo()
            shoot("conversionfailures")
            dialog.showOptionSelecter("/m/a.kyv")
            shoot("conversionmode")
            dialog.showSelecter()
            shoot("conversionkind")
            dialog.showList()
            shoot("conversionchoice")
            dialog.close()
            tryCompare(dialog, "visible", false)
        }

        function test_7_choice() {
            addCards()
            const check = findChild(loader.item, "projTypeCheck")
            mouseClick(check)
            tryCompare(check.popup, "opened", true)
            shoot("choice")
            keyClick(Qt.Key_Escape)
        }

        function openForm() {
            addCards()
            mouseClick(findChild(loader.item, "createBtn"))
            tryVerify(function() { return home.findShown("nameField") !== null && home.findShown("nameField").activeFocus })
        }

        function closeForm() {
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("nameField") === null })
        }

        function test_8_newProject() {
            openForm()
            shoot("new-project")
            mouseClick(home.findShown("newProjectBtn"))
            shoot("new-project-without-name")
            closeForm()
        }

        function test_8_newProjectSomewhere() {
            const names = ["北京市", "天津市", "河北省", "山西省", "内蒙古自治区", "辽宁省", "吉林省", "黑龙江省", "新疆维吾尔自治区"]
            regionModel.cityArray = names.map(function(name, i) {
                return { id: "p" + i, name: name, longitude: 116, latitude: 39 }
            })
            regionModel.children = { p8: [{ id: "c", name: "克孜勒苏柯尔克孜自治州", longitude: 76, latitude: 39 }],
                                     c: [{ id: "d", name: "阿图什市", longitude: 76, latitude: 39 }] }
            openForm()
            home.findShown("nameField").text = "老城区改造场景"
            mouseClick(home.findShown("newProjectBtn"))
            shoot("new-project-without-location")
            mouseClick(home.findShown("provinceBox"))
            tryVerify(function() { return home.findShown("region_p2") !== null })
            mouseMove(home.findShown("region_p2"), 60, 15)
            wait(900)
            shoot("regions")
            keyClick(Qt.Key_End)
            keyClick(Qt.Key_Return)
            home.findShown("cityBox").take(regionModel.children.p8[0])
            mouseMove(home.findShown("cityBox"), 40, 16)
            wait(900)
            shoot("location")
            mouseMove(home, 1000, 800)
            mouseClick(home.findShown("regionBox"))
            wait(300)
            shoot("districts")
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return !home.findShown("regionBox").popup.visible })
            closeForm()
        }

        function test_9_newProjectOfADepartment() {
            editorControl.isBimSdk = true
            openForm()
            home.findShown("nameField").text = "老城区改造场景"
            mouseClick(home.findShown("newProjectBtn"))
            shoot("new-project-without-department")
            mouseClick(home.findShown("departmentBox"))
            tryVerify(function() { return home.findShown("orgRow_o2") !== null })
            mouseMove(home.findShown("orgRow_o2"), 60, 15)
            shoot("departments")
            mouseClick(home.findShown("orgRow_o3"))
            tryVerify(function() { return home.findShown("orgRow_o3") === null })
            shoot("new-project-of-a-department")
            closeForm()
        }

        function textRow(key, value, isReadonly) {
            return { key: key, value: value, visible: true, readOnly: isReadonly, type: 0 }
        }

        function sceneRows() {
            return [
                textRow("工程名称", "老城区改造场景", false),
                textRow("工程Guid", "{6f1c3a52-95d1-4c0e-8f0e-2b7d1c9a4e11}", true),
                textRow("工程类型", "场景工程", true),
                textRow("所属项目部", "华东项目部", true),
                { key: "属性模板", value: "CompTemplate.json", visible: true, readOnly: true, type: 2 },
                { key: "所属行政区", visible: true, readOnly: false, type: 3,
                  value: { pId: "33", pName: "浙江省", cId: "3301", cName: "杭州市", rId: "330108", rName: "滨江区" } },
                textRow("地理坐标系投影参数（PROJ4标准参数）",
                        "+proj=tmerc +lat_0=0 +lon_0=120 +k=1 +x_0=500000 +y_0=0 +ellps=GRS80 +units=m +no_defs", false),
                textRow("物联资产编号", "", false)
            ]
        }

        function openCard(rows) {
            addCards()
            proInfoModel.projInfo = rows
            loader.item.showProjectInfo("p4")
            tryVerify(function() { return home.findShown("cardField") !== null && home.findShown("cardField").activeFocus })
        }

        function closeCard() {
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("infoOkBtn") === null })
        }

        function test_infoCardOfAScene() {
            editorControl.isBimSdk = true
            openCard(sceneRows())
            home.findShown("importBtn").forceActiveFocus(Qt.TabFocusReason)
            shoot("info-card-scene")
            mouseClick(home.findShown("cityBox"))
            tryVerify(function() { return home.findShown("region_3302") !== null })
            shoot("info-card-region")
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("region_3302") === null })
            closeCard()
        }

        function test_infoCardOfABuilding() {
            proInfoModel.bBimViewShow = true
            openCard([textRow("工程名称", "滨江路综合楼".repeat(8), false), textRow("工程类型", "BIM工程", true)])
            home.findShown("infoCancelBtn").forceActiveFocus(Qt.TabFocusReason)
            shoot("info-card-building")
            mouseClick(home.findShown("deleteBtn"))
            tryVerify(function() { return home.findShown("yesBtn") !== null })
            shoot("info-card-delete")
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("yesBtn") === null })
            closeCard()
        }

        function test_infoCardWithModels() {
            proInfoModel.bBimViewShow = true
            bimMgr.projList = [
                { uid: "m1", name: "1#住宅楼", convertState: KYVConvertState.ConvertFinished, isLevelModel: true },
                { uid: "m2", name: "总平面图", convertState: KYVConvertState.ConvertFinished, isLevelModel: false },
                { uid: "m3", name: "商业裙房", convertState: KYVConvertState.Waiting, isLevelModel: true },
                { uid: "m4", name: "钢连廊", convertState: KYVConvertState.Converting, isLevelModel: false },
                { uid: "m5", name: "门卫室", convertState: KYVConvertState.ConvertFailed, isLevelModel: true }
            ].map(function(values) { return modelComponent.createObject(home, values) })
            bimMgr.updatable = ["m1"]
            openCard([textRow("工程名称", "滨江路综合楼", false), textRow("工程类型", "BIM工程", true)])
            tryVerify(function() { return home.findShown("bimRow_m1") !== null })
            const list = home.findShown("bimInfo")
            // The card slides in.
            tryVerify(function() { return list.mapToItem(home, 0, 0).x === home.width - list.width })
            mouseClick(home.findShown("bimRow_m1"))
            tryCompare(list, "selectedGuid", "m1")
            mouseMove(home, 10, 10)
            // The picture of what waits comes and goes: by the time of the shot it has come again.
            tryVerify(function() { return home.findShown("bimWaiting").opacity === 0 })
            wait(250)
            shoot("info-card-models")
            closeCard()
        }

        function test_floorDialog() {
            const tower = ["B2", "B1", "1F", "2F", "3F", "4F", "5F", "屋顶"]
            floors.start([
                { name: "地下二层", models: { a: ["B2"] } },
                { name: "地下一层", models: { a: ["B1"], b: ["-1F"] } },
                { name: "一层", models: { a: ["1F"], b: ["1F", "夹层"] } },
                { name: "二层", models: { a: ["2F"], b: ["2F"] } },
                { name: "三层", models: { a: ["3F"] } },
                { name: "屋顶层", models: {} }
            ], [], [{ guid: "a", name: "塔楼 结构", floors: tower },
                    { guid: "b", name: "裙房 建筑", floors: ["-1F", "1F", "夹层", "2F"] }])
            home.floorModel = floors.model
            home.floorMatchedCtrl = floors.ctrl
            proInfoModel.bBimViewShow = true
            openCard([textRow("工程名称", "滨江路综合楼", false), textRow("工程类型", "BIM工程", true)])
            const dialog = findChild(loader.item, "floorMatchDialog")
            dialog.enabled = true
            dialog.open()
            tryVerify(function() { return home.findShown("floor_2") !== null })
            mouseClick(home.findShown("floor_2"))
            mouseMove(home, 10, 10)
            shoot("floors")
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down, Qt.ShiftModifier)
            shoot("floors-keyboard")
            mouseClick(home.findShown("floorAddBtn"))
            tryVerify(function() { return home.findShown("floorNameOkBtn") !== null })
            mouseClick(home.findShown("floorNameOkBtn"))
            shoot("floors-name")
            keyClick(Qt.Key_Escape)
            tryVerify(function() { return home.findShown("floorNameOkBtn") === null })
            dialog.close()
            tryCompare(dialog, "visible", false)
            closeCard()
        }

        function test_infoCardOfAServersProject() {
            proInfoModel.bModify = false
            proInfoModel.projImage = "file:////nowhere.jpg"
            openCard(sceneRows().slice(0, 4))
            shoot("info-card-server")
            closeCard()
        }
    }
}
