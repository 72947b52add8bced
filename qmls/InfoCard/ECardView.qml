// SPDX-License-Identifier: MIT
import QtQuick 2.15

/// What all rows of the info card have: a label, which is the row's key as well, and a value.
FocusScope {
    property string strKey: ""
    property var strValue: ""
    property bool bReadonly: true
    property int normalFontSize: 14
}
