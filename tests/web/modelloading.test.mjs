// SPDX-License-Identifier: MIT
//
// What the project page says while models come, and when they do not; and a model of very many components.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {house, houseFloors, manyBoxes} from './boxmodel.mjs';
import {newPage, withBrowser} from './browser.mjs';
import {ModelPage, patience} from './modelpage.mjs';
import {ProjectServer} from './projectserver.mjs';

let server;

withBrowser();
before(async () => {
    server = await ProjectServer.start('--workers', '0');
    server.addAccount('wang', 'secret-of-wang');
    server.addAccount('li', 'secret-of-li');
    const add = (guid, models) => {
        server.publish('wang', guid, `工程 ${guid}`);
        models.forEach(([name, files], n) => server.publishModel('wang', guid, `${guid}-model-${n}`, name, files));
    };
    const whole = {'model.glb': house(), 'floors.json': houseFloors, 'model.json': '{"origin":[0,0,0]}'};
    add('house', [['主楼', whole]]);
    add('none', []);
    add('broken', [['坏的', {'model.glb': 'no model at all, but long enough'}], ['主楼', whole]]);
    add('empty', [['空的', {'floors.json': houseFloors}]]);
    add('slow', [['大楼', {...whole, 'model.glb': house(3 << 20)}]]);
    add('many', [['一万个', {'model.glb': manyBoxes(10000)}]]);
});
after(() => server.stop());

const open = async (page, guid, account = 'wang') =>
    page.goto(await server.ticketAddress(`projects/${guid}`, account, `secret-of-${account}`));

// Complaints of the browser that hold one of `allowed` are what the test is about.
function pageTest(name, body, allowed = []) {
    test(name, async () => {
        const {page, complaints, close} = await newPage();
        try {
            await body(new ModelPage(page), page);
            assert.deepEqual(complaints.filter((text) => !allowed.some((part) => text.includes(part))), []);
        } finally {
            await close();
        }
    });
}

pageTest('aProjectWithoutModelsSaysSo', async (models, page) => {
    await open(page, 'none');
    await models.waitForText('.loading', '还没有模型');
    assert.equal(await page.$('.model canvas'), null);
});

pageTest('aModelThatCannotBeReadDoesNotKeepTheOthersAway', async (models, page) => {
    await open(page, 'broken');
    await models.ready();
    assert.ok((await models.text('.trouble')).includes('模型“坏的”无法显示'));
    assert.ok((await models.pixels()).count('blue') > 2000);
});

pageTest('aModelWithoutGeometryIsTold', async (models, page) => {
    await open(page, 'empty');
    await models.waitForText('.trouble', '模型“空的”没有可以显示的内容');
});

pageTest('theWayOfLoadingIsToldInPercent', async (models, page) => {
    await page.evaluateOnNewDocument(() => {
        window.said = [];
        document.addEventListener('DOMContentLoaded', () => {
            const loading = document.querySelector('.loading');
            if (loading) new MutationObserver(() => window.said.push(loading.textContent)).observe(loading, {childList: true});
        });
    });
    await page.emulateNetworkConditions({download: 2 << 20, upload: 2 << 20, latency: 0});
    await open(page, 'slow');
    await models.ready();
    const percents = (await page.evaluate(() => window.said)).map((text) => /^正在加载模型 (\d+)%$/.exec(text))
        .filter((found) => found).map(([, number]) => Number(number));
    assert.ok(new Set(percents).size >= 5, String(percents));
    assert.deepEqual(percents, [...percents].sort((a, b) => a - b));
    assert.equal(percents.at(-1), 100);
});

pageTest('aBrowserThatCannotDrawIsTold', async (models, page) => {
    await page.evaluateOnNewDocument(() => {
        const real = HTMLCanvasElement.prototype.getContext;
        HTMLCanvasElement.prototype.getContext = function (kind, ...rest) {
            return kind.startsWith('webgl') ? null : real.call(this, kind, ...rest);
        };
    });
    await open(page, 'house');
    await models.waitForText('.loading', 'WebGL 2 不可用');
    assert.ok(await page.$eval('.parts', ({hidden}) => hidden));
}, ['WebGLRenderer', 'WebGL context']);

pageTest('aFailureOfTheServerIsTold', async (models, page) => {
    await page.setRequestInterception(true);
    page.on('request', (request) => {
        if (request.url().endsWith('/models')) request.respond({status: 500, body: ''});
        else request.continue();
    });
    await open(page, 'house');
    await models.waitForText('.loading', '模型无法加载：服务器无法回答（500）');
}, ['500']);

pageTest('theProjectOfAStrangerShowsNoModel', async (models, page) => {
    const reply = await open(page, 'house', 'li');
    assert.equal(reply.status(), 404);
    assert.equal(await page.$('.viewer'), null);
    const statuses = await page.evaluate(async (address) => Promise.all(['models', 'models/house-model-0/model.glb']
        .map(async (path) => (await fetch(`${address}/web/projects/house/${path}`)).status)), server.address);
    assert.deepEqual(statuses, [404, 404]);
}, ['404']);

pageTest('tenThousandComponentsDoNotFreezeThePage', async (models, page) => {
    await open(page, 'many');
    await models.ready();
    assert.equal(await models.text('.shown'), '显示 10000 / 10000 个构件');
    const [rows, worst] = await page.evaluate(async () => {
        const tree = document.querySelector('.tree');
        let longest = 0;
        let most = 0;
        for (let n = 0; n <= 20; n++) {
            const start = performance.now();
            tree.scrollTop = tree.scrollHeight * n / 20;
            tree.dispatchEvent(new Event('scroll'));
            longest = Math.max(longest, performance.now() - start);
            most = Math.max(most, document.querySelectorAll('.item').length);
            await new Promise((resolve) => { requestAnimationFrame(resolve); });
        }
        return [most, longest];
    });
    assert.ok(rows > 5 && rows < 100, String(rows));
    assert.ok(worst < 1000, `${worst} ms for one step`);
    assert.equal((await models.items()).at(-1), '构件 9999');
    await page.type('.search', '9876');
    assert.deepEqual(await models.items(), ['一万个', '全部', '构件 9876']);
    await models.clickItem('构件 9876');
    await page.waitForFunction(() => document.querySelector('.properties h3')?.textContent === '构件 9876', patience);
});
