// SPDX-License-Identifier: MIT
import fs from 'node:fs';
import { cross, moved, unit } from './dwgspace.mjs';

const floatsPerCorner = 6;
const mostCorners = 8_000_000;
// Beyond this a float no longer tells millimetres apart.
const farAway = 10_000;
const farthest = 1e12;
const samples = 1000;

export class TooLarge extends Error {
}

/// Numbers that are added to the end.
class Numbers {
    #array;
    length = 0;

    constructor(type) {
        this.#array = new type(64);
    }

    push(...numbers) {
        if (this.length + numbers.length > this.#array.length) {
            const larger = new this.#array.constructor(2 * this.#array.length + numbers.length);
            larger.set(this.#array);
            this.#array = larger;
        }
        this.#array.set(numbers, this.length);
        this.length += numbers.length;
    }

    get all() {
        return this.#array.subarray(0, this.length);
    }
}

/// Lines and triangles of one look of one node.
class Part {
    constructor(node, look, isLines) {
        this.node = node;
        this.color = [...look.color, look.opacity];
        this.isLines = isLines;
        this.places = new Numbers(Float64Array);
        this.normals = new Numbers(Float32Array);
        this.indices = new Numbers(Uint32Array);
    }

    addLine(points) {
        const first = this.places.length / 3;
        points.forEach((point, i) => {
            this.places.push(...point);
            if (i > 0)
                this.indices.push(first + i - 1, first + i);
        });
    }

    addTriangle(corners) {
        const first = this.places.length / 3;
        const [u, v] = [corners[1], corners[2]].map((each) => each.map((value, axis) => value - corners[0][axis]));
        const normal = unit(cross(u, v));
        for (const corner of corners) {
            this.places.push(...corner);
            this.normals.push(...normal);
        }
        this.indices.push(first, first + 1, first + 2);
    }

    /// Place and normal of each corner as they are written.
    corners(origin) {
        const places = this.places.all;
        const normals = this.normals.all;
        const corners = new Float32Array((places.length / 3) * floatsPerCorner);
        for (let i = 0, at = 0; i < places.length; i += 3, at += floatsPerCorner) {
            for (let axis = 0; axis < 3; ++axis) {
                corners[at + axis] = places[i + axis] - origin[axis];
                corners[at + 3 + axis] = this.isLines ? 0 : normals[i + axis];
            }
        }
        return corners;
    }
}

/// What a drawing looks like, in metres with Y up.
export class Geometry {
    #metres;
    #parts = new Map();
    #count = 0;

    constructor(metres) {
        this.#metres = metres;
    }

    /// The corners so far.
    get count() {
        return this.#count;
    }

    /// Adds the shapes of an entity that stands where the matrix puts it. False, with nothing added, when they lie
    /// where nothing can.
    take(node, look, shapes, matrix) {
        const place = (point) => {
            const [x, y, z] = moved(matrix, point);
            return [x * this.#metres, z * this.#metres, -y * this.#metres];
        };
        const lines = shapes.lines.map((line) => line.map(place));
        const triangles = shapes.triangles.map((triangle) => triangle.map(place));
        const isSomewhere = (point) => point.every((each) => Math.abs(each) < farthest);
        if (![...lines, ...triangles].every((points) => points.every(isSomewhere)))
            return false;
        this.#count += lines.reduce((sum, line) => sum + line.length, 0) + 3 * triangles.length;
        if (this.#count > mostCorners)
            throw new TooLarge('it has more lines and faces than can be shown');
        lines.forEach((line) => this.#part(node, look, true).addLine(line));
        triangles.forEach((triangle) => this.#part(node, look, false).addTriangle(triangle));
        return true;
    }

    #part(node, look, isLines) {
        const key = `${node} ${look.color} ${look.opacity} ${isLines}`;
        if (!this.#parts.has(key))
            this.#parts.set(key, new Part(node, look, isLines));
        return this.#parts.get(key);
    }

    /// Where most of it stands, when that is far from zero; single strayed lines do not count.
    #origin() {
        const step = Math.max(1, Math.floor(this.#count / samples));
        const places = [];
        let number = 0;
        for (const part of this.#parts.values()) {
            for (let i = 0; i < part.places.length; i += 3, ++number) {
                if (number % step === 0)
                    places.push(part.places.all.slice(i, i + 3));
            }
        }
        const middle = (axis) => places.map((each) => each[axis]).sort((a, b) => a - b)[places.length >> 1] ?? 0;
        const [x, z] = [middle(0), middle(2)];
        return Math.max(Math.abs(x), Math.abs(z)) > farAway ? [Math.round(x), 0, Math.round(z)] : [0, 0, 0];
    }

    /// Writes it into a file; gives what the index tells of it.
    write(name) {
        const origin = this.#origin();
        const file = fs.openSync(name, 'w');
        const parts = [];
        let offset = 0;
        for (const part of this.#parts.values()) {
            const vertexCount = part.places.length / 3;
            parts.push({ node: part.node, color: part.color, lines: part.isLines, offset, vertexCount,
                indexCount: part.indices.length });
            for (const array of [part.corners(origin), part.indices.all]) {
                const bytes = Buffer.from(array.buffer, array.byteOffset, array.byteLength);
                for (let written = 0; written < bytes.length;)
                    written += fs.writeSync(file, bytes, written);
                offset += bytes.length;
            }
        }
        fs.closeSync(file);
        return { parts, origin };
    }
}
