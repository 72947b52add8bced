// SPDX-License-Identifier: MIT
//
// node dwgreader.mjs INPUT FOLDER
//
// Reads a drawing (R14 to 2018) and leaves two files in the folder: index.json (nodes, parts, what was lost) and
// geometry.bin (for each part, at its offset, its corners with six floats each, place and normal, metres, Y up, and the
// corners of its lines or triangles). Tells how far it has come as lines {"percent": n}. A program of its own because
// the library it stands on is not C++, and because a file that asks too much ends this process and no other.
import { webcrypto } from 'node:crypto';
import fs from 'node:fs';
import path from 'node:path';
import * as cad from './acad-ts.mjs';
import { Drawing } from './dwgdrawing.mjs';
import { Geometry, TooLarge } from './dwggeometry.mjs';
import { refuseToReadBehindTheEnd, watchReading } from './dwgguards.mjs';

// The library asks for it by its global name, which Node 18 does not have.
globalThis.crypto ??= webcrypto;

const badSource = 3;
const versions = ['AC1014', 'AC1015', 'AC1018', 'AC1021', 'AC1024', 'AC1027', 'AC1032'];
const readPercent = 50;
const drawnPercent = 95;
const inch = 0.0254;
const surveyFoot = 1200 / 3937;

// Metres in each unit, by the number that the file has for it. A file that says nothing is in millimetres, as drawings
// of buildings are.
const metres = [0.001, inch, 12 * inch, 1609.344, 0.001, 0.01, 1, 1000, inch * 1e-6, inch * 1e-3, 36 * inch, 1e-10, 1e-9,
    1e-6, 0.1, 10, 100, 1e9, 149597870700, 9460730472580800, 3.0856775814913673e16, surveyFoot, surveyFoot / 12,
    surveyFoot * 3];

for (const level of ['log', 'info', 'warn', 'error', 'debug'])
    console[level] = () => {};

function tell(line) {
    fs.writeSync(1, JSON.stringify(line) + '\n');
}

function fail(reason) {
    tell({ error: reason });
    process.exit(badSource);
}

function requireVersion(bytes) {
    const version = bytes.subarray(0, 6).toString('latin1');
    if (!/^(AC\d\.\d\d|AC\d{4}|MC0\.0)/.test(version))
        fail('it is no DWG file');
    if (!versions.includes(version))
        fail(`it is of the version ${version}, and those from AC1014 (R14) to AC1032 (2018) are read`);
}

function open(bytes, onUnreadable) {
    const configuration = new cad.DwgReaderConfiguration();
    // What cannot be read is counted; the rest of the drawing is worth having.
    configuration.failsafe = true;
    configuration.keepUnknownEntities = true;
    const isWhole = bytes.byteOffset === 0 && bytes.byteLength === bytes.buffer.byteLength;
    const buffer = isWhole ? bytes.buffer : bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.byteLength);
    return cad.DwgReader.readFromStreamWithConfig(buffer, configuration, (_, note) => {
        if (note.notificationType === cad.NotificationType.Error)
            onUnreadable();
    });
}

function read(input, folder) {
    const bytes = fs.readFileSync(input);
    requireVersion(bytes);
    let unreadable = 0;
    const callOff = watchReading(bytes.length);
    refuseToReadBehindTheEnd();
    const document = open(bytes, () => (unreadable += 1));
    callOff();
    if (!document.modelSpace)
        fail('it has no model space');
    tell({ percent: readPercent });

    const geometry = new Geometry(metres[document.header?.insUnits] ?? metres[0]);
    const drawing = new Drawing(geometry);
    let shown = readPercent;
    drawing.read(document, (share) => {
        const percent = readPercent + Math.floor((drawnPercent - readPercent) * share);
        if (percent > shown)
            tell({ percent: (shown = percent) });
    });
    const { parts, origin } = geometry.write(path.join(folder, 'geometry.bin'));
    fs.writeFileSync(path.join(folder, 'index.json'), JSON.stringify({
        nodes: drawing.nodes,
        floors: [],
        parts,
        origin,
        lostComponents: drawing.lostComponents,
        lostNames: drawing.lostNames,
        lostFaces: 0,
        lostTriangles: 0,
        lostKinds: unreadable > 0 ? { ...drawing.kinds, unreadable } : drawing.kinds,
    }));
    tell({ percent: 100 });
}

const [input, folder] = process.argv.slice(2);
try {
    read(input, folder);
    process.exit(0);
} catch (error) {
    fail(error instanceof TooLarge ? error.message : `it is damaged (${error?.message ?? error})`);
}
