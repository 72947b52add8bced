// SPDX-License-Identifier: MIT
import QtQuick 2.15

/// A row of the info card, in the view that its type asks for.
ECardView {
    id: root

    /// 0 text, 1 file shown as text, 2 property template, 3 region. Any other keeps the view that is there.
    property real qmlType: 0

    function load() {
        const view = [textView, textView, templateView, regionView][root.qmlType]
        if (view !== undefined)
            loader.sourceComponent = view
        else if (loader.sourceComponent === null)
            loader.sourceComponent = textView
    }

    onQmlTypeChanged: root.load()
    Component.onCompleted: root.load()

    Loader {
        id: loader

        objectName: "rowLoader"
        anchors.fill: parent
        focus: true
    }

    Component {
        id: textView

        ECardTextField {
            focus: true
            strKey: root.strKey
            strValue: root.strValue
            bReadonly: root.bReadonly
            normalFontSize: root.normalFontSize
        }
    }

    Component {
        id: templateView

        ECardImportExportCfg {
            focus: true
            strKey: root.strKey
            strValue: root.strValue
            bReadonly: root.bReadonly
            normalFontSize: root.normalFontSize
        }
    }

    Component {
        id: regionView

        ERegionSelect {
            focus: true
            strKey: root.strKey
            strValue: root.strValue
            bReadonly: root.bReadonly
            normalFontSize: root.normalFontSize
        }
    }
}
