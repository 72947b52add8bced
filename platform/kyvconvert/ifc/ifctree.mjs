// SPDX-License-Identifier: MIT
import { readProperties } from './ifcproperties.mjs';

// Representations that are drawn on plans and never built.
const flat = new Set(['Axis', 'FootPrint', 'Box', 'Annotation', 'Plan', 'Profile', 'Reference', 'Clearance', 'CoG',
    'Lighting', 'SurveyPoints']);
// The air of rooms and the holes in walls are no matter.
const immaterial = new Set(['IfcSpace', 'IfcOpeningElement', 'IfcOpeningStandardCase', 'IfcAnnotation', 'IfcGrid',
    'IfcVirtualElement', 'IfcSpatialZone', 'IfcProject']);
const metres = { EXA: 1e18, PETA: 1e15, TERA: 1e12, GIGA: 1e9, MEGA: 1e6, KILO: 1e3, HECTO: 1e2, DECA: 10, DECI: 0.1,
    CENTI: 0.01, MILLI: 0.001, MICRO: 1e-6, NANO: 1e-9 };
const deepest = 200;

/// Lines of a file, each read once; one that cannot be read is none.
export class Lines {
    #api;
    #model;
    #known = new Map();

    constructor(api, model) {
        this.#api = api;
        this.#model = model;
    }

    at(reference) {
        const id = typeof reference === 'number' ? reference : reference?.value;
        if (typeof id !== 'number')
            return null;
        if (!this.#known.has(id)) {
            let line = null;
            try {
                line = this.#api.GetLine(this.#model, id) ?? null;
            } catch {
                line = null;
            }
            this.#known.set(id, line);
        }
        return this.#known.get(id);
    }

    all(references) {
        return (Array.isArray(references) ? references : [references]).map((each) => this.at(each)).filter(Boolean);
    }

    ofType(type, withSubtypes = false) {
        return [...this.#api.GetLineIDsWithType(this.#model, type, withSubtypes)].map((id) => this.at(id)).filter(Boolean);
    }

    typeName(line) {
        return this.#api.GetNameFromTypeCode(line.type) ?? '';
    }

    heightOf(placement) {
        try {
            const matrix = this.#api.GetWorldTransformMatrix(this.#model, placement);
            return Number.isFinite(matrix?.[14]) ? matrix[14] : null;
        } catch {
            return null;
        }
    }
}

function text(value) {
    return typeof value?.value === 'string' ? value.value : '';
}

/// How many metres a unit of length of the file is.
function metresPerUnit(lines, ifc) {
    const assignment = lines.ofType(ifc.IFCUNITASSIGNMENT)[0];
    const unit = lines.all(assignment?.Units ?? []).find((each) => each.UnitType?.value === 'LENGTHUNIT');
    const ofSi = (si) => metres[si?.Prefix?.value] ?? 1;
    if (!unit?.ConversionFactor)
        return ofSi(unit);
    const measure = lines.at(unit.ConversionFactor);
    const factor = Number(measure?.ValueComponent?.value) * ofSi(lines.at(measure?.UnitComponent));
    return Number.isFinite(factor) && factor > 0 ? factor : 1;
}

/// Who stands below whom.
function childrenOf(lines, ifc) {
    const children = new Map();
    const add = (parent, below) => {
        for (const child of below ?? [])
            (children.get(parent?.value) ?? children.set(parent?.value, []).get(parent?.value)).push(child.value);
    };
    for (const relation of lines.ofType(ifc.IFCRELAGGREGATES))
        add(relation.RelatingObject, relation.RelatedObjects);
    for (const relation of lines.ofType(ifc.IFCRELNESTS))
        add(relation.RelatingObject, relation.RelatedObjects);
    for (const relation of lines.ofType(ifc.IFCRELCONTAINEDINSPATIALSTRUCTURE))
        add(relation.RelatingStructure, relation.RelatedElements);
    return children;
}

function hasBody(lines, product) {
    const shapes = lines.all(lines.at(product.Representation)?.Representations ?? []);
    return shapes.some((shape) => !flat.has(text(shape.RepresentationIdentifier)));
}

/// Storeys stand where they are placed. Files that place all of them at one height tell the heights as numbers only.
function floorsOf(lines, ifc, unit) {
    const floors = lines.ofType(ifc.IFCBUILDINGSTOREY).map((storey) => ({
        name: text(storey.Name) || text(storey.LongName),
        placed: storey.ObjectPlacement ? lines.heightOf(storey.ObjectPlacement.value) : null,
        told: Number.isFinite(storey.Elevation?.value) ? storey.Elevation.value : null,
    }));
    const isPlaced = floors.every((floor) => floor.placed !== null) &&
        (new Set(floors.map((floor) => floor.placed)).size > 1 || floors.length < 2);
    return floors
        .map((floor) => ({ name: floor.name,
            elevation: unit * ((isPlaced ? floor.placed : floor.told) ?? floor.placed ?? 0) }))
        .sort((left, right) => left.elevation - right.elevation);
}

class Tree {
    nodes = [];
    indexOf = new Map();
    #needed = new Map();

    constructor(lines, children, geometry, properties) {
        this.lines = lines;
        this.children = children;
        this.geometry = geometry;
        this.properties = properties;
    }

    /// Whether anything at or below a component is to be kept: a surface, or a storey.
    isNeeded(id, depth = 0) {
        if (this.#needed.has(id) || depth > deepest)
            return this.#needed.get(id) ?? false;
        this.#needed.set(id, false);
        const line = this.lines.at(id);
        const below = (this.children.get(id) ?? []).map((child) => this.isNeeded(child, depth + 1)).some(Boolean);
        const needed = below || this.geometry.components.has(id) ||
            (line !== null && this.lines.typeName(line) === 'IfcBuildingStorey');
        this.#needed.set(id, needed);
        return needed;
    }

    take(id, parent, depth = 0) {
        const line = this.lines.at(id);
        if (line === null || this.indexOf.has(id) || depth > deepest || !this.isNeeded(id))
            return;
        const type = this.lines.typeName(line);
        let self = parent;
        if (!immaterial.has(type) || this.geometry.components.has(id)) {
            self = this.nodes.length;
            this.nodes.push({ parent, type, name: text(line.Name) || text(line.LongName) || type.slice(3),
                id: text(line.GlobalId), properties: this.properties(id) });
            this.indexOf.set(id, self);
        }
        for (const child of this.children.get(id) ?? [])
            this.take(child, self, depth + 1);
    }
}

/// The components of a building with their places in its tree, its storeys, and those whose surfaces could not be built.
export function readTree(api, ifc, model, geometry) {
    const lines = new Lines(api, model);
    const children = childrenOf(lines, ifc);
    const tree = new Tree(lines, children, geometry, readProperties(lines, ifc));
    for (const project of lines.ofType(ifc.IFCPROJECT))
        tree.take(project.expressID, -1);
    const below = new Set([...children.values()].flat());
    const products = lines.ofType(ifc.IFCPRODUCT, true);
    // Components of a file that puts them nowhere stand at the top; those of a circle follow after them.
    for (const product of products.filter((each) => !below.has(each.expressID)))
        tree.take(product.expressID, -1);
    for (const component of geometry.components)
        tree.take(component, -1);
    return {
        nodes: tree.nodes,
        indexOf: tree.indexOf,
        floors: floorsOf(lines, ifc, metresPerUnit(lines, ifc)),
        lost: products
            .filter((each) => !geometry.components.has(each.expressID) && !immaterial.has(lines.typeName(each)) &&
                each.Representation && hasBody(lines, each))
            .map((each) => ({ name: text(each.Name), type: lines.typeName(each) })),
    };
}
