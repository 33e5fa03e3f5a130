// What edges and faces measure, from what is known of them or else from what is drawn.
import type { Triple } from '../data/format';
import type { SceneModel } from '../scene/model';
import { cornersOf } from '../scene/overlays';
import type { Picture } from '../scene/picture';
import type { Detail } from '../scene/state';
import { cross, dot, length, minus, plus, times, unit } from '../scene/transform';

export interface EdgeFacts {
    kind: string;
    length: number;
    radius: number | null;
    center: Triple | null;
    /// Pairs of ends of segments.
    corners: Triple[];
    direction: Triple | null;
}

export interface FaceFacts {
    kind: string;
    area: number;
    radius: number | null;
    /// Of a flat face.
    normal: Triple | null;
    corners: Triple[];
}

/// How much longer things are in the scene than in the geometry's own numbers.
export function scaleOf(picture: Picture, item: number): number {
    const m = picture.placed.items;
    const size = [0, 1, 2].map((k) => Math.hypot(m[12 * item + k], m[12 * item + 4 + k], m[12 * item + 8 + k]));
    return Math.cbrt(size[0] * size[1] * size[2]);
}

export function edgeFacts(model: SceneModel, picture: Picture, detail: Detail): EdgeFacts {
    const edges = model.geometryOfItem(detail.item).edges;
    const corners = cornersOf(model, picture, detail);
    const scale = scaleOf(picture, detail.item);
    let drawn = 0;
    for (let i = 0; i + 1 < corners.length; i += 2) {
        drawn += length(minus(corners[i + 1], corners[i]));
    }
    const known = edges?.length?.[detail.number];
    const radius = edges?.radius?.[detail.number];
    const center = edges?.center?.[detail.number];
    const origin = model.meshOfItem(detail.item)?.origin ?? [0, 0, 0];
    const first = corners.length > 1 ? unit(minus(corners[1], corners[0])) : null;
    const isStraight =
        first !== null &&
        corners.every((corner) => {
            const away = minus(corner, corners[0]);
            return length(minus(away, times(first, dot(away, first)))) <= 1e-5 * drawn;
        });
    return {
        kind: edges?.curve?.[detail.number] || (isStraight ? 'line' : 'curve'),
        length: known != null ? known * scale : drawn,
        radius: radius != null ? radius * scale : null,
        center: center != null ? picture.pointOf(detail.item, minus(center, origin)) : null,
        corners,
        direction: isStraight ? first : null,
    };
}

export function faceFacts(model: SceneModel, picture: Picture, detail: Detail): FaceFacts {
    const faces = model.geometryOfItem(detail.item).faces;
    const corners = cornersOf(model, picture, detail);
    const scale = scaleOf(picture, detail.item);
    let area = 0;
    let sum: Triple = [0, 0, 0];
    const normals: Triple[] = [];
    for (let i = 0; i + 2 < corners.length; i += 3) {
        const across = cross(minus(corners[i + 1], corners[i]), minus(corners[i + 2], corners[i]));
        area += length(across) / 2;
        sum = plus(sum, across);
        length(across) > 0 && normals.push(unit(across));
    }
    const normal = unit(sum);
    const isFlat = normals.length > 0 && normals.every((one) => dot(one, normal) > 1 - 1e-6);
    const known = faces?.area?.[detail.number];
    const radius = faces?.radius?.[detail.number];
    return {
        kind: faces?.surface?.[detail.number] || (isFlat ? 'plane' : 'surface'),
        area: known != null ? known * scale * scale : area,
        radius: radius != null ? radius * scale : null,
        normal: isFlat ? normal : null,
        corners,
    };
}

/// From 0 to a right angle.
export const angleBetween = (a: Triple, b: Triple): number => Math.acos(Math.min(1, Math.abs(dot(a, b))));

/// Between the nearest corners; of two parallel flat faces from plane to plane.
export function distanceOfFaces(a: FaceFacts, b: FaceFacts): { value: number; from: Triple; to: Triple } {
    if (a.normal && b.normal && angleBetween(a.normal, b.normal) < 1e-4) {
        const from = middleOf(a.corners);
        const value = dot(minus(b.corners[0], from), a.normal);
        return { value: Math.abs(value), from, to: plus(from, times(a.normal, value)) };
    }
    return nearestCorners(a.corners, b.corners);
}

export function nearestCorners(a: Triple[], b: Triple[]): { value: number; from: Triple; to: Triple } {
    let best = { value: Infinity, from: a[0], to: b[0] };
    // Of very many corners some speak for all.
    const [stepA, stepB] = [Math.ceil(a.length / 2000), Math.ceil(b.length / 2000)];
    for (let i = 0; i < a.length; i += stepA) {
        for (let j = 0; j < b.length; j += stepB) {
            const value = length(minus(a[i], b[j]));
            if (value < best.value) {
                best = { value, from: a[i], to: b[j] };
            }
        }
    }
    return best;
}

export const middleOf = (corners: Triple[]): Triple =>
    times(
        corners.reduce((sum, corner) => plus(sum, corner), [0, 0, 0] as Triple),
        1 / Math.max(1, corners.length),
    );
