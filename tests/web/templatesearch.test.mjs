// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, sample, written} from './templatepage.mjs';

withBrowser();

async function search(page, words) {
    await page.press('Control+f');
    await page.type(words);
}

for (const [words, wanted] of [
    ['层高', ['基本信息', '层高']],
    ['层', ['基本信息', '层数', '层高']],
    ['一级', ['消防', '耐火等级']],
    ['剪力墙', ['基本信息', '结构类型']],
    ['M', ['基本信息', '层高']],
    ['整数', ['基本信息', '层数']],
    ['消防', ['消防', '耐火等级', '有喷淋']],
    ['没有的', []],
]) {
    pageTest(`searchFor_${words}_leaves_${wanted.length}_rows`, written(sample), async (page) => {
        await search(page, words);
        assert.deepEqual(await page.names(), wanted);
    });
}

pageTest('theNumberOfFoundPropertiesIsTold', written(sample), async (page) => {
    await search(page, '层');
    assert.equal(await page.text('#facts'), '2 个分组，5 个属性，找到 2 个');
});

pageTest('nothingFoundIsSaidInWords', written(sample), async (page) => {
    await search(page, '没有的');
    assert.equal(await page.text('#empty'), '没有与“没有的”相符的属性。');
});

pageTest('whatIsFoundCanBeEdited', written(sample), async (page) => {
    await search(page, '喷淋');
    await page.press('Enter', 'ArrowDown', 'End', 'Space');
    assert.equal((await page.value()).groups[1].properties[1].required, true);
});

pageTest('escapeShowsAllAgainAndStaysAtThePlace', written(sample), async (page) => {
    await search(page, '喷淋');
    await page.press('Enter', 'ArrowDown', 'Control+f', 'Escape');
    assert.equal((await page.names()).length, 7);
    assert.equal(await page.cursorText(), '有喷淋');
});

pageTest('whatIsFoundIsNotMoved', written(sample), async (page) => {
    await search(page, '层高');
    await page.press('Enter', 'ArrowDown', 'Alt+ArrowUp');
    assert.match(await page.text('#status'), /搜索时不能移动/);
    assert.deepEqual(await page.value(), sample);
});

pageTest('anAddedPropertyIsSeenAlthoughItWasSearched', written(sample), async (page) => {
    await search(page, '层高');
    await page.press('Enter', 'ArrowDown', 'Insert');
    assert.equal(await page.cursorText(), '新属性');
    assert.equal((await page.names()).length, 8);
});

pageTest('inTheTextTheNextOccurrenceIsSelected', written(sample), async (page) => {
    await page.command('json');
    await search(page, '层高');
    await page.press('Enter');
    const selected = await page.page.$eval('textarea', (field) => field.value.slice(field.selectionStart, field.selectionEnd));
    assert.equal(selected, '层高');
});
