// SPDX-License-Identifier: MIT
import QtQuick 2.15
import Tools 1.0

// The least that the home window needs of its screens, for tests of the window and of the tabs.
Item {
    // What a screen sees of what has been published to it.
    property string seenAppPath: appPath
    property string seenFileName: Tools.fileName("/a/b.txt")
    property bool seenMaxed: rootView.isMaxed

    Item {
        objectName: "titleRect"
        width: parent.width
        height: 34
    }

    Item {
        objectName: "contentRect"
        x: 2
        y: 34
        width: parent.width - 4.5
        height: parent.height - 36.25
    }
}
