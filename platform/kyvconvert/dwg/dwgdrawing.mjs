// SPDX-License-Identifier: MIT
import * as cad from './acad-ts.mjs';
import { TooLarge } from './dwggeometry.mjs';
import { atTheTop, isFrozen, isHidden, lookOf } from './dwglook.mjs';
import { shapesOf } from './dwgshapes.mjs';
import { identity, planeOf, pointOf, product, scaling, shift, turnAboutZ } from './dwgspace.mjs';
import { leaderText, plainText, textOf } from './dwgtexts.mjs';

const mostVisits = 2_000_000;
const mostComponents = 50_000;
const deepest = 64;
const longestName = 60;
const mostNamed = 20;

function idOf(object) {
    return object?.handle ? object.handle.toString(16).toUpperCase() : '';
}

function nameOfBlock(block) {
    return plainText(block.source?.name || block.name);
}

function measured(dimension) {
    try {
        return plainText(dimension.getMeasurementText());
    } catch {
        return plainText(dimension.text);
    }
}

/// What stands in the tree for itself, with its type, its name and what is told of it; the rest belongs to its layer.
function componentOf(entity) {
    if (entity instanceof cad.Insert) {
        const name = nameOfBlock(entity.block);
        return { type: 'Insert', name, told: { Block: name } };
    }
    if (entity instanceof cad.Dimension) {
        const text = measured(entity);
        return { type: 'Dimension', name: text, told: { Text: text } };
    }
    if (entity instanceof cad.MText || entity instanceof cad.TextEntity || entity instanceof cad.MultiLeader) {
        const text = entity instanceof cad.MultiLeader ? leaderText(entity) : textOf(entity);
        const type = entity instanceof cad.MultiLeader ? 'Leader' : 'Text';
        return { type, name: text.split('\n')[0].trim().slice(0, longestName), told: { Text: text } };
    }
    const isMesh = [cad.PolyfaceMesh, cad.PolygonMesh, cad.Mesh].some((kind) => entity instanceof kind);
    return isMesh ? { type: 'Mesh', name: '', told: {} } : null;
}

function attributesOf(insert) {
    const texts = [...insert.attributes].map((each) => [plainText(each.tag), each.mText ? textOf(each.mText) : textOf(each)]);
    return Object.fromEntries(texts.filter(([tag]) => tag !== ''));
}

/// The components of a drawing, and what they look like.
export class Drawing {
    nodes = [];
    lostComponents = 0;
    lostNames = [];
    kinds = {};
    #geometry;
    #layers = new Map();
    #shapes = new Map();
    #visits = 0;
    #components = 0;

    constructor(geometry) {
        this.#geometry = geometry;
    }

    read(document, onShare) {
        const entities = [...document.modelSpace.entities];
        entities.forEach((entity, i) => {
            this.#take(entity, { look: atTheTop, matrix: identity, node: null, blocks: [] });
            onShare((i + 1) / entities.length);
        });
        for (const block of document.blockRecords) {
            if (/^\*paper_space/i.test(block.name))
                this.#count('onPaper', [...block.entities].filter((each) => !(each instanceof cad.Viewport)).length);
        }
    }

    #count(kind, count = 1) {
        if (count > 0)
            this.kinds[kind] = (this.kinds[kind] ?? 0) + count;
    }

    #lose(entity) {
        const kind = entity.dxfClass?.dxfName || entity.objectName || 'unknown';
        if (!(entity instanceof cad.ModelerGeometry)) {
            this.#count(kind);
            return;
        }
        this.lostComponents += 1;
        if (this.lostNames.length < mostNamed)
            this.lostNames.push(`${kind} ${idOf(entity)}`);
    }

    #visit() {
        this.#visits += 1;
        if (this.#visits > mostVisits)
            throw new TooLarge('its blocks are repeated more often than can be shown');
    }

    #layerNode(layer) {
        if (!this.#layers.has(layer)) {
            this.#layers.set(layer, this.nodes.length);
            this.nodes.push({ parent: -1, type: 'Layer', name: plainText(layer?.name) || '0', id: idOf(layer), properties: {} });
        }
        return this.#layers.get(layer);
    }

    /// Gives the node that an entity's shapes belong to, and whether it is the entity's own.
    #nodeOf(entity, layer) {
        const parent = this.#layerNode(layer);
        const component = componentOf(entity);
        if (component === null)
            return { node: parent, isOwn: false };
        if (this.#components >= mostComponents) {
            this.#count('properties');
            return { node: parent, isOwn: false };
        }
        const { type, name, told } = component;
        const attributes = entity instanceof cad.Insert ? attributesOf(entity) : {};
        const properties = { Drawing: { Layer: this.nodes[parent].name, ...told } };
        if (Object.keys(attributes).length > 0)
            properties.Attributes = attributes;
        this.#components += 1;
        this.nodes.push({ parent, type, name: name || type, id: idOf(entity), properties });
        return { node: this.nodes.length - 1, isOwn: true };
    }

    /// Takes an entity, or what a block is made of, as it stands in `place`.
    #take(entity, place) {
        this.#visit();
        if (entity instanceof cad.Viewport || (place.node !== null && entity instanceof cad.AttributeDefinition))
            return;
        const look = lookOf(entity, place.look);
        const isBlock = entity instanceof cad.Insert || entity instanceof cad.Dimension;
        // Of a block on a layer that is switched off all is shown that stands on other layers.
        if (entity.isInvisible || (isBlock ? isFrozen(look.layer) : isHidden(look.layer))) {
            this.#count('hidden');
            return;
        }
        const shapes = isBlock ? null : this.#shapesOf(entity, place);
        if (isBlock ? !entity.block : shapes === null) {
            this.#lose(entity);
            return;
        }
        const layers = this.#layers.size;
        const before = this.nodes.length;
        const { node, isOwn } = place.node !== null ? { node: place.node, isOwn: false } : this.#nodeOf(entity, look.layer);
        const isSeen = isBlock ? this.#takeBlock(entity, { ...place, look, node })
            : this.#draw(entity, shapes, { ...place, look, node });
        if (isOwn && !isSeen) {
            // What has nothing to show is not in the tree, nor is a layer that was begun for it.
            this.nodes.length = before;
            if (this.#layers.size > layers)
                this.#layers.delete(look.layer);
        }
    }

    /// What stands in blocks is drawn again and again.
    #shapesOf(entity, place) {
        if (place.node === null)
            return shapesOf(entity);
        if (!this.#shapes.has(entity))
            this.#shapes.set(entity, shapesOf(entity));
        return this.#shapes.get(entity);
    }

    /// Gives whether anything of it is to be seen.
    #draw(entity, shapes, place) {
        if (shapes.lines.length + shapes.triangles.length === 0)
            return false;
        const isTaken = this.#geometry.take(place.node, place.look, shapes, place.matrix);
        if (!isTaken)
            this.#lose(entity);
        return isTaken;
    }

    #takeBlock(entity, place) {
        const { block } = entity;
        if (place.blocks.includes(block) || place.blocks.length >= deepest) {
            this.#count('nestedInThemselves');
            return false;
        }
        if (block.blockEntity?.xRefPath && block.entities.length === 0)
            this.#count('XREF');
        const inside = { ...place, blocks: [...place.blocks, block] };
        const before = this.#geometry.count;
        if (entity instanceof cad.Insert)
            this.#takeInsert(entity, inside);
        else
            // The points that a dimension measures between are no part of its picture.
            [...block.entities].filter((each) => !(each instanceof cad.Point)).forEach((each) => this.#take(each, inside));
        return this.#geometry.count > before;
    }

    #takeInsert(insert, place) {
        const base = pointOf(insert.block.blockEntity?.basePoint).map((each) => -each);
        const at = product(planeOf(insert.normal), product(shift(pointOf(insert.insertPoint)), turnAboutZ(insert.rotation)));
        const inner = product(scaling(insert.xScale, insert.yScale, insert.zScale), shift(base));
        for (let row = 0; row < Math.max(1, insert.rowCount); ++row) {
            for (let column = 0; column < Math.max(1, insert.columnCount); ++column) {
                this.#visit();
                const step = shift([column * insert.columnSpacing, row * insert.rowSpacing, 0]);
                this.#takeAll(insert.block, { ...place, matrix: product(place.matrix, product(at, product(step, inner))) });
            }
        }
        // Attributes stand where the block reference does, not in the block.
        for (const attribute of insert.attributes) {
            if ((attribute.flags & cad.AttributeFlags.Hidden) === 0)
                this.#take(attribute, place);
        }
    }

    #takeAll(block, place) {
        for (const entity of block.entities)
            this.#take(entity, place);
    }
}
