// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import myData.CGridViewData 1.0
import "qrc:/EditorCommon/qmls/Config"

/// What moves on a card while an operation runs: an arrow up or down, two arrows that turn, and the line below the
/// picture. The line shows that something runs, not how far it is.
Item {
    id: root

    property int dealState: CGridViewData.DS_NonState
    property real yPos: 0
    property int count: 0

    function startArrow(angle, animation) {
        uploadImage.rotation = angle
        uploadImageBelow.rotation = angle
        uploadUnVisibleId.stop()
        uploadImage.visible = true
        uploadImageBelow.visible = true
        animation.start()
        timerId.start()
    }

    function startTurning() {
        updateUnVisibleId.stop()
        updateImage.visible = true
        updateAnimationId.start()
        timerId.start()
    }

    function finish() {
        timerId.stop()
        for (const animation of [downloadAnimationId, uploadAnimationId, updateAnimationId]) {
            if (animation.running) {
                progressbarId.value = 1.0
                animation.stop()
            }
        }
    }

    onDealStateChanged: {
        switch (dealState) {
        case CGridViewData.DS_NonState:
            root.finish()
            break
        case CGridViewData.DS_UploadState:
            root.startArrow(0, uploadAnimationId)
            break
        case CGridViewData.DS_DownloadState:
            root.startArrow(180, downloadAnimationId)
            break
        case CGridViewData.DS_UpDateState:
            root.startTurning()
            break
        }
    }

    Item {
        id: iconArea

        width: parent.width
        height: 108

        Rectangle {
            anchors.fill: parent
            color: EConfig.eShade
            visible: uploadImage.visible || updateImage.visible
        }

        Image {
            id: updateImage

            objectName: "updateImage"
            anchors.centerIn: parent
            source: "qrc:/images/update2.png"
            visible: false
        }

        Item {
            anchors.centerIn: parent
            width: uploadImage.width
            height: uploadImage.height
            clip: true

            Image {
                id: uploadImage

                objectName: "uploadImage"
                source: "qrc:/images/upload2.png"
                visible: false
                Component.onCompleted: root.yPos = y
            }

            Image {
                id: uploadImageBelow

                y: uploadImage.y + uploadImage.height
                source: "qrc:/images/upload2.png"
                visible: false
            }
        }
    }

    Rectangle {
        id: splitLine

        y: 108
        width: parent.width
        height: 1
        color: EConfig.eGlobalBackGround

        T.ProgressBar {
            id: progressbarId

            objectName: "progressbarId"
            anchors.fill: parent
            Accessible.ignored: true

            background: null
            contentItem: Item {
                Rectangle {
                    width: progressbarId.visualPosition * parent.width
                    height: parent.height
                    color: "#00c7f5"
                }
            }
        }
    }

    NumberAnimation {
        id: downloadAnimationId

        target: uploadImage
        property: "y"
        from: root.yPos
        to: root.yPos + uploadImage.height
        duration: 500
        loops: Animation.Infinite
        onStopped: uploadUnVisibleId.start()
    }

    NumberAnimation {
        id: uploadAnimationId

        target: uploadImage
        property: "y"
        from: root.yPos
        to: root.yPos - uploadImage.height
        duration: 500
        loops: Animation.Infinite
        onStopped: uploadUnVisibleId.start()
    }

    RotationAnimation {
        id: updateAnimationId

        target: updateImage
        from: 0
        to: 180
        direction: RotationAnimation.Clockwise
        duration: 500
        loops: Animation.Infinite
        onStopped: updateUnVisibleId.start()
    }

    PropertyAnimation {
        id: uploadUnVisibleId

        targets: [uploadImage, uploadImageBelow]
        property: "visible"
        to: false
        duration: 500
        onFinished: progressbarId.value = 0
    }

    PropertyAnimation {
        id: updateUnVisibleId

        target: updateImage
        property: "visible"
        to: false
        duration: 500
        onFinished: progressbarId.value = 0
    }

    Timer {
        id: timerId

        interval: 20
        repeat: true
        triggeredOnStart: true
        onTriggered: {
            progressbarId.value = root.count / 1000
            if (root.count > 1000)
                root.count = 0
            root.count += 20
        }
    }
}
