// SPDX-License-Identifier: MIT
//
// The floors of a project, and what belongs to one of them.

// A floor's slab lies below its elevation.
const slab = 0.3;
// Less than this of a component in a floor is the joint to its neighbour.
const joint = 0.01;

// The floors of all models, each name once, from the lowest up.
export function unionOfFloors(lists) {
    const byName = new Map();
    for (const {name, elevation} of lists.flat()) {
        if (typeof name === 'string' && Number.isFinite(elevation) && !byName.has(name)) byName.set(name, elevation);
    }
    return [...byName].map(([name, elevation]) => ({name, elevation})).sort((a, b) => a.elevation - b.elevation);
}

// From the floor's slab to that of the next floor above it; everything for no floor.
export function rangeOf(floors, chosen) {
    if (chosen === null) return {low: -Infinity, ground: -Infinity, high: Infinity};
    const {elevation} = floors[chosen];
    const above = floors.find((floor) => floor.elevation > elevation);
    return {low: elevation - slab, ground: elevation, high: above ? above.elevation - slab : Infinity};
}

// A wall of the floor below reaches into the slab and no farther; what begins in the slab belongs to it.
export function isIn(range, box) {
    const reachesIn = box.max.y > range.ground + joint || box.min.y > range.low - joint;
    return reachesIn && box.max.y > range.low + joint && box.min.y < range.high - joint;
}
