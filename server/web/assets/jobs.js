"use strict";

// The conversions on the console: asked for again and again as long as somebody looks at the page.
(() => {
const busyPause = 1000;
const idlePause = 3000;
const words = { waiting: "等待中", running: "正在转换", failed: "转换失败", done: "已完成" };
const looks = { waiting: "waiting", running: "moving", failed: "wrong", done: "good" };

const section = document.querySelector(".jobs");
if (!section)
    return;
const body = section.querySelector("tbody");
const trouble = section.querySelector(".trouble");
const guard = document.querySelector("meta[name=guard]").content;
const rows = new Map();
let timer = 0;
let asked = 0;

function element(name, look, text) {
    const made = document.createElement(name);
    if (look)
        made.className = look;
    if (text !== undefined)
        made.textContent = text;
    return made;
}

function named(text) {
    return element("bdi", "", text);
}

// The words of a state change far less often than its percentage: only what differs is touched, so that a button keeps
// the focus and a reader is not told the same again.
function setText(target, text) {
    if (target.textContent !== text)
        target.textContent = text;
}

function makeRow(job) {
    const row = element("tr");
    row.dataset.job = job.id;
    const name = element("th");
    name.scope = "row";
    name.append(named(job.name));
    const project = element("td");
    const link = element("a");
    link.href = "projects/" + encodeURIComponent(job.project);
    link.append(named(job.projectName || job.project));
    project.append(link);
    const state = element("td");
    const mark = element("span");
    const detail = element("span", "detail");
    const bar = element("progress");
    bar.max = 100;
    bar.setAttribute("aria-label", "转换进度");
    state.append(mark, " ", bar, detail);
    const actions = element("td", "actions");
    row.append(name, project, state, actions);
    return { row, mark, detail, bar, actions, state: "" };
}

function localTime(seconds) {
    const format = new Intl.DateTimeFormat("sv-SE", { dateStyle: "short", timeStyle: "short" });
    return format.format(new Date(seconds * 1000));
}

function detailOf(job) {
    if (job.state === "running")
        return Math.floor(job.percent) + "%";
    if (job.state === "waiting")
        return "排在第 " + job.place + " 位";
    const when = localTime(job.ended);
    return job.state === "failed" ? when + "　" + job.reason : when;
}

function button(job, action, text) {
    const made = element("button", "", text);
    made.type = "button";
    made.dataset.action = action;
    made.addEventListener("click", () => act(job, action, made));
    return made;
}

function showActions(shown, job) {
    shown.actions.replaceChildren();
    if (!job.mayChange)
        return;
    if (job.state === "waiting" || job.state === "running")
        shown.actions.append(button(job, "cancel", "取消"));
    if (job.state === "failed")
        shown.actions.append(button(job, "retry", "重试"), " ", button(job, "cancel", "移除"));
}

function showJob(job) {
    const shown = rows.get(job.id) || makeRow(job);
    rows.set(job.id, shown);
    if (shown.state !== job.state) {
        shown.state = job.state;
        shown.row.dataset.state = job.state;
        shown.mark.className = "state " + looks[job.state];
        shown.mark.textContent = words[job.state];
        shown.bar.hidden = job.state !== "running";
        showActions(shown, job);
    }
    shown.bar.value = job.percent;
    setText(shown.detail, detailOf(job));
    return shown.row;
}

function show(jobs) {
    const wanted = jobs.map(showJob);
    const known = new Set(jobs.map(job => job.id));
    for (const [id, { row }] of rows) {
        if (!known.has(id)) {
            row.remove();
            rows.delete(id);
        }
    }
    wanted.forEach((row, place) => {
        if (body.children[place] !== row)
            body.insertBefore(row, body.children[place] || null);
    });
    section.hidden = jobs.length === 0;
    return jobs.some(job => job.state === "waiting" || job.state === "running");
}

async function refresh() {
    const number = ++asked;
    clearTimeout(timer);
    let pause = idlePause;
    try {
        const reply = await fetch("jobs", { cache: "no-store" });
        if (reply.status === 403) {
            setText(trouble, "登录已经结束，请从程序重新打开这个页面。");
            section.hidden = false;
            return;
        }
        if (!reply.ok)
            throw new Error(String(reply.status));
        const { jobs } = await reply.json();
        if (number !== asked)
            return;
        pause = show(jobs) ? busyPause : idlePause;
        setText(trouble, "");
    } catch {
        if (number === asked)
            setText(trouble, "暂时无法获取转换进度，稍后自动重试。");
    }
    if (number === asked && !document.hidden)
        timer = setTimeout(refresh, pause);
}

async function act(job, action, source) {
    source.disabled = true;
    try {
        const reply = await fetch("jobs/" + encodeURIComponent(job.id) + "/" + action,
            { method: "POST", headers: { "X-Torvo-Guard": guard } });
        // Somebody else may have been faster: the list tells what has become of it.
        if (!reply.ok && reply.status !== 404 && reply.status !== 409)
            throw new Error(String(reply.status));
    } catch {
        source.disabled = false;
        setText(trouble, "操作没有成功，请稍后再试。");
        return;
    }
    await refresh();
    source.disabled = false;
}

document.addEventListener("visibilitychange", () => {
    clearTimeout(timer);
    if (!document.hidden)
        refresh();
});
refresh();
})();
