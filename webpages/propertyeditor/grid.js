// SPDX-License-Identifier: MIT
'use strict';

// The table. It draws only the rows that can be seen, so that it does not matter how many there are. The keyboard stays
// on the table itself; the current cell is told to screen readers by aria-activedescendant. A row is a place, {g} or
// {g, p}; what a cell means is template.js' business.

const ROW_HEIGHT = 34;
const ROWS_AROUND = 6; // drawn beyond the edge, so that scrolling shows no hole

function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
    made.append(...children);
    return made;
}

class Grid {
    // `on` has: edit(place, column, text), toggle(place), command(name), moved() after the cursor has moved.
    constructor(scroller, on) {
        this.scroller = scroller;
        this.on = on;
        this.rows = [];
        this.root = EMPTY_TEMPLATE;
        this.marks = new Map(); // problems by "row column"
        this.cursor = {row: 0, column: 0};
        this.editing = null;
        this.head = element('div', {class: 'row head', role: 'row', 'aria-rowindex': '1'});
        this.head.append(...COLUMNS.map(({id, label}) => element('div', {class: `cell ${id}`, role: 'columnheader'}, label)));
        this.canvas = element('div', {class: 'canvas', role: 'presentation'});
        scroller.append(this.head, this.canvas);
        scroller.addEventListener('scroll', () => this.draw());
        scroller.addEventListener('keydown', (event) => this.onKey(event));
        scroller.addEventListener('mousedown', (event) => this.onPress(event));
        scroller.addEventListener('dblclick', (event) => this.onDoubleClick(event));
        new ResizeObserver(() => this.draw()).observe(scroller);
    }

    // Shows other rows. `marks` are the problems by markKey.
    show(root, rows, marks) {
        this.cancel();
        this.root = root;
        this.rows = rows;
        this.marks = marks;
        this.canvas.style.height = `${rows.length * ROW_HEIGHT}px`;
        this.scroller.setAttribute('aria-rowcount', String(rows.length + 1));
        this.setCursor(this.cursor.row, this.cursor.column, false);
    }

    static markKey({g, p}, column) {
        return `${g} ${p === undefined ? '' : p} ${column}`;
    }

    get place() {
        return this.rows[this.cursor.row] || null;
    }

    get column() {
        return COLUMNS[this.cursor.column].id;
    }

    rowOf(place) {
        return this.rows.findIndex(({g, p}) => g === place.g && p === place.p);
    }

    // A group has its name only.
    setCursor(row, column, isShown = true) {
        const last = Math.max(0, this.rows.length - 1);
        const at = Math.min(Math.max(0, row), last);
        const isGroup = this.rows[at] && this.rows[at].p === undefined;
        this.cursor = {row: at, column: isGroup ? 0 : Math.min(Math.max(0, column), COLUMNS.length - 1)};
        this.wanted = isGroup ? Math.min(Math.max(0, column), COLUMNS.length - 1) : this.cursor.column;
        if (isShown) this.scrollToCursor();
        this.draw();
        this.on.moved();
    }

    goTo(place, columnId) {
        const row = this.rowOf(place);
        if (row < 0) return false;
        this.setCursor(row, Math.max(0, COLUMNS.findIndex(({id}) => id === columnId)));
        return true;
    }

    scrollToCursor() {
        const top = this.cursor.row * ROW_HEIGHT;
        const height = this.scroller.clientHeight - ROW_HEIGHT;
        if (top < this.scroller.scrollTop) this.scroller.scrollTop = top;
        else if (top + ROW_HEIGHT > this.scroller.scrollTop + height) this.scroller.scrollTop = top + ROW_HEIGHT - height;
    }

    draw() {
        const first = Math.max(0, Math.floor(this.scroller.scrollTop / ROW_HEIGHT) - ROWS_AROUND);
        const seen = Math.ceil(this.scroller.clientHeight / ROW_HEIGHT) + 2 * ROWS_AROUND;
        const rows = this.rows.slice(first, first + seen).map((place, n) => this.rowElement(place, first + n));
        const editor = this.editing ? [this.editing.box] : [];
        for (const old of this.canvas.querySelectorAll('.row')) old.remove();
        this.canvas.prepend(...rows);
        if (editor.length > 0) this.placeEditor();
        const active = this.rows.length > 0 ? this.cellId(this.cursor.row, this.cursor.column) : '';
        this.scroller.setAttribute('aria-activedescendant', active);
    }

    cellId(row, column) {
        return `cell-${row}-${column}`;
    }

    rowElement(place, row) {
        const node = nodeAt(this.root, place);
        const isGroup = place.p === undefined;
        const made = element('div', {class: isGroup ? 'row group' : 'row', role: 'row', 'aria-rowindex': String(row + 2)});
        made.style.top = `${row * ROW_HEIGHT}px`;
        made.classList.toggle('current', row === this.cursor.row);
        const columns = isGroup ? COLUMNS.slice(0, 1) : COLUMNS;
        columns.forEach((column, n) => made.append(this.cellElement(place, node, column, row, n)));
        if (isGroup) {
            const count = propertiesOf(node).length;
            made.append(element('div', {class: 'cell count', role: 'gridcell'}, `${count} 个属性`));
        }
        return made;
    }

    cellElement(place, node, column, row, n) {
        const made = element('div', {class: `cell ${column.id}`, role: 'gridcell', id: this.cellId(row, n)});
        made.dataset.row = String(row);
        made.dataset.column = String(n);
        if (column.id === 'required') {
            made.append(element('span', {class: isRequired(node) ? 'tick on' : 'tick', role: 'checkbox',
                'aria-label': '必填', 'aria-checked': String(isRequired(node))}));
        } else {
            made.textContent = cellText(node, column.id);
        }
        const mark = this.marks.get(Grid.markKey(place, column.id));
        if (mark) {
            made.classList.add(mark.isMild ? 'doubtful' : 'wrong');
            made.title = mark.words;
            made.setAttribute('aria-invalid', 'true');
        }
        if (row === this.cursor.row && n === this.cursor.column) {
            made.classList.add('cursor');
            made.setAttribute('aria-selected', 'true');
        }
        return made;
    }

    // --- keyboard and pointer

    onKey(event) {
        if (this.editing || event.defaultPrevented) return;
        const {row} = this.cursor;
        const column = this.wanted;
        const page = Math.max(1, Math.floor(this.scroller.clientHeight / ROW_HEIGHT) - 2);
        const isPlain = !event.ctrlKey && !event.altKey && !event.metaKey;
        const ways = {
            ArrowUp: [row - 1, column], ArrowDown: [row + 1, column],
            ArrowLeft: [row, this.cursor.column - 1], ArrowRight: [row, this.cursor.column + 1],
            PageUp: [row - page, column], PageDown: [row + page, column],
            Home: event.ctrlKey ? [0, column] : [row, 0],
            End: event.ctrlKey ? [this.rows.length - 1, column] : [row, COLUMNS.length - 1],
        };
        if (event.altKey && (event.key === 'ArrowUp' || event.key === 'ArrowDown')) {
            this.on.command(event.key === 'ArrowUp' ? 'up' : 'down');
        } else if (ways[event.key] && !event.altKey) {
            this.setCursor(...ways[event.key]);
        } else if (event.key === 'Insert' && !event.ctrlKey) {
            this.on.command(event.altKey ? 'addGroup' : 'addProperty');
        } else if (event.key === 'Delete' && isPlain) {
            this.on.command('remove');
        } else if (isPlain) {
            this.onTyping(event);
            return;
        } else {
            return;
        }
        event.preventDefault();
    }

    onTyping(event) {
        if (!this.place) return;
        const isTick = this.column === 'required';
        if (isTick && (event.key === ' ' || event.key === 'Enter' || event.key === 'F2')) {
            this.on.toggle(this.place);
        } else if (isTick) {
            return;
        } else if (event.key === 'Enter' || event.key === 'F2') {
            this.edit();
        } else if (event.key === 'Process') {
            this.edit(); // an input method begins: its text goes into the field
            return;
        } else if (event.key.length === 1) {
            this.edit(event.key);
        } else {
            return;
        }
        event.preventDefault();
    }

    onPress(event) {
        const cell = event.target.closest('.cell[data-row]');
        if (!cell || event.target.closest('.editor')) return;
        this.commit();
        const row = Number(cell.dataset.row);
        const isTick = event.target.classList.contains('tick');
        this.setCursor(row, Number(cell.dataset.column), false);
        if (isTick) this.on.toggle(this.place);
        this.scroller.focus();
        event.preventDefault();
    }

    onDoubleClick(event) {
        const cell = event.target.closest('.cell[data-row]');
        if (cell && this.column !== 'required') this.edit();
    }

    // --- editing a cell

    edit(text) {
        if (!this.place) return;
        this.scrollToCursor();
        this.draw();
        const node = nodeAt(this.root, this.place);
        const field = this.fieldFor(node, text);
        const box = element('div', {class: 'editor'}, field);
        this.editing = {place: this.place, column: this.column, field, box, before: field.dataset.before};
        field.addEventListener('keydown', (event) => this.onEditorKey(event));
        field.addEventListener('blur', () => this.commit());
        this.canvas.append(box);
        this.placeEditor();
        field.focus();
        if (field.select && text === undefined) field.select();
    }

    fieldFor(node, text) {
        const label = COLUMNS[this.cursor.column].label;
        const choices = this.choicesFor(node);
        const before = this.editText(node);
        const field = element(choices ? 'select' : 'input', {'aria-label': label});
        if (choices) {
            field.append(...choices.map(([value, shown]) => element('option', {value}, shown)));
        } else {
            field.spellcheck = false;
            if (this.column === 'default' && typeOf(node) === 'date') field.placeholder = '2024-05-31';
            if (this.column === 'options') field.placeholder = '甲 | 乙 | 丙';
        }
        field.value = !choices && text !== undefined ? text : before;
        field.dataset.before = before;
        return field;
    }

    editText(node) {
        const value = memberOf(node, this.column);
        if (this.column === 'type') return typeOf(node);
        if (this.column === 'default' && value !== undefined && value.t === 'boolean') return String(value.v);
        return cellText(node, this.column);
    }

    choicesFor(node) {
        const current = this.editText(node);
        let choices = null;
        if (this.column === 'type') choices = TYPES.map(({id, label}) => [id, label]);
        if (this.column === 'default' && typeOf(node) === 'boolean') choices = [['', '（无）'], ['true', '是'], ['false', '否']];
        const options = memberOf(node, 'options');
        if (this.column === 'default' && typeOf(node) === 'choice' && isListOfTexts(options)) {
            choices = [['', '（无）'], ...options.i.map(({v}) => [v, v])];
        }
        if (choices && !choices.some(([value]) => value === current)) choices.push([current, current]);
        return choices;
    }

    placeEditor() {
        const cell = document.getElementById(this.cellId(this.cursor.row, this.cursor.column));
        const {box} = this.editing;
        box.hidden = !cell;
        if (!cell) return;
        Object.assign(box.style, {
            top: `${this.cursor.row * ROW_HEIGHT}px`, left: `${cell.offsetLeft}px`,
            width: `${cell.offsetWidth}px`, height: `${ROW_HEIGHT}px`,
        });
    }

    onEditorKey(event) {
        event.stopPropagation();
        if (event.isComposing) return;
        const {row, column} = this.cursor;
        if (event.key === 'Enter') {
            this.commit();
            this.setCursor(row + 1, column);
        } else if (event.key === 'Tab') {
            this.commit();
            this.setCursor(row, column + (event.shiftKey ? -1 : 1));
        } else if (event.key === 'Escape') {
            this.cancel();
        } else {
            if (event.ctrlKey && event.key.toLowerCase() === 's') this.on.command('save');
            else return;
        }
        event.preventDefault();
        this.scroller.focus();
    }

    commit() {
        if (!this.editing) return;
        const {place, column, field, before} = this.editing;
        this.cancel();
        if (field.value !== before) this.on.edit(place, column, field.value);
    }

    cancel() {
        if (!this.editing) return;
        const {box} = this.editing;
        this.editing = null;
        box.remove();
    }
}
