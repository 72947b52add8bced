// SPDX-License-Identifier: MIT
'use strict';

// The text itself. A text field becomes slow with megabytes, so it holds one page of the text at a time.

const PAGE_LENGTH = 64 * 1024;

// Cuts at line ends where there are any, and never between the two halves of one character.
function pagesOf(text) {
    const pages = [];
    let at = 0;
    while (text.length - at > PAGE_LENGTH) {
        const lineEnd = text.lastIndexOf('\n', at + PAGE_LENGTH - 1);
        let end = lineEnd > at ? lineEnd + 1 : at + PAGE_LENGTH;
        const last = text.charCodeAt(end - 1);
        if (last >= 0xd800 && last <= 0xdbff) end--;
        pages.push(text.slice(at, end));
        at = end;
    }
    pages.push(text.slice(at));
    return pages;
}

class JsonView {
    // `on` has: typed(), called when the text has rested for a moment.
    constructor(panel, on) {
        this.field = panel.querySelector('textarea');
        this.pager = panel.querySelector('.pager');
        this.pageText = panel.querySelector('.page');
        this.previous = panel.querySelector('[data-step="-1"]');
        this.next = panel.querySelector('[data-step="1"]');
        this.on = on;
        this.pages = [''];
        this.at = 0;
        this.timer = 0;
        this.field.addEventListener('input', () => this.onInput());
        this.previous.addEventListener('click', () => this.turn(-1));
        this.next.addEventListener('click', () => this.turn(1));
        panel.addEventListener('keydown', (event) => {
            if (!event.altKey || (event.key !== 'PageUp' && event.key !== 'PageDown')) return;
            this.turn(event.key === 'PageUp' ? -1 : 1);
            event.preventDefault();
        });
    }

    get text() {
        return this.pages.join('');
    }

    show(text) {
        clearTimeout(this.timer);
        if (text === this.text && this.isShown) return;
        this.isShown = true;
        this.pages = pagesOf(text);
        this.showPage(Math.min(this.at, this.pages.length - 1));
    }

    showPage(at) {
        this.at = at;
        this.field.value = this.pages[at];
        // The field knows one kind of line end; a page that nobody has touched keeps its own.
        this.shown = this.field.value;
        this.field.scrollTop = 0;
        this.pager.hidden = this.pages.length < 2;
        this.pageText.textContent = `第 ${at + 1} 页，共 ${this.pages.length} 页`;
        this.previous.disabled = at === 0;
        this.next.disabled = at === this.pages.length - 1;
    }

    turn(step) {
        const to = this.at + step;
        if (to < 0 || to >= this.pages.length) return;
        this.rest();
        this.showPage(to);
        this.field.setSelectionRange(0, 0);
        this.field.focus();
    }

    onInput() {
        clearTimeout(this.timer);
        this.isTyping = true;
        this.timer = setTimeout(() => this.rest(), 300);
    }

    // Takes over what has been typed.
    rest() {
        clearTimeout(this.timer);
        if (!this.isTyping) return;
        this.isTyping = false;
        if (this.field.value === this.shown) return;
        this.shown = this.field.value;
        this.pages[this.at] = this.field.value;
        this.on.typed();
    }

    // Puts the cursor at an offset of the whole text and selects so many characters behind it.
    goTo(offset, length = 0) {
        let start = 0;
        let page = 0;
        while (page < this.pages.length - 1 && offset >= start + this.pages[page].length) {
            start += this.pages[page].length;
            page++;
        }
        if (page !== this.at) this.showPage(page);
        // A line end of two characters is one in the field.
        const before = this.pages[page].slice(0, offset - start).replace(/\r\n/g, '\n').length;
        this.field.focus();
        this.field.setSelectionRange(before, before + length);
        const line = this.field.value.slice(0, before).split('\n').length - 1;
        this.field.scrollTop = Math.max(0, line * parseFloat(getComputedStyle(this.field).lineHeight) - this.field.clientHeight / 2);
    }

    // Selects the next occurrence behind the cursor, from the start again after the last one.
    find(words) {
        this.rest();
        const text = this.text.toLowerCase();
        const here = this.pages.slice(0, this.at).join('').length + this.field.selectionEnd;
        const wanted = words.toLowerCase();
        let found = text.indexOf(wanted, here);
        if (found < 0) found = text.indexOf(wanted);
        if (found < 0) return false;
        this.goTo(found, words.length);
        return true;
    }
}
