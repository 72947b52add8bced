// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A button of a card, with a set of four pictures under one base name.
EHoverImageBtn {
    id: root

    property string picture: ""
    property bool hasKeyboard: false

    width: 28
    height: 21
    focusPolicy: root.hasKeyboard ? Qt.TabFocus : Qt.NoFocus
    img: "qrc:/images/" + root.picture + ".png"
    hoveredImg: "qrc:/images/" + root.picture + "_hover.png"
    selectedImg: "qrc:/images/" + root.picture + "_selected.png"
    disabledImg: "qrc:/images/" + root.picture + "_disable.png"
}
