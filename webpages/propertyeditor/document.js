// SPDX-License-Identifier: MIT
'use strict';

// The template that is being edited, with everything that can be undone. A step is {root, text, error, place, from}: `text`
// is there when the text itself was loaded or typed, and is then kept to the letter; otherwise it is written from
// `root` when somebody asks. A step whose text is no JSON has `error` and no root.

const STEPS_KEPT = 200;

function stepOfText(text) {
    if (text.trim() === '') return {root: EMPTY_TEMPLATE, text, error: null, place: null};
    try {
        return {root: parseJson(text), text, error: null, place: null};
    } catch (error) {
        if (!(error instanceof JsonError)) throw error;
        return {root: null, text, error, place: null};
    }
}

class TemplateDocument {
    constructor(text) {
        this.load(text);
    }

    load(text) {
        this.base = text;
        this.steps = [stepOfText(text)];
        this.at = 0;
        this.saved = this.steps[0];
        // What came on one line goes back on one line.
        this.indent = text.trim() === '' || text.trim().includes('\n') ? 4 : 0;
    }

    get step() {
        return this.steps[this.at];
    }

    get root() {
        return this.step.root;
    }

    get error() {
        return this.step.error;
    }

    get text() {
        if (this.step.text === null) this.step.text = writeJson(this.root, this.indent);
        return this.step.text;
    }

    get isChanged() {
        return this.step !== this.saved;
    }

    // Why there is no table; empty when there is one.
    get tableProblem() {
        if (this.error) return '文本不是正确的 JSON';
        if (this.step.shape === undefined) this.step.shape = foreignShape(this.root);
        return this.step.shape;
    }

    get problems() {
        if (this.error || this.tableProblem) return [];
        if (!this.step.problems) this.step.problems = templateProblems(this.root);
        return this.step.problems;
    }

    // `place` is where something has changed, `from` where it was before.
    apply(root, place, from = place) {
        if (root !== this.root) this.push({root, text: null, error: null, place, from});
    }

    // What is typed in one go is one step: a large text must not be kept for every pause of the fingers.
    setText(text) {
        if (text === this.text) return;
        const step = {...stepOfText(text), isTyping: true};
        if (this.step.isTyping && this.step !== this.saved) this.steps[this.at] = step;
        else this.push(step);
    }

    endTyping() {
        this.step.isTyping = false;
    }

    push(step) {
        this.steps.length = this.at + 1;
        this.steps.push(step);
        if (this.steps.length > STEPS_KEPT) this.steps.shift();
        this.at = this.steps.length - 1;
    }

    get canUndo() {
        return this.at > 0;
    }

    get canRedo() {
        return this.at < this.steps.length - 1;
    }

    // Both give the place to look at, or null.
    undo() {
        const {from} = this.step;
        this.at--;
        return from || null;
    }

    redo() {
        this.at++;
        return this.step.place;
    }

    markSaved() {
        this.base = this.text;
        this.saved = this.step;
    }
}
