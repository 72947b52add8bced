// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A button in the head of the floors' column. `picture` is the name that its pictures have in common.
EHoverImageBtn {
    id: root

    property string picture: ""

    width: 28
    height: 28
    img: "qrc:/images/" + root.picture + ".png"
    hoveredImg: "qrc:/images/" + root.picture + "_hover.png"
    selectedImg: "qrc:/images/" + root.picture + "_selected.png"
}
