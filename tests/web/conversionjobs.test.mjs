// SPDX-License-Identifier: MIT
//
// The conversions on the console, with the real server, its worker, and a converter that does what a test says.
import assert from 'node:assert/strict';
import {after, before, beforeEach, test} from 'node:test';
import {chmodSync, existsSync, mkdtempSync, readFileSync, readdirSync, renameSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {setTimeout as sleep} from 'node:timers/promises';
import {newPage, withBrowser} from './browser.mjs';
import {ProjectServer} from './projectserver.mjs';

const patience = {timeout: 60000};
let server;
let here;

withBrowser();
before(async () => {
    here = mkdtempSync(join(tmpdir(), 'torvo-converter-'));
    const converter = join(here, 'converter');
    // Tells what stands in "percent" as long as there is no "end", which it then says as its reason.
    writeFileSync(converter, `#!/bin/bash
echo $$ >${here}/pid.new
mv ${here}/pid.new ${here}/pid
while [[ ! -e ${here}/end ]]; do
    echo "{\\"percent\\": $(<${here}/percent)}"
    sleep 0.2
done
echo "{\\"error\\": \\"$(<${here}/end)\\", \\"code\\": 3}"
exit 3
`);
    chmodSync(converter, 0o755);
    server = await ProjectServer.start('--workers', '1', '--converter', converter);
    server.addAccount('wang', 'secret-of-wang');
    server.addAccount('li', 'secret-of-li');
    server.publish('wang', 'tower', '塔楼');
});
after(async () => {
    await server.stop();
    rmSync(here, {recursive: true});
});
beforeEach(() => {
    rmSync(join(here, 'end'), {force: true});
    rmSync(join(here, 'pid'), {force: true});
    setPercent(10);
});

function setPercent(percent) {
    writeFileSync(join(here, 'percent.new'), String(percent));
    renameSync(join(here, 'percent.new'), join(here, 'percent'));
}

const failWith = (reason) => writeFileSync(join(here, 'end'), reason);
const order = (name) => server.orderConversion('wang', 'secret-of-wang', 'tower', name);

async function converterPid() {
    for (let n = 0; n < 300 && !existsSync(join(here, 'pid')); n++) await sleep(100);
    return Number(readFileSync(join(here, 'pid'), 'utf8'));
}

function isRunning(pid) {
    try {
        process.kill(pid, 0);
        return true;
    } catch {
        return false;
    }
}

function jobTest(name, body) {
    test(name, async () => {
        const {page, complaints, close} = await newPage();
        try {
            await page.goto(await server.ticketAddress('console', 'wang', 'secret-of-wang'));
            await body(page);
            assert.deepEqual(complaints, []);
        } finally {
            await close();
        }
    });
}

const shown = (page, id) => page.$eval(`[data-job="${id}"]`, ({textContent}) => textContent);
const waitForState = (page, id, state) => page.waitForSelector(`[data-job="${id}"][data-state=${state}]`, patience);
const waitForWords = (page, id, words) => page.waitForFunction((job, part) =>
    document.querySelector(`[data-job="${job}"]`)?.textContent.includes(part), patience, id, words);
const press = (page, id, action) => page.click(`[data-job="${id}"] [data-action=${action}]`);
const waitForNoJob = (page, id) => page.waitForFunction((job) => !document.querySelector(`[data-job="${job}"]`), patience, id);

jobTest('theProgressOfAJobMoves', async (page) => {
    assert.ok(await page.$eval('.jobs', ({hidden}) => hidden), 'a list without jobs is shown');
    const id = await order('进度');
    await waitForState(page, id, 'running');
    // A percentage is that of the conversion; the publication is the rest.
    await waitForWords(page, id, '10%');
    setPercent(60);
    await waitForWords(page, id, '58%');
    assert.ok(await page.$eval(`[data-job="${id}"] progress`, ({value, hidden}) => !hidden && value > 50));
    assert.ok((await shown(page, id)).includes('塔楼'));
    await press(page, id, 'cancel');
    await waitForNoJob(page, id);
});

jobTest('aCancelledJobEndsItsConverterAtOnce', async (page) => {
    const id = await order('取消');
    await waitForState(page, id, 'running');
    const pid = await converterPid();
    assert.ok(isRunning(pid));
    await press(page, id, 'cancel');
    const start = Date.now();
    while (isRunning(pid) && Date.now() - start < 10000) await sleep(50);
    assert.ok(!isRunning(pid), 'the converter goes on');
    await waitForNoJob(page, id);
    assert.deepEqual(readdirSync(join(server.data, 'archives')), []);
});

jobTest('aWaitingJobTellsItsPlaceAndIsCancelled', async (page) => {
    const running = await order('前面的');
    await waitForState(page, running, 'running');
    const waiting = await order('后面的');
    await waitForState(page, waiting, 'waiting');
    assert.ok((await shown(page, waiting)).includes('排在第 1 位'));
    await press(page, waiting, 'cancel');
    await waitForNoJob(page, waiting);
    assert.ok((await shown(page, running)).includes('正在转换'));
    await press(page, running, 'cancel');
    await waitForNoJob(page, running);
});

jobTest('aFailedJobTellsWhyAndWhenAndIsRetried', async (page) => {
    failWith('屋顶丢了');
    const id = await order('失败');
    await waitForState(page, id, 'failed');
    const words = await shown(page, id);
    assert.ok(words.includes('屋顶丢了'), words);
    assert.match(words, /\d{4}-\d\d-\d\d \d\d:\d\d/);
    rmSync(join(here, 'end'));
    await press(page, id, 'retry');
    await waitForState(page, id, 'running');
    assert.ok(!(await shown(page, id)).includes('屋顶丢了'));
    failWith('又丢了');
    await waitForState(page, id, 'failed');
    await press(page, id, 'cancel');
    await waitForNoJob(page, id);
});

jobTest('aHiddenPageAsksNothing', async (page) => {
    const id = await order('藏');
    await waitForState(page, id, 'running');
    const setHidden = (hidden) => page.evaluate((value) => {
        Object.defineProperty(document, 'hidden', {value, configurable: true});
        document.dispatchEvent(new Event('visibilitychange'));
    }, hidden);
    let asked = 0;
    page.on('request', (request) => { asked += request.url().endsWith('/web/jobs') ? 1 : 0; });
    await page.waitForRequest((request) => request.url().endsWith('/web/jobs'), patience);
    await setHidden(true);
    await sleep(300); // for one that is on its way
    asked = 0;
    await sleep(4000);
    assert.equal(asked, 0);
    setPercent(80);
    await setHidden(false);
    await waitForWords(page, id, '77%');
    assert.ok(asked > 0);
    await press(page, id, 'cancel');
    await waitForNoJob(page, id);
});

jobTest('aStrangerSeesNoJobAndCannotCancelIt', async (page) => {
    const id = await order('别人的');
    await waitForState(page, id, 'running');
    const other = await newPage();
    try {
        server.publish('li', 'of-li', '李的楼');
        await other.page.goto(await server.ticketAddress('console', 'li', 'secret-of-li'));
        const [jobs, status] = await other.page.evaluate(async (job) => {
            const guard = document.querySelector('meta[name=guard]').content;
            const listed = await (await fetch('jobs')).json();
            const reply = await fetch(`jobs/${job}/cancel`, {method: 'POST', headers: {'X-Torvo-Guard': guard}});
            return [listed.jobs.length, reply.status];
        }, id);
        assert.deepEqual([jobs, status], [0, 404]);
    } finally {
        await other.close();
    }
    await press(page, id, 'cancel');
    await waitForNoJob(page, id);
});

jobTest('withoutTheGuardOfThePageNothingIsCancelled', async (page) => {
    const id = await order('守卫');
    await waitForState(page, id, 'running');
    const reply = await fetch(`${server.address}/web/jobs/${id}/cancel`, {
        method: 'POST', headers: {Cookie: (await page.cookies()).map(({name, value}) => `${name}=${value}`).join('; ')},
    });
    assert.equal(reply.status, 403);
    await sleep(1500);
    assert.ok((await shown(page, id)).includes('正在转换'));
    await press(page, id, 'cancel');
    await waitForNoJob(page, id);
});
