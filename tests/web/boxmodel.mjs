// SPDX-License-Identifier: MIT
//
// Models of boxes, as the converter writes models: binary glTF with a node for each component.

const corners = [[0, 1, 3, 2], [4, 6, 7, 5], [0, 4, 5, 1], [2, 3, 7, 6], [0, 2, 6, 4], [1, 5, 7, 3]];
const normals = [[-1, 0, 0], [1, 0, 0], [0, -1, 0], [0, 1, 0], [0, 0, -1], [0, 0, 1]];

function boxArrays([low, high]) {
    const places = [];
    const directions = [];
    const indices = [];
    corners.forEach((face, side) => {
        const first = places.length / 3;
        for (const corner of face) {
            places.push(...[4, 2, 1].map((bit, axis) => ((corner & bit) === 0 ? low : high)[axis]));
            directions.push(...normals[side]);
        }
        indices.push(first, first + 1, first + 2, first, first + 2, first + 3);
    });
    return {places, directions, indices};
}

function padded(bytes, filler) {
    return Buffer.concat([bytes, Buffer.alloc((4 - bytes.length % 4) % 4, filler)]);
}

function chunk(type, bytes) {
    const head = Buffer.alloc(8);
    head.writeUInt32LE(bytes.length, 0);
    head.writeUInt32LE(type, 4);
    return Buffer.concat([head, bytes]);
}

function glb(document, binary) {
    const chunks = Buffer.concat([chunk(0x4e4f534a, padded(Buffer.from(JSON.stringify(document)), 0x20)),
        chunk(0x004e4942, padded(binary, 0))]);
    const head = Buffer.alloc(12);
    head.writeUInt32LE(0x46546c67, 0);
    head.writeUInt32LE(2, 4);
    head.writeUInt32LE(12 + chunks.length, 8);
    return Buffer.concat([head, chunks]);
}

// Nodes are {name, extras, parent, box, colour, translation}; a node may have the box of another one (`like`), or
// lines instead, each with two ends. `ballast`
// is bytes that nothing names, for a model that takes long to come.
export function boxModel(nodes, ballast = 0) {
    const document = {asset: {version: '2.0'}, scene: 0, scenes: [{nodes: []}], nodes: [], meshes: [], materials: [],
        accessors: [], bufferViews: [], buffers: [{}]};
    const parts = [];
    let length = 0;
    const add = (array, componentType, type, width) => {
        const bytes = Buffer.from(array.buffer);
        document.bufferViews.push({buffer: 0, byteOffset: length, byteLength: bytes.length});
        document.accessors.push({bufferView: document.bufferViews.length - 1, componentType, type, count: array.length / width});
        parts.push(bytes);
        length += bytes.length;
        return document.accessors.length - 1;
    };
    nodes.forEach(({name, extras, parent, box, colour, like, translation, lines}, number) => {
        const node = {name, extras, translation};
        if (lines) {
            document.materials.push({pbrMetallicRoughness: {baseColorFactor: colour}});
            document.meshes.push({primitives: [{mode: 1, attributes: {POSITION: add(new Float32Array(lines.flat(2)), 5126, 'VEC3', 3)},
                material: document.materials.length - 1}]});
            node.mesh = document.meshes.length - 1;
        }
        if (box) {
            const {places, directions, indices} = boxArrays(box);
            const attributes = {POSITION: add(new Float32Array(places), 5126, 'VEC3', 3),
                NORMAL: add(new Float32Array(directions), 5126, 'VEC3', 3)};
            document.materials.push({pbrMetallicRoughness: {baseColorFactor: colour}});
            document.meshes.push({primitives: [{attributes, indices: add(new Uint32Array(indices), 5125, 'SCALAR', 1),
                material: document.materials.length - 1}]});
            node.mesh = document.meshes.length - 1;
        }
        if (like !== undefined) node.mesh = document.nodes[like].mesh;
        document.nodes.push(node);
        if (parent === undefined) document.scenes[0].nodes.push(number);
        else (document.nodes[parent].children ??= []).push(number);
    });
    const noise = Buffer.alloc(ballast);
    for (let n = 0, state = 1; n < ballast; n++) {
        state = state * 1103515245 + 12345 & 0x7fffffff;
        noise[n] = state >> 16;
    }
    const binary = Buffer.concat([...parts, noise]);
    document.buffers[0].byteLength = binary.length;
    return glb(document, binary);
}

// A drawing: two bundles of lines side by side, with different colours.
export function drawing() {
    const bundle = (left) => Array.from({length: 40}, (_, n) => [[left, 0, n / 10], [left + 4, 0, n / 10]]);
    return boxModel([
        {name: '图纸'},
        {name: '绿线', parent: 0, lines: bundle(0), colour: green, extras: {type: 'LINE', id: 'L1'}},
        {name: '蓝线', parent: 0, lines: bundle(6), colour: blue, extras: {type: 'LINE', id: 'L2'}},
    ]);
}

export const green = [0.05, 0.6, 0.05, 1];
export const blue = [0.05, 0.05, 0.8, 1];
export const grey = [0.4, 0.4, 0.4, 1];

// Two storeys, 10 m by 10 m.
export function house(ballast = 0) {
    const part = (name, parent, low, high, colour, extras) => ({name, parent, box: [[0, low, 0], [10, high, 10]], colour, extras});
    return boxModel([
        {name: '住宅楼', extras: {type: 'IfcBuilding', id: 'B1'}},
        {name: '一层', parent: 0, extras: {type: 'IfcBuildingStorey', id: 'S1'}},
        part('一层地面', 1, -0.2, 0, grey, {type: 'IfcSlab', id: 'F1'}),
        part('一层墙', 1, 0, 2.8, green, {type: 'IfcWall', id: 'W1', properties: {材料: {名称: '砖', 厚度: '240 mm'}}}),
        {name: '二层', parent: 0, extras: {type: 'IfcBuildingStorey', id: 'S2'}},
        part('二层地面', 4, 2.8, 3, grey, {type: 'IfcSlab', id: 'F2'}),
        part('二层墙', 4, 3, 6, blue, {type: 'IfcWall', id: 'W2', properties: {材料: {名称: '混凝土'}, 防火: {等级: '一级'}}}),
    ], ballast);
}

export const houseFloors = JSON.stringify([{name: '一层', elevation: 0}, {name: '二层', elevation: 3}]);

// Very many boxes in rows.
export function manyBoxes(count) {
    const nodes = [{name: '全部'}];
    for (let n = 0; n < count; n++) {
        const translation = [n % 100 * 2, 0, Math.floor(n / 100) * 2];
        const look = n === 0 ? {box: [[0, 0, 0], [1, 1, 1]], colour: green} : {like: 1};
        nodes.push({name: `构件 ${n}`, parent: 0, translation, ...look});
    }
    return boxModel(nodes);
}
