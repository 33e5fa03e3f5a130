// The colour of what is drawn.
import type { Triple } from '../data/format';
import type { Primitive } from '../data/geometry';
import type { SceneModel } from './model';
import type { SceneState } from './state';

/// Red, green, blue and opacity, each from 0 to 1.
export type Color = [number, number, number, number];

export const kGhostOpacity = 0.22;

/// The style that a view imposes on an item; -1 for none.
export function imposedStyle(model: SceneModel, state: SceneState, item: number): number {
    if (!state.hasStyles) {
        return -1;
    }
    if (state.itemStyle[item] >= 0) {
        return state.itemStyle[item];
    }
    const { parent } = model.file.occurrences;
    for (let o = model.file.items.occurrence[item]; o >= 0; o = parent[o]) {
        if (state.occurrenceStyle[o] >= 0) {
            return state.occurrenceStyle[o];
        }
    }
    return -1;
}

/// The style that a primitive of an item is drawn in; -1 for none.
export function styleOf(model: SceneModel, state: SceneState, item: number, primitive: Primitive): number {
    const imposed = imposedStyle(model, state, item);
    if (imposed >= 0) {
        return imposed;
    }
    const { keeps, style } = model.file.items;
    return keeps[item] === 1 && primitive.style >= 0 ? primitive.style : style[item];
}

export function colorOf(model: SceneModel, state: SceneState, item: number, primitive: Primitive): Color {
    const style = model.style(styleOf(model, state, item, primitive));
    const { surface, curve } = model.file.defaults;
    const plain: Triple = primitive.role === 'faces' ? surface : curve;
    const [red, green, blue] = style?.diffuse ?? plain;
    const opacity = Math.min(1, Math.max(0, style?.opacity ?? 1));
    return [red, green, blue, state.itemGhost[item] === 1 ? Math.min(opacity, kGhostOpacity) : opacity];
}
