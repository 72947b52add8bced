// SPDX-License-Identifier: MIT
//
// look.mjs URL PAGE MODEL: keeps a picture of a project's page and one of the models on it, once they stand there.
import {after, test} from 'node:test';
import {newPage, withBrowser} from './browser.mjs';
import {ModelPage, patience} from './modelpage.mjs';

const [url, pagePicture, modelPicture] = process.argv.slice(2);

withBrowser();

test('the models of a project are seen', async () => {
    const {page, complaints, close} = await newPage();
    after(close);
    await page.setViewport({width: 1280, height: 1200});
    await page.goto(url, {waitUntil: 'load', ...patience});
    const models = new ModelPage(page);
    await models.ready();
    await models.pixels(); // until they stand still
    await page.screenshot({path: pagePicture});
    await page.screenshot({path: modelPicture, clip: await models.frame()});
    if (complaints.length > 0) throw new Error(complaints.join('\n'));
});
