// SPDX-License-Identifier: MIT
//
// node tilefbx.mjs INPUT OUTPUT BYTES
//
// The same model again and again, with ids of its own each, until the file has so many bytes. For binary FBX of the
// versions whose offsets are 32 bits wide.
import fs from 'node:fs';

const [input, output, bytes] = process.argv.slice(2);
const source = fs.readFileSync(input);
const headSize = 27;
const endMark = Buffer.alloc(13);
if (source.readUInt32LE(23) >= 7500)
    throw new Error('offsets are 64 bits wide');

/// A record: its name, the raw bytes of its values, and the records in it.
function read(at) {
    const end = source.readUInt32LE(at);
    if (end === 0)
        return { end: at + endMark.length };
    const nameEnd = at + 13 + source[at + 12];
    let next = nameEnd + source.readUInt32LE(at + 8);
    const record = { end, count: source.readUInt32LE(at + 4), name: source.toString('latin1', at + 13, nameEnd),
        values: source.subarray(nameEnd, next), below: [], isOpen: next < end };
    while (next < end) {
        const below = read(next);
        if (below.name !== undefined)
            record.below.push(below);
        next = below.end;
    }
    return record;
}

function sizeOf(record) {
    return 13 + record.name.length + record.values.length +
        record.below.reduce((sum, each) => sum + sizeOf(each), record.isOpen ? endMark.length : 0);
}

function write(record, at) {
    const head = Buffer.alloc(13 + record.name.length);
    head.writeUInt32LE(at + sizeOf(record), 0);
    head.writeUInt32LE(record.count, 4);
    head.writeUInt32LE(record.values.length, 8);
    head[12] = record.name.length;
    head.write(record.name, 13, 'latin1');
    const all = [head, record.values];
    let next = at + head.length + record.values.length;
    for (const below of record.below) {
        all.push(write(below, next));
        next += sizeOf(below);
    }
    if (record.isOpen)
        all.push(endMark);
    return Buffer.concat(all);
}

/// The ids of objects are small numbers of 64 bits, 0 for the scene; what is added makes those of a copy its own.
function shifted(values, positions, number) {
    const copy = Buffer.from(values);
    for (const at of positions) {
        const id = copy.readBigInt64LE(at);
        if (id !== 0n)
            copy.writeBigInt64LE(id + (BigInt(number) << 32n), at);
    }
    return copy;
}

const records = [];
let at = headSize;
for (let record = read(at); record.name !== undefined; record = read(at)) {
    records.push(record);
    at = record.end;
}
// Two cameras or lights of one name are refused by readers, and neither has a surface.
const isSurface = (record) => record.name !== 'NodeAttribute' &&
    !(record.name === 'Model' && !record.values.toString('latin1').endsWith('Mesh'));
const footer = source.subarray(at);
const objects = records.find((each) => each.name === 'Objects');
const connections = records.find((each) => each.name === 'Connections');
const ofObject = [1]; // behind the letter that tells the type
const ofConnection = [8, 17]; // behind a text of two letters and the letter of each
const count = Math.ceil(Number(bytes) / (sizeOf(objects) + sizeOf(connections)));
const copiesOf = (record, positions) => ({ ...record, below: Array.from({ length: count }, (none, number) =>
    record.below.filter((each) => number === 0 || isSurface(each)).map((each) => ({ ...each, values: shifted(each.values, positions, number) }))).flat() });

const file = fs.openSync(output, 'w');
let written = fs.writeSync(file, source.subarray(0, headSize));
for (const record of records) {
    const tiled = record === objects ? copiesOf(record, ofObject)
        : record === connections ? copiesOf(record, ofConnection) : record;
    written += fs.writeSync(file, write(tiled, written));
}
fs.writeSync(file, endMark);
fs.writeSync(file, footer);
fs.closeSync(file);
