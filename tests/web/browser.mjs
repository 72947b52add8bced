// SPDX-License-Identifier: MIT
//
// A real browser for the tests of web pages. Each test gets a page of its own; a page that throws or complains in its
// console fails its test.
import {existsSync} from 'node:fs';
import {after, before} from 'node:test';
import puppeteer from 'puppeteer-core';

let browser;

export function withBrowser() {
    before(async () => {
        const program = process.env.CHROMIUM || '/usr/bin/chromium';
        if (!existsSync(program)) throw new Error(`there is no browser at ${program}`);
        browser = await puppeteer.launch({
            executablePath: program,
            headless: true,
            // Models are drawn by the processor: a machine of tests has no graphics card. The browser refuses to run as
            // root without the other.
            args: ['--enable-unsafe-swiftshader', ...(process.getuid() === 0 ? ['--no-sandbox'] : [])],
        });
    });
    after(() => browser.close());
}

export async function newPage() {
    const context = await browser.createBrowserContext();
    const page = await context.newPage();
    await page.setViewport({width: 1024, height: 800});
    // A machine that does other things besides is slow, not broken.
    page.setDefaultTimeout(120000);
    const complaints = [];
    page.on('pageerror', (error) => complaints.push(String(error)));
    page.on('console', (message) => {
        if (message.type() === 'error') complaints.push(message.text());
    });
    return {page, complaints, close: () => context.close()};
}
