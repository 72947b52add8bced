// SPDX-License-Identifier: MIT
//
// The page of the property template over a card of paper: what the program would put into the page is a few lines of
// script here, which write down what is saved.
import assert from 'node:assert/strict';
import {test} from 'node:test';
import {newPage} from './browser.mjs';

const address = new URL('../../webpages/propertyeditor/index.html', import.meta.url);

export const sample = {
    groups: [
        {name: '基本信息', properties: [
            {name: '结构类型', type: 'choice', options: ['框架', '剪力墙'], default: '框架', required: true},
            {name: '层数', type: 'integer', default: 6, required: true},
            {name: '层高', type: 'number', unit: 'm', default: 3.6, required: false},
        ]},
        {name: '消防', properties: [
            {name: '耐火等级', type: 'text', default: '一级', required: false},
            {name: '有喷淋', type: 'boolean', default: true, required: false},
        ]},
    ],
};

export const written = (value) => `${JSON.stringify(value, null, 4)}\n`;

// Stands where the program's channel stands. Runs in the browser.
function putCard(text) {
    window.paper = {text, writes: []};
    window.qt = {webChannelTransport: {}};
    window.QWebChannel = function QWebChannel(transport, ready) {
        const propObject = {
            getProp: (done) => setTimeout(() => done(window.paper.text)),
            setProp: (words, done) => {
                window.paper.writes.push(words);
                window.paper.text = window.paper.refuses ? window.paper.text : words;
                setTimeout(done);
            },
        };
        setTimeout(() => ready({objects: {propObject}}));
    };
}

export class TemplatePage {
    constructor({page, complaints, close}) {
        Object.assign(this, {page, complaints, close});
    }

    static async open(text, hasCard = true) {
        const opened = new TemplatePage(await newPage());
        if (hasCard) await opened.page.evaluateOnNewDocument(putCard, text);
        await opened.page.goto(address.href);
        if (hasCard) await opened.page.waitForSelector('#cover[hidden]');
        return opened;
    }

    press(...keys) {
        return keys.reduce((before, key) => before.then(() => this.chord(key)), Promise.resolve());
    }

    // "Control+s", "Alt+ArrowUp", "Enter"
    async chord(key) {
        const parts = key.split('+');
        const last = parts.pop();
        for (const part of parts) await this.page.keyboard.down(part);
        await this.page.keyboard.press(last);
        for (const part of parts.reverse()) await this.page.keyboard.up(part);
    }

    type(text) {
        return this.page.keyboard.type(text);
    }

    click(selector) {
        return this.page.click(selector);
    }

    command(name) {
        return this.click(`[data-command="${name}"]`);
    }

    text(selector) {
        return this.page.$eval(selector, (found) => found.textContent);
    }

    isHidden(selector) {
        return this.page.$eval(selector, (found) => found.hidden);
    }

    isEnabled(name) {
        return this.page.$eval(`[data-command="${name}"]`, (found) => !found.disabled);
    }

    // The rows that are drawn: the texts of their cells; "*" is a ticked box, "-" one that is not.
    rows() {
        return this.page.$$eval('.canvas .row', (rows) => rows.map((row) => [...row.querySelectorAll('.cell')].map((cell) => {
            const tick = cell.querySelector('.tick');
            return tick ? (tick.classList.contains('on') ? '*' : '-') : cell.textContent;
        })));
    }

    async names() {
        return (await this.rows()).map(([name]) => name);
    }

    cursorText() {
        return this.page.$eval('#grid', (grid) => {
            const cell = document.getElementById(grid.getAttribute('aria-activedescendant'));
            return cell ? cell.textContent : null;
        });
    }

    // Goes to a cell by the pointer.
    async goTo(name, column = 'name') {
        const cell = await this.page.evaluateHandle((wanted, id) => [...document.querySelectorAll('.canvas .row')]
            .find((row) => row.querySelector('.name').textContent === wanted).querySelector(`.${id}`), name, column);
        await cell.click();
    }

    // What the page would save now, as a value.
    async value() {
        return JSON.parse(await this.page.evaluate('editor.document.text'));
    }

    writes() {
        return this.page.evaluate('paper.writes');
    }

    putOnCard(text) {
        return this.page.evaluate((words) => { window.paper.text = words; }, text);
    }

    async save() {
        const before = (await this.writes()).length;
        await this.press('Control+s');
        await this.page.waitForFunction((count) => window.paper.writes.length > count, {}, before);
        await this.waitForStatus(/已保存/);
        return (await this.writes()).pop();
    }

    waitForStatus(pattern) {
        return this.page.waitForFunction((source) => new RegExp(source).test(document.getElementById('status').textContent),
            {timeout: 5000}, pattern.source);
    }

    async question() {
        await this.page.waitForSelector('dialog[open]');
        return this.text('#questionText');
    }

    answer(name) {
        return this.click(`dialog button[value="${name}"]`);
    }

    setJson(text) {
        return this.page.$eval('textarea', (field, words) => {
            field.value = words;
            field.dispatchEvent(new Event('input'));
        }, text);
    }

    shot(name) {
        return process.env.TORVO_SHOTS ? this.page.screenshot({path: `${process.env.TORVO_SHOTS}/${name}.png`}) : undefined;
    }
}

// A test on a page that shows `text`; the page must not have complained at the end.
export function pageTest(name, text, body, hasCard = true) {
    test(name, async () => {
        const opened = await TemplatePage.open(text, hasCard);
        try {
            await body(opened);
            assert.deepEqual(opened.complaints, []);
        } finally {
            await opened.close();
        }
    });
}
