// SPDX-License-Identifier: MIT
'use strict';

// JSON without loss. The browser's own parser would round large numbers, turn 1.0 into 1 and drop double keys, and
// would say nothing useful about a mistake. Nodes are never changed, so that every step of an editing session can
// share what it has not touched with the step before:
//   {t: 'object', e: [{k, v}, ...]}   {t: 'array', i: [...]}   {t: 'string', v}   {t: 'number', raw}
//   {t: 'boolean', v}   {t: 'null'}

// As deep as the program that keeps the text can read.
const JSON_DEPTH = 1024;

class JsonError extends Error {
    constructor(text, offset, words) {
        const before = text.slice(0, offset);
        const line = before.split('\n').length;
        const column = offset - (before.lastIndexOf('\n') + 1) + 1;
        super(`第 ${line} 行第 ${column} 列：${words}`);
        this.offset = offset;
        this.line = line;
        this.column = column;
    }
}

class JsonReader {
    constructor(text) {
        this.text = text;
        this.at = 0;
        this.depth = 0;
    }

    document() {
        this.blanks();
        const node = this.value();
        this.blanks();
        if (this.at < this.text.length) this.fail('JSON 到这里已经结束，后面有多余的内容');
        return node;
    }

    fail(words, offset = this.at) {
        throw new JsonError(this.text, offset, words);
    }

    here() {
        const character = String.fromCodePoint(this.text.codePointAt(this.at) || 0);
        return `“${character}”`;
    }

    blanks() {
        for (;;) {
            const c = this.text.charCodeAt(this.at);
            if (c !== 32 && c !== 10 && c !== 13 && c !== 9) return;
            this.at++;
        }
    }

    expected(what) {
        if (this.at >= this.text.length) this.fail(`文本在这里结束了，还缺少${what}`);
        if ('，：“”‘’｛｝［］'.includes(this.text[this.at])) this.fail(`这里是中文标点${this.here()}，请改用英文标点`);
        this.fail(`这里应为${what}，却是${this.here()}`);
    }

    value() {
        switch (this.text[this.at]) {
            case '{': return this.nested(() => this.object());
            case '[': return this.nested(() => this.array());
            case '"': return {t: 'string', v: this.string()};
            case '\'': return this.fail('文字要用英文双引号括起来');
            default: return this.plain();
        }
    }

    nested(read) {
        if (++this.depth > JSON_DEPTH) this.fail(`嵌套超过 ${JSON_DEPTH} 层`);
        const node = read();
        this.depth--;
        return node;
    }

    // Calls `item` for what stands between `open` and `close`, separated by commas.
    list(close, item) {
        this.at++;
        this.blanks();
        if (this.text[this.at] === close) {
            this.at++;
            return;
        }
        for (;;) {
            item();
            this.blanks();
            const character = this.text[this.at];
            if (character !== ',' && character !== close) this.expected(`英文逗号或“${close}”`);
            this.at++;
            if (character === close) return;
            this.blanks();
            if (this.text[this.at] === close) this.fail(`最后一项后面不能有逗号`, this.at);
        }
    }

    object() {
        const entries = [];
        this.list('}', () => {
            if (this.text[this.at] === '\'') this.fail('名字要用英文双引号括起来');
            if (this.text[this.at] !== '"') this.expected('用英文双引号括起来的名字');
            const k = this.string();
            this.blanks();
            if (this.text[this.at] !== ':') this.expected('英文冒号');
            this.at++;
            this.blanks();
            entries.push({k, v: this.value()});
        });
        return {t: 'object', e: entries};
    }

    array() {
        const items = [];
        this.list(']', () => items.push(this.value()));
        return {t: 'array', i: items};
    }

    string() {
        const start = this.at++;
        const plain = /[^"\\\u0000-\u001f]*/y;
        for (;;) {
            plain.lastIndex = this.at;
            plain.test(this.text);
            this.at = plain.lastIndex;
            const c = this.text[this.at];
            if (c === '"') break;
            if (c === undefined) this.fail('这段文字缺少结尾的英文双引号', start);
            if (c !== '\\') this.fail('文字里不能直接换行或含有控制字符，请写成 \\n 等形式');
            this.escape();
        }
        this.at++;
        const raw = this.text.slice(start, this.at);
        return raw.includes('\\') ? JSON.parse(raw) : raw.slice(1, -1);
    }

    escape() {
        const found = /\\(?:["\\/bfnrt]|u[0-9a-fA-F]{4})/y;
        found.lastIndex = this.at;
        if (!found.test(this.text)) this.fail('反斜杠后面的字符不对，反斜杠本身要写成 \\\\');
        this.at = found.lastIndex;
    }

    plain() {
        const number = /-?(?:0|[1-9][0-9]*)(?:\.[0-9]+)?(?:[eE][+-]?[0-9]+)?(?![0-9A-Za-z.+_-])/y;
        number.lastIndex = this.at;
        const found = number.exec(this.text);
        if (found) {
            this.at = number.lastIndex;
            return {t: 'number', raw: found[0]};
        }
        const word = /[0-9A-Za-z_$.+-]+/y;
        word.lastIndex = this.at;
        const [text] = word.exec(this.text) || [''];
        const node = {true: {t: 'boolean', v: true}, false: {t: 'boolean', v: false}, null: {t: 'null'}}[text];
        if (!node && /^[-+.0-9]/.test(text)) this.fail(`“${text}”不是正确的数字`);
        if (!node && text) this.fail(`不认识“${text}”，文字要用英文双引号括起来`);
        if (!node) this.expected('一个值');
        this.at += text.length;
        return node;
    }
}

// The document as a node; throws a JsonError. A value that is neither object nor array is none for the program that
// keeps it.
function parseJson(text) {
    const node = new JsonReader(text).document();
    if (node.t !== 'object' && node.t !== 'array') {
        throw new JsonError(text, text.search(/\S/), '最外层必须是对象 { } 或数组 [ ]');
    }
    return node;
}

function scalarText(node) {
    switch (node.t) {
        case 'string': return JSON.stringify(node.v);
        case 'number': return node.raw;
        case 'boolean': return node.v ? 'true' : 'false';
        default: return 'null';
    }
}

// `indent` is the number of blanks for each level, 0 for everything on one line.
function writeJson(node, indent = 4) {
    const parts = [];
    const lineEnd = indent > 0 ? '\n' : '';
    const colon = indent > 0 ? ': ' : ':';
    const writeList = (open, close, items, depth, item) => {
        if (items.length === 0) {
            parts.push(open, close);
            return;
        }
        const inner = lineEnd + ' '.repeat(indent * (depth + 1));
        parts.push(open);
        items.forEach((each, index) => {
            parts.push(index > 0 ? ',' : '', inner);
            item(each);
        });
        parts.push(lineEnd, ' '.repeat(indent * depth), close);
    };
    const write = (value, depth) => {
        if (value.t === 'object') {
            writeList('{', '}', value.e, depth, ({k, v}) => {
                parts.push(JSON.stringify(k), colon);
                write(v, depth + 1);
            });
        } else if (value.t === 'array') {
            writeList('[', ']', value.i, depth, (each) => write(each, depth + 1));
        } else {
            parts.push(scalarText(value));
        }
    };
    write(node, 0);
    return parts.join('') + lineEnd;
}

// The value under a key; of a double key the last one, as every other reader takes it.
function memberOf(node, key) {
    for (let n = node.e.length - 1; n >= 0; n--) {
        if (node.e[n].k === key) return node.e[n].v;
    }
    return undefined;
}

// The object with another value under a key, which keeps its place; without the key when `value` is undefined.
function withMember(node, key, value) {
    const has = memberOf(node, key) !== undefined;
    if (value === undefined) return {t: 'object', e: node.e.filter(({k}) => k !== key)};
    if (!has) return {t: 'object', e: [...node.e, {k: key, v: value}]};
    const last = node.e.map(({k}) => k).lastIndexOf(key);
    return {t: 'object', e: node.e.map((entry, n) => (n === last ? {k: key, v: value} : entry))};
}
