// SPDX-License-Identifier: MIT
//
// The models of a project on its page.
import {Box3, Vector3} from 'three';
import {ModelBatches} from './batches.js';
import {isIn, rangeOf, unionOfFloors} from './floors.js';
import {makeFrame, say, sayPercent} from './frame.js';
import {readGlb} from './glb.js';
import {loadList, loadModel} from './loading.js';
import {showNothing, showProperties} from './properties.js';
import {Tree} from './tree.js';
import {View} from './view.js';

const farApart = 10000; // metres; models beyond that have nothing to do with each other

class Viewer {
    constructor(section) {
        this.root = section.dataset.models;
        this.frame = makeFrame(section);
        this.models = []; // {info, nodes, batches, floors, items}
        this.chosen = [-1, -1];
    }

    async start() {
        say(this.frame, '正在查询模型…');
        const list = await loadList(this.root);
        const whole = list.filter(({bytes}) => bytes > 0);
        for (const {name} of list.filter(({bytes}) => bytes === 0)) this.complain(`模型“${name}”没有可以显示的内容。`);
        if (whole.length === 0) {
            say(this.frame, '这个工程还没有模型。在程序中上传模型，转换完成后就会显示在这里。');
            return;
        }
        if (!this.open()) return;
        await this.load(whole);
        say(this.frame, this.models.length === 0 ? '没有可以显示的模型。' : '');
        if (this.models.length > 0) this.finish();
    }

    // False when the browser cannot draw.
    open() {
        const colour = getComputedStyle(document.documentElement).getPropertyValue('--ground').trim();
        this.isDark = matchMedia('(prefers-color-scheme: dark)').matches;
        this.frame.body.hidden = false;
        try {
            this.view = new View(this.frame.picture, colour, {
                onPick: (model, node) => this.choose(model, node),
                onLost: () => say(this.frame, '显卡停止了工作，请刷新页面。'),
            });
        } catch {
            this.frame.body.hidden = true;
            say(this.frame, '这个浏览器无法显示三维模型：WebGL 2 不可用。请开启硬件加速，或者换一个浏览器。');
            return false;
        }
        this.tree = new Tree(this.frame.tree, {
            onChoose: (item) => this.choose(...this.places[item]),
            onOpen: (item) => this.approach(...this.places[item]),
        });
        this.places = [];
        return true;
    }

    async load(list) {
        const bytes = list.reduce((sum, model) => sum + model.bytes, 0);
        let come = 0;
        const tell = (more) => {
            come += more;
            sayPercent(this.frame, Math.floor(come / bytes * 100));
        };
        sayPercent(this.frame, 0);
        for (const info of list) {
            try {
                this.take(info, await loadModel(this.root, info, tell));
            } catch (error) {
                this.complain(`模型“${info.name}”无法显示：${error.message}。`);
            }
        }
    }

    take(info, {glb, floors, origin}) {
        const nodes = readGlb(glb);
        const batches = new ModelBatches(nodes, this.shiftOf(origin), this.isDark);
        const number = this.models.length;
        const item = this.tree.add(info.name, -1, true);
        this.places[item] = [number, -1];
        const items = [];
        nodes.forEach(({name, extras, parent, children}, node) => {
            const isAlone = parent < 0 || nodes[parent].children.length === 1;
            items.push(this.tree.add(name || extras.type || '未命名', parent < 0 ? item : items[parent],
                isAlone && children.length > 0));
            this.places[items[node]] = [number, node];
        });
        this.models.push({info, nodes, batches, floors, item, items});
        this.view.add(batches);
        this.tree.arrange();
    }

    // Models that were moved to zero stand to each other as their places in the country do.
    shiftOf(origin) {
        const place = new Vector3(...origin);
        if (place.length() === 0) return new Vector3();
        this.origin ??= place;
        const shift = place.sub(this.origin);
        return shift.length() < farApart ? shift : new Vector3();
    }

    finish() {
        const {frame} = this;
        this.floors = unionOfFloors(this.models.map(({floors}) => floors));
        frame.floors.append(new Option('全部', ''), ...this.floors.map(({name}, n) => new Option(name, n)));
        frame.floors.disabled = this.floors.length === 0;
        frame.floors.addEventListener('change', () => this.showFloor());
        frame.whole.addEventListener('click', () => this.view.fit(this.shownBox));
        frame.search.addEventListener('input', () => this.search());
        this.showFloor();
        this.choose(-1, -1);
    }

    search() {
        const count = this.tree.search(this.frame.search.value);
        this.frame.found.textContent = this.tree.key === '' ? '' : count === 0 ? '没有找到' : `找到 ${count} 个`;
    }

    showFloor() {
        const chosen = this.frame.floors.value === '' ? null : Number(this.frame.floors.value);
        const range = rangeOf(this.floors, chosen);
        let shown = 0;
        let all = 0;
        this.shownBox = new Box3();
        for (const {batches} of this.models) {
            const nodes = batches.show((_, box) => isIn(range, box));
            batches.boxOf((node) => nodes.has(node), this.shownBox);
            shown += nodes.size;
            all += batches.visibleNodes.size;
        }
        this.shownBox.min.y = Math.max(this.shownBox.min.y, range.low);
        this.shownBox.max.y = Math.min(this.shownBox.max.y, range.high);
        this.view.cut(range);
        this.frame.shown.textContent = `显示 ${shown} / ${all} 个构件`;
    }

    // A component and all that is below it; node -1 is the model as a whole, model -1 nothing.
    isWithin(model, node) {
        const {nodes} = this.models[model];
        if (node < 0) return () => true;
        const within = new Set([node]);
        // Nodes stand behind their parents.
        for (let n = node + 1; n < nodes.length; n++) if (within.has(nodes[n].parent)) within.add(n);
        return (candidate) => within.has(candidate);
    }

    choose(model, node) {
        this.chosen = [model, node];
        this.models.forEach(({batches}, n) => batches.mark(n === model ? this.isWithin(model, node) : () => false));
        this.view.draw();
        this.tree.choose(model < 0 ? -1 : node < 0 ? this.models[model].item : this.models[model].items[node]);
        if (model < 0) showNothing(this.frame.properties);
        else this.describe(model, node);
    }

    describe(model, node) {
        const {info, nodes} = this.models[model];
        if (node < 0) {
            const count = this.models[model].batches.visibleNodes.size;
            showProperties(this.frame.properties, info.name, [['构件数', count]], {});
            return;
        }
        const {name, extras} = nodes[node];
        const facts = [['名称', name || '未命名'], ['类型', extras.type], ['编号', extras.id], ['所属模型', info.name]];
        showProperties(this.frame.properties, name || extras.type || '未命名', facts.filter(([, value]) => value),
            extras.properties ?? {});
    }

    approach(model, node) {
        this.choose(model, node);
        this.view.fit(this.models[model].batches.boxOf(this.isWithin(model, node)));
    }

    complain(text) {
        const {trouble} = this.frame;
        trouble.textContent += trouble.textContent === '' ? text : ` ${text}`;
    }
}

const section = document.querySelector('.viewer');
if (section) {
    const viewer = new Viewer(section);
    viewer.start().catch((error) => say(viewer.frame, `模型无法加载：${error.message}。`));
}
