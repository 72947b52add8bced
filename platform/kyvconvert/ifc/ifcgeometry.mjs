// SPDX-License-Identifier: MIT
import fs from 'node:fs';

const floatsPerCorner = 6;
// Beyond this a float no longer tells millimetres apart.
const farAway = 10000;

function place(m, x, y, z) {
    return [m[0] * x + m[4] * y + m[8] * z + m[12], m[1] * x + m[5] * y + m[9] * z + m[13],
        m[2] * x + m[6] * y + m[10] * z + m[14]];
}

/// The cofactors of the upper left of a matrix: what normals are turned by, also under uneven scaling.
function turnOf(m) {
    return [m[5] * m[10] - m[6] * m[9], m[6] * m[8] - m[4] * m[10], m[4] * m[9] - m[5] * m[8],
        m[2] * m[9] - m[1] * m[10], m[0] * m[10] - m[2] * m[8], m[1] * m[8] - m[0] * m[9],
        m[1] * m[6] - m[2] * m[5], m[2] * m[4] - m[0] * m[6], m[0] * m[5] - m[1] * m[4]];
}

function turned(t, x, y, z) {
    const n = [t[0] * x + t[3] * y + t[6] * z, t[1] * x + t[4] * y + t[7] * z, t[2] * x + t[5] * y + t[8] * z];
    const length = Math.hypot(...n);
    return length > 0 && Number.isFinite(length) ? n.map((value) => value / length) : [0, 1, 0];
}

function isMirrored(m, t) {
    return m[0] * t[0] + m[1] * t[1] + m[2] * t[2] < 0;
}

/// Surfaces of components, written as they come: for each part its corners, then its triangles.
export class GeometryFile {
    parts = [];
    components = new Set();
    vertexCount = 0;
    indexCount = 0;
    lostTriangles = 0;
    origin = null;
    #file;
    #offset = 0;

    constructor(name) {
        this.#file = fs.openSync(name, 'w');
    }

    take(api, model, mesh) {
        for (let i = 0; i < mesh.geometries.size(); ++i) {
            const placed = mesh.geometries.get(i);
            const geometry = api.GetGeometry(model, placed.geometryExpressID);
            const corners = api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
            const triangles = api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize());
            this.#takePart(mesh.expressID, placed, corners, triangles);
            geometry.delete();
        }
    }

    close() {
        fs.closeSync(this.#file);
    }

    #takePart(component, placed, corners, triangles) {
        const indices = this.#soundTriangles(corners, triangles, placed.flatTransformation);
        if (indices.length === 0)
            return;
        const vertices = this.#placed(corners, placed.flatTransformation);
        const { x, y, z, w } = placed.color;
        this.parts.push({ component, color: [x, y, z, w], offset: this.#offset,
            vertexCount: vertices.length / floatsPerCorner, indexCount: indices.length });
        this.components.add(component);
        this.vertexCount += vertices.length / floatsPerCorner;
        this.indexCount += indices.length;
        for (const array of [vertices, indices]) {
            const bytes = Buffer.from(array.buffer, array.byteOffset, array.byteLength);
            for (let written = 0; written < bytes.length;)
                written += fs.writeSync(this.#file, bytes, written);
            this.#offset += bytes.length;
        }
    }

    #placed(corners, matrix) {
        const turn = turnOf(matrix);
        const sign = isMirrored(matrix, turn) ? -1 : 1;
        const vertices = new Float32Array(corners.length);
        for (let i = 0; i + floatsPerCorner <= corners.length; i += floatsPerCorner) {
            const at = place(matrix, corners[i], corners[i + 1], corners[i + 2]);
            this.origin ??= [at[0], at[2]].some((value) => Math.abs(value) > farAway)
                ? [Math.round(at[0]), 0, Math.round(at[2])] : [0, 0, 0];
            const normal = turned(turn, corners[i + 3], corners[i + 4], corners[i + 5]);
            for (let axis = 0; axis < 3; ++axis) {
                const value = at[axis] - this.origin[axis];
                vertices[i + axis] = Number.isFinite(value) ? value : 0;
                vertices[i + 3 + axis] = sign * normal[axis];
            }
        }
        return vertices;
    }

    #soundTriangles(corners, triangles, matrix) {
        const mirrored = isMirrored(matrix, turnOf(matrix));
        const isSound = (index) => index * floatsPerCorner + 2 < corners.length &&
            [0, 1, 2].every((axis) => Number.isFinite(corners[index * floatsPerCorner + axis]));
        const sound = new Uint32Array(triangles.length - (triangles.length % 3));
        let count = 0;
        for (let i = 0; i + 2 < triangles.length; i += 3) {
            const corner = [triangles[i], triangles[i + (mirrored ? 2 : 1)], triangles[i + (mirrored ? 1 : 2)]];
            if (!corner.every(isSound)) {
                this.lostTriangles += 1;
                continue;
            }
            sound.set(corner, count);
            count += 3;
        }
        return sound.subarray(0, count);
    }
}
