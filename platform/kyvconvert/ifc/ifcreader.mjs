// SPDX-License-Identifier: MIT
//
// node ifcreader.mjs INPUT FOLDER
//
// Reads a building (IFC 2x3, 4, 4x3) and leaves two files in the folder: index.json (nodes, parts, storeys, what was
// lost) and geometry.bin (for each part, at its offset, its corners with six floats each, place and normal, metres, Y up,
// and its triangles). Tells how far it has come as lines {"percent": n}. A program of its own because the library it
// stands on is WebAssembly, and because what it cannot bear ends this process and no other.
import fs from 'node:fs';
import path from 'node:path';
import { createRequire } from 'node:module';
import { readTree } from './ifctree.mjs';
import { GeometryFile } from './ifcgeometry.mjs';

const ifc = createRequire(import.meta.url)('./web-ifc-api-node.js');
const badSource = 3;
const mostNamed = 20;

let faults = 0;
for (const level of ['log', 'info', 'warn', 'error', 'debug']) {
    // The library tells what it cannot build as lines of a log.
    console[level] = (...words) => {
        if (String(words[0]).includes('[error]'))
            faults += 1;
    };
}

function tell(line) {
    fs.writeSync(1, JSON.stringify(line) + '\n');
}

function fail(reason) {
    tell({ error: reason });
    process.exit(badSource);
}

function hasSchema(bytes) {
    const head = Buffer.from(bytes.subarray(0, 65536)).toString('latin1');
    return /^\s*ISO-10303-21;/.test(head) && /FILE_SCHEMA\s*\(\s*\(\s*'IFC(2X|4)/i.test(head);
}

function isWhole(bytes) {
    return Buffer.from(bytes.subarray(Math.max(0, bytes.length - 4096))).includes('END-ISO-10303-21');
}

async function read(input, folder) {
    const bytes = fs.readFileSync(input);
    if (!hasSchema(bytes))
        fail('it is no IFC file of the versions 2x3, 4 or 4x3');
    if (!isWhole(bytes))
        fail('it ends before its end');
    const api = new ifc.IfcAPI();
    await api.Init((name, prefix) => prefix + name, true);
    api.SetLogLevel(ifc.LogLevel.LOG_LEVEL_ERROR);
    const model = api.OpenModel(bytes, { COORDINATE_TO_ORIGIN: false });
    if (model < 0)
        fail('it cannot be opened');
    tell({ percent: 10 });

    const geometry = new GeometryFile(path.join(folder, 'geometry.bin'));
    let shown = 10;
    api.StreamAllMeshes(model, (mesh, index, total) => {
        geometry.take(api, model, mesh);
        const percent = 10 + Math.floor((70 * (index + 1)) / Math.max(1, total));
        if (percent > shown && percent <= 80)
            tell({ percent: (shown = percent) });
    });
    geometry.close();

    const tree = readTree(api, ifc, model, geometry);
    const lost = tree.lost.map((component) => component.name || component.type);
    fs.writeFileSync(path.join(folder, 'index.json'), JSON.stringify({
        nodes: tree.nodes,
        floors: tree.floors,
        parts: geometry.parts.map(({ component, ...part }) => ({ ...part, node: tree.indexOf.get(component) })),
        vertexCount: geometry.vertexCount,
        indexCount: geometry.indexCount,
        origin: geometry.origin ?? [0, 0, 0],
        lostComponents: lost.length,
        lostNames: lost.slice(0, mostNamed),
        lostFaces: faults,
        lostTriangles: geometry.lostTriangles,
    }));
    tell({ percent: 100 });
}

const [input, folder] = process.argv.slice(2);
try {
    await read(input, folder);
    process.exit(0);
} catch (error) {
    fail(`it cannot be read: ${error?.message ?? error}`);
}
