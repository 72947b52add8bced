// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// A button of a dialog. The one that Enter is meant for is `primary`.
ETextBtn {
    id: root

    property bool primary: false

    function ground() {
        if (root.primary)
            return root.down ? Qt.darker(EConfig.eAccent, 1.15) : root.hovered ? EConfig.eAccentHover : EConfig.eAccent
        return root.down ? EConfig.eBtnSelected : root.hovered ? EConfig.eHoverBorderColor : EConfig.eDialogBtn
    }

    implicitWidth: Math.max(62, implicitContentWidth + 24)
    implicitHeight: 32
    radius: EConfig.radius
    color: ground()
    textColor: root.primary ? EConfig.eTextHighColor : EConfig.eDialogBtnText
    opacity: enabled ? 1 : 0.5
}
