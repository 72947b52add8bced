// SPDX-License-Identifier: MIT
//
// Reads a binary glTF file as the converter writes them: nodes with extras, triangles with places and normals, lines,
// plain colours. What a file holds beyond that is left out. Throws an Error for what is no such file.
import {Matrix4, Quaternion, Vector3} from 'three';

const magic = 0x46546c67;
const jsonChunk = 0x4e4f534a;
const binaryChunk = 0x004e4942;
const lines = 1;
const triangles = 4;
const arrays = {
    5121: Uint8Array, 5123: Uint16Array, 5125: Uint32Array, 5126: Float32Array,
};
const widths = {SCALAR: 1, VEC3: 3};

function chunksOf(bytes) {
    const view = new DataView(bytes);
    if (bytes.byteLength < 20 || view.getUint32(0, true) !== magic) throw new Error('不是模型文件');
    const chunks = {};
    for (let at = 12; at + 8 <= bytes.byteLength;) {
        const length = view.getUint32(at, true);
        if (at + 8 + length > bytes.byteLength) throw new Error('模型文件不完整');
        chunks[view.getUint32(at + 4, true)] ??= [at + 8, length];
        at += 8 + length;
    }
    return chunks;
}

class Reader {
    constructor(bytes) {
        const chunks = chunksOf(bytes);
        if (!chunks[jsonChunk]) throw new Error('模型文件没有描述');
        this.bytes = bytes;
        this.document = JSON.parse(new TextDecoder().decode(new Uint8Array(bytes, ...chunks[jsonChunk])));
        [this.start, this.length] = chunks[binaryChunk] ?? [0, 0];
        this.geometries = new Map();
    }

    array(index, width) {
        const accessor = this.document.accessors[index];
        const view = this.document.bufferViews[accessor.bufferView];
        const ArrayType = arrays[accessor.componentType];
        if (!ArrayType || widths[accessor.type] !== width) throw new Error('模型文件使用了不支持的数据');
        const size = width * ArrayType.BYTES_PER_ELEMENT;
        const stride = view.byteStride || size;
        const offset = (view.byteOffset || 0) + (accessor.byteOffset || 0);
        if (accessor.count > 0 && offset + stride * (accessor.count - 1) + size > this.length)
            throw new Error('模型文件不完整');
        const from = this.start + offset;
        if (stride === size && from % ArrayType.BYTES_PER_ELEMENT === 0)
            return new ArrayType(this.bytes, from, accessor.count * width);
        const result = new ArrayType(accessor.count * width);
        for (let n = 0; n < accessor.count; n++) {
            const one = this.bytes.slice(from + n * stride, from + n * stride + size);
            result.set(new ArrayType(one), n * width);
        }
        return result;
    }

    colour(index) {
        const material = this.document.materials?.[index];
        const [red, green, blue, alpha] = material?.pbrMetallicRoughness?.baseColorFactor ?? [1, 1, 1, 1];
        return {red, green, blue, alpha: material?.alphaMode === 'BLEND' ? alpha : 1};
    }

    // What several components have in common comes out as one object, so that it is kept once.
    geometry({attributes, indices}) {
        const key = `${attributes.POSITION}/${attributes.NORMAL}/${indices}`;
        if (!this.geometries.has(key)) {
            const positions = this.array(attributes.POSITION, 3);
            this.geometries.set(key, {
                positions,
                normals: attributes.NORMAL === undefined ? null : this.array(attributes.NORMAL, 3),
                indices: indices === undefined
                    ? Uint32Array.from({length: positions.length / 3}, (_, n) => n) : this.array(indices, 1),
            });
        }
        return this.geometries.get(key);
    }

    parts(mesh) {
        return (this.document.meshes?.[mesh]?.primitives ?? [])
            .filter(({mode = triangles, attributes}) => [lines, triangles].includes(mode) && attributes.POSITION !== undefined)
            .map((primitive) => ({
                geometry: this.geometry(primitive), colour: this.colour(primitive.material), isLines: primitive.mode === lines,
            }));
    }
}

function matrixOf(node) {
    if (node.matrix) return new Matrix4().fromArray(node.matrix);
    return new Matrix4().compose(new Vector3(...(node.translation ?? [0, 0, 0])),
        new Quaternion(...(node.rotation ?? [0, 0, 0, 1])), new Vector3(...(node.scale ?? [1, 1, 1])));
}

// The nodes of the scene, each behind its parent: name, extras, parent (-1 for none), children, parts, and where it
// stands in the model. Coarser levels of components are not among them.
export function readGlb(bytes) {
    const reader = new Reader(bytes);
    const {document} = reader;
    const nodes = [];
    const waiting = [...(document.scenes?.[document.scene ?? 0]?.nodes ?? [])].reverse()
        .map((index) => [index, -1]);
    while (waiting.length > 0) {
        const [index, parent] = waiting.pop();
        const source = document.nodes[index];
        if (!source || nodes.length >= document.nodes.length) throw new Error('模型文件的结构有误');
        const place = matrixOf(source);
        if (parent >= 0) {
            place.premultiply(nodes[parent].place);
            nodes[parent].children.push(nodes.length);
        }
        nodes.push({
            name: source.name ?? '', extras: source.extras ?? {}, parent, children: [], place,
            parts: source.mesh === undefined ? [] : reader.parts(source.mesh),
        });
        for (const child of [...(source.children ?? [])].reverse()) waiting.push([child, nodes.length - 1]);
    }
    return nodes;
}
