// SPDX-License-Identifier: MIT
//
// Points are lists of three numbers, matrices lists of twelve: three rows, each with its shift at the end.

export const identity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0];

export function pointOf(vector, z = 0) {
    return [vector?.x ?? 0, vector?.y ?? 0, vector?.z ?? z];
}

export function moved(matrix, [x, y, z]) {
    return [0, 4, 8].map((row) => matrix[row] * x + matrix[row + 1] * y + matrix[row + 2] * z + matrix[row + 3]);
}

/// The matrix that does first what `inner`, then what `outer` does.
export function product(outer, inner) {
    const result = new Array(12);
    for (let row = 0; row < 12; row += 4) {
        for (let column = 0; column < 4; ++column) {
            result[row + column] = outer[row] * inner[column] + outer[row + 1] * inner[column + 4] +
                outer[row + 2] * inner[column + 8] + (column === 3 ? outer[row + 3] : 0);
        }
    }
    return result;
}

export function shift([x, y, z]) {
    return [1, 0, 0, x, 0, 1, 0, y, 0, 0, 1, z];
}

export function scaling(x, y, z) {
    return [x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0];
}

export function turnAboutZ(angle) {
    const [c, s] = [Math.cos(angle), Math.sin(angle)];
    return [c, -s, 0, 0, s, c, 0, 0, 0, 0, 1, 0];
}

export function added(a, b, factor = 1) {
    return [a[0] + b[0] * factor, a[1] + b[1] * factor, a[2] + b[2] * factor];
}

export function cross(a, b) {
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
}

export function unit(vector) {
    const length = Math.hypot(...vector);
    return length > 0 && Number.isFinite(length) ? vector.map((each) => each / length) : [0, 0, 1];
}

// Below this the normal counts as upright, and the x axis of its plane is taken from the y axis of the world.
const upright = 1 / 64;

/// Flat entities stand in a plane of their own, of which the file keeps the normal alone. Its x axis follows from it
/// by a rule that every program keeps.
export function planeOf(normal) {
    const z = unit(pointOf(normal ?? { z: 1 }));
    if (z[2] === 1)
        return identity;
    const x = unit(Math.abs(z[0]) < upright && Math.abs(z[1]) < upright ? cross([0, 1, 0], z) : cross([0, 0, 1], z));
    const y = cross(z, x);
    return [x[0], y[0], z[0], 0, x[1], y[1], z[1], 0, x[2], y[2], z[2], 0];
}
