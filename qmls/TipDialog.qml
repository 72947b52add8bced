// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/BizComponent"

/// The box in which messages of the managers appear.
EMessageBox {
    id: root

    noText: ""
}
