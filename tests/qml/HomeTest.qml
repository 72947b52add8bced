// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Window 2.15

/// The surroundings of a screen under test: what the managers publish, as stand-ins that write down what is called.
/// The names are those of the context properties.
Item {
    id: home

    property alias mainRoot: home
    property var calls: []

    property QtObject rootView: QtObject {
        property bool isMaxed: false

        function showMaximized() { home.called("rootView.showMaximized") }
        function showMinimized() { home.called("rootView.showMinimized") }
        function showNormal() { home.called("rootView.showNormal") }
        function changeSize() { home.called("rootView.changeSize") }
        function move(x, y) { home.called("rootView.move", x, y) }
        function close(saves) { home.called("rootView.close", saves) }
        function logout(saves) { home.called("rootView.logout", saves) }
    }

    property QtObject tabMgr: QtObject {
        signal dialogShow(bool isShown)
        signal uploadCountChanged(int count)
        signal isConvertingChanged(bool converting)
        signal sigCreateBimProj()

        function openTab(name) { home.called("tabMgr.openTab", name) }
        function closeTab(name) { home.called("tabMgr.closeTab", name) }
        function showHelp() { home.called("tabMgr.showHelp") }
    }

    property QtObject tab: QtObject {
        property var tabList: []
        property string currentTab: "main"

        function idConvertToName(id) { return "工程" + id }
    }

    property QtObject editorControl: QtObject {
        property int appVer: 1
        property bool isBimSdk: false
        property string loginName: "王工"

        function getVersion() { return "V1.2" }
        function reflushProjTree() { home.called("editorControl.reflushProjTree") }
        function slotTreeDblClick(guid) { home.called("editorControl.slotTreeDblClick", guid) }
        function slotCreateProject() { home.called("editorControl.slotCreateProject") }
        function slotRemoveProject(guid) { home.called("editorControl.slotRemoveProject", guid) }
        function slotSyncProject(guid) { home.called("editorControl.slotSyncProject", guid) }
        function slotUploadProject(guid) { home.called("editorControl.slotUploadProject", guid) }
        function upgradeProj(guid) { home.called("editorControl.upgradeProj", guid) }
        function openWebProj(guid) { home.called("editorControl.openWebProj", guid) }
        function openWebConsole() { home.called("editorControl.openWebConsole") }
        function slotProjectInfoUpdate() { home.called("editorControl.slotProjectInfoUpdate") }
        function slotDeleteProject(guid) { home.called("editorControl.slotDeleteProject", guid) }
        function slotProjectDblClick(guid) { home.called("editorControl.slotProjectDblClick", guid) }
    }

    property QtObject messageBoxMgr: QtObject {
        signal sigShowTip(string title, string text)
        signal sigCheckBox(string title, string text)

        function callResultCallBack(result) { home.called("messageBoxMgr.callResultCallBack", result) }
    }

    property QtObject serviceConvertMgr: QtObject {
        property bool isVisible: false
        property bool isUploading: false
        property bool takesProjects: true
        property var failedArray: []

        function hasUploadingProj() { return isUploading }
        function checkServiceConvert(guid) {
            home.called("serviceConvertMgr.checkServiceConvert", guid)
            return takesProjects
        }
        function clearCurBimProj() { home.called("serviceConvertMgr.clearCurBimProj") }
        function addKyvModel(...values) { home.called("serviceConvertMgr.addKyvModel", ...values) }
        function updateKyvModel(...values) { home.called("serviceConvertMgr.updateKyvModel", ...values) }
        function delKyvModel(guid) { home.called("serviceConvertMgr.delKyvModel", guid) }
        function delAllKyvModel() { home.called("serviceConvertMgr.delAllKyvModel") }
    }

    property QtObject serviceConvertModel: null

    property QtObject bimMgr: QtObject {
        property string currentBimGuid: ""
        property var projList: []
        property bool isConverting: false
        /// Uids of the models that may be replaced.
        property var updatable: []

        function syncProjList(guid) {
            home.called("bimMgr.syncProjList", guid)
            currentBimGuid = guid
        }
        function add(...values) { home.called("bimMgr.add", ...values) }
        function update(...values) { home.called("bimMgr.update", ...values) }
        function remove(...values) { home.called("bimMgr.remove", ...values) }
        function cancle(guid) { home.called("bimMgr.cancle", guid) }
        function addDwgProj(file) { home.called("bimMgr.addDwgProj", file) }
        function addFBXProj(file) { home.called("bimMgr.addFBXProj", file) }
        function checkedUpdate(uid) { return updatable.indexOf(uid) >= 0 }
    }

    property QtObject leftPanelModel: QtObject {
        property int bimProjCount: 5
        property int sceneProjCount: 2
        property var treeModel: null

        function filterTree(type) { home.called("leftPanelModel.filterTree", type) }
    }

    /// Lists of regions by their parent's id.
    property QtObject regionModel: QtObject {
        property var cityArray: []
        property var children: ({})

        function getChildRegionList(parentId) {
            home.called("regionModel.getChildRegionList", parentId)
            return children[parentId] || []
        }
    }

    property QtObject gridViewModel: null
    property QtObject orgModel: null
    property QtObject floorModel: null
    property QtObject floorMatchedCtrl: null

    property QtObject proInfoModel: QtObject {
        property string projGuid: "shown"
        property bool bModify: true
        property bool bBimViewShow: false
        property string projImage: "qrc:/images/card_ic_big.png"
        property var projInfo: []

        function setBelongRegion(...values) { home.called("proInfoModel.setBelongRegion", ...values) }
        function setProjInfo(...values) { home.called("proInfoModel.setProjInfo", ...values) }
        function setJsonData(...values) { home.called("proInfoModel.setJsonData", ...values) }
        function exportConfigFile() { home.called("proInfoModel.exportConfigFile") }
        function changeServiceProjName() { home.called("proInfoModel.changeServiceProjName") }
    }

    property QtObject infoCardCtrl: QtObject {
        function showProjectInfo(guid) { home.called("infoCardCtrl.showProjectInfo", guid) }
    }

    property string appPath: "/app"

    /// Where main.qml has none of its own.
    property QtObject converModeDialog: QtObject {
        function close() { home.called("converModeDialog.close") }
    }

    /// Where main.qml has none of its own.
    property QtObject globalFileDialog: QtObject {
        property string title: ""
        property var nameFilters: []
        property var accept: null

        function reset() { home.called("globalFileDialog.reset") }
        function open(acceptCallback) {
            home.called("globalFileDialog.open")
            accept = acceptCallback
        }
    }

    function called(name, ...values) {
        home.calls.push(name + "(" + values.join(",") + ")")
    }

    function takeCalls() {
        const taken = home.calls
        home.calls = []
        return taken
    }

    /// Everything as it is at first.
    function reset() {
        rootView.isMaxed = false
        tab.tabList = []
        tab.currentTab = "main"
        editorControl.appVer = 1
        editorControl.isBimSdk = false
        serviceConvertMgr.isVisible = false
        serviceConvertMgr.isUploading = false
        serviceConvertMgr.takesProjects = true
        serviceConvertMgr.failedArray = []
        bimMgr.currentBimGuid = ""
        bimMgr.projList = []
        bimMgr.isConverting = false
        bimMgr.updatable = []
        leftPanelModel.bimProjCount = 5
        leftPanelModel.sceneProjCount = 2
        proInfoModel.bModify = true
        proInfoModel.bBimViewShow = false
        proInfoModel.projImage = "qrc:/images/card_ic_big.png"
        proInfoModel.projInfo = []
        regionModel.cityArray = []
        regionModel.children = ({})
        home.calls = []
        screens.listen()
        screens.takeInfos()
    }

    /// The first item of this name that is to be seen below `from`, or null.
    function find(from, name) {
        if (!from.visible)
            return null
        if (from.objectName === name)
            return from
        for (let i = 0; i < from.children.length; ++i) {
            const found = home.find(from.children[i], name)
            if (found !== null)
                return found
        }
        return null
    }

    /// The first label below `from` that is to be seen and shows this text, or null.
    function findTextIn(from, text) {
        if (!from.visible)
            return null
        if (from.text === text && from.truncated !== undefined)
            return from
        for (let i = 0; i < from.children.length; ++i) {
            const found = home.findTextIn(from.children[i], text)
            if (found !== null)
                return found
        }
        return null
    }

    function findText(text) {
        return home.findTextIn(home.Window.contentItem, text)
    }

    /// The same in the whole window: boxes, lists and tool tips lie over the screens, not in them.
    function findShown(name) {
        return home.find(home.Window.contentItem, name)
    }

    width: 1360
    height: 860
}
