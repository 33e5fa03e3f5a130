// Affine transforms as 12 numbers, three rows of four, for points as columns.
import type { Triple } from '../data/format';

export type Numbers = ArrayLike<number>;

export function multiply(out: Float64Array, at: number, a: Numbers, ai: number, b: Numbers, bi: number): void {
    for (let row = 0; row < 12; row += 4) {
        const x = a[ai + row];
        const y = a[ai + row + 1];
        const z = a[ai + row + 2];
        out[at + row] = x * b[bi] + y * b[bi + 4] + z * b[bi + 8];
        out[at + row + 1] = x * b[bi + 1] + y * b[bi + 5] + z * b[bi + 9];
        out[at + row + 2] = x * b[bi + 2] + y * b[bi + 6] + z * b[bi + 10];
        out[at + row + 3] = x * b[bi + 3] + y * b[bi + 7] + z * b[bi + 11] + a[ai + row + 3];
    }
}

export function applied(m: Numbers, at: number, point: Numbers): Triple {
    const [x, y, z] = [point[0], point[1], point[2]];
    return [
        m[at] * x + m[at + 1] * y + m[at + 2] * z + m[at + 3],
        m[at + 4] * x + m[at + 5] * y + m[at + 6] * z + m[at + 7],
        m[at + 8] * x + m[at + 9] * y + m[at + 10] * z + m[at + 11],
    ];
}

/// Of a direction, not normalised.
export function turned(m: Numbers, at: number, direction: Numbers): Triple {
    const [x, y, z] = [direction[0], direction[1], direction[2]];
    return [
        m[at] * x + m[at + 1] * y + m[at + 2] * z,
        m[at + 4] * x + m[at + 5] * y + m[at + 6] * z,
        m[at + 8] * x + m[at + 9] * y + m[at + 10] * z,
    ];
}

export const dot = (a: Numbers, b: Numbers): number => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
export const minus = (a: Numbers, b: Numbers): Triple => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
export const plus = (a: Numbers, b: Numbers): Triple => [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
export const times = (a: Numbers, factor: number): Triple => [a[0] * factor, a[1] * factor, a[2] * factor];
export const cross = (a: Numbers, b: Numbers): Triple => [
    a[1] * b[2] - a[2] * b[1],
    a[2] * b[0] - a[0] * b[2],
    a[0] * b[1] - a[1] * b[0],
];
export const length = (a: Numbers): number => Math.hypot(a[0], a[1], a[2]);

/// Of length 1; `otherwise` for one without a direction.
export function unit(a: Numbers, otherwise: Triple = [0, 0, 1]): Triple {
    const size = length(a);
    return size > 0 && Number.isFinite(size) ? [a[0] / size, a[1] / size, a[2] / size] : otherwise;
}

/// Some direction square to the given one.
export function square(direction: Numbers): Triple {
    const away: Triple = Math.abs(direction[0]) < 0.6 ? [1, 0, 0] : [0, 1, 0];
    return unit(cross(direction, away), [0, 1, 0]);
}
