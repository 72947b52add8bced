// SPDX-License-Identifier: MIT
//
// The elements around the picture.

function element(name, properties = {}, children = []) {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
}

export function makeFrame(section) {
    const frame = {
        loading: section.querySelector('.loading'),
        bar: element('progress', {max: 100, value: 0}),
        trouble: element('p', {className: 'trouble'}),
        floors: element('select', {className: 'floors'}),
        whole: element('button', {type: 'button', className: 'whole', textContent: '适应窗口'}),
        shown: element('output', {className: 'shown'}),
        search: element('input', {type: 'search', className: 'search', autocomplete: 'off'}),
        found: element('output', {className: 'found'}),
        tree: element('div', {className: 'tree'}),
        picture: element('div', {className: 'model'}),
        properties: element('div', {className: 'properties'}),
    };
    frame.bar.setAttribute('aria-label', '加载进度');
    frame.trouble.setAttribute('role', 'alert');
    frame.properties.setAttribute('aria-live', 'polite');
    frame.body = element('div', {className: 'parts', hidden: true}, [
        element('div', {className: 'tools'}, [
            element('label', {}, ['楼层 ', frame.floors]), frame.whole, frame.shown,
        ]),
        element('div', {className: 'side'}, [
            element('label', {}, ['查找构件 ', frame.search]), frame.found, frame.tree,
        ]),
        frame.picture,
        frame.properties,
    ]);
    section.append(frame.bar, frame.trouble, frame.body);
    return frame;
}

export function say(frame, text) {
    frame.loading.textContent = text;
    frame.loading.hidden = text === '';
    frame.bar.hidden = true;
}

export function sayPercent(frame, percent) {
    frame.loading.textContent = `正在加载模型 ${percent}%`;
    frame.bar.hidden = false;
    frame.bar.value = percent;
}
