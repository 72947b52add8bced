// SPDX-License-Identifier: MIT

const quantities = ['LengthValue', 'AreaValue', 'VolumeValue', 'CountValue', 'WeightValue', 'TimeValue', 'NumberValue'];

function textOf(value) {
    if (value === null || value === undefined)
        return '';
    if (Array.isArray(value))
        return value.map(textOf).filter(Boolean).join(', ');
    if (typeof value === 'object')
        return textOf(value.value);
    if (typeof value === 'number')
        return String(Number(value.toPrecision(9)));
    if (typeof value === 'boolean')
        return value ? 'true' : 'false';
    return String(value);
}

function valueOf(lines, property) {
    for (const key of ['NominalValue', 'EnumerationValues', 'ListValues', ...quantities]) {
        if (property[key] !== null && property[key] !== undefined)
            return textOf(property[key]);
    }
    if (property.LowerBoundValue || property.UpperBoundValue)
        return `${textOf(property.LowerBoundValue)} – ${textOf(property.UpperBoundValue)}`;
    return '';
}

function groupOf(lines, set) {
    const group = {};
    for (const property of lines.all(set.HasProperties ?? set.Quantities ?? [])) {
        const name = textOf(property.Name);
        const value = valueOf(lines, property);
        if (name !== '' && value !== '')
            group[name] = value;
    }
    return group;
}

function materialNames(lines, material, depth = 0) {
    if (!material || depth > 4)
        return [];
    const nested = [material.Material, material.ForLayerSet, material.ForProfileSet,
        ...(material.MaterialLayers ?? []), ...(material.Materials ?? []),
        ...(material.MaterialConstituents ?? []), ...(material.MaterialProfiles ?? [])].filter(Boolean);
    if (nested.length === 0)
        return [textOf(material.Name)].filter(Boolean);
    return nested.flatMap((each) => materialNames(lines, lines.at(each), depth + 1));
}

function listsBy(relations, objectsOf, valueOfRelation) {
    const lists = new Map();
    for (const relation of relations) {
        for (const object of objectsOf(relation) ?? []) {
            if (!lists.has(object.value))
                lists.set(object.value, []);
            lists.get(object.value).push(valueOfRelation(relation));
        }
    }
    return lists;
}

/// Gives a function: the properties of a component, texts by name in groups by name. Those of its type come first, its
/// own over them.
export function readProperties(lines, ifc) {
    const groups = new Map();
    const groupsOf = (set) => {
        if (!groups.has(set.expressID))
            groups.set(set.expressID, groupOf(lines, set));
        return groups.get(set.expressID);
    };
    const related = (relation) => relation.RelatedObjects;
    const own = listsBy(lines.ofType(ifc.IFCRELDEFINESBYPROPERTIES), related, (each) => each.RelatingPropertyDefinition);
    const types = listsBy(lines.ofType(ifc.IFCRELDEFINESBYTYPE), related, (each) => each.RelatingType);
    const materials = listsBy(lines.ofType(ifc.IFCRELASSOCIATESMATERIAL), related, (each) => each.RelatingMaterial);
    return (id) => {
        const result = {};
        const sets = [...(types.get(id) ?? []).flatMap((type) => lines.at(type)?.HasPropertySets ?? []), ...(own.get(id) ?? [])];
        for (const set of lines.all(sets)) {
            const name = textOf(set.Name) || 'Properties';
            const group = groupsOf(set);
            if (Object.keys(group).length > 0)
                result[name] = { ...result[name], ...group };
        }
        const names = [...new Set((materials.get(id) ?? []).flatMap((each) => materialNames(lines, lines.at(each))))];
        if (names.length > 0)
            result.Material = { Material: names.join(', ') };
        return result;
    };
}
