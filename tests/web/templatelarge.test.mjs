// SPDX-License-Identifier: MIT
//
// Five megabytes. Only what can be seen is drawn, which keeps each step short; how short is not for a test to say, since tests
// run beside others.
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, written} from './templatepage.mjs';

withBrowser();

const SIZE = 5 * 1024 * 1024;

function largeTemplate(write) {
    const groups = [];
    for (let g = 0; g < 200; g++) {
        const properties = [];
        for (let p = 0; p < 150; p++) {
            properties.push({name: `属性 ${g}-${p}`, type: 'number', unit: 'mm', default: p + 0.5, required: p % 2 === 0,
                note: 'a key that the page does not know '.repeat(2)});
        }
        groups.push({name: `分组 ${g}`, properties});
    }
    const text = write({groups});
    assert.ok(text.length >= SIZE, `${text.length}`);
    return text;
}

const large = largeTemplate(written);

pageTest('aLargeTemplateIsDrawnInPart', large, async (page) => {
    assert.equal(await page.text('#facts'), '200 个分组，30000 个属性');
    assert.ok((await page.rows()).length < 60);
});

pageTest('aLargeTemplateIsEdited', large, async (page) => {
    await page.press('Control+End');
    assert.equal(await page.cursorText(), '属性 199-149');
    await page.press('Insert');
    await page.press('Alt+ArrowUp');
    await page.press('Control+z');
    await page.press('F2');
    await page.type('面积');
    await page.press('Enter');
    const saved = JSON.parse(await page.save());
    assert.deepEqual(saved.groups[199].properties[150], {name: '面积', type: 'text', required: false});
});

pageTest('aLargeTemplateIsSearched', large, async (page) => {
    await page.press('Control+f');
    await page.type('1');
    await page.type('99-149');
    assert.deepEqual(await page.names(), ['分组 199', '属性 199-149']);
});

pageTest('aLargeTextIsShownInPages', large, async (page) => {
    await page.command('json');
    assert.match(await page.text('.page'), /^第 1 页，共 \d+ 页$/);
    await page.press('Alt+PageDown');
    assert.match(await page.text('.page'), /^第 2 页/);
    await page.shot('pages');
});

pageTest('aChangeOnAPageOfALargeTextLeavesTheOthers', large, async (page) => {
    await page.command('json');
    await page.press('Alt+PageDown');
    await page.press('Control+Home');
    await page.type(' ');
    await page.page.waitForFunction(() => document.getElementById('changed').textContent !== '');
    const saved = await page.save();
    assert.equal(saved.length, large.length + 1);
    assert.deepEqual(JSON.parse(saved), JSON.parse(large));
});

pageTest('aMistakeAtTheEndOfALargeTextIsFound', `${large.slice(0, -3)}x`, async (page) => {
    assert.match(await page.text('#jsonMessage'), /^第 \d+ 行第 \d+ 列：/);
    const place = await page.page.$eval('textarea', (field) => field.value.slice(field.selectionStart));
    assert.equal(place, 'x');
});

pageTest('aLargeTextOnOneLineIsShownAndSaved', largeTemplate((value) => JSON.stringify({...value, pad: 'x'.repeat(SIZE / 4)})),
    async (page) => {
        await page.command('json');
        await page.command('table');
        await page.goTo('分组 0');
        await page.command('addProperty');
        assert.equal((await page.save()).split('\n').length, 1);
    });
