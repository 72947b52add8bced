// SPDX-License-Identifier: MIT
//
// The tree of models and their components. Only the rows that can be seen are elements of the page, so that its length
// costs nothing.

const rowHeight = 26;
const spare = 8; // rows above and below what is seen

export class Tree {
    // `onChoose` hears of a click on an item, `onOpen` of a double click.
    constructor(element, {onChoose, onOpen}) {
        this.element = element;
        this.onChoose = onChoose;
        this.onOpen = onOpen;
        this.items = [];
        this.roots = [];
        this.rows = [];
        this.chosen = -1;
        this.key = '';
        this.space = document.createElement('div');
        this.space.className = 'space';
        element.setAttribute('role', 'tree');
        element.setAttribute('aria-label', '构件');
        element.tabIndex = 0;
        element.append(this.space);
        element.addEventListener('scroll', () => this.paint());
        element.addEventListener('keydown', (event) => this.onKey(event));
        element.addEventListener('click', (event) => this.onClick(event));
        element.addEventListener('dblclick', (event) => this.onDoubleClick(event));
        new ResizeObserver(() => this.paint()).observe(element);
    }

    // Items are {name, children, parent} with numbers of items; the result is the item's number.
    add(name, parent, isOpen = false) {
        const number = this.items.length;
        this.items.push({name, parent, children: [], isOpen, depth: parent < 0 ? 0 : this.items[parent].depth + 1});
        if (parent < 0) this.roots.push(number);
        else this.items[parent].children.push(number);
        return number;
    }

    search(key) {
        this.key = key.trim().toLocaleLowerCase();
        this.found = null;
        let count = 0;
        if (this.key !== '') {
            this.found = new Set();
            this.items.forEach(({name}, number) => {
                if (!name.toLocaleLowerCase().includes(this.key)) return;
                count += 1;
                for (let item = number; item >= 0 && !this.found.has(item); item = this.items[item].parent) this.found.add(item);
            });
        }
        this.element.scrollTop = 0;
        this.arrange();
        return count;
    }

    // While something is searched, everything that leads to it is open.
    isOpen(number) {
        return this.found ? true : this.items[number].isOpen;
    }

    childrenOf(number) {
        const {children} = this.items[number];
        return this.found ? children.filter((child) => this.found.has(child)) : children;
    }

    arrange() {
        this.rows = [];
        const waiting = this.roots.filter((root) => !this.found || this.found.has(root)).reverse();
        while (waiting.length > 0) {
            const number = waiting.pop();
            this.rows.push(number);
            if (this.isOpen(number)) waiting.push(...[...this.childrenOf(number)].reverse());
        }
        this.space.style.height = `${this.rows.length * rowHeight}px`;
        this.paint();
    }

    paint() {
        const first = Math.max(0, Math.floor(this.element.scrollTop / rowHeight) - spare);
        const last = Math.min(this.rows.length, first + Math.ceil(this.element.clientHeight / rowHeight) + 2 * spare);
        this.space.replaceChildren(...this.rows.slice(first, last).map((number, n) => this.row(number, first + n)));
        if (this.rows.includes(this.chosen)) this.element.setAttribute('aria-activedescendant', `item-${this.chosen}`);
        else this.element.removeAttribute('aria-activedescendant');
    }

    row(number, place) {
        const item = this.items[number];
        const row = document.createElement('div');
        row.id = `item-${number}`;
        row.className = 'item';
        row.dataset.item = number;
        row.setAttribute('role', 'treeitem');
        row.setAttribute('aria-level', item.depth + 1);
        row.setAttribute('aria-selected', number === this.chosen);
        if (item.children.length > 0) row.setAttribute('aria-expanded', this.isOpen(number));
        row.style.top = `${place * rowHeight}px`;
        row.style.paddingInlineStart = `${4 + Math.min(item.depth, 12) * 14}px`;
        const arrow = document.createElement('span');
        arrow.className = 'arrow';
        arrow.setAttribute('aria-hidden', 'true');
        const name = document.createElement('bdi');
        name.textContent = item.name;
        row.title = item.name;
        row.append(arrow, name);
        return row;
    }

    choose(number) {
        this.chosen = number;
        for (let item = number >= 0 ? this.items[number].parent : -1; item >= 0; item = this.items[item].parent)
            this.items[item].isOpen = true;
        this.arrange();
        const place = this.rows.indexOf(number);
        if (place < 0) return;
        const top = place * rowHeight;
        const {scrollTop, clientHeight} = this.element;
        if (top < scrollTop || top + rowHeight > scrollTop + clientHeight)
            this.element.scrollTop = Math.max(0, top - clientHeight / 2);
        this.paint();
    }

    setOpen(number, isOpen) {
        this.items[number].isOpen = isOpen;
        this.arrange();
    }

    itemAt(event) {
        const row = event.target.closest('.item');
        return row ? Number(row.dataset.item) : -1;
    }

    onClick(event) {
        const number = this.itemAt(event);
        if (number < 0) return;
        if (event.target.closest('.arrow')) this.setOpen(number, !this.items[number].isOpen);
        else this.onChoose(number);
    }

    onDoubleClick(event) {
        const number = this.itemAt(event);
        if (number >= 0 && !event.target.closest('.arrow')) this.onOpen(number);
    }

    onKey(event) {
        const place = this.rows.indexOf(this.chosen);
        const number = this.chosen;
        const go = (to) => this.rows.length > 0 && this.onChoose(this.rows[Math.max(0, Math.min(this.rows.length - 1, to))]);
        const isOpen = place >= 0 && this.isOpen(number) && this.items[number].children.length > 0;
        if (event.key === 'ArrowDown') go(place + 1);
        else if (event.key === 'ArrowUp') go(place - 1);
        else if (event.key === 'Home') go(0);
        else if (event.key === 'End') go(this.rows.length - 1);
        else if (event.key === 'Enter' && place >= 0) this.onOpen(number);
        else if (event.key === 'ArrowRight' && place >= 0 && !isOpen) this.setOpen(number, true);
        else if (event.key === 'ArrowRight' && place >= 0) go(place + 1);
        else if (event.key === 'ArrowLeft' && isOpen && !this.found) this.setOpen(number, false);
        else if (event.key === 'ArrowLeft' && place >= 0 && this.items[number].parent >= 0) this.onChoose(this.items[number].parent);
        else return;
        event.preventDefault();
    }
}
