// SPDX-License-Identifier: MIT
import * as cad from './acad-ts.mjs';

// The colour 7 is black on white paper and white on a black screen; drawings are shown on a dark ground.
const blackOrWhite = [0.8, 0.8, 0.8];
const dimmest = 0.05;

function linear(byte) {
    return Math.pow(byte / 255, 2.2);
}

function rgbOf(color) {
    if (!color.isTrueColor && color.index === 7)
        return blackOrWhite;
    const rgb = [color.r, color.g, color.b].map((byte) => linear(byte));
    // Black would not be seen either.
    return rgb.every((share) => share >= 0 && share < dimmest) ? rgb.map(() => dimmest) : rgb;
}

/// Layers are hidden when they are switched off or frozen.
export function isHidden(layer) {
    return layer !== null && (!layer.isOn || isFrozen(layer));
}

export function isFrozen(layer) {
    return layer !== null && (layer.flags & cad.LayerFlags.Frozen) !== 0;
}

/// What an entity takes over from the block reference that it stands in; at the top there is none.
export const atTheTop = { layer: null, color: blackOrWhite, opacity: 1 };

/// The layer "0" of a block is the layer that the block has been put on.
export function layerOf(entity, above) {
    return above.layer !== null && entity.layer?.name === cad.Layer.defaultName ? above.layer : entity.layer ?? null;
}

export function lookOf(entity, above) {
    const layer = layerOf(entity, above);
    const color = entity.color.isByBlock ? above.color
        : rgbOf(entity.color.isByLayer && layer !== null ? layer.color : entity.color);
    const { transparency } = entity;
    const opacity = !transparency || transparency.isByLayer ? 1
        : transparency.isByBlock ? above.opacity : 1 - transparency.value / 100;
    return { layer, color, opacity: Math.min(1, Math.max(dimmest, opacity)) };
}
