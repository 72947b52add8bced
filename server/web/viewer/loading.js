// SPDX-License-Identifier: MIT
//
// Fetches what the page shows. `tell` hears how many bytes have come.

export class Refused extends Error {}

async function ask(address) {
    const reply = await fetch(address);
    if (reply.status === 403 || reply.status === 404) throw new Refused('登录已经结束，或者工程已经不在了，请从程序重新打开这个页面');
    if (!reply.ok) throw new Error(`服务器无法回答（${reply.status}）`);
    return reply;
}

async function bytesOf(reply, size, tell) {
    const bytes = new Uint8Array(size);
    const reader = reply.body.getReader();
    let at = 0;
    for (let step = await reader.read(); !step.done; step = await reader.read()) {
        if (at + step.value.length > size) throw new Error('模型在加载时有了变化，请刷新页面');
        bytes.set(step.value, at);
        at += step.value.length;
        tell(step.value.length);
    }
    if (at < size) throw new Error('模型没有完整传到');
    return bytes.buffer;
}

export async function loadList(address) {
    return (await (await ask(address)).json()).models;
}

// A model without floors has none; a model without facts stands at its own zero.
async function jsonOrNothing(folder, name, files, nothing) {
    if (!files.includes(name)) return nothing;
    return (await ask(folder + name)).json().catch(() => nothing);
}

export async function loadModel(root, model, tell) {
    const folder = `${root}/${encodeURIComponent(model.id)}/`;
    const [glb, floors, facts] = await Promise.all([
        ask(`${folder}model.glb`).then((reply) => bytesOf(reply, model.bytes, tell)),
        jsonOrNothing(folder, 'floors.json', model.files, []),
        jsonOrNothing(folder, 'model.json', model.files, {}),
    ]);
    return {glb, floors: Array.isArray(floors) ? floors : [], origin: facts.origin ?? [0, 0, 0]};
}
