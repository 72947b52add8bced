// SPDX-License-Identifier: MIT
//
// The project page as somebody sees it who looks at models.
import {setTimeout as sleep} from 'node:timers/promises';

export const patience = {timeout: 120000};

const rim = 4;

// Colours by which pixels are told from each other.
const kinds = {
    green: ([r, g, b]) => g > r + 25 && g > b + 25,
    blue: ([r, g, b]) => b > r + 25 && b > g + 25 && g < r + 20,
    azure: ([r, g, b]) => b > g + 25 && g > r + 30,
};

export class ModelPage {
    constructor(page) {
        this.page = page;
    }

    async ready() {
        await this.page.waitForFunction(() => document.querySelector('.viewer .loading').hidden
            && Number(document.querySelector('.model canvas')?.dataset.frames) > 0, patience);
    }

    text(selector) {
        return this.page.$eval(selector, ({textContent}) => textContent);
    }

    async waitForText(selector, part) {
        await this.page.waitForFunction((wanted, words) => document.querySelector(wanted)?.textContent.includes(words),
            patience, selector, part);
    }

    // The picture, when it stands still, as pixels of the page.
    async pixels() {
        const frame = await this.frame();
        let last = '';
        for (let n = 0; n < 100; n++) {
            const shot = await this.page.screenshot({clip: frame, encoding: 'base64'});
            if (shot === last) break;
            last = shot;
            await sleep(150);
        }
        return this.decode(last);
    }

    async frame() {
        const canvas = await this.page.$('.model canvas');
        await canvas.evaluate((element) => element.scrollIntoView({block: 'center'}));
        const {x, y, width, height} = await canvas.boundingBox();
        const [left, top] = await this.page.evaluate(() => [scrollX, scrollY]);
        // Without the line that tells where the focus is.
        return {x: Math.ceil(x + left) + rim, y: Math.ceil(y + top) + rim, width: Math.floor(width) - 2 * rim,
            height: Math.floor(height) - 2 * rim};
    }

    // The page itself may not show pictures that come from elsewhere: another one takes this apart.
    async decode(shot) {
        const other = await this.page.browserContext().newPage();
        const [width, bytes] = await other.evaluate(async (data) => {
            const image = new Image();
            image.src = `data:image/png;base64,${data}`;
            await image.decode();
            const canvas = new OffscreenCanvas(image.width, image.height);
            const context = canvas.getContext('2d');
            context.drawImage(image, 0, 0);
            const {data: all} = context.getImageData(0, 0, image.width, image.height);
            let text = '';
            for (let at = 0; at < all.length; at += 32768) text += String.fromCharCode(...all.subarray(at, at + 32768));
            return [image.width, btoa(text)];
        }, shot);
        await other.close();
        await this.page.bringToFront();
        return new Picture(Buffer.from(bytes, 'base64'), width);
    }

    async chooseFloor(name) {
        const value = await this.page.$$eval('.floors option', (options, wanted) =>
            options.find(({textContent}) => textContent === wanted).value, name);
        await this.page.select('.floors', value);
    }

    // Clicks where the picture has that colour.
    async clickColour(kind) {
        const picture = await this.pixels();
        const [x, y] = picture.middleOf(kind);
        const canvas = await this.page.$('.model canvas');
        const box = await canvas.boundingBox();
        await this.page.mouse.click(box.x + rim + x, box.y + rim + y);
    }

    items() {
        return this.page.$$eval('.item', (items) => items.map(({textContent}) => textContent));
    }

    async clickItem(name) {
        const item = await this.page.waitForFunction((wanted) =>
            [...document.querySelectorAll('.item bdi')].find(({textContent}) => textContent === wanted), patience, name);
        await item.click();
    }

    // What the panel says, by the names of its lines.
    properties() {
        return this.page.$eval('.properties', (panel) => Object.fromEntries([...panel.querySelectorAll('dl div')]
            .map((line) => [line.querySelector('dt').textContent, line.querySelector('dd').textContent])));
    }
}

class Picture {
    constructor(bytes, width) {
        this.bytes = bytes;
        this.width = width;
        this.background = this.at(0);
    }

    at(place) {
        return [...this.bytes.subarray(place * 4, place * 4 + 3)];
    }

    placesOf(kind) {
        const isIt = kinds[kind];
        const places = [];
        for (let place = 0; place < this.bytes.length / 4; place++) if (isIt(this.at(place))) places.push(place);
        return places;
    }

    count(kind) {
        return this.placesOf(kind).length;
    }

    // Pixels on which something is drawn.
    get drawn() {
        let count = 0;
        for (let place = 0; place < this.bytes.length / 4; place++) {
            const [r, g, b] = this.at(place);
            if (Math.abs(r - this.background[0]) + Math.abs(g - this.background[1]) + Math.abs(b - this.background[2]) > 12)
                count += 1;
        }
        return count;
    }

    differsFrom(other) {
        return Buffer.compare(this.bytes, other.bytes) !== 0;
    }

    // The middle of all that has that colour, for what has no inside; where it is on the canvas.
    centreOf(kind) {
        const places = this.placesOf(kind);
        const mean = (values) => values.reduce((sum, value) => sum + value, 0) / values.length;
        return [rim + mean(places.map((place) => place % this.width)), rim + mean(places.map((place) => Math.floor(place / this.width)))];
    }

    // A pixel of that colour whose neighbours have it too.
    middleOf(kind) {
        const places = new Set(this.placesOf(kind));
        for (const place of places) {
            const around = [-4, 4, -4 * this.width, 4 * this.width];
            if (around.every((step) => places.has(place + step))) return [place % this.width, Math.floor(place / this.width)];
        }
        throw new Error(`nothing in the picture is ${kind}`);
    }
}
