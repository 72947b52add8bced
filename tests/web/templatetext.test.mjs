// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import {withBrowser} from './browser.mjs';
import {pageTest, sample, written} from './templatepage.mjs';

withBrowser();

const shown = (page) => page.page.$eval('textarea', (field) => field.value);

pageTest('theTextOfTheTemplateIsShownToTheLetter', '{ "groups":\t[ ] ,"a": 1.0}', async (page) => {
    await page.command('json');
    assert.equal(await shown(page), '{ "groups":\t[ ] ,"a": 1.0}');
    await page.shot('json');
});

pageTest('whatIsTypedInTheTextIsInTheTable', written(sample), async (page) => {
    await page.command('json');
    await page.setJson(written({groups: [{name: '新', properties: []}]}));
    await page.command('table');
    assert.deepEqual(await page.names(), ['新']);
});

pageTest('theTextAsAWholeIsOneStepToUndo', written(sample), async (page) => {
    await page.command('json');
    await page.setJson('{"groups": []}');
    await page.command('table');
    await page.command('undo');
    assert.deepEqual(await page.value(), sample);
    assert.equal(await page.isEnabled('undo'), false);
});

pageTest('twoStaysInTheTextAreTwoStepsToUndo', written(sample), async (page) => {
    await page.command('json');
    await page.setJson('{"groups": [], "n": 1}');
    await page.command('table');
    await page.command('json');
    await page.setJson('{"groups": [], "n": 2}');
    await page.command('table');
    await page.command('undo');
    assert.deepEqual(await page.value(), {groups: [], n: 1});
});

for (const [what, text, words] of [
    ['aMissingComma', '{"a": 1\n "b": 2}', '第 2 行第 2 列：这里应为英文逗号或“}”，却是“"”'],
    ['aCommaTooMany', '[1, 2,\n]', '第 2 行第 1 列：最后一项后面不能有逗号'],
    ['anUnfinishedText', '{"a": [1, 2', '第 1 行第 12 列：文本在这里结束了，还缺少英文逗号或“]”'],
    ['anUnquotedName', '{a: 1}', '第 1 行第 2 列：这里应为用英文双引号括起来的名字，却是“a”'],
    ['singleQuotes', '{"a": \'b\'}', '第 1 行第 7 列：文字要用英文双引号括起来'],
    ['aChineseColon', '{"a"：1}', '第 1 行第 5 列：这里是中文标点“：”，请改用英文标点'],
    ['anUnknownWord', '[None]', '第 1 行第 2 列：不认识“None”，文字要用英文双引号括起来'],
    ['aBadNumber', '[01]', '第 1 行第 2 列：“01”不是正确的数字'],
    ['aLineEndInAText', '["a\nb"]', '第 1 行第 4 列：文字里不能直接换行或含有控制字符，请写成 \\n 等形式'],
    ['anOpenText', '["ab', '第 1 行第 2 列：这段文字缺少结尾的英文双引号'],
    ['aBadEscape', '["a\\x"]', '第 1 行第 4 列：反斜杠后面的字符不对，反斜杠本身要写成 \\\\'],
    ['somethingBehind', '{} x', '第 1 行第 4 列：JSON 到这里已经结束，后面有多余的内容'],
    ['aMereNumber', ' 5', '第 1 行第 2 列：最外层必须是对象 { } 或数组 [ ]'],
    ['tooDeepNesting', '['.repeat(1025), '第 1 行第 1025 列：嵌套超过 1024 层'],
]) {
    pageTest(`${what}IsToldWithItsPlace`, text, async (page) => {
        assert.equal(await page.text('#jsonMessage'), words);
        assert.equal(await shown(page), text);
        assert.equal(await page.isEnabled('table'), false);
    });
}

pageTest('theCursorStandsAtTheMistake', '{\n  "a": 1,\n  "b": x\n}', async (page) => {
    await page.shot('mistake');
    assert.equal(await page.page.$eval('textarea', (field) => field.selectionStart), 19);
    await page.page.$eval('textarea', (field) => field.setSelectionRange(0, 0));
    await page.command('goToError');
    assert.equal(await page.page.$eval('textarea', (field) => field.selectionStart), 19);
});

pageTest('aMendedTextOpensTheTable', '{"groups": [', async (page) => {
    await page.setJson('{"groups": []}');
    await page.page.waitForFunction(() => document.getElementById('jsonMessage').textContent === '');
    await page.command('table');
    assert.equal(await page.isHidden('#tablePanel'), false);
});

pageTest('aMistakeWhileTypingKeepsTheText', written(sample), async (page) => {
    await page.command('json');
    await page.setJson('{"groups": [oops');
    await page.page.waitForFunction(() => document.getElementById('jsonMessage').textContent.includes('oops'));
    assert.equal(await shown(page), '{"groups": [oops');
});

for (const [what, text, words] of [
    ['anArray', '[1, 2]', '文档没有“groups”，不是属性分组的形式，只能作为文本编辑。'],
    ['anObjectOfOtherKeys', '{"a": 1}', '文档没有“groups”，不是属性分组的形式，只能作为文本编辑。'],
    ['groupsThatAreNoList', '{"groups": {}}', '“groups”不是由对象组成的数组，只能作为文本编辑。'],
    ['aGroupThatIsNoObject', '{"groups": [1]}', '“groups”不是由对象组成的数组，只能作为文本编辑。'],
    ['aGroupWithoutProperties', '{"groups": [{"properties": []}, {}]}', '第 2 个分组没有由对象组成的数组“properties”，只能作为文本编辑。'],
]) {
    pageTest(`${what}IsShownAsTextAlone`, text, async (page) => {
        assert.equal(await page.text('#jsonMessage'), words);
        assert.equal(await shown(page), text);
        assert.equal(await page.isEnabled('table'), false);
        assert.equal(await page.isEnabled('addGroup'), false);
    });
}

pageTest('aDocumentOfAnotherShapeIsSavedToTheLetter', '{"a": 1.0}', async (page) => {
    await page.setJson('{ "a" : 1.00,\n\n"a": 12345678901234567890 }');
    assert.equal(await page.save(), '{ "a" : 1.00,\n\n"a": 12345678901234567890 }');
});

pageTest('controlJSwitchesTheView', written(sample), async (page) => {
    await page.press('Control+j');
    assert.equal(await page.isHidden('#jsonPanel'), false);
    await page.press('Control+j');
    assert.equal(await page.isHidden('#tablePanel'), false);
});
