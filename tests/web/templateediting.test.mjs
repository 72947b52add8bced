// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, sample, written} from './templatepage.mjs';

withBrowser();

const one = (...properties) => written({groups: [{name: '组', properties}]});
const propertyOf = async (page, g = 0, p = 0) => (await page.value()).groups[g].properties[p];

// Enters a text into the cell of a property by the keyboard.
async function enter(page, name, column, text) {
    await page.goTo(name, column);
    await page.press('F2');
    await page.page.$eval('.editor input', (field) => field.select());
    if (text === '') await page.press('Delete');
    await page.type(text);
    await page.press('Enter');
}

async function choose(page, name, column, value) {
    await page.goTo(name, column);
    await page.press('F2');
    await page.page.select('.editor select', value);
    await page.press('Enter');
}

pageTest('anAddedGroupStandsBehindTheCurrentOne', written(sample), async (page) => {
    await page.goTo('层数');
    await page.command('addGroup');
    assert.deepEqual((await page.value()).groups.map(({name}) => name), ['基本信息', '新分组', '消防']);
    assert.equal(await page.cursorText(), '新分组');
});

pageTest('anAddedPropertyStandsBehindTheCurrentOne', written(sample), async (page) => {
    await page.goTo('结构类型');
    await page.command('addProperty');
    assert.deepEqual(await propertyOf(page, 0, 1), {name: '新属性', type: 'text', required: false});
    assert.equal(await page.cursorText(), '新属性');
});

pageTest('anAddedPropertyOfAGroupComesFirst', written(sample), async (page) => {
    await page.goTo('消防');
    await page.command('addProperty');
    assert.equal((await propertyOf(page, 1, 0)).name, '新属性');
});

pageTest('addedNamesDiffer', one(), async (page) => {
    for (let n = 0; n < 3; n++) await page.command('addProperty');
    assert.deepEqual((await page.names()).slice(1), ['新属性', '新属性 2', '新属性 3']);
});

pageTest('aFirstGroupCanBeAddedToNothing', '', async (page) => {
    await page.command('addGroup');
    await page.command('addProperty');
    assert.deepEqual(await page.value(),
        {groups: [{name: '新分组', properties: [{name: '新属性', type: 'text', required: false}]}]});
});

pageTest('withoutAGroupThereIsNoPlaceForAProperty', '', async (page) => {
    assert.equal(await page.isEnabled('addProperty'), false);
    await page.press('Insert');
    assert.deepEqual(await page.rows(), []);
});

pageTest('aPropertyIsRemovedWithoutAQuestion', written(sample), async (page) => {
    await page.goTo('层数');
    await page.command('remove');
    assert.deepEqual((await page.value()).groups[0].properties.map(({name}) => name), ['结构类型', '层高']);
    assert.equal(await page.cursorText(), '层高');
});

pageTest('aGroupWithPropertiesIsRemovedAfterAQuestion', written(sample), async (page) => {
    await page.goTo('基本信息');
    await page.command('remove');
    assert.equal(await page.question(), '要删除分组“基本信息”和其中的 3 个属性吗？');
    await page.shot('question');
    await page.answer('cancel');
    assert.equal((await page.value()).groups.length, 2);
    await page.command('remove');
    await page.question();
    await page.answer('remove');
    await page.page.waitForFunction(() => document.querySelectorAll('.canvas .row').length === 3);
    assert.deepEqual((await page.value()).groups.map(({name}) => name), ['消防']);
});

pageTest('anEmptyGroupIsRemovedWithoutAQuestion', written({groups: [{name: 'a', properties: []}]}), async (page) => {
    await page.goTo('a');
    await page.command('remove');
    assert.deepEqual(await page.value(), {groups: []});
});

pageTest('aNameIsChanged', written(sample), async (page) => {
    await enter(page, '层高', 'name', '标准层高');
    assert.equal((await propertyOf(page, 0, 2)).name, '标准层高');
});

pageTest('aGroupIsRenamed', written(sample), async (page) => {
    await enter(page, '消防', 'name', '消防设施');
    assert.equal((await page.value()).groups[1].name, '消防设施');
});

pageTest('anEscapedChangeIsNone', written(sample), async (page) => {
    await page.goTo('层高');
    await page.press('F2');
    await page.type('别的');
    await page.press('Escape');
    assert.deepEqual(await page.value(), sample);
    assert.equal(await page.isEnabled('undo'), false);
});

pageTest('anUnchangedTextIsNoChange', written(sample), async (page) => {
    await page.goTo('层高');
    await page.press('F2', 'Enter');
    assert.equal(await page.isEnabled('save'), false);
});

pageTest('aFieldThatIsLeftByThePointerIsTaken', written(sample), async (page) => {
    await page.goTo('层高', 'unit');
    await page.press('F2');
    await page.type('mm');
    await page.goTo('层数');
    assert.equal((await propertyOf(page, 0, 2)).unit, 'mm');
});

for (const [type, text, wanted] of [
    ['text', '12', '12'],
    ['integer', '12', 12],
    ['number', '1.5', 1.5],
    ['date', '2024-05-31', '2024-05-31'],
    ['integer', 'abc', 'abc'],
]) {
    pageTest(`aDefaultOf_${type}_takes_${text}_asJsonOfItsType`, one({name: 'x', type}), async (page) => {
        await enter(page, 'x', 'default', text);
        assert.deepEqual((await propertyOf(page)).default, wanted);
    });
}

pageTest('anEmptyDefaultIsNone', one({name: 'x', type: 'integer', default: 1}), async (page) => {
    await enter(page, 'x', 'default', '');
    assert.deepEqual(await propertyOf(page), {name: 'x', type: 'integer'});
});

pageTest('aDefaultOfYesOrNoIsChosen', one({name: 'x', type: 'boolean'}), async (page) => {
    await choose(page, 'x', 'default', 'false');
    assert.equal((await propertyOf(page)).default, false);
});

pageTest('aDefaultOfAChoiceIsOneOfItsOptions', one({name: 'x', type: 'choice', options: ['甲', '乙']}), async (page) => {
    await page.goTo('x', 'default');
    await page.press('F2');
    const offered = await page.page.$$eval('.editor option', (options) => options.map(({value}) => value));
    assert.deepEqual(offered, ['', '甲', '乙']);
    await page.page.select('.editor select', '乙');
    await page.press('Enter');
    assert.equal((await propertyOf(page)).default, '乙');
});

pageTest('optionsAreCutAtTheBar', one({name: 'x', type: 'choice'}), async (page) => {
    await enter(page, 'x', 'options', '甲|  乙 丙 || 丁');
    assert.deepEqual((await propertyOf(page)).options, ['甲', '乙 丙', '丁']);
});

for (const [from, before, to, after] of [
    ['text', '12', 'integer', 12],
    ['integer', 12, 'text', '12'],
    ['boolean', true, 'text', 'true'],
    ['text', '是', 'boolean', true],
    ['text', 'abc', 'number', 'abc'],
]) {
    pageTest(`aDefaultGoesAlongFrom_${from}_${before}_to_${to}`, one({name: 'x', type: from, default: before}),
        async (page) => {
            await choose(page, 'x', 'type', to);
            assert.deepEqual(await propertyOf(page), {name: 'x', type: to, default: after});
        });
}

pageTest('aClickOnTheBoxTurnsIt', written(sample), async (page) => {
    await page.goTo('层高', 'tick');
    assert.equal((await propertyOf(page, 0, 2)).required, true);
    await page.goTo('层高', 'tick');
    assert.equal((await propertyOf(page, 0, 2)).required, false);
});

pageTest('propertiesMoveWithinTheirGroup', written(sample), async (page) => {
    await page.goTo('层数');
    await page.command('down');
    assert.deepEqual((await page.value()).groups[0].properties.map(({name}) => name), ['结构类型', '层高', '层数']);
    assert.equal(await page.cursorText(), '层数');
});

pageTest('aPropertyMovesOverTheBorderOfItsGroup', written(sample), async (page) => {
    await page.goTo('层高');
    await page.command('down');
    assert.deepEqual((await page.names()), ['基本信息', '结构类型', '层数', '消防', '层高', '耐火等级', '有喷淋']);
    await page.command('up');
    assert.deepEqual(await page.value(), sample);
});

pageTest('groupsMoveWithAllThatIsInThem', written(sample), async (page) => {
    await page.goTo('消防');
    await page.command('up');
    assert.deepEqual(await page.value(), {groups: [sample.groups[1], sample.groups[0]]});
});

pageTest('atTheEndsNothingMoves', written(sample), async (page) => {
    await page.goTo('基本信息');
    await page.command('up');
    await page.goTo('有喷淋');
    await page.command('down');
    assert.equal(await page.isEnabled('undo'), false);
});

pageTest('everyStepIsUndoneAndDoneAgain', written(sample), async (page) => {
    const states = [await page.value()];
    const note = async () => states.push(await page.value());
    await page.goTo('层数');
    await page.command('down');
    await note();
    await page.command('addProperty');
    await note();
    await enter(page, '新属性', 'name', '面积');
    await note();
    await page.goTo('面积', 'tick');
    await note();
    await page.command('remove');
    await note();
    for (let n = states.length - 2; n >= 0; n--) {
        await page.command('undo');
        assert.deepEqual(await page.value(), states[n]);
    }
    assert.equal(await page.isEnabled('undo'), false);
    for (let n = 1; n < states.length; n++) {
        await page.command('redo');
        assert.deepEqual(await page.value(), states[n]);
    }
    assert.equal(await page.isEnabled('redo'), false);
});

pageTest('aNewChangeEndsWhatCouldBeDoneAgain', written(sample), async (page) => {
    await page.goTo('层数');
    await page.command('remove');
    await page.command('undo');
    await page.command('addGroup');
    assert.equal(await page.isEnabled('redo'), false);
});

pageTest('backAtTheSavedStateThereIsNothingToSave', written(sample), async (page) => {
    await page.goTo('层数');
    await page.command('remove');
    assert.equal(await page.text('#changed'), '有未保存的修改');
    await page.command('undo');
    assert.equal(await page.text('#changed'), '');
    assert.equal(await page.isEnabled('save'), false);
});
