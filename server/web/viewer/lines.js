// SPDX-License-Identifier: MIT
//
// The lines of a model, as drawings have them: all in one mesh, with a stretch of it for each part of a component.
import {Box3, BufferAttribute, BufferGeometry, LineBasicMaterial, LineSegments, Vector3, Vector4} from 'three';

// Drawings are made for a black or a white sheet: what nobody could see on this one takes the other end.
function readable({red, green, blue}, isDark) {
    const brightness = 0.2 * red + 0.7 * green + 0.1 * blue;
    if (isDark && brightness < 0.05) return new Vector4(0.8, 0.8, 0.8, 1);
    if (!isDark && brightness > 0.6) return new Vector4(0.05, 0.05, 0.05, 1);
    return new Vector4(red, green, blue, 1);
}

export class Lines {
    constructor(entries, isDark) {
        const corners = entries.reduce((sum, {part}) => sum + part.geometry.positions.length, 0);
        const count = entries.reduce((sum, {part}) => sum + part.geometry.indices.length, 0);
        this.positions = new Float32Array(corners);
        this.indices = new Uint32Array(count);
        this.parts = [];
        this.corner = 0;
        this.end = 0;
        for (const {part, node, place} of entries) this.add(part, node, place, isDark);
        const geometry = new BufferGeometry();
        geometry.setAttribute('position', new BufferAttribute(this.positions, 3));
        geometry.setAttribute('color', new BufferAttribute(new Float32Array(corners), 3));
        geometry.setIndex(new BufferAttribute(this.indices.slice(), 1));
        this.mesh = new LineSegments(geometry, new LineBasicMaterial({vertexColors: true}));
        this.show(() => true);
        this.paint(({colour}) => colour);
    }

    add({geometry, colour}, node, place, isDark) {
        const part = {node, colour: readable(colour, isDark), box: new Box3(), first: this.corner, start: this.end};
        const point = new Vector3();
        for (let at = 0; at < geometry.positions.length; at += 3) {
            point.fromArray(geometry.positions, at).applyMatrix4(place).toArray(this.positions, this.corner * 3);
            part.box.expandByPoint(point);
            this.corner += 1;
        }
        for (const index of geometry.indices) this.indices[this.end++] = part.first + index;
        part.last = this.corner;
        part.stop = this.end;
        this.parts.push(part);
    }

    show(wanted) {
        const index = this.mesh.geometry.index;
        let length = 0;
        for (const part of this.parts) {
            if (!wanted(part)) continue;
            index.array.set(this.indices.subarray(part.start, part.stop), length);
            length += part.stop - part.start;
        }
        index.needsUpdate = true;
        this.mesh.geometry.setDrawRange(0, length);
    }

    paint(colourOf) {
        const colours = this.mesh.geometry.attributes.color;
        for (const part of this.parts) {
            const {x, y, z} = colourOf(part);
            for (let corner = part.first; corner < part.last; corner++) colours.setXYZ(corner, x, y, z);
        }
        colours.needsUpdate = true;
    }

    // A hit tells the place of its line among the drawn ones.
    partOf({index}) {
        const corner = this.mesh.geometry.index.array[index];
        return this.parts.find(({first, last}) => corner >= first && corner < last);
    }
}
