// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, sample, written} from './templatepage.mjs';

withBrowser();

pageTest('theTableHasTheKeyboardFromTheStart', written(sample), async (page) => {
    assert.equal(await page.page.evaluate(() => document.activeElement.id), 'grid');
    assert.equal(await page.cursorText(), '基本信息');
});

pageTest('arrowsWalkOverTheCells', written(sample), async (page) => {
    const seen = [];
    for (const key of ['ArrowDown', 'ArrowRight', 'ArrowDown', 'ArrowRight', 'ArrowLeft', 'ArrowUp', 'ArrowUp', 'ArrowUp']) {
        await page.press(key);
        seen.push(await page.cursorText());
    }
    assert.deepEqual(seen, ['结构类型', '单选', '整数', '', '整数', '单选', '基本信息', '基本信息']);
});

pageTest('aGroupOnTheWayDoesNotLoseTheColumn', written(sample), async (page) => {
    await page.goTo('层高', 'type');
    await page.press('ArrowDown', 'ArrowDown');
    assert.equal(await page.cursorText(), '文字');
});

pageTest('homeAndEndGoToTheEndsOfRowAndTable', written(sample), async (page) => {
    await page.goTo('层数', 'type');
    await page.press('Home');
    assert.equal(await page.cursorText(), '层数');
    await page.press('Control+End');
    assert.equal(await page.cursorText(), '有喷淋');
    await page.press('Control+Home');
    assert.equal(await page.cursorText(), '基本信息');
});

pageTest('altAndArrowsReorder', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Alt+ArrowUp');
    assert.deepEqual((await page.names()).slice(1, 4), ['层数', '结构类型', '层高']);
    await page.press('Alt+ArrowDown', 'Alt+ArrowDown');
    assert.deepEqual((await page.names()).slice(1, 4), ['结构类型', '层高', '层数']);
    assert.equal(await page.cursorText(), '层数');
});

pageTest('typingReplacesACell', written(sample), async (page) => {
    await page.goTo('层高', 'unit');
    await page.type('mm');
    await page.press('Enter');
    assert.equal((await page.value()).groups[0].properties[2].unit, 'mm');
});

pageTest('spaceTurnsTheRequiredBox', written(sample), async (page) => {
    await page.goTo('层高');
    await page.press('End', 'Space');
    assert.equal((await page.value()).groups[0].properties[2].required, true);
});

pageTest('tabInACellGoesToTheNextCell', written(sample), async (page) => {
    await page.goTo('层高');
    await page.press('F2');
    await page.type('高度');
    await page.press('Tab');
    assert.equal(await page.cursorText(), '小数');
    assert.equal((await page.value()).groups[0].properties[2].name, '高度');
});

pageTest('deleteRemovesTheRow', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Delete');
    assert.deepEqual((await page.names()).slice(0, 3), ['基本信息', '结构类型', '层高']);
});

pageTest('controlZAndYUndoAndRedo', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Delete', 'Control+z');
    assert.deepEqual(await page.value(), sample);
    await page.press('Control+y');
    assert.equal((await page.value()).groups[0].properties.length, 2);
    await page.press('Control+z', 'Control+Shift+Z');
    assert.equal((await page.value()).groups[0].properties.length, 2);
});

pageTest('tabLeavesTheTableAndComesBack', written(sample), async (page) => {
    const focused = () => page.page.evaluate(() => document.activeElement.id || document.activeElement.dataset.command);
    await page.press('Shift+Tab');
    assert.equal(await focused(), 'keys');
    await page.press('Tab');
    assert.equal(await focused(), 'grid');
});

pageTest('aQuestionIsAnsweredByTheKeyboard', written(sample), async (page) => {
    await page.press('Delete');
    await page.question();
    await page.press('Escape');
    await page.page.waitForSelector('dialog:not([open])');
    assert.deepEqual(await page.value(), sample);
    await page.press('Delete');
    await page.question();
    await page.press('Enter');
    await page.page.waitForFunction(() => document.querySelectorAll('.canvas .row').length === 3);
});

pageTest('f1ShowsTheKeys', written(sample), async (page) => {
    await page.press('F1');
    assert.match(await page.question(), /Ctrl\+S/);
    await page.shot('keys');
    await page.press('Escape');
});

pageTest('aWholeTemplateIsMadeWithoutThePointer', '', async (page) => {
    await page.press('Alt+Insert', 'Enter');
    await page.type('机电');
    await page.press('Enter', 'Insert', 'Enter');
    await page.type('功率');
    await page.press('Tab', 'Enter', 'ArrowDown', 'ArrowDown', 'Tab');
    await page.type('kW');
    await page.press('Tab');
    await page.type('5.5');
    await page.press('Tab', 'End', 'Space');
    assert.deepEqual(JSON.parse(await page.save()), {groups: [{name: '机电', properties: [
        {name: '功率', type: 'number', required: true, unit: 'kW', default: 5.5},
    ]}]});
});
