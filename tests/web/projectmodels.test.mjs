// SPDX-License-Identifier: MIT
//
// The models of a project on its page, drawn by a real browser.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {blue, boxModel, drawing, house, houseFloors} from './boxmodel.mjs';
import {newPage, withBrowser} from './browser.mjs';
import {ModelPage} from './modelpage.mjs';
import {ProjectServer} from './projectserver.mjs';

let server;

withBrowser();
before(async () => {
    server = await ProjectServer.start('--workers', '0');
    server.addAccount('wang', 'secret-of-wang');
    const add = (guid, models) => {
        server.publish('wang', guid, `工程 ${guid}`);
        models.forEach(([name, files], n) => server.publishModel('wang', guid, `${guid}-model-${n}`, name, files));
    };
    const whole = {'model.glb': house(), 'floors.json': houseFloors, 'model.json': '{"origin":[0,0,0]}'};
    add('house', [['主楼', whole]]);
    add('drawing', [['图纸', {'model.glb': drawing()}]]);
    const annex = boxModel([{name: '裙楼墙', box: [[14, 0, 0], [20, 2.5, 10]], colour: blue}]);
    add('two', [['主楼', whole], ['裙楼', {'model.glb': annex, 'floors.json': houseFloors}]]);
});
after(() => server.stop());

const open = async (page, guid) => page.goto(await server.ticketAddress(`projects/${guid}`, 'wang', 'secret-of-wang'));

function pageTest(name, body) {
    test(name, async () => {
        const {page, complaints, close} = await newPage();
        try {
            await body(new ModelPage(page), page);
            assert.deepEqual(complaints, []);
        } finally {
            await close();
        }
    });
}

function houseTest(name, body) {
    pageTest(name, async (models, page) => {
        await open(page, 'house');
        await models.ready();
        await body(models, page);
    });
}

houseTest('theModelIsSeen', async (models) => {
    const picture = await models.pixels();
    assert.ok(picture.drawn > 20000, String(picture.drawn));
    assert.ok(picture.count('green') > 2000, String(picture.count('green')));
    assert.ok(picture.count('blue') > 2000, String(picture.count('blue')));
    assert.equal(await models.text('.shown'), '显示 4 / 4 个构件');
});

houseTest('aFloorHidesWhatIsAboveItsCeiling', async (models) => {
    await models.chooseFloor('一层');
    const picture = await models.pixels();
    assert.equal(picture.count('blue'), 0);
    assert.ok(picture.count('green') > 2000, String(picture.count('green')));
    assert.equal(await models.text('.shown'), '显示 2 / 4 个构件');
});

houseTest('aFloorHidesWhatIsBelowIt', async (models) => {
    await models.chooseFloor('二层');
    const picture = await models.pixels();
    assert.equal(picture.count('green'), 0);
    assert.ok(picture.count('blue') > 2000, String(picture.count('blue')));
    assert.equal(await models.text('.shown'), '显示 2 / 4 个构件');
});

houseTest('allFloorsShowEverythingAgain', async (models) => {
    const whole = await models.pixels();
    await models.chooseFloor('一层');
    assert.ok((await models.pixels()).differsFrom(whole));
    await models.chooseFloor('全部');
    assert.ok(!(await models.pixels()).differsFrom(whole));
});

houseTest('theMouseTurnsTheModel', async (models, page) => {
    const still = await models.pixels();
    const {x, y} = await (await page.$('.model canvas')).boundingBox();
    await page.mouse.move(x + 100, y + 100);
    await page.mouse.down();
    await page.mouse.move(x + 220, y + 130, {steps: 5});
    await page.mouse.up();
    assert.ok((await models.pixels()).differsFrom(still));
    assert.ok((await models.text('.properties')).includes('点击模型'), 'turning has chosen something');
});

houseTest('aFingerTurnsTheModel', async (models, page) => {
    const still = await models.pixels();
    const {x, y} = await (await page.$('.model canvas')).boundingBox();
    await page.touchscreen.touchStart(x + 100, y + 100);
    for (let n = 1; n <= 5; n++) await page.touchscreen.touchMove(x + 100 + 25 * n, y + 100 + 5 * n);
    await page.touchscreen.touchEnd();
    assert.ok((await models.pixels()).differsFrom(still));
});

for (const key of ['ArrowLeft', 'ArrowUp', 'Shift+ArrowRight', '+', '-']) {
    houseTest(`theKeysMoveTheModel ${key}`, async (models, page) => {
        const still = await models.pixels();
        await page.focus('.model canvas');
        const [main, held] = key.length > 1 ? key.split('+').reverse() : [key];
        if (held) await page.keyboard.down(held);
        await page.keyboard.press(main);
        if (held) await page.keyboard.up(held);
        assert.ok((await models.pixels()).differsFrom(still));
    });
}

houseTest('aClickedComponentIsMarkedAndTellsItsProperties', async (models, page) => {
    const before = await models.pixels();
    assert.equal(before.count('azure'), 0);
    await models.clickColour('blue');
    await models.waitForText('.properties h3', '二层墙');
    assert.deepEqual(await models.properties(),
        {名称: '混凝土', 类型: 'IfcWall', 编号: 'W2', 所属模型: '主楼', 等级: '一级'});
    assert.equal(await models.text('.item[aria-selected=true]'), '二层墙');
    const marked = await models.pixels();
    assert.ok(marked.count('azure') > 2000, String(marked.count('azure')));
    assert.equal(marked.count('blue'), 0);
    await page.focus('.model canvas');
    await page.keyboard.press('Escape');
    assert.equal((await models.pixels()).count('azure'), 0);
});

houseTest('whatIsCutAwayCannotBeClicked', async (models) => {
    await models.chooseFloor('一层');
    await models.clickColour('green');
    await models.waitForText('.properties h3', '一层墙');
});

houseTest('aComponentOfTheTreeIsMarkedWithAllBelowIt', async (models) => {
    await models.clickItem('二层');
    await models.waitForText('.properties h3', '二层');
    const picture = await models.pixels();
    assert.ok(picture.count('azure') > 2000, String(picture.count('azure')));
    assert.equal(picture.count('blue'), 0);
    assert.ok(picture.count('green') > 2000, 'the other floor is marked too');
});

houseTest('theTreeFollowsTheParents', async (models, page) => {
    assert.deepEqual(await models.items(), ['主楼', '住宅楼', '一层', '二层']);
    await (await page.$('.item[aria-expanded=false] .arrow')).click();
    assert.deepEqual(await models.items(), ['主楼', '住宅楼', '一层', '一层地面', '一层墙', '二层']);
    assert.deepEqual(await page.$$eval('.item', (items) => items.map((item) => item.getAttribute('aria-level'))),
        ['1', '2', '3', '4', '4', '3']);
});

houseTest('theTreeIsWalkedByKeys', async (models, page) => {
    await models.clickItem('一层');
    for (const key of ['ArrowRight', 'ArrowRight', 'ArrowDown']) await page.keyboard.press(key);
    await models.waitForText('.properties h3', '一层墙');
    await page.keyboard.press('ArrowLeft');
    await page.keyboard.press('ArrowLeft');
    assert.deepEqual(await models.items(), ['主楼', '住宅楼', '一层', '二层']);
});

houseTest('theTreeIsSearched', async (models, page) => {
    await page.type('.search', '墙');
    assert.deepEqual(await models.items(), ['主楼', '住宅楼', '一层', '一层墙', '二层', '二层墙']);
    assert.equal(await models.text('.found'), '找到 2 个');
    await page.type('.search', '纸');
    assert.equal(await models.text('.found'), '没有找到');
    assert.deepEqual(await models.items(), []);
});

pageTest('allModelsOfAProjectAreShown', async (models, page) => {
    await open(page, 'two');
    await models.ready();
    assert.equal(await models.text('.shown'), '显示 5 / 5 个构件');
    assert.deepEqual((await models.items()).filter((name) => name.endsWith('楼')), ['主楼', '住宅楼', '裙楼']);
    assert.deepEqual(await page.$$eval('.floors option', (all) => all.map(({textContent}) => textContent)), ['全部', '一层', '二层']);
    await models.chooseFloor('一层');
    assert.equal(await models.text('.shown'), '显示 3 / 5 个构件');
    await models.clickItem('裙楼墙');
    assert.equal((await models.properties()).所属模型, '裙楼');
});

pageTest('noRequestLeavesTheServer', async (models, page) => {
    const asked = [];
    page.on('request', (request) => asked.push(request.url()));
    await open(page, 'two');
    await models.ready();
    assert.ok(asked.some((address) => address.endsWith('/model.glb')), asked.join('\n'));
    assert.deepEqual(asked.filter((address) => !address.startsWith(`${server.address}/web/`)), []);
});

pageTest('linesAreSeenAndCanBeClicked', async (models, page) => {
    await open(page, 'drawing');
    await models.ready();
    const picture = await models.pixels();
    assert.ok(picture.count('green') > 500, String(picture.count('green')));
    assert.ok(picture.count('blue') > 500, String(picture.count('blue')));
    const [x, y] = picture.centreOf('blue');
    const canvas = await (await page.$('.model canvas')).boundingBox();
    await page.mouse.click(canvas.x + x, canvas.y + y);
    await models.waitForText('.properties h3', '蓝线');
    const marked = await models.pixels();
    assert.equal(marked.count('blue'), 0);
    assert.ok(marked.count('azure') > 500, String(marked.count('azure')));
    assert.ok(marked.count('green') > 500, 'the other lines are marked too');
});
