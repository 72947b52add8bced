// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BasicComponent"

/// A button in the row of the property template.
EHoverImageBtn {
    width: 14
    height: 14
    sourceWidth: 14
    sourceHeight: 14
    selectedImg: hoveredImg
    focusMargin: 5
    opacity: enabled ? 1 : 0.35
}
