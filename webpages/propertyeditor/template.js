// SPDX-License-Identifier: MIT
'use strict';

// What a property template is, and what may be done to it. A template is a JSON document of this shape (see
// docs/property-template.md); keys that are not named here are kept as they are:
//   {"groups": [{"name": "...", "properties": [{"name", "type", "unit", "default", "options", "required"}]}]}
// Every operation takes a document and gives a new one.

const TYPES = [
    {id: 'text', label: '文字'},
    {id: 'integer', label: '整数'},
    {id: 'number', label: '小数'},
    {id: 'boolean', label: '是否'},
    {id: 'date', label: '日期'},
    {id: 'choice', label: '单选'},
];

const COLUMNS = [
    {id: 'name', label: '名称'},
    {id: 'type', label: '类型'},
    {id: 'unit', label: '单位'},
    {id: 'default', label: '默认值'},
    {id: 'options', label: '可选值'},
    {id: 'required', label: '必填'},
];

const EMPTY_TEMPLATE = {t: 'object', e: [{k: 'groups', v: {t: 'array', i: []}}]};
const stringNode = (v) => ({t: 'string', v});

function isArrayOfObjects(node) {
    return node !== undefined && node.t === 'array' && node.i.every((item) => item.t === 'object');
}

// Why a document cannot be shown as a table; empty when it can.
function foreignShape(root) {
    if (root.t !== 'object' || memberOf(root, 'groups') === undefined) return '文档没有“groups”，不是属性分组的形式';
    const groups = memberOf(root, 'groups');
    if (!isArrayOfObjects(groups)) return '“groups”不是由对象组成的数组';
    const odd = groups.i.findIndex((group) => !isArrayOfObjects(memberOf(group, 'properties')));
    return odd < 0 ? '' : `第 ${odd + 1} 个分组没有由对象组成的数组“properties”`;
}

const groupsOf = (root) => memberOf(root, 'groups').i;
const propertiesOf = (group) => memberOf(group, 'properties').i;

function withGroups(root, groups) {
    return withMember(root, 'groups', {t: 'array', i: groups});
}

function withProperties(group, properties) {
    return withMember(group, 'properties', {t: 'array', i: properties});
}

function replaced(list, index, item) {
    const copy = list.slice();
    copy[index] = item;
    return copy;
}

function inserted(list, index, item) {
    return [...list.slice(0, index), item, ...list.slice(index)];
}

function removed(list, index) {
    return [...list.slice(0, index), ...list.slice(index + 1)];
}

function withGroup(root, g, group) {
    return withGroups(root, replaced(groupsOf(root), g, group));
}

function withGroupProperties(root, g, properties) {
    return withGroup(root, g, withProperties(groupsOf(root)[g], properties));
}

// A name that no other has: "新属性", "新属性 2" and so on.
function freeName(base, nodes) {
    const taken = new Set(nodes.map((node) => textOf(memberOf(node, 'name'))));
    for (let n = 1; ; n++) {
        const name = n === 1 ? base : `${base} ${n}`;
        if (!taken.has(name)) return name;
    }
}

function addGroup(root, g) {
    const groups = groupsOf(root);
    const group = {t: 'object', e: [
        {k: 'name', v: stringNode(freeName('新分组', groups))},
        {k: 'properties', v: {t: 'array', i: []}},
    ]};
    return withGroups(root, inserted(groups, g, group));
}

function addProperty(root, g, p) {
    const properties = propertiesOf(groupsOf(root)[g]);
    const property = {t: 'object', e: [
        {k: 'name', v: stringNode(freeName('新属性', properties))},
        {k: 'type', v: stringNode('text')},
        {k: 'required', v: {t: 'boolean', v: false}},
    ]};
    return withGroupProperties(root, g, inserted(properties, p, property));
}

function removeGroup(root, g) {
    return withGroups(root, removed(groupsOf(root), g));
}

function removeProperty(root, g, p) {
    return withGroupProperties(root, g, removed(propertiesOf(groupsOf(root)[g]), p));
}

// A place is {g} for a group and {g, p} for a property. Moves by one step, a property also over the border of its
// group; gives {root, place}, or null at the end.
function moved(root, place, step) {
    const groups = groupsOf(root);
    const {g, p} = place;
    if (p === undefined) {
        const to = g + step;
        if (to < 0 || to >= groups.length) return null;
        return {root: withGroups(root, inserted(removed(groups, g), to, groups[g])), place: {g: to}};
    }
    const properties = propertiesOf(groups[g]);
    const property = properties[p];
    const to = p + step;
    if (to >= 0 && to < properties.length) {
        return {root: withGroupProperties(root, g, inserted(removed(properties, p), to, property)), place: {g, p: to}};
    }
    const other = g + step;
    if (other < 0 || other >= groups.length) return null;
    const target = step < 0 ? propertiesOf(groups[other]).length : 0;
    const without = removeProperty(root, g, p);
    const there = inserted(propertiesOf(groups[other]), target, property);
    return {root: withGroupProperties(without, other, there), place: {g: other, p: target}};
}

function nodeAt(root, {g, p}) {
    const group = groupsOf(root)[g];
    return p === undefined ? group : propertiesOf(group)[p];
}

function withNodeAt(root, {g, p}, node) {
    if (p === undefined) return withGroup(root, g, node);
    return withGroupProperties(root, g, replaced(propertiesOf(groupsOf(root)[g]), p, node));
}

// --- what a cell shows, and what a text in it means

function textOf(node) {
    if (node === undefined || node.t === 'null') return '';
    return node.t === 'string' ? node.v : writeJson(node, 0);
}

function typeOf(property) {
    return textOf(memberOf(property, 'type')) || 'text';
}

function isListOfTexts(node) {
    return node !== undefined && node.t === 'array' && node.i.every((item) => item.t === 'string');
}

function cellText(node, column) {
    const value = memberOf(node, column);
    if (column === 'type') {
        const known = TYPES.find(({id}) => id === typeOf(node));
        return known ? known.label : typeOf(node);
    }
    if (column === 'options' && isListOfTexts(value)) return value.i.map(({v}) => v).join(' | ');
    if (value !== undefined && value.t === 'boolean') return value.v ? '是' : '否';
    return textOf(value);
}

function defaultNode(text, type) {
    if (text === '') return undefined;
    if (type === 'boolean' && ['true', 'false', '是', '否'].includes(text)) {
        return {t: 'boolean', v: text === 'true' || text === '是'};
    }
    if ((type === 'integer' || type === 'number') && isNumberText(text.trim())) return {t: 'number', raw: text.trim()};
    return stringNode(text);
}

function isNumberText(text) {
    return /^-?(?:0|[1-9][0-9]*)(?:\.[0-9]+)?(?:[eE][+-]?[0-9]+)?$/.test(text);
}

function optionsNode(text) {
    const options = text.split('|').map((option) => option.trim()).filter((option) => option !== '');
    return options.length === 0 ? undefined : {t: 'array', i: options.map(stringNode)};
}

function withType(node, type) {
    const changed = withMember(node, 'type', stringNode(type));
    const value = memberOf(node, 'default');
    const isPlain = value !== undefined && ['string', 'number', 'boolean'].includes(value.t);
    return isPlain ? withMember(changed, 'default', defaultNode(textOf(value), type)) : changed;
}

// The node with what the user has entered in a cell.
function withCell(node, column, text) {
    switch (column) {
        case 'type': return withType(node, text);
        case 'default': return withMember(node, 'default', defaultNode(text, typeOf(node)));
        case 'options': return withMember(node, 'options', optionsNode(text));
        case 'required': return withMember(node, 'required', {t: 'boolean', v: text === 'true'});
        case 'unit': return withMember(node, 'unit', text === '' ? undefined : stringNode(text));
        default: return withMember(node, column, stringNode(text));
    }
}

function isRequired(node) {
    const value = memberOf(node, 'required');
    return value !== undefined && value.t === 'boolean' && value.v;
}

function isOf(node, kind) {
    return node === undefined || node.t === kind;
}
