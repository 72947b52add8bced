// SPDX-License-Identifier: MIT
import QtQuick 2.15

/// A row of text. Every change of the text goes to the card's data, the first filling as well.
ECardView {
    id: root

    CardLabel {
        font.pixelSize: root.normalFontSize
        text: root.strKey
    }

    CardField {
        objectName: "cardField"
        anchors.bottom: parent.bottom
        width: parent.width
        height: 32
        focus: true
        readOnly: root.bReadonly
        text: root.strValue
        onTextChanged: proInfoModel.setJsonData(root.strKey, text)
        Accessible.name: root.strKey
    }
}
