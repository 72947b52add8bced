// SPDX-License-Identifier: MIT
import QtQuick 2.15

/// A question to be answered with yes or no. Escape and the cross close it without an answer.
EMessageBox {
    yesText: qsTr("是")
    noText: qsTr("否")
    needsAnswer: false
}
