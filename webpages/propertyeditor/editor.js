// SPDX-License-Identifier: MIT
'use strict';

// The page: ties document, table, text view and toolbar together.

const byId = (id) => document.getElementById(id);
const LISTED_PROBLEMS = 200;

class Editor {
    constructor() {
        this.card = null;
        this.document = new TemplateDocument('');
        this.view = 'table';
        this.search = '';
        this.isReady = false;
        this.isAsking = false;
        this.grid = new Grid(byId('grid'), {
            edit: (place, column, text) => this.change(withNodeAt(this.document.root, place,
                withCell(nodeAt(this.document.root, place), column, text)), place),
            toggle: (place) => this.toggle(place),
            command: (name) => this.run(name),
            moved: () => this.showButtons(),
        });
        this.json = new JsonView(byId('jsonPanel'), {typed: () => this.takeText()});
        this.commands = this.commandTable();
        this.listen();
    }

    commandTable() {
        return {
            save: () => this.save(),
            undo: () => this.step('undo'),
            redo: () => this.step('redo'),
            addGroup: () => this.addGroup(),
            addProperty: () => this.addProperty(),
            remove: () => this.remove(),
            up: () => this.move(-1),
            down: () => this.move(1),
            table: () => this.showView('table'),
            json: () => this.showView('json'),
            switch: () => this.showView(this.view === 'table' ? 'json' : 'table'),
            find: () => {
                byId('search').focus();
                byId('search').select();
            },
            problems: () => this.showProblemList(byId('problemList').hidden),
            nextProblem: () => this.nextProblem(),
            goToError: () => this.json.goTo(this.document.error.offset, 1),
            keys: () => showKeys(),
        };
    }

    run(name) {
        if (name === 'save') this.takeUnfinished();
        const button = document.querySelector(`[data-command="${name}"]`);
        if (this.isReady && !(button && button.disabled)) this.commands[name]();
    }

    listen() {
        for (const button of document.querySelectorAll('[data-command]')) {
            button.addEventListener('click', () => this.run(button.dataset.command));
        }
        document.addEventListener('keydown', (event) => this.onKey(event));
        const search = byId('search');
        search.addEventListener('input', () => this.onSearch());
        search.addEventListener('keydown', (event) => this.onSearchKey(event));
        window.addEventListener('focus', () => this.lookForAnotherText());
        window.addEventListener('beforeunload', (event) => {
            if (!this.isChanged || this.isLeaving) return;
            event.preventDefault();
            event.returnValue = '';
        });
    }

    onKey(event) {
        if (event.defaultPrevented || byId('question').open) return;
        const isInText = event.target.closest && event.target.closest('textarea, input') !== null;
        const key = event.key.toLowerCase();
        const withControl = {s: 'save', f: 'find', j: 'switch', y: 'redo', z: event.shiftKey ? 'redo' : 'undo'};
        const plain = {f1: 'keys', f8: 'nextProblem'};
        const name = event.ctrlKey && !event.altKey ? withControl[key] : plain[key];
        // In a text field these two are about the text in it.
        if (!name || (isInText && (name === 'undo' || name === 'redo'))) return;
        event.preventDefault();
        this.run(name);
    }

    // --- reading and saving

    async start() {
        try {
            this.card = await Card.connect();
            this.open(await this.card.read());
        } catch (error) {
            byId('cover').textContent = error.message;
        }
    }

    open(text) {
        this.document.load(text);
        this.isReady = true;
        byId('cover').hidden = true;
        this.view = this.document.tableProblem ? 'json' : 'table';
        this.grid.cursor = {row: 0, column: 0};
        this.render();
        if (this.document.error) this.run('goToError');
        else this.focusView();
    }

    get isChanged() {
        return this.isReady && (this.document.isChanged || this.grid.editing !== null || this.json.isTyping === true);
    }

    takeUnfinished() {
        this.grid.commit();
        this.json.rest();
    }

    async save() {
        this.takeUnfinished();
        if (!this.isReady || !this.maySave() || this.isAsking) return false;
        const text = this.document.text;
        if (await this.card.read() !== this.document.base && !await this.mayOverwrite()) return false;
        await this.card.write(text);
        if (await this.card.read() !== text) {
            this.tell('没有保存：程序没有接受这个模板。', true);
            return false;
        }
        this.document.markSaved();
        this.render();
        this.tell('已保存到信息卡；在信息卡上按“确定”后写入工程。');
        return true;
    }

    maySave() {
        if (this.document.error) {
            this.showView('json');
            this.run('goToError');
            this.tell('没有保存：文本不是正确的 JSON。', true);
            return false;
        }
        const serious = this.document.problems.filter(({isMild}) => !isMild);
        if (serious.length === 0) return true;
        this.goToProblem(serious[0]);
        this.tell(`没有保存：有 ${serious.length} 处需要修改。`, true);
        return false;
    }

    // The card may show another project by now, whose template would be lost.
    async mayOverwrite() {
        const answer = await this.question('信息卡上的模板已经不同',
            '这个页面打开以后，信息卡上的模板变了，可能是换了工程。要用这里的模板覆盖它吗？',
            [['cancel', '取消'], ['overwrite', '覆盖'], ['reload', '放弃这里的修改，读取信息卡上的模板']]);
        if (answer === 'reload') this.open(await this.card.read());
        return answer === 'overwrite';
    }

    async lookForAnotherText() {
        if (!this.isReady || this.isAsking) return;
        const text = await this.card.read();
        if (text === this.document.base) return;
        if (this.isChanged) {
            this.tell('信息卡上的模板已经变了，可能是换了工程；保存时会先询问。', true);
        } else {
            this.open(text);
            this.tell('已读取信息卡上的新模板。');
        }
    }

    // One question at a time; the answer is "cancel" while another one is open.
    async question(title, text, answers) {
        if (this.isAsking) return 'cancel';
        this.isAsking = true;
        try {
            return await ask(title, text, answers);
        } finally {
            this.isAsking = false;
            this.focusView();
        }
    }

    async askBeforeClosing() {
        const answer = await this.question('有未保存的修改', '关闭前要保存属性模板吗？',
            [['save', '保存并关闭'], ['leave', '不保存'], ['cancel', '继续编辑']]);
        if (answer === 'leave' || (answer === 'save' && await this.save())) {
            this.isLeaving = true;
            window.close();
        }
    }

    // --- editing

    change(root, place, from = place) {
        this.document.apply(root, place, from);
        this.render();
    }

    toggle(place) {
        const node = nodeAt(this.document.root, place);
        this.change(withNodeAt(this.document.root, place, withCell(node, 'required', String(!isRequired(node)))), place);
    }

    // Changes the table and goes to a place of it, which a search must not hide.
    changeAndGo(root, place, from) {
        this.setSearch('');
        this.change(root, place, from);
        this.grid.goTo(place, 'name');
        this.focusView();
    }

    addGroup() {
        this.grid.commit();
        const g = this.grid.place ? this.grid.place.g + 1 : 0;
        this.changeAndGo(addGroup(this.document.root, g), {g}, this.grid.place || {g});
    }

    addProperty() {
        this.grid.commit();
        const {place} = this.grid;
        if (!place) return;
        const p = place.p === undefined ? 0 : place.p + 1;
        this.changeAndGo(addProperty(this.document.root, place.g, p), {g: place.g, p}, place);
    }

    async remove() {
        this.grid.commit();
        const {place} = this.grid;
        if (!place) return;
        const {root} = this.document;
        const count = place.p === undefined ? propertiesOf(nodeAt(root, place)).length : 0;
        if (count > 0) {
            const name = cellText(nodeAt(root, place), 'name');
            const answer = await this.question('删除分组', `要删除分组“${name}”和其中的 ${count} 个属性吗？`,
                [['remove', '删除'], ['cancel', '取消']]);
            if (answer !== 'remove') return;
        }
        this.change(place.p === undefined ? removeGroup(root, place.g) : removeProperty(root, place.g, place.p), place);
        this.focusView();
        this.tell('已删除，可以撤销。');
    }

    move(step) {
        this.grid.commit();
        const {place} = this.grid;
        if (!place) return;
        if (this.search !== '') {
            this.tell('搜索时不能移动，请先清除搜索。', true);
            return;
        }
        const result = moved(this.document.root, place, step);
        if (!result) return;
        const {column} = this.grid;
        this.change(result.root, result.place, place);
        this.grid.goTo(result.place, column);
        this.focusView();
    }

    step(direction) {
        this.takeUnfinished();
        if (direction === 'undo' ? !this.document.canUndo : !this.document.canRedo) return;
        const place = this.document[direction]();
        if (this.document.tableProblem) this.view = 'json';
        this.render();
        if (place && this.view === 'table') this.grid.goTo(place, this.grid.column);
        this.focusView();
    }

    takeText() {
        this.document.setText(this.json.text);
        this.render();
    }

    // --- searching

    onSearch() {
        this.setSearch(byId('search').value);
        if (this.view === 'table') this.render();
    }

    setSearch(words) {
        if (byId('search').value !== words) byId('search').value = words;
        this.search = this.view === 'table' ? words : '';
    }

    onSearchKey(event) {
        const {value} = byId('search');
        if (event.key === 'Escape') {
            const {place} = this.grid;
            this.setSearch('');
            this.render();
            if (place && this.view === 'table') this.grid.goTo(place, this.grid.column);
            this.focusView();
        } else if (event.key === 'Enter' && !event.isComposing && this.view === 'json') {
            if (value !== '' && !this.json.find(value)) this.tell(`没有找到“${value}”。`, true);
        } else if ((event.key === 'Enter' && !event.isComposing) || event.key === 'ArrowDown') {
            this.focusView();
        } else {
            return;
        }
        event.preventDefault();
    }

    // --- problems

    goToProblem({place, column}) {
        if (this.view !== 'table') this.showView('table');
        this.setSearch('');
        this.render();
        this.grid.goTo(place, column);
        this.focusView();
    }

    nextProblem() {
        this.takeUnfinished();
        const {problems} = this.document;
        if (this.document.error) this.run('goToError');
        if (problems.length === 0) return;
        const rank = ({g, p}) => g * 1e7 + (p === undefined ? 0 : p + 1);
        const isBehind = ({place, column}) => {
            const here = this.grid.place || {g: -1};
            const after = COLUMNS.findIndex(({id}) => id === column) > this.grid.cursor.column;
            return rank(place) > rank(here) || (rank(place) === rank(here) && after);
        };
        this.goToProblem(problems.find(isBehind) || problems[0]);
    }

    showProblemList(isShown) {
        const list = byId('problemList');
        const {problems} = this.document;
        list.hidden = !isShown || problems.length === 0;
        byId('problemBtn').setAttribute('aria-expanded', String(!list.hidden));
        if (list.hidden) return;
        list.replaceChildren(...problems.slice(0, LISTED_PROBLEMS).map((problem) => {
            const button = element('button', {type: 'button'}, `${this.nameOf(problem.place)}：${problem.words}`);
            button.addEventListener('click', () => this.goToProblem(problem));
            return element('li', {}, button);
        }));
        if (problems.length > LISTED_PROBLEMS) {
            list.append(element('li', {class: 'more'}, `还有 ${problems.length - LISTED_PROBLEMS} 处`));
        }
    }

    nameOf({g, p}) {
        const {root} = this.document;
        const group = cellText(nodeAt(root, {g}), 'name') || `第 ${g + 1} 个分组`;
        if (p === undefined) return group;
        return `${group} / ${cellText(nodeAt(root, {g, p}), 'name') || `第 ${p + 1} 个属性`}`;
    }

    // --- showing

    showView(view) {
        this.takeUnfinished();
        if (view === 'table' && this.document.tableProblem) {
            this.tell(`不能用表格显示：${this.document.tableProblem}。`, true);
            return;
        }
        if (view === this.view) return;
        this.document.endTyping();
        this.view = view;
        this.setSearch('');
        this.render();
        this.focusView();
    }

    focusView() {
        if (this.view === 'table') this.grid.scroller.focus();
        else this.json.field.focus();
    }

    render() {
        const isTable = this.view === 'table';
        byId('tablePanel').hidden = !isTable;
        byId('jsonPanel').hidden = isTable;
        if (isTable) this.renderTable();
        else this.json.show(this.document.text);
        this.showFacts();
        this.showProblemList(!byId('problemList').hidden);
        this.showButtons();
        document.title = `${this.document.isChanged ? '● ' : ''}属性模板编辑`;
    }

    renderTable() {
        const {root, problems} = this.document;
        const marks = new Map(problems.map((problem) => [Grid.markKey(problem.place, problem.column), problem]));
        const rows = rowsOf(root, this.search);
        this.grid.show(root, rows, marks);
        byId('empty').hidden = rows.length > 0;
        byId('empty').textContent = this.search !== '' ? `没有与“${this.search}”相符的属性。`
            : '还没有属性。先用“添加分组”建立一个分组，再添加属性。';
    }

    showFacts() {
        const {error, tableProblem, problems, root} = this.document;
        const message = byId('jsonMessage');
        message.classList.toggle('wrong', Boolean(error));
        message.textContent = error ? error.message : tableProblem ? `${tableProblem}，只能作为文本编辑。` : '';
        byId('errorBtn').hidden = !error;
        byId('problemBtn').hidden = problems.length === 0;
        byId('problemBtn').textContent = `${problems.length} 处问题`;
        byId('facts').textContent = '';
        if (!tableProblem) {
            const {groups, properties} = countOf(root);
            const found = this.search ? `，找到 ${this.grid.rows.filter(({p}) => p !== undefined).length} 个` : '';
            byId('facts').textContent = `${groups} 个分组，${properties} 个属性${found}`;
        }
        byId('changed').textContent = this.document.isChanged ? '有未保存的修改' : '';
        this.tell('');
    }

    showButtons() {
        if (!this.isReady) return;
        const isTable = this.view === 'table';
        const hasPlace = isTable && this.grid.place !== null;
        const usable = {
            save: this.document.isChanged, undo: this.document.canUndo, redo: this.document.canRedo,
            addGroup: isTable, addProperty: hasPlace, remove: hasPlace, up: hasPlace, down: hasPlace,
            table: this.document.tableProblem === '',
        };
        for (const button of document.querySelectorAll('[data-command]')) {
            button.disabled = usable[button.dataset.command] === false;
        }
        byId('tableBtn').setAttribute('aria-pressed', String(isTable));
        byId('jsonBtn').setAttribute('aria-pressed', String(!isTable));
    }

    tell(words, isWrong = false) {
        const status = byId('status');
        status.textContent = words;
        status.classList.toggle('wrong', isWrong);
    }
}

const editor = new Editor();

// The window asks this before it closes: false says that the page asks the user itself.
function pageMayClose() {
    editor.takeUnfinished();
    if (!editor.isChanged) return true;
    editor.askBeforeClosing();
    return false;
}

editor.start();
