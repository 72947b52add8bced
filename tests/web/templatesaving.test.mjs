// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, sample, written} from './templatepage.mjs';

withBrowser();

async function rename(page, name, to) {
    await page.goTo(name);
    await page.press('F2');
    await page.type(to);
    await page.press('Enter');
}

pageTest('savingGivesTheCardTheExactJson', written(sample), async (page) => {
    await rename(page, '层高', '标准层高');
    const wanted = JSON.parse(JSON.stringify(sample));
    wanted.groups[0].properties[2].name = '标准层高';
    assert.equal(await page.save(), written(wanted));
    assert.equal((await page.writes()).length, 1);
    assert.equal(await page.isEnabled('save'), false);
});

pageTest('theButtonSavesAsWell', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Delete');
    await page.command('save');
    await page.waitForStatus(/已保存到信息卡/);
    assert.equal((await page.writes()).length, 1);
});

pageTest('withoutAChangeNothingIsSaved', written(sample), async (page) => {
    await page.press('Control+s');
    assert.deepEqual(await page.writes(), []);
});

pageTest('anOpenCellIsSavedWithTheRest', written(sample), async (page) => {
    await page.goTo('层高', 'unit');
    await page.press('F2');
    await page.type('mm');
    assert.equal(JSON.parse(await page.save()).groups[0].properties[2].unit, 'mm');
});

pageTest('textThatWasJustTypedIsSaved', written(sample), async (page) => {
    await page.command('json');
    await page.setJson('{"groups": []}');
    assert.equal(await page.save(), '{"groups": []}');
});

pageTest('unknownKeysAndNumbersStayAsTheyAre', `{"version": 2.0, "groups": [{"id": 12345678901234567890, "name": "a",
    "properties": [{"x": {"y": [1e2, null]}, "name": "b", "type": "text"}], "note": "é"}], "tail": -0.0}`, async (page) => {
    await rename(page, 'b', 'c');
    assert.equal(await page.save(), [
        '{',
        '    "version": 2.0,',
        '    "groups": [',
        '        {',
        '            "id": 12345678901234567890,',
        '            "name": "a",',
        '            "properties": [',
        '                {',
        '                    "x": {',
        '                        "y": [',
        '                            1e2,',
        '                            null',
        '                        ]',
        '                    },',
        '                    "name": "c",',
        '                    "type": "text"',
        '                }',
        '            ],',
        '            "note": "é"',
        '        }',
        '    ],',
        '    "tail": -0.0',
        '}',
        '',
    ].join('\n'));
});

pageTest('aTemplateOnOneLineStaysOnOneLine', '{"groups":[{"name":"a","properties":[]}]}', async (page) => {
    await rename(page, 'a', 'b');
    assert.equal(await page.save(), '{"groups":[{"name":"b","properties":[]}]}');
});

pageTest('doubleKeysAreKeptAndTheLastOneCounts', '{"groups":[{"name":"a","name":"b","properties":[]}]}', async (page) => {
    await rename(page, 'b', 'c');
    assert.equal(await page.save(), '{"groups":[{"name":"a","name":"c","properties":[]}]}');
});

pageTest('anEmptiedTextTakesTheTemplateAway', written(sample), async (page) => {
    await page.command('json');
    await page.setJson('');
    assert.equal(await page.save(), '');
});

pageTest('aMistakeInTheTextIsNotSaved', written(sample), async (page) => {
    await page.command('json');
    await page.setJson('{"groups": [oops]}');
    await page.press('Control+s');
    await page.waitForStatus(/没有保存：文本不是正确的 JSON/);
    assert.deepEqual(await page.writes(), []);
});

for (const [what, property, column, words] of [
    ['aPropertyWithoutAName', {name: ' '}, 'name', '属性名称不能为空'],
    ['aNameThatIsNoText', {name: 5}, 'name', '属性名称应为文字'],
    ['anIntegerWithAFraction', {name: 'x', type: 'integer', default: 1.5}, 'default', '默认值应为整数'],
    ['aNumberInQuotes', {name: 'x', type: 'number', default: '1'}, 'default', '默认值应为数字'],
    ['aTextThatIsANumber', {name: 'x', type: 'text', default: 1}, 'default', '默认值应为文字'],
    ['yesInWords', {name: 'x', type: 'boolean', default: 'yes'}, 'default', '默认值应为“是”或“否”'],
    ['aDayThatIsNone', {name: 'x', type: 'date', default: '2023-02-29'}, 'default', '默认值应为日期，例如 2024-05-31'],
    ['aChoiceWithoutOptions', {name: 'x', type: 'choice'}, 'options', '单选属性要有可选值，用“|”隔开'],
    ['doubleOptions', {name: 'x', type: 'choice', options: ['a', 'a']}, 'options', '可选值有重复'],
    ['optionsThatAreNoTexts', {name: 'x', type: 'choice', options: [1]}, 'options', '可选值应为由文字组成的数组'],
    ['aDefaultBesideTheOptions', {name: 'x', type: 'choice', options: ['a'], default: 'b'}, 'default', '默认值不在可选值之中'],
    ['aUnitThatIsNoText', {name: 'x', unit: 1}, 'unit', '单位应为文字'],
    ['requiredInWords', {name: 'x', required: 'yes'}, 'required', '必填应为“是”或“否”'],
]) {
    pageTest(`${what}IsToldAndNotSaved`, written({groups: [{name: 'g', properties: [{name: 'y', type: 'text'}, property]}]}),
        async (page) => {
            assert.equal(await page.text('#problemBtn'), '1 处问题');
            assert.equal(await page.page.$eval(`.canvas .row:nth-child(3) .cell.${column}`, (cell) => cell.title), words);
            await page.goTo('y');
            await page.command('addGroup');
            await page.press('Control+s');
            await page.waitForStatus(/没有保存：有 1 处需要修改/);
            assert.deepEqual(await page.writes(), []);
            const at = await page.page.$eval('#grid', (grid) => grid.getAttribute('aria-activedescendant'));
            assert.ok(await page.page.$eval(`#${at}`, (cell, id) => cell.classList.contains(id), column));
        });
}

for (const [what, groups, words] of [
    ['twoGroupsOfOneName', [{name: 'a', properties: []}, {name: 'a', properties: []}], 'a：分组名称“a”重复'],
    ['aGroupWithoutAName', [{name: '', properties: []}], '第 1 个分组：分组名称不能为空'],
    ['twoPropertiesOfOneName', [{name: 'a', properties: [{name: 'x'}, {name: 'x'}]}], 'a / x：属性名称“x”重复'],
]) {
    pageTest(`${what}AreAProblemInTheList`, written({groups}), async (page) => {
        await page.command('problems');
        assert.equal(await page.text('#problemList'), words);
        await page.shot('problems');
    });
}

pageTest('oneNameInTwoGroupsIsNoProblem', written({groups: [{name: 'a', properties: [{name: 'x'}]},
    {name: 'b', properties: [{name: 'x'}]}]}), async (page) => {
    assert.equal(await page.isHidden('#problemBtn'), true);
});

pageTest('anUnknownTypeIsShownAndSaved', written({groups: [{name: 'a', properties: [{name: 'x', type: 'colour'}]}]}),
    async (page) => {
        assert.equal(await page.text('#problemBtn'), '1 处问题');
        await rename(page, 'x', 'y');
        assert.equal(JSON.parse(await page.save()).groups[0].properties[0].type, 'colour');
    });

pageTest('f8WalksOverTheProblems', written({groups: [{name: '', properties: [{name: 'x', type: 'date', default: 'no'}]}]}),
    async (page) => {
        await page.press('ArrowDown', 'F8');
        assert.equal(await page.cursorText(), 'no');
        await page.press('F8');
        assert.equal(await page.page.$eval('#grid', (grid) => grid.getAttribute('aria-activedescendant')), 'cell-0-0');
    });

pageTest('aTemplateOfAnotherProjectIsNotOverwrittenUnasked', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Delete');
    await page.putOnCard('{"other": 1}');
    await page.press('Control+s');
    assert.match(await page.question(), /可能是换了工程/);
    await page.press('Enter');
    await page.page.waitForSelector('dialog:not([open])');
    assert.deepEqual(await page.writes(), []);
    await page.press('Control+s');
    await page.question();
    await page.answer('overwrite');
    await page.waitForStatus(/已保存/);
    assert.equal((await page.writes()).length, 1);
});

pageTest('aTemplateOfAnotherProjectCanBeReadInstead', written(sample), async (page) => {
    await page.goTo('层数');
    await page.press('Delete');
    await page.putOnCard('{"other": 1}');
    await page.press('Control+s');
    await page.question();
    await page.answer('reload');
    await page.page.waitForFunction(() => document.querySelector('textarea').value === '{"other": 1}');
    assert.deepEqual(await page.writes(), []);
});

pageTest('aCardThatTakesNothingIsTold', written(sample), async (page) => {
    await page.page.evaluate(() => { window.paper.refuses = true; });
    await page.goTo('层数');
    await page.press('Delete', 'Control+s');
    await page.waitForStatus(/没有保存：程序没有接受/);
    assert.equal(await page.isEnabled('save'), true);
});

pageTest('aPageWithoutChangesMayClose', written(sample), async (page) => {
    assert.equal(await page.page.evaluate('pageMayClose()'), true);
});

// The browser of the tests does not let a page close itself; what the page asks for is written down.
const watchClosing = (page) => page.page.evaluate(() => {
    window.closings = 0;
    window.close = () => { window.closings++; };
});

for (const [answer, closings, writes] of [['save', 1, 1], ['leave', 1, 0], ['cancel', 0, 0]]) {
    pageTest(`unsavedChangesAreAskedForBeforeClosing_${answer}`, written(sample), async (page) => {
        await watchClosing(page);
        await page.goTo('层数');
        await page.press('Delete');
        assert.equal(await page.page.evaluate('pageMayClose()'), false);
        assert.equal(await page.question(), '关闭前要保存属性模板吗？');
        await page.answer(answer);
        await page.page.waitForFunction((count) => window.closings === count && window.paper.writes.length <= 1, {}, closings);
        assert.equal((await page.writes()).length, writes);
    });
}

pageTest('anOpenCellIsAnUnsavedChange', written(sample), async (page) => {
    await page.goTo('层高', 'unit');
    await page.press('F2');
    await page.type('mm');
    assert.equal(await page.page.evaluate('pageMayClose()'), false);
    await page.question();
});
