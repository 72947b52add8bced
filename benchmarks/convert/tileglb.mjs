// SPDX-License-Identifier: MIT
//
// node tileglb.mjs INPUT OUTPUT BYTES
//
// A row of the same model until the file has so many bytes. Each copy is a thousandth larger than the one before, so
// that no two have the same surfaces and nobody can keep one for all.
import fs from 'node:fs';

const [input, output, bytes] = process.argv.slice(2);
const float = 5126;

const source = fs.readFileSync(input);
const textSize = source.readUInt32LE(12);
const text = JSON.parse(source.toString('utf8', 20, 20 + textSize));
const binary = source.subarray(28 + textSize, 28 + textSize + text.buffers[0].byteLength);
const binarySize = Math.ceil(binary.length / 4) * 4;
const places = new Set(text.meshes.flatMap((mesh) => mesh.primitives.map((each) => each.attributes.POSITION)));

function enlarged(factor) {
    const copy = Buffer.alloc(binarySize);
    binary.copy(copy);
    for (const index of places) {
        const accessor = text.accessors[index];
        const view = text.bufferViews[accessor.bufferView];
        if (accessor.componentType !== float)
            throw new Error('corners that are no floats');
        for (let i = 0; i < accessor.count; ++i) {
            const at = (view.byteOffset ?? 0) + (accessor.byteOffset ?? 0) + i * (view.byteStride ?? 12);
            for (const axis of [0, 4, 8])
                copy.writeFloatLE(copy.readFloatLE(at + axis) * factor, at + axis);
        }
    }
    return copy;
}

const count = Math.ceil(Number(bytes) / binarySize);
const tiled = { ...text, scenes: [{ nodes: [] }], scene: 0, nodes: [], meshes: [], accessors: [], bufferViews: [],
    buffers: [{ byteLength: count * binarySize }] };
const shift = (value, by) => (value === undefined ? {} : by(value));

function add(number) {
    const base = { node: tiled.nodes.length, mesh: tiled.meshes.length, accessor: tiled.accessors.length,
        view: tiled.bufferViews.length };
    const factor = 1 + number / 1000;
    for (const view of text.bufferViews)
        tiled.bufferViews.push({ ...view, byteOffset: (view.byteOffset ?? 0) + number * binarySize });
    text.accessors.forEach((each, index) => {
        const scaled = places.has(index) ? { min: each.min.map((value) => Math.fround(value * factor)),
            max: each.max.map((value) => Math.fround(value * factor)) } : {};
        tiled.accessors.push({ ...each, ...scaled, bufferView: each.bufferView + base.view });
    });
    for (const mesh of text.meshes)
        tiled.meshes.push({ ...mesh, primitives: mesh.primitives.map((each) => ({ ...each,
            indices: each.indices + base.accessor,
            attributes: Object.fromEntries(Object.entries(each.attributes).map(([key, at]) => [key, at + base.accessor])) })) });
    for (const node of text.nodes)
        tiled.nodes.push({ ...node, ...shift(node.mesh, (mesh) => ({ mesh: mesh + base.mesh })),
            ...shift(node.children, (all) => ({ children: all.map((child) => child + base.node) })) });
    tiled.scenes[0].nodes.push(tiled.nodes.length);
    tiled.nodes.push({ name: `tile ${number}`, translation: [number * 1000, 0, 0],
        children: text.scenes[text.scene ?? 0].nodes.map((node) => node + base.node) });
}

for (let number = 0; number < count; ++number)
    add(number);
const json = Buffer.from(JSON.stringify(tiled));
const padded = Buffer.concat([json, Buffer.alloc((4 - (json.length % 4)) % 4, ' ')]);
const numbers = (...values) => Buffer.from(Uint32Array.from(values).buffer);
const file = fs.openSync(output, 'w');
const all = 28 + padded.length + count * binarySize;
fs.writeSync(file, Buffer.concat([numbers(0x46546c67, 2, all, padded.length, 0x4e4f534a), padded,
    numbers(count * binarySize, 0x004e4942)]));
for (let number = 0; number < count; ++number)
    fs.writeSync(file, enlarged(1 + number / 1000));
fs.closeSync(file);
