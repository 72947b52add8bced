// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Dialogs 1.3

FileDialog {
    folder: "./"
    modality: Qt.ApplicationModal
}
