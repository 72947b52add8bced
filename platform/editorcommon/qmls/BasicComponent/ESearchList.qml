// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQml.Models 2.15

/// A list that shows the rows whose text holds `searchText`, whatever the case. `listCountFunc` and `listDataFunc` tell how
/// many rows there are and the text of each; `groupdelegateItem` shows one. A new model chooses no row.
ListView {
    id: root

    property var dataModel: null
    property string searchText: ""
    property var listCountFunc: function() { return rows.items.count }
    property var listDataFunc: function(index) { return "" }
    property alias groupdelegateItem: rows.delegate

    function narrow() {
        const wanted = root.searchText.trim().toLowerCase()
        const count = Math.min(root.listCountFunc(), rows.items.count)
        for (let i = 0; i < count; ++i)
            rows.items.get(i).inFound = wanted === "" || root.listDataFunc(i).toLowerCase().indexOf(wanted) >= 0
    }

    model: rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    onSearchTextChanged: root.narrow()
    onDataModelChanged: root.currentIndex = -1
    Component.onCompleted: {
        root.currentIndex = -1
        root.narrow()
    }

    DelegateModel {
        id: rows

        model: root.dataModel
        filterOnGroup: "found"
        groups: DelegateModelGroup { name: "found" }
        items.onChanged: root.narrow()
    }
}
