// SPDX-License-Identifier: MIT
//
// Texts are told as properties, and drawn as the frames that they would fill: the fonts that a drawing names are seldom
// on the machine that converts it.
import * as cad from './acad-ts.mjs';
import { moved, planeOf, pointOf, product, shift, turnAboutZ, unit, cross } from './dwgspace.mjs';

// In shares of the height of the letters.
const widthOfALetter = 0.7;
const widthOfAnIdeograph = 1.1;
const heightOfALine = 1.6;
const firstIdeograph = 0x2e80;
const mostLetters = 4096;

const signs = { c: 'Ø', d: '°', p: '±' };

/// A text as it is read: codes become the letters that they stand for.
export function plainText(text) {
    return String(text ?? '').slice(0, mostLetters)
        .replace(/\\U\+([0-9a-f]{4})/gi, (_, code) => String.fromCharCode(parseInt(code, 16)))
        .replace(/%%([cdp])/gi, (_, code) => signs[code.toLowerCase()])
        .replace(/%%[uok]/gi, '');
}

export function textOf(entity) {
    if (!(entity instanceof cad.MText))
        return plainText(entity.value);
    try {
        return plainText(entity.plainText).trim();
    } catch {
        return plainText(entity.value);
    }
}

function widthOf(line) {
    return [...line].reduce((sum, letter) =>
        sum + (letter.codePointAt(0) >= firstIdeograph ? widthOfAnIdeograph : widthOfALetter), 0);
}

function frame(matrix, left, bottom, width, height) {
    const corners = [[0, 0], [width, 0], [width, height], [0, height], [0, 0]];
    return corners.map(([x, y]) => moved(matrix, [left + x, bottom + y, 0]));
}

function lineFrame(text) {
    const width = widthOf(textOf(text)) * text.height * (text.widthFactor || 1);
    const matrix = product(planeOf(text.normal), product(shift(pointOf(text.insertPoint)), turnAboutZ(text.rotation)));
    return frame(matrix, 0, 0, width, text.height);
}

/// The plane of a paragraph: its x axis is written in the file, and may be askew to its normal, or nothing.
function paragraphPlane(text) {
    const at = pointOf(text.insertPoint);
    const z = unit(pointOf(text.normal));
    const across = cross(z, pointOf(text.alignmentPoint));
    if (!(Math.hypot(...across) > 0))
        return product(shift(at), planeOf(text.normal));
    const y = unit(across);
    const x = cross(y, z);
    return [x[0], y[0], z[0], at[0], x[1], y[1], z[1], at[1], x[2], y[2], z[2], at[2]];
}

function paragraphFrame(text) {
    const lines = textOf(text).split(/\r\n|\r|\n/);
    const written = Math.max(...lines.map(widthOf)) * text.height;
    const width = text.rectangleWidth > 0 ? Math.min(text.rectangleWidth, written) : written;
    const broken = lines.reduce((sum, line) => sum + Math.max(1, Math.ceil((widthOf(line) * text.height) / (width || 1))), 0);
    const height = text.height * (1 + (Math.min(broken, mostLetters) - 1) * heightOfALine);
    // Attachment points are numbered by rows, from the top left one.
    const [row, column] = [Math.floor((text.attachmentPoint - 1) / 3), (text.attachmentPoint - 1) % 3];
    return frame(paragraphPlane(text), (-width * column) / 2, (-height * (2 - row)) / 2, width, height);
}

export function textShapes(text) {
    if (textOf(text) === '' || !(text.height > 0))
        return { lines: [], triangles: [] };
    return { lines: [text instanceof cad.MText ? paragraphFrame(text) : lineFrame(text)], triangles: [] };
}

/// Texts on leaders have a place and no frame; what they say is told.
export function leaderText(leader) {
    return plainText(leader.contextData?.textLabel ?? '');
}
