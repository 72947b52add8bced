// SPDX-License-Identifier: MIT
'use strict';

// The rows of the table: every group with its properties, or what a search has left of them.

function matches(node, words) {
    return COLUMNS.some(({id}) => id !== 'required' && cellText(node, id).toLowerCase().includes(words));
}

// A group whose own name matches keeps all that is in it.
function rowsOf(root, search) {
    const words = search.trim().toLowerCase();
    const rows = [];
    groupsOf(root).forEach((group, g) => {
        const isWhole = words === '' || textOf(memberOf(group, 'name')).toLowerCase().includes(words);
        const found = [];
        propertiesOf(group).forEach((property, p) => {
            if (isWhole || matches(property, words)) found.push({g, p});
        });
        if (isWhole || found.length > 0) rows.push({g}, ...found);
    });
    return rows;
}

function countOf(root) {
    const groups = groupsOf(root);
    return {groups: groups.length, properties: groups.reduce((sum, group) => sum + propertiesOf(group).length, 0)};
}
