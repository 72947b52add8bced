// SPDX-License-Identifier: MIT
//
// node writedrawings.mjs PACKAGE-ROOT FOLDER: writes the drawings that the tests of the reader read, each named after
// what is in it.
import { webcrypto } from 'node:crypto';
import fs from 'node:fs';
import path from 'node:path';
import { pathToFileURL } from 'node:url';

// The library asks for it by its global name, which Node 18 does not have.
globalThis.crypto ??= webcrypto;

const [root, folder] = process.argv.slice(2);
const cad = await import(pathToFileURL(path.join(root, 'node_modules/@node-projects/acad-ts/dist/index.js')).href);

const at = (x, y, z = 0) => new cad.XYZ(x, y, z);
const metres = 6;

class Sheet {
    constructor(version = 'AC1032', units = metres) {
        this.document = new cad.CadDocument();
        this.document.header.version = cad.ACadVersion[version];
        this.document.header.insUnits = units;
        this.document.layers.add(new cad.Layer('defpoints'));
    }

    layer(name, color = 7) {
        const layer = new cad.Layer(name);
        layer.color = new cad.Color(color);
        this.document.layers.add(layer);
        return layer;
    }

    block(name, ...entities) {
        const block = new cad.BlockRecord(name);
        this.document.blockRecords.add(block);
        entities.forEach((each) => block.entities.add(each));
        return block;
    }

    add(entity, settings = {}, space = this.document.modelSpace) {
        Object.assign(entity, settings);
        space.entities.add(entity);
        return entity;
    }

    insert(block, settings = {}, space = this.document.modelSpace) {
        const insert = new cad.Insert();
        insert.block = block;
        return this.add(insert, settings, space);
    }

    /// What an entity consists of has to be known to the drawing too.
    own(entity, parts) {
        for (const part of parts) {
            part.owner = entity;
            this.document._addCadObject(part);
        }
    }

    bytes() {
        return Buffer.from(cad.DwgWriter.writeToBuffer(this.document));
    }

    save(name) {
        fs.writeFileSync(path.join(folder, `${name}.dwg`), this.bytes());
    }
}

function line(from, to) {
    return new cad.Line(at(...from), at(...to));
}

function text(value, settings = {}) {
    return Object.assign(new cad.TextEntity(value), { height: 1 }, settings);
}

function loop(...corners) {
    const edge = new cad.HatchBoundaryPathPolyline();
    edge.isClosed = true;
    edge.vertices.push(...corners.map(([x, y, bulge = 0]) => at(x, y, bulge)));
    return new cad.HatchBoundaryPath([edge]);
}

function square(low, high) {
    return loop([low, low], [high, low], [high, high], [low, high]);
}

function hatch(isSolid, ...paths) {
    const made = new cad.Hatch();
    made.isSolid = isSolid;
    made.paths.push(...paths);
    return made;
}

function polyline(Kind, corners, settings = {}) {
    const made = new Kind();
    made.vertices.push(...corners);
    return Object.assign(made, settings);
}

const kinds = {
    line: (sheet) => sheet.add(line([0, 0, 0], [4, 3, 12])),
    raisedLine: (sheet) => sheet.add(line([0, 0, 0], [4, 0, 0]), { thickness: 3 }),
    circle: (sheet) => sheet.add(new cad.Circle(at(1, 2), 2)),
    tiltedCircle: (sheet) => sheet.add(new cad.Circle(at(0, 0, 5), 2), { normal: at(1, 0, 0) }),
    arc: (sheet) => sheet.add(new cad.Arc(at(0, 0), 2, 0, Math.PI / 2)),
    arcOverZero: (sheet) => sheet.add(new cad.Arc(at(0, 0), 2, 1.5 * Math.PI, Math.PI / 2)),
    ellipse: (sheet) => sheet.add(new cad.Ellipse(), { center: at(0, 0), majorAxisEndPoint: at(0, 4), radiusRatio: 0.5,
        startParameter: 0, endParameter: 2 * Math.PI }),
    spline: (sheet) => {
        const spline = new cad.Spline();
        spline.degree = 2;
        spline.controlPoints.push(at(0, 0), at(2, 4), at(4, 0));
        spline.knots.push(0, 0, 0, 1, 1, 1);
        sheet.add(spline);
    },
    polyline: (sheet) => sheet.add(polyline(cad.LwPolyline, [[0, 0], [4, 0], [4, 3]].map(([x, y]) =>
        new cad.LwPolylineVertex(new cad.XY(x, y))), { elevation: 2 })),
    closedPolyline: (sheet) => sheet.add(polyline(cad.LwPolyline, [[0, 0], [4, 0], [4, 3]].map(([x, y]) =>
        new cad.LwPolylineVertex(new cad.XY(x, y))), { isClosed: true })),
    bulge: (sheet) => sheet.add(polyline(cad.LwPolyline, [0, 4].map((x) =>
        Object.assign(new cad.LwPolylineVertex(new cad.XY(x, 0)), { bulge: 1 })))),
    oldPolyline: (sheet) => {
        const made = sheet.add(polyline(cad.Polyline2D, [[0, 0], [4, 0], [4, 3]].map(([x, y]) => new cad.Vertex2D(at(x, y)))));
        sheet.own(made, made.vertices);
    },
    spatialPolyline: (sheet) => {
        const made = sheet.add(new cad.Polyline3D([at(0, 0, 0), at(1, 2, 3), at(4, 5, 6)]));
        sheet.own(made, made.vertices);
    },
    face: (sheet) => sheet.add(new cad.Face3D(), { firstCorner: at(0, 0), secondCorner: at(4, 0), thirdCorner: at(4, 0, 3),
        fourthCorner: at(0, 0, 3) }),
    triangle: (sheet) => sheet.add(new cad.Face3D(), { firstCorner: at(0, 0), secondCorner: at(4, 0), thirdCorner: at(4, 0, 3),
        fourthCorner: at(4, 0, 3) }),
    solid: (sheet) => sheet.add(new cad.Solid(at(0, 0), at(4, 0), at(0, 3), at(4, 3))),
    raisedSolid: (sheet) => sheet.add(new cad.Solid(at(0, 0), at(4, 0), at(0, 3), at(4, 3)), { thickness: 2 }),
    hatch: (sheet) => sheet.add(hatch(true, square(0, 4))),
    hatchWithHole: (sheet) => sheet.add(hatch(true, square(0, 4), square(1, 3))),
    hatchWithIsland: (sheet) => sheet.add(hatch(true, square(0, 10), square(1, 9), square(2, 4))),
    pattern: (sheet) => sheet.add(hatch(false, square(0, 4))),
    polyface: (sheet) => {
        const made = new cad.PolyfaceMesh();
        made.vertices.push(...[[0, 0], [4, 0], [4, 3], [0, 3]].map(([x, y]) => new cad.VertexFaceMesh(at(x, y))));
        made.faces.push(Object.assign(new cad.VertexFaceRecord(), { index1: 1, index2: 2, index3: -3, index4: 4 }));
        sheet.add(made);
        sheet.own(made, [...made.vertices, ...made.faces]);
    },
    polygonMesh: (sheet) => {
        const made = Object.assign(new cad.PolygonMesh(), { mVertexCount: 2, nVertexCount: 3 });
        for (let row = 0; row < 2; ++row)
            made.vertices.push(...[0, 2, 4].map((x) => new cad.PolygonMeshVertex(at(x, 3 * row))));
        sheet.add(made);
        sheet.own(made, made.vertices);
    },
    mesh: (sheet) => {
        const mesh = new cad.Mesh();
        mesh.vertices.push(at(0, 0), at(4, 0), at(4, 3), at(2, 4), at(0, 3));
        mesh.faces.push([0, 1, 2, 3, 4]);
        sheet.add(mesh);
    },
    leader: (sheet) => {
        const leader = new cad.Leader();
        leader.vertices.push(at(0, 0), at(2, 2), at(4, 2));
        sheet.add(leader);
    },
    text: (sheet) => sheet.add(text('Wall', { insertPoint: at(2, 1), height: 2 })),
    turnedText: (sheet) => sheet.add(text('Wall', { rotation: Math.PI / 2, height: 2 })),
    ideographs: (sheet) => sheet.add(text('墙体', { height: 2 })),
    paragraph: (sheet) => sheet.add(new cad.MText('one\\Ptwo'), { height: 1, insertPoint: at(0, 0) }),
    centredParagraph: (sheet) => sheet.add(new cad.MText('one'), { height: 1, attachmentPoint: 5 }),
    dimension: (sheet) => {
        const made = sheet.add(new cad.DimensionLinear(), { firstPoint: at(0, 0), secondPoint: at(4, 0), definitionPoint: at(0, 2) });
        made.updateBlock();
    },
};

for (const [name, draw] of Object.entries(kinds)) {
    const sheet = new Sheet();
    draw(sheet);
    sheet.save(`kind-${name}`);
}

/// A plan with some of everything: 4 lines, 2 circles, 2 texts, and a door three times.
function plan(version, units, letters = (word) => word) {
    const sheet = new Sheet(version, units);
    const walls = sheet.layer(letters('墙体'), 1);
    const notes = sheet.layer(letters('说明'), 3);
    for (let i = 0; i < 4; ++i)
        sheet.add(line([0, i, 0], [10, i, 0]), { layer: walls });
    for (let i = 0; i < 2; ++i)
        sheet.add(new cad.Circle(at(i, 5), 1), { layer: walls });
    sheet.add(text(letters('主卧室')), { layer: notes });
    sheet.add(text(letters('厨房')), { layer: notes, insertPoint: at(5, 0) });
    const door = sheet.block(letters('门'), line([0, 0, 0], [1, 0, 0]));
    for (let i = 0; i < 3; ++i)
        sheet.insert(door, { insertPoint: at(i, 8), layer: walls });
    return sheet;
}

const versions = ['AC1014', 'AC1015', 'AC1018', 'AC1021', 'AC1024', 'AC1027', 'AC1032'];
const wide = (version) => version >= 'AC1021';

// Before 2007 letters are bytes in the code page of the drawing. The library writes no Chinese ones: the bytes are given
// to it as letters of Western Europe, and the number of the code page is set in the file.
const bytesOfWords = { 墙体: 'c7bdcce5', 说明: 'cbb5c3f7', 主卧室: 'd6f7ced4cad2', 厨房: 'b3f8b7bf', 门: 'c3c5' };
const codePageAt = 0x13;
const simplifiedChinese = 39;
const western = new TextDecoder('windows-1252');

for (const version of versions) {
    const letters = wide(version) ? undefined : (word) => western.decode(Buffer.from(bytesOfWords[word], 'hex'));
    const bytes = plan(version, metres, letters).bytes();
    if (!wide(version))
        bytes.writeUInt16LE(simplifiedChinese, codePageAt);
    fs.writeFileSync(path.join(folder, `plan-${version}.dwg`), bytes);
}

for (const units of [0, 1, 2, 4, 5, 6, 7, 14]) {
    const sheet = new Sheet('AC1032', units);
    sheet.add(line([0, 0, 0], [1000, 0, 0]));
    sheet.save(`units-${units}`);
}

{
    const sheet = new Sheet();
    const blue = sheet.layer('blue', 5);
    sheet.add(line([0, 0, 0], [1, 0, 0]), { layer: blue });
    sheet.add(line([0, 1, 0], [1, 1, 0]), { layer: blue, color: new cad.Color(1) });
    sheet.add(line([0, 2, 0], [1, 2, 0]), { layer: blue, color: new cad.Color(0, 255, 0) });
    const block = sheet.block('inherits', Object.assign(line([0, 3, 0], [1, 3, 0]), { color: cad.Color.byBlock }));
    sheet.insert(block, { color: new cad.Color(2) });
    sheet.save('colors');
}
{
    const sheet = new Sheet();
    const off = Object.assign(sheet.layer('off'), { isOn: false });
    const frozen = sheet.layer('frozen');
    frozen.flags |= cad.LayerFlags.Frozen;
    sheet.add(line([0, 0, 0], [1, 0, 0]));
    sheet.add(line([0, 0, 0], [100, 0, 0]), { layer: off });
    sheet.add(text('unseen'), { layer: frozen });
    sheet.add(line([0, 0, 0], [100, 0, 0]), { isInvisible: true });
    const block = sheet.block('mixed', line([0, 0, 0], [2, 0, 0]));
    block.entities.add(Object.assign(line([0, 0, 0], [3, 0, 0]), { layer: sheet.layer('shown') }));
    sheet.insert(block, { layer: off });
    sheet.insert(block, { layer: frozen });
    sheet.save('hidden');
}
{
    const sheet = new Sheet();
    const inner = sheet.block('inner', line([0, 0, 0], [1, 0, 0]));
    inner.blockEntity.basePoint = at(1, 0);
    const outer = sheet.block('outer');
    sheet.insert(inner, { insertPoint: at(10, 0), rotation: Math.PI / 2, xScale: 2, yScale: 2, zScale: 2 }, outer);
    sheet.insert(outer, { insertPoint: at(100, 0), yScale: -1 });
    sheet.save('nested');
}
{
    const sheet = new Sheet();
    const block = sheet.block('bar', line([0, 0, 0], [1, 0, 0]));
    sheet.insert(block, { rowCount: 2, columnCount: 3, rowSpacing: 10, columnSpacing: 20, rotation: Math.PI / 2 });
    sheet.save('array');
}
{
    const sheet = new Sheet();
    const definition = Object.assign(new cad.AttributeDefinition(), { tag: '编号', value: 'M', height: 1 });
    const block = sheet.block('门', line([0, 0, 0], [1, 0, 0]), definition);
    const insert = sheet.insert(block);
    const attribute = (value, flags) => Object.assign(new cad.AttributeEntity(definition), { value, flags });
    insert.attributes.push(attribute('M-101', cad.AttributeFlags.None));
    insert.attributes.push(Object.assign(attribute('secret', cad.AttributeFlags.Hidden), { tag: 'HIDDEN' }));
    sheet.own(insert, insert.attributes);
    sheet.save('attributes');
}
{
    const sheet = new Sheet();
    sheet.add(text('\\U+5899 %%c20 %%p0.5 45%%d'));
    sheet.save('codes');
}
{
    const sheet = new Sheet();
    sheet.add(line([0, 0, 0], [1, 0, 0]));
    sheet.add(new cad.Solid3D());
    sheet.add(new cad.Region());
    sheet.add(new cad.Point(at(1, 1)));
    sheet.add(new cad.Ray(), { direction: at(1, 0) });
    sheet.document.paperSpace.entities.add(line([0, 0, 0], [100, 0, 0]));
    sheet.save('lost');
}
{
    const sheet = new Sheet();
    const block = sheet.block('itself', line([0, 0, 0], [1, 0, 0]));
    sheet.insert(block, { insertPoint: at(1, 0) }, block);
    sheet.insert(block);
    sheet.save('circle');
}
{
    const sheet = new Sheet();
    const block = sheet.block('bar', line([0, 0, 0], [1, 0, 0]));
    sheet.insert(block, { rowCount: 32767, columnCount: 32767, rowSpacing: 1, columnSpacing: 1 });
    sheet.save('billion');
}
{
    const sheet = new Sheet();
    let block = sheet.block('depth0', line([0, 0, 0], [1, 0, 0]));
    for (let depth = 1; depth < 12; ++depth) {
        const next = sheet.block(`depth${depth}`);
        for (let i = 0; i < 10; ++i)
            sheet.insert(block, { insertPoint: at(i, depth) }, next);
        block = next;
    }
    sheet.insert(block);
    sheet.save('bomb');
}
{
    const sheet = new Sheet();
    sheet.add(line([450000, 3300000, 0], [450010, 3300020, 0]));
    sheet.add(line([450000, 3300000, 0], [450010, 3300000, 0]));
    sheet.save('far');
}
{
    const sheet = new Sheet();
    sheet.add(line([0, 0, 0], [1, 0, 0]));
    sheet.add(line([NaN, 0, 0], [1e300, 0, 0]));
    sheet.save('noNumbers');
}
new Sheet().save('empty');
