// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick 2.15

/// Every colour and shared size of the screens. A screen names a colour of its own only where a drawing fixes it.
QtObject {
    // Grounds, from the darkest to the lightest; depth comes from these and from lines of one pixel.
    readonly property color eGlobalBackGround: "#232325"
    readonly property color eDialogBackground: "#2a2a2c"
    readonly property color eBackGround: "#2e2e2e"
    readonly property color eGridBackGround: "#333336"
    readonly property color eInputFieldBackGround: "#1f1f21"

    // Lines and borders.
    readonly property color eBorder: "#3f3f44"
    readonly property color splitColor: "#3f3f44"
    readonly property color eGridBtnBorder: "#4a4a50"
    readonly property color eInputFieldBorder: "#4a4a50"
    readonly property color eHoverBorderColor: "#4d4d55"
    readonly property color ePressedBorderColor: "#1473e6"

    // Rows, tabs and buttons.
    readonly property color eTreeHover: "#38383c"
    readonly property color eTreeSelected: "#2f4a73"
    readonly property color eTitleBtnActived: "#3b3b40"
    readonly property color eBtnSelected: "#3b3b40"
    readonly property color eDialogBtn: "#46464c"

    // Texts.
    readonly property color textColor: "#dddddd"
    readonly property color eTextHighColor: "#ffffff"
    readonly property color eTitleText: "#b8b8bd"
    readonly property color eTitleTextActived: "#ffffff"
    readonly property color eDialogBtnText: "#f0f0f0"
    readonly property color eInputFieldText: "#d0d0d4"
    readonly property color eInputFieldTextInvalid: "#ff6b6b"
    readonly property color tipTextColor: "#d9a44c"
    readonly property color eQuietText: "#a0a0a6"

    // Where one is, and what is moving.
    readonly property color eAccent: "#1473e6"
    /// Darker, since white is to be read on it.
    readonly property color eAccentHover: "#0e66d0"
    readonly property color eProgress: "#00c7f5"
    readonly property color eShade: "#99000000"

    // Type. The first family that the machine has is used.
    readonly property string fontFamily: "微软雅黑,Microsoft YaHei UI,Noto Sans CJK SC,Source Han Sans SC,sans-serif"
    readonly property int fontWeight: Font.Normal
    readonly property int textPixelSize: 13
    readonly property int textPixelSizeSmall: 12
    readonly property int textPixelSizeLarge: 14
    readonly property int textPixelSizeTitle: 16

    // Space and motion.
    readonly property int radius: 3
    readonly property int motion: 120
}
