// SPDX-License-Identifier: MIT
'use strict';

// A question in the page. `answers` are [name, label] pairs, the first one is the button that Enter presses; the promise
// gives the chosen name, "cancel" after Escape.
function ask(title, text, answers) {
    const box = document.getElementById('question');
    box.querySelector('h1').textContent = title;
    const body = box.querySelector('.words');
    body.textContent = '';
    body.append(text);
    const buttons = answers.map(([name, label], n) => {
        const button = element('button', {type: 'button', value: name, class: n === 0 ? 'primary' : ''}, label);
        button.addEventListener('click', () => box.close(name));
        return button;
    });
    box.querySelector('.answers').replaceChildren(...buttons);
    return new Promise((resolve) => {
        box.returnValue = 'cancel';
        box.addEventListener('close', () => resolve(box.returnValue || 'cancel'), {once: true});
        box.showModal();
        buttons[0].focus();
    });
}

const KEYS = [
    ['方向键、Home、End、PageUp、PageDown', '移动'],
    ['Enter 或 F2', '修改单元格；Esc 放弃'],
    ['直接输入', '替换单元格的内容'],
    ['空格', '切换“必填”'],
    ['Insert', '添加属性'],
    ['Alt+Insert', '添加分组'],
    ['Delete', '删除所在的属性或分组'],
    ['Alt+↑、Alt+↓', '上移、下移'],
    ['Ctrl+Z、Ctrl+Y', '撤销、重做'],
    ['Ctrl+F', '搜索'],
    ['Ctrl+J', '切换表格和 JSON'],
    ['Ctrl+S', '保存'],
    ['F8', '转到下一处问题'],
];

function showKeys() {
    const list = element('dl', {class: 'keys'});
    for (const [keys, what] of KEYS) list.append(element('dt', {}, keys), element('dd', {}, what));
    return ask('键盘', list, [['ok', '知道了']]);
}
