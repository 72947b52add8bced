// SPDX-License-Identifier: MIT
//
// The components of a model as few large meshes: one draw call for what would be thousands. Each part of a component
// keeps its own colour, visibility and box.
import {
    BatchedMesh, Box3, BufferAttribute, BufferGeometry, DoubleSide, Matrix4, MeshLambertMaterial, Vector4,
} from 'three';
import {Lines} from './lines.js';

const marked = new Vector4(0.01, 0.26, 1, 1);

function geometryOf({positions, normals, indices}) {
    const geometry = new BufferGeometry();
    geometry.setAttribute('position', new BufferAttribute(positions, 3));
    geometry.setIndex(new BufferAttribute(indices, 1));
    if (normals) geometry.setAttribute('normal', new BufferAttribute(normals, 3));
    else geometry.computeVertexNormals();
    return geometry;
}

class Surfaces {
    constructor(entries, isClear) {
        const geometries = new Set(entries.map(({part}) => part.geometry));
        let corners = 0;
        let indices = 0;
        for (const geometry of geometries) {
            corners += geometry.positions.length / 3;
            indices += geometry.indices.length;
        }
        this.mesh = new BatchedMesh(entries.length, corners, indices, new MeshLambertMaterial({
            side: DoubleSide, transparent: isClear, depthWrite: !isClear,
        }));
        const known = new Map();
        for (const geometry of geometries) known.set(geometry, this.mesh.addGeometry(geometryOf(geometry)));
        for (const {part, node, place} of entries) this.add(part, node, place, known.get(part.geometry));
    }

    parts = [];

    add(part, node, place, geometry) {
        const {red, green, blue, alpha} = part.colour;
        const id = this.mesh.addInstance(geometry);
        this.mesh.setMatrixAt(id, place);
        const colour = new Vector4(red, green, blue, alpha);
        this.mesh.setColorAt(id, colour);
        const box = this.mesh.getBoundingBoxAt(geometry, new Box3()).applyMatrix4(place);
        this.parts[id] = {node, colour, box};
    }

    show(wanted) {
        this.parts.forEach((part, id) => this.mesh.setVisibleAt(id, wanted(part)));
    }

    paint(colourOf) {
        this.parts.forEach((part, id) => this.mesh.setColorAt(id, colourOf(part)));
    }

    partOf(hit) {
        return this.parts[hit.batchId];
    }
}

export class ModelBatches {
    // `shift` is where the model stands among the others, `isDark` whether what is behind it is.
    constructor(nodes, shift, isDark) {
        const move = new Matrix4().makeTranslation(shift);
        const entries = {solid: [], clear: [], lines: []};
        nodes.forEach(({parts, place}, node) => {
            const moved = place.clone().premultiply(move);
            for (const part of parts) {
                const kind = part.isLines ? 'lines' : part.colour.alpha < 1 ? 'clear' : 'solid';
                entries[kind].push({part, node, place: moved});
            }
        });
        this.batches = [];
        if (entries.solid.length > 0) this.batches.push(new Surfaces(entries.solid, false));
        if (entries.lines.length > 0) this.batches.push(new Lines(entries.lines, isDark));
        if (entries.clear.length > 0) this.batches.push(new Surfaces(entries.clear, true));
    }

    get meshes() {
        return this.batches.map(({mesh}) => mesh);
    }

    nodeAt(hit) {
        return this.batches.find(({mesh}) => mesh === hit.object).partOf(hit).node;
    }

    // What `wanted` says yes to, of node and box, is shown. The result is the nodes that are.
    show(wanted) {
        const shown = new Set();
        for (const batch of this.batches) {
            batch.show(({node, box}) => {
                const isShown = wanted(node, box);
                if (isShown) shown.add(node);
                return isShown;
            });
        }
        return shown;
    }

    mark(isMarked) {
        for (const batch of this.batches) batch.paint(({node, colour}) => isMarked(node) ? marked : colour);
    }

    boxOf(isWanted, box = new Box3()) {
        for (const {parts} of this.batches) {
            for (const part of parts) if (isWanted(part.node)) box.union(part.box);
        }
        return box;
    }

    // The nodes that there is something to see of.
    get visibleNodes() {
        const nodes = new Set();
        for (const {parts} of this.batches) for (const {node} of parts) nodes.add(node);
        return nodes;
    }
}
