// SPDX-License-Identifier: MIT
//
// What is known of the chosen component.

function line(name, value) {
    const pair = document.createElement('div');
    const term = document.createElement('dt');
    const text = document.createElement('dd');
    term.textContent = name;
    text.textContent = typeof value === 'object' ? JSON.stringify(value) : String(value);
    pair.append(term, text);
    return pair;
}

function group(title, entries) {
    const heading = document.createElement('h4');
    heading.textContent = title;
    const list = document.createElement('dl');
    list.append(...entries.map(([name, value]) => line(name, value)));
    return [heading, list];
}

function words(text) {
    const paragraph = document.createElement('p');
    paragraph.className = 'none';
    paragraph.textContent = text;
    return paragraph;
}

export function showNothing(panel) {
    panel.replaceChildren(words('点击模型或左侧列表中的构件，这里会显示它的属性。'));
}

// Facts are pairs of texts; groups are objects of texts, by the names of the groups.
export function showProperties(panel, title, facts, groups) {
    const heading = document.createElement('h3');
    heading.textContent = title;
    const known = Object.entries(groups).filter(([, values]) => values && typeof values === 'object');
    panel.replaceChildren(heading, ...group('基本信息', facts),
        ...known.flatMap(([name, values]) => group(name, Object.entries(values))));
    if (known.length === 0) panel.append(words('没有其他属性。'));
    panel.scrollTop = 0;
}
