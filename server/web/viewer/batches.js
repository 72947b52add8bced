// SPDX-License-Identifier: MIT
//
// The components of a model as few large meshes: one draw call for what would be thousands. Each part of a component
// keeps its own colour, visibility and box.
import {
    BatchedMesh, Box3, BufferAttribute, BufferGeometry, DoubleSide, Matrix4, MeshLambertMaterial, Vector4,
} from 'three';

const marked = new Vector4(0.01, 0.26, 1, 1);

function geometryOf({positions, normals, indices}) {
    const geometry = new BufferGeometry();
    geometry.setAttribute('position', new BufferAttribute(positions, 3));
    geometry.setIndex(new BufferAttribute(indices, 1));
    if (normals) geometry.setAttribute('normal', new BufferAttribute(normals, 3));
    else geometry.computeVertexNormals();
    return geometry;
}

class Batch {
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
}

export class ModelBatches {
    // `shift` is where the model stands among the others.
    constructor(nodes, shift) {
        const move = new Matrix4().makeTranslation(shift);
        const entries = {solid: [], clear: []};
        nodes.forEach(({parts, place}, node) => {
            const moved = place.clone().premultiply(move);
            for (const part of parts) entries[part.colour.alpha < 1 ? 'clear' : 'solid'].push({part, node, place: moved});
        });
        this.batches = [];
        if (entries.solid.length > 0) this.batches.push(new Batch(entries.solid, false));
        if (entries.clear.length > 0) this.batches.push(new Batch(entries.clear, true));
    }

    get meshes() {
        return this.batches.map(({mesh}) => mesh);
    }

    nodeAt(mesh, id) {
        return this.batches.find((batch) => batch.mesh === mesh).parts[id].node;
    }

    // What `wanted` says yes to, of node and box, is shown. The result is the nodes that are.
    show(wanted) {
        const shown = new Set();
        for (const {mesh, parts} of this.batches) {
            parts.forEach(({node, box}, id) => {
                const isShown = wanted(node, box);
                mesh.setVisibleAt(id, isShown);
                if (isShown) shown.add(node);
            });
        }
        return shown;
    }

    mark(isMarked) {
        for (const {mesh, parts} of this.batches)
            parts.forEach(({node, colour}, id) => mesh.setColorAt(id, isMarked(node) ? marked : colour));
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
