// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, sample, written} from './templatepage.mjs';

withBrowser();

pageTest('theTemplateOfTheCardIsShownAsATable', written(sample), async (page) => {
    assert.deepEqual(await page.rows(), [
        ['基本信息', '3 个属性'],
        ['结构类型', '单选', '', '框架', '框架 | 剪力墙', '*'],
        ['层数', '整数', '', '6', '', '*'],
        ['层高', '小数', 'm', '3.6', '', '-'],
        ['消防', '2 个属性'],
        ['耐火等级', '文字', '', '一级', '', '-'],
        ['有喷淋', '是否', '', '是', '', '-'],
    ]);
    assert.equal(await page.text('#facts'), '2 个分组，5 个属性');
    await page.shot('table');
});

pageTest('aFreshTemplateHasNothingToSaveOrUndo', written(sample), async (page) => {
    assert.deepEqual([await page.isEnabled('save'), await page.isEnabled('undo'), await page.isEnabled('redo')],
        [false, false, false]);
    assert.equal(await page.page.title(), '属性模板编辑');
});

pageTest('aCardWithoutATemplateSaysHowToBegin', '', async (page) => {
    assert.deepEqual(await page.rows(), []);
    assert.match(await page.text('#empty'), /添加分组/);
    await page.shot('empty');
});

pageTest('aTemplateWithoutATypeIsText', written({groups: [{name: 'a', properties: [{name: 'b'}]}]}), async (page) => {
    assert.deepEqual((await page.rows())[1], ['b', '文字', '', '', '', '-']);
});

pageTest('aPageOutsideOfTheProgramSaysWhereItIsOpened', '', async (page) => {
    await page.page.waitForFunction(() => document.getElementById('cover').textContent.includes('属性编辑'));
    assert.equal(await page.isHidden('#cover'), false);
}, false);

pageTest('namesAreShownAsTheyAreWritten', written({groups: [{name: '<b>x</b>', properties: [{name: '&amp; <i>'}]}]}),
    async (page) => {
        assert.deepEqual(await page.names(), ['<b>x</b>', '&amp; <i>']);
    });

pageTest('anotherTemplateOnTheCardIsReadWhenTheWindowIsLookedAtAgain', written(sample), async (page) => {
    await page.putOnCard(written({groups: [{name: '别的工程', properties: []}]}));
    await page.page.evaluate(() => window.dispatchEvent(new Event('focus')));
    await page.waitForStatus(/已读取/);
    assert.deepEqual(await page.names(), ['别的工程']);
});

pageTest('anotherTemplateOnTheCardDoesNotTakeUnsavedChanges', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Delete');
    await page.putOnCard('{}');
    await page.page.evaluate(() => window.dispatchEvent(new Event('focus')));
    await page.waitForStatus(/信息卡上的模板已经变了/);
    assert.deepEqual(await page.names(), ['基本信息', '结构类型', '层高', '消防', '耐火等级', '有喷淋']);
});
