// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A button above the list of models. `picture` is the name that its pictures have in common.
EHoverImageBtn {
    id: root

    property string picture: ""

    width: 28
    height: 20
    img: "qrc:/images/" + root.picture + ".png"
    hoveredImg: "qrc:/images/" + root.picture + "_hover.png"
    selectedImg: "qrc:/images/" + root.picture + "_selected.png"
}
