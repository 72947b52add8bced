// SPDX-License-Identifier: MIT
import QtQuick 2.15
import Tools 1.0

/// The one file dialog of the program: making one is slow and takes much memory. It is made when it is opened first.
Item {
    id: root

    property string title: ""
    property var nameFilters: []
    property bool selectFolder: false
    property bool selectMultiple: false

    property var acceptCallback: null
    property var rejectCallback: null

    function reset() {
        root.title = "Please select file"
        root.nameFilters = ["All(*)"]
        root.selectFolder = false
        root.selectMultiple = false
    }

    /// Shows the dialog. One of the two, where it is given, is called at its end: `acceptCallback` with a path, or with
    /// a list of paths where several may be chosen.
    function open(acceptCallback, rejectCallback) {
        root.acceptCallback = acceptCallback
        root.rejectCallback = rejectCallback
        loader.active = true
        loader.item.open()
    }

    /// What has been chosen in `dialog`.
    function chosen(dialog) {
        if (root.selectFolder)
            return Tools.toLocalFile(dialog.folder)
        return root.selectMultiple ? Tools.toLocalFileList(dialog.fileUrls) : Tools.toLocalFile(dialog.fileUrl)
    }

    function finish(callback, value) {
        root.acceptCallback = null
        root.rejectCallback = null
        if (callback)
            callback(value)
    }

    Component.onCompleted: root.reset()

    Loader {
        id: loader

        objectName: "fileDialogLoader"
        active: false
        source: "FileDialogWindow.qml"
        onLoaded: {
            item.title = Qt.binding(function() { return root.title })
            item.nameFilters = Qt.binding(function() { return root.nameFilters })
            item.selectFolder = Qt.binding(function() { return root.selectFolder })
            item.selectMultiple = Qt.binding(function() { return root.selectMultiple })
        }
    }

    Connections {
        target: loader.item

        function onAccepted() {
            root.finish(root.acceptCallback, root.chosen(loader.item))
        }

        function onRejected() {
            root.finish(root.rejectCallback)
        }
    }
}
