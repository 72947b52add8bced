// SPDX-License-Identifier: MIT
'use strict';

// What is wrong with a template. A problem is {place, column, words, isMild}; a mild one is shown and does not keep
// anybody from saving: a program of another make may know types that this page does not.

function isDate(text) {
    const found = /^(\d{4})-(\d{2})-(\d{2})$/.exec(text);
    if (!found) return false;
    const [year, month, day] = found.slice(1).map(Number);
    const date = new Date(Date.UTC(year, month - 1, day));
    return date.getUTCMonth() === month - 1 && date.getUTCDate() === day;
}

function defaultProblem(property) {
    const value = memberOf(property, 'default');
    if (value === undefined) return '';
    switch (typeOf(property)) {
        case 'text': return value.t === 'string' ? '' : '默认值应为文字';
        case 'integer': return value.t === 'number' && /^-?\d+$/.test(value.raw) ? '' : '默认值应为整数';
        case 'number': return value.t === 'number' ? '' : '默认值应为数字';
        case 'boolean': return value.t === 'boolean' ? '' : '默认值应为“是”或“否”';
        case 'date': return value.t === 'string' && isDate(value.v) ? '' : '默认值应为日期，例如 2024-05-31';
        case 'choice': return choiceProblem(property, value);
        default: return '';
    }
}

function choiceProblem(property, value) {
    const options = memberOf(property, 'options');
    if (!isListOfTexts(options)) return '';
    return value.t === 'string' && options.i.some(({v}) => v === value.v) ? '' : '默认值不在可选值之中';
}

function optionsProblem(property) {
    const options = memberOf(property, 'options');
    if (options !== undefined && !isListOfTexts(options)) return '可选值应为由文字组成的数组';
    if (typeOf(property) !== 'choice') return '';
    if (options === undefined || options.i.length === 0) return '单选属性要有可选值，用“|”隔开';
    return new Set(options.i.map(({v}) => v)).size < options.i.length ? '可选值有重复' : '';
}

function typeProblem(property) {
    return TYPES.some(({id}) => id === typeOf(property)) ? '' : `不认识类型“${typeOf(property)}”`;
}

function nameProblem(node, taken, what) {
    const value = memberOf(node, 'name');
    if (!isOf(value, 'string')) return `${what}名称应为文字`;
    const name = value === undefined ? '' : value.v.trim();
    if (name === '') return `${what}名称不能为空`;
    if (taken.has(name)) return `${what}名称“${name}”重复`;
    taken.add(name);
    return '';
}

function propertyProblems(property, taken) {
    return [
        ['name', nameProblem(property, taken, '属性')],
        ['type', typeProblem(property)],
        ['unit', isOf(memberOf(property, 'unit'), 'string') ? '' : '单位应为文字'],
        ['default', defaultProblem(property)],
        ['options', optionsProblem(property)],
        ['required', isOf(memberOf(property, 'required'), 'boolean') ? '' : '必填应为“是”或“否”'],
    ].filter(([, words]) => words !== '');
}

function templateProblems(root) {
    const problems = [];
    const groupNames = new Set();
    groupsOf(root).forEach((group, g) => {
        const words = nameProblem(group, groupNames, '分组');
        if (words) problems.push({place: {g}, column: 'name', words, isMild: false});
        const names = new Set();
        propertiesOf(group).forEach((property, p) => {
            for (const [column, found] of propertyProblems(property, names)) {
                problems.push({place: {g, p}, column, words: found, isMild: column === 'type'});
            }
        });
    });
    return problems;
}
