// SPDX-License-Identifier: MIT
//
// Surfaces of what is filled: hatches, and faces with more than three corners.
import earcut from './earcut.mjs';
import { bulgedPoints, curvePoints, edgeArcPoints, edgeEllipsePoints } from './dwgcurves.mjs';
import { cross, moved, planeOf, pointOf, unit } from './dwgspace.mjs';
import * as cad from './acad-ts.mjs';

const mostLoops = 1000;

function edgePoints(edge) {
    if (edge instanceof cad.HatchBoundaryPathPolyline) {
        // The third number of a corner is its bulge.
        return bulgedPoints(edge.vertices.map((each) => [each.x, each.y, 0]), edge.vertices.map((each) => each.z),
            edge.isClosed);
    }
    if (edge instanceof cad.HatchBoundaryPathLine)
        return [pointOf(edge.start), pointOf(edge.end)];
    if (edge instanceof cad.HatchBoundaryPathArc)
        return edgeArcPoints(edge);
    if (edge instanceof cad.HatchBoundaryPathEllipse)
        return edgeEllipsePoints(edge);
    const controls = edge.controlPoints.map((each) => [each.x, each.y, 0]);
    // The third number of a control is its weight here.
    const weights = edge.isRational ? edge.controlPoints.map((each) => each.z) : [];
    return curvePoints(controls, weights, edge.knots, edge.degree) ?? edge.fitPoints.map((each) => pointOf(each));
}

/// A boundary of a hatch, in the plane of the hatch; its last point is not its first again.
function loopOf(path) {
    const points = path.edges.flatMap(edgePoints);
    return points.filter((each, i) => {
        const next = points[(i + 1) % points.length];
        return each[0] !== next[0] || each[1] !== next[1];
    });
}

function isInside([x, y], loop) {
    let inside = false;
    for (let i = 0, j = loop.length - 1; i < loop.length; j = i++) {
        const [a, b] = [loop[i], loop[j]];
        if ((a[1] > y) !== (b[1] > y) && x < ((b[0] - a[0]) * (y - a[1])) / (b[1] - a[1]) + a[0])
            inside = !inside;
    }
    return inside;
}

/// Loops within an even number of others are filled, the others are holes in the innermost of those around them.
function shapesOf(loops) {
    const around = loops.map((loop, i) => loops.map((_, j) => j).filter((j) => j !== i && isInside(loop[0], loops[j])));
    const shapes = new Map();
    loops.forEach((loop, i) => {
        if (around[i].length % 2 === 0)
            shapes.set(i, [loop]);
    });
    loops.forEach((loop, i) => {
        const owner = around[i].find((j) => around[j].length === around[i].length - 1);
        if (around[i].length % 2 === 1)
            shapes.get(owner)?.push(loop);
    });
    return [...shapes.values()];
}

function filled([outline, ...holes]) {
    const numbers = [outline, ...holes].flatMap((loop) => loop.flatMap(([x, y]) => [x, y]));
    const starts = [];
    holes.reduce((at, hole) => (starts.push(at), at + hole.length), outline.length);
    const corners = [outline, ...holes].flat();
    const triangles = [];
    const indices = earcut(numbers, starts, 2);
    for (let i = 0; i + 2 < indices.length; i += 3)
        triangles.push([corners[indices[i]], corners[indices[i + 1]], corners[indices[i + 2]]]);
    return triangles;
}

/// The triangles of a filled hatch, or the outlines of a patterned one: a pattern that were filled would hide what it
/// stands for.
export function hatchShapes(hatch) {
    const matrix = planeOf(hatch.normal);
    const place = ([x, y]) => moved(matrix, [x, y, hatch.elevation]);
    const loops = hatch.paths.map(loopOf).filter((loop) => loop.length > 2);
    if (!hatch.isSolid || loops.length > mostLoops)
        return { lines: loops.map((loop) => [...loop, loop[0]].map(place)), triangles: [] };
    return { lines: [], triangles: shapesOf(loops).flatMap(filled).map((triangle) => triangle.map(place)) };
}

/// A flat face with any number of corners as triangles.
export function faceTriangles(corners) {
    if (corners.length < 4)
        return corners.length === 3 ? [corners] : [];
    let normal = [0, 0, 0];
    for (let i = 1; i + 1 < corners.length; ++i) {
        const [u, v] = [corners[i], corners[i + 1]].map((each) => each.map((value, axis) => value - corners[0][axis]));
        normal = cross(u, v).map((each, axis) => each + normal[axis]);
    }
    // Seen along the axis that it lies most across, so that none of it is hidden.
    const [x, y, z] = unit(normal).map(Math.abs);
    const axes = z >= x && z >= y ? [0, 1] : x >= y ? [1, 2] : [0, 2];
    const indices = earcut(corners.flatMap((each) => axes.map((axis) => each[axis])), [], 2);
    const triangles = [];
    for (let i = 0; i + 2 < indices.length; i += 3)
        triangles.push([corners[indices[i]], corners[indices[i + 1]], corners[indices[i + 2]]]);
    return triangles;
}
