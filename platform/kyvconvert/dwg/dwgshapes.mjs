// SPDX-License-Identifier: MIT
//
// What an entity looks like: lines, each a list of points, and triangles, in the space that the entity stands in.
import * as cad from './acad-ts.mjs';
import { arcPoints, bulgedPoints, circlePoints, ellipsePoints, splinePoints } from './dwgcurves.mjs';
import { faceTriangles, hatchShapes } from './dwgfill.mjs';
import { added, moved, planeOf, pointOf } from './dwgspace.mjs';
import { textShapes } from './dwgtexts.mjs';

const frameOfASpline = 16;
const finestMesh = 1 << 20;

function linesOf(...lines) {
    return { lines: lines.filter((line) => line.length > 1), triangles: [] };
}

function trianglesOf(faces) {
    return { lines: [], triangles: faces.flatMap(faceTriangles) };
}

/// A line that has been given a thickness is a wall of that height.
function raised(points, entity) {
    if (!entity.thickness || !Number.isFinite(entity.thickness))
        return linesOf(points);
    const up = moved(planeOf(entity.normal), [0, 0, entity.thickness]);
    const faces = [];
    for (let i = 0; i + 1 < points.length; ++i)
        faces.push([points[i], points[i + 1], added(points[i + 1], up), added(points[i], up)]);
    return trianglesOf(faces);
}

function flatPolyline(polyline, vertices) {
    const plane = planeOf(polyline.normal);
    const corners = vertices.map((each) => [each.location.x, each.location.y, polyline.elevation]);
    const points = bulgedPoints(corners, vertices.map((each) => each.bulge), polyline.isClosed);
    return raised(points.map((each) => moved(plane, each)), polyline);
}

/// The frame that a smoothed polyline was bent along is not part of it.
function drawnVertices(polyline) {
    return [...polyline.vertices].filter((each) => (each.flags & frameOfASpline) === 0);
}

function spatialPolyline(polyline) {
    const points = drawnVertices(polyline).map((each) => pointOf(each.location));
    return linesOf(polyline.isClosed && points.length > 1 ? [...points, points[0]] : points);
}

function polyface(mesh) {
    const corners = [...mesh.vertices].filter((each) => !(each instanceof cad.VertexFaceRecord))
        .map((each) => pointOf(each.location));
    // A negative number marks an edge that is not drawn; 0 is no corner.
    return trianglesOf([...mesh.faces].map((face) => [face.index1, face.index2, face.index3, face.index4]
        .filter((index) => index !== 0).map((index) => corners[Math.abs(index) - 1])
        .filter((corner) => corner !== undefined)));
}

function polygonMesh(mesh) {
    const isSmooth = (mesh.flags & cad.PolylineFlags.SplineFit) !== 0;
    const rows = isSmooth ? mesh.mSmoothSurfaceDensity : mesh.mVertexCount;
    const columns = isSmooth ? mesh.nSmoothSurfaceDensity : mesh.nVertexCount;
    const corners = drawnVertices(mesh).map((each) => pointOf(each.location));
    if (!(rows > 1 && columns > 1) || rows * columns > Math.min(finestMesh, corners.length))
        return null;
    const isClosed = (flag) => (mesh.flags & flag) !== 0;
    const [lastRow, lastColumn] = [rows - (isClosed(cad.PolylineFlags.ClosedPolylineOrClosedPolygonMeshInM) ? 0 : 1),
        columns - (isClosed(cad.PolylineFlags.ClosedPolygonMeshInN) ? 0 : 1)];
    const at = (row, column) => corners[(row % rows) * columns + (column % columns)];
    const faces = [];
    for (let row = 0; row < lastRow; ++row) {
        for (let column = 0; column < lastColumn; ++column)
            faces.push([at(row, column), at(row, column + 1), at(row + 1, column + 1), at(row + 1, column)]);
    }
    return trianglesOf(faces);
}

function mesh(entity) {
    const corners = entity.vertices.map((each) => pointOf(each));
    return trianglesOf(entity.faces.map((face) => face.map((index) => corners[index])
        .filter((corner) => corner !== undefined)));
}

function face(entity) {
    const corners = [entity.firstCorner, entity.secondCorner, entity.thirdCorner, entity.fourthCorner].map((each) => pointOf(each));
    const isTriangle = corners[3].every((each, axis) => each === corners[2][axis]);
    return isTriangle ? trianglesOf([corners.slice(0, 3)])
        : { lines: [], triangles: [[corners[0], corners[1], corners[2]], [corners[0], corners[2], corners[3]]] };
}

function solid(entity) {
    const plane = planeOf(entity.normal);
    // The third and the fourth corner stand crosswise in the file.
    const [a, b, d, c] = [entity.firstCorner, entity.secondCorner, entity.thirdCorner, entity.fourthCorner]
        .map((each) => moved(plane, pointOf(each)));
    const shapes = { lines: [], triangles: [[a, b, c], [a, c, d]] };
    if (!entity.thickness)
        return shapes;
    const up = moved(plane, [0, 0, entity.thickness]);
    const upper = shapes.triangles.map((triangle) => triangle.map((corner) => added(corner, up)));
    const walls = raised([a, b, c, d, a], entity);
    return { lines: [], triangles: [...shapes.triangles, ...upper, ...walls.triangles] };
}

/// Each line of a multiple line runs beside its corners, as far away along the mitre as the first parameter says.
function multipleLine(entity) {
    const count = Math.max(0, ...entity.vertices.map((vertex) => vertex.segments.length));
    const isClosed = (entity.flags & cad.MLineFlags.Closed) !== 0;
    const lines = [];
    for (let i = 0; i < count; ++i) {
        const points = entity.vertices.map((vertex) =>
            added(pointOf(vertex.position), pointOf(vertex.miter), vertex.segments[i]?.parameters[0] ?? 0));
        lines.push(isClosed && points.length > 1 ? [...points, points[0]] : points);
    }
    return linesOf(...lines);
}

function multipleLeader(entity) {
    const roots = entity.contextData?.leaderRoots ?? [];
    return linesOf(...roots.flatMap((root) => root.lines.map((line) =>
        [...line.points.map((each) => pointOf(each)), pointOf(root.connectionPoint)])));
}

// A kind that is a special case of another stands before it.
const drawers = [
    [cad.Line, (each) => raised([pointOf(each.startPoint), pointOf(each.endPoint)], each)],
    [cad.Arc, (each) => raised(arcPoints(each), each)],
    [cad.Circle, (each) => raised(circlePoints(each), each)],
    [cad.Ellipse, (each) => linesOf(ellipsePoints(each))],
    [cad.Spline, (each) => linesOf(splinePoints(each))],
    [cad.LwPolyline, (each) => flatPolyline(each, each.vertices)],
    [cad.Polyline2D, (each) => flatPolyline(each, drawnVertices(each))],
    [cad.Polyline3D, spatialPolyline],
    [cad.PolyfaceMesh, polyface],
    [cad.PolygonMesh, polygonMesh],
    [cad.Mesh, mesh],
    [cad.Face3D, face],
    [cad.Solid, solid],
    [cad.Hatch, hatchShapes],
    [cad.TextEntity, textShapes],
    [cad.MText, textShapes],
    [cad.Leader, (each) => linesOf(each.vertices.map((vertex) => pointOf(vertex)))],
    [cad.MLine, multipleLine],
    [cad.MultiLeader, multipleLeader],
];

function isSound({ lines, triangles }) {
    const isFinite = (points) => points.every((point) => point.every(Number.isFinite));
    return lines.every(isFinite) && triangles.every(isFinite);
}

/// Null for what cannot be drawn: kinds that are not known, and entities whose numbers are none.
export function shapesOf(entity) {
    const drawer = drawers.find(([kind]) => entity instanceof kind);
    if (drawer === undefined)
        return null;
    const shapes = drawer[1](entity);
    return shapes !== null && isSound(shapes) ? shapes : null;
}
