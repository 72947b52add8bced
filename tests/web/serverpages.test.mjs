// SPDX-License-Identifier: MIT
//
// The pages of the project server, as somebody sees them whom the program has let in.
import assert from 'node:assert/strict';
import {after, before, test} from 'node:test';
import {newPage, withBrowser} from './browser.mjs';
import {ProjectServer} from './projectserver.mjs';

let server;

withBrowser();
before(async () => {
    server = await ProjectServer.start();
    server.addAccount('wang', 'secret-of-wang');
    server.addAccount('li', 'secret-of-li');
    for (let n = 1; n <= 9; n++) server.publish('wang', `guid-${n}`, `工程 ${n}`, {iotCode: n === 3 ? 'IOT-3' : ''});
    server.publish('li', 'guid-li', '<b>别人的工程</b>');
});
after(() => server.stop());

function serverTest(name, body) {
    test(name, async () => {
        const {page, complaints, close} = await newPage();
        try {
            await body(page);
            assert.deepEqual(complaints, []);
        } finally {
            await close();
        }
    });
}

const enter = async (page, path, account = 'wang') =>
    page.goto(await server.ticketAddress(path, account, `secret-of-${account}`));
const texts = (page, selector) => page.$$eval(selector, (found) => found.map(({textContent}) => textContent));
const visibleNames = (page) => page.$$eval('tbody tr', (rows) => rows.filter(({hidden}) => !hidden)
    .map((row) => row.querySelector('a').textContent));

serverTest('theConsoleListsTheProjectsOfTheAccount', async (page) => {
    await enter(page, 'console');
    assert.deepEqual((await visibleNames(page)).sort(), Array.from({length: 9}, (_, n) => `工程 ${n + 1}`));
    assert.deepEqual(await texts(page, '.who'), ['wang 的名字']);
    assert.equal(await page.$eval('table', (table) => getComputedStyle(table).borderCollapse), 'collapse');
});

serverTest('theTicketLeavesTheAddress', async (page) => {
    await enter(page, 'console');
    assert.equal(page.url(), `${server.address}/web/console`);
});

serverTest('aLongListIsSearchedByName', async (page) => {
    await enter(page, 'console');
    await page.type('input[type=search]', '7');
    assert.deepEqual(await visibleNames(page), ['工程 7']);
    assert.deepEqual(await texts(page, 'output'), ['找到 1 个']);
});

serverTest('timesAreShownInTheZoneOfTheBrowser', async (page) => {
    await page.emulateTimezone('Asia/Shanghai');
    await enter(page, 'console');
    const [time, shown] = await page.$eval('time', (element) => [element.dateTime, element.textContent]);
    const there = new Date(new Date(time).getTime() + 8 * 3600 * 1000).toISOString();
    assert.equal(shown, `${there.slice(0, 10)} ${there.slice(11, 16)}`);
});

serverTest('aProjectIsOpenedFromTheListAndTellsItsFacts', async (page) => {
    await enter(page, 'console');
    await Promise.all([page.waitForNavigation(), page.click('a[href="projects/guid-3"]')]);
    assert.deepEqual(await texts(page, 'h1'), ['工程 3']);
    const labels = await texts(page, 'dt');
    const facts = Object.fromEntries((await texts(page, 'dd')).map((text, n) => [labels[n], text]));
    assert.equal(facts['工程Guid'], 'guid-3');
    assert.equal(facts['文件数'], '1');
    assert.equal(facts['物联资产编号'], 'IOT-3');
    await Promise.all([page.waitForNavigation(), page.click('.back a')]);
    assert.equal(page.url(), `${server.address}/web/console`);
});

serverTest('aNameWithMarkupIsText', async (page) => {
    await enter(page, 'console', 'li');
    assert.deepEqual(await visibleNames(page), ['<b>别人的工程</b>']);
});

// What the browser says of the refusal itself is no mistake of the page.
async function refusal(page, address) {
    const reply = await page.goto(address);
    return [reply.status(), await page.$eval('main', (main) => main.textContent)];
}

function refusalTest(name, body) {
    test(name, async () => {
        const {page, close} = await newPage();
        try {
            await body(page);
        } finally {
            await close();
        }
    });
}

refusalTest('theProjectOfAStrangerIsNotFound', async (page) => {
    await enter(page, 'console');
    const [status, words] = await refusal(page, `${server.address}/web/projects/guid-li`);
    assert.equal(status, 404);
    assert.ok(!words.includes('别人的工程'), words);
});

refusalTest('aTicketIsGoodOnceOnly', async (page) => {
    const address = await server.ticketAddress('console', 'wang', 'secret-of-wang');
    await page.goto(address);
    const other = await newPage();
    try {
        const [status, words] = await refusal(other.page, address);
        assert.ok(status >= 400 && status < 500, String(status));
        assert.ok(!words.includes('工程 1'), words);
    } finally {
        await other.close();
    }
    await page.goto(`${server.address}/web/console`);
    assert.equal((await visibleNames(page)).length, 9);
});

refusalTest('withoutATicketNothingIsShown', async (page) => {
    const [status, words] = await refusal(page, `${server.address}/web/console`);
    assert.ok(status >= 400 && status < 500, String(status));
    assert.ok(!words.includes('工程 1'), words);
});
