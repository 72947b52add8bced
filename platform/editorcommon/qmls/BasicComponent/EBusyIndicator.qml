// SPDX-License-Identifier: MIT
import QtQuick 2.15
import "qrc:/EditorCommon/qmls/Config"

/// Dots that go round as long as something is worked on. Stands still when it is not to be seen.
Item {
    id: root

    property color busyColor: EConfig.eQuietText
    property int busyCount: 5
    property real busyRadius: 3
    property bool running: true
    property int duration: 1200

    implicitWidth: 40
    implicitHeight: 40

    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("处理中")

    Item {
        id: ring

        objectName: "busyRing"
        anchors.fill: parent

        Repeater {
            model: root.busyCount

            Rectangle {
                readonly property real angle: 2 * Math.PI * index / root.busyCount
                readonly property real distance: Math.min(root.width, root.height) / 4

                objectName: "busyDot" + index
                x: root.width / 2 + distance * Math.cos(angle) - root.busyRadius
                y: root.height / 2 + distance * Math.sin(angle) - root.busyRadius
                width: 2 * root.busyRadius
                height: width
                radius: root.busyRadius
                color: root.busyColor
                // Each a little paler than the one before it, so that they chase each other.
                opacity: 1 - 0.7 * index / root.busyCount
            }
        }

        RotationAnimation on rotation {
            from: 0
            to: 360
            duration: root.duration
            loops: Animation.Infinite
            running: root.running && root.visible
        }
    }
}
