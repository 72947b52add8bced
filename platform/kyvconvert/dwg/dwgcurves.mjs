// SPDX-License-Identifier: MIT
//
// Curves as the corners of lines that are drawn in their place.
import { added, cross, moved, planeOf, pointOf } from './dwgspace.mjs';

const stepsOfACircle = 48;
const stepsOfASpan = 8;
const mostSteps = 4096;
const highestDegree = 25;
const tiny = 1e-12;

function steps(sweep) {
    return Math.min(mostSteps, Math.max(2, Math.ceil((Math.abs(sweep) / (2 * Math.PI)) * stepsOfACircle)));
}

function sweepOf(start, end) {
    const sweep = (end - start) % (2 * Math.PI);
    return sweep <= tiny ? sweep + 2 * Math.PI : sweep;
}

/// Along a part of a circle about a point, in the plane of that point.
function alongArc([x, y, z], radius, start, sweep) {
    const count = steps(sweep);
    return Array.from({ length: count + 1 }, (_, i) => {
        const angle = start + (sweep * i) / count;
        return [x + radius * Math.cos(angle), y + radius * Math.sin(angle), z];
    });
}

export function circlePoints(circle) {
    const plane = planeOf(circle.normal);
    return alongArc(pointOf(circle.center), circle.radius, 0, 2 * Math.PI).map((each) => moved(plane, each));
}

export function arcPoints(arc) {
    const plane = planeOf(arc.normal);
    return alongArc(pointOf(arc.center), arc.radius, arc.startAngle, sweepOf(arc.startAngle, arc.endAngle))
        .map((each) => moved(plane, each));
}

/// The part between two corners of a polyline: straight, or an arc whose bulge is the tangent of a quarter of its
/// angle. Without its last point, which is the first of the next part.
function partPoints(from, to, bulge) {
    const [dx, dy] = [to[0] - from[0], to[1] - from[1]];
    const chord = Math.hypot(dx, dy);
    if (!Number.isFinite(bulge) || Math.abs(bulge) < tiny || chord < tiny)
        return [from];
    const sweep = 4 * Math.atan(bulge);
    const away = (chord * (1 - bulge * bulge)) / (4 * bulge);
    const centre = [from[0] + dx / 2 - (dy / chord) * away, from[1] + dy / 2 + (dx / chord) * away, from[2]];
    const start = Math.atan2(from[1] - centre[1], from[0] - centre[0]);
    const points = alongArc(centre, Math.hypot(from[0] - centre[0], from[1] - centre[1]), start, sweep);
    return [from, ...points.slice(1, -1)];
}

/// The corners of a polyline in its plane, its bulges drawn out; closed ones end where they begin.
export function bulgedPoints(corners, bulges, isClosed) {
    const points = [];
    for (let i = 0; i + 1 < corners.length; ++i)
        points.push(...partPoints(corners[i], corners[i + 1], bulges[i]));
    if (isClosed && corners.length > 1)
        points.push(...partPoints(corners.at(-1), corners[0], bulges.at(-1)), corners[0]);
    else if (corners.length > 0)
        points.push(corners.at(-1));
    return points;
}

/// `across` is the shorter half axis.
function alongEllipse(centre, along, across, start, sweep) {
    const count = steps(sweep);
    return Array.from({ length: count + 1 }, (_, i) => {
        const angle = start + (sweep * i) / count;
        return added(added(centre, along, Math.cos(angle)), across, Math.sin(angle));
    });
}

export function ellipsePoints(ellipse) {
    const along = pointOf(ellipse.majorAxisEndPoint);
    const normal = moved(planeOf(ellipse.normal), [0, 0, 1]);
    const across = cross(normal, along).map((each) => each * ellipse.radiusRatio);
    return alongEllipse(pointOf(ellipse.center), along, across, ellipse.startParameter,
        sweepOf(ellipse.startParameter, ellipse.endParameter));
}

/// Edges of hatches run clockwise too: their angles are then told as if seen from below.
export function edgeArcPoints(edge) {
    const sign = edge.counterClockWise ? 1 : -1;
    const sweep = sweepOf(edge.startAngle, edge.endAngle);
    return alongArc(pointOf(edge.center), edge.radius, sign * edge.startAngle, sign * sweep);
}

export function edgeEllipsePoints(edge) {
    const sign = edge.counterClockWise ? 1 : -1;
    const along = [edge.majorAxisEndPoint.x, edge.majorAxisEndPoint.y, 0];
    const across = [-along[1], along[0], 0].map((each) => each * edge.minorToMajorRatio);
    const sweep = sweepOf(edge.startAngle, edge.endAngle);
    return alongEllipse(pointOf(edge.center), along, across, sign * edge.startAngle, sign * sweep);
}

/// A point of a rational curve, by halving between its controls again and again.
function pointAt(controls, weights, knots, degree, span, at) {
    const own = [];
    for (let i = 0; i <= degree; ++i) {
        const index = span - degree + i;
        const weight = weights[index] ?? 1;
        own.push([...controls[index].map((each) => each * weight), weight]);
    }
    for (let round = 1; round <= degree; ++round) {
        for (let i = degree; i >= round; --i) {
            const low = knots[span - degree + i];
            const high = knots[span + 1 + i - round];
            const share = high > low ? (at - low) / (high - low) : 0;
            own[i] = own[i].map((each, axis) => own[i - 1][axis] * (1 - share) + each * share);
        }
    }
    const [x, y, z, weight] = own[degree];
    return Math.abs(weight) > tiny ? [x / weight, y / weight, z / weight] : [x, y, z];
}

/// Null when the numbers make no curve.
export function curvePoints(controls, weights, knots, degree) {
    const isCurve = Number.isInteger(degree) && degree >= 1 && degree <= highestDegree && controls.length > degree &&
        knots.length === controls.length + degree + 1 && knots.every((each, i) => i === 0 || each >= knots[i - 1]);
    if (!isCurve)
        return null;
    const points = [];
    for (let span = degree; span < controls.length; ++span) {
        if (knots[span + 1] <= knots[span])
            continue;
        for (let step = points.length === 0 ? 0 : 1; step <= stepsOfASpan; ++step) {
            const at = knots[span] + ((knots[span + 1] - knots[span]) * step) / stepsOfASpan;
            points.push(pointAt(controls, weights, knots, degree, span, at));
        }
    }
    return points.length > 1 ? points : null;
}

/// A spline that is known by the points that it goes through alone is drawn straight between them.
export function splinePoints(spline) {
    const controls = spline.controlPoints.map((each) => pointOf(each));
    const points = curvePoints(controls, spline.weights ?? [], spline.knots, spline.degree);
    return points ?? spline.fitPoints.map((each) => pointOf(each));
}
