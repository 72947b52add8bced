// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Window 2.15
import Tools 1.0

/// The picture of a project, and the drawing of a picture as long as there is none.
Item {
    id: root

    property string url: ""

    /// A file that is not there is not asked for: a project of the server need not have a picture.
    function isThere(url) {
        return url !== "" && (!url.startsWith("file:") || Tools.isExist(Tools.toLocalFile(url)))
    }

    Image {
        objectName: "infoPlaceholder"
        anchors.fill: parent
        fillMode: Image.PreserveAspectFit
        source: "qrc:/images/card_ic_big.png"
        visible: picture.status !== Image.Ready
    }

    Image {
        id: picture

        objectName: "infoPicture"
        anchors.fill: parent
        asynchronous: true
        cache: false
        fillMode: Image.PreserveAspectFit
        source: root.isThere(root.url) ? root.url : ""
        // A photograph of a camera is read no larger than it is shown.
        sourceSize: Qt.size(width * Screen.devicePixelRatio, height * Screen.devicePixelRatio)
    }
}
