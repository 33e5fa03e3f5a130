// Coarser forms of surfaces for while the picture moves: corners in one cell of a grid become one.
import type { Box } from '../data/format';
import type { Primitive } from '../data/geometry';
import { length, minus } from './transform';

export interface Surface {
    positions: Float32Array;
    normals: Float32Array | null;
    indices: Uint32Array | Uint16Array;
}

// A form that has more of the triangles than this is not worth its memory.
const kWorth = 0.8;
/// The finest grid has 2^(kFinest / 2) cells along a diagonal.
export const kFinest = 20;

/// The side of the cells of a level: each is by the square root of two finer than the one before.
export const cellOf = (box: Box, level: number): number => length(minus(box.high, box.low)) * Math.pow(2, -level / 2);

// The cell of each corner, and how many cells there are.
function cellsOf(positions: Float32Array, box: Box, cell: number): { cells: Uint32Array; count: number } {
    const size = positions.length / 3;
    const cells = new Uint32Array(size);
    let slots = 16;
    while (slots < 2 * size) {
        slots *= 2;
    }
    const keys = new Float64Array(slots).fill(-1);
    const values = new Uint32Array(slots);
    const [across, along] = [box.high[0] - box.low[0], box.high[1] - box.low[1]].map((part) => part / cell + 2);
    const [x0, y0, z0] = box.low;
    let count = 0;
    for (let v = 0; v < size; ++v) {
        const x = Math.floor((positions[3 * v] - x0) / cell);
        const y = Math.floor((positions[3 * v + 1] - y0) / cell);
        const z = Math.floor((positions[3 * v + 2] - z0) / cell);
        const key = x + Math.ceil(across) * (y + Math.ceil(along) * z);
        let slot = (Math.imul(x, 73856093) ^ Math.imul(y, 19349663) ^ Math.imul(z, 83492791)) & (slots - 1);
        while (keys[slot] !== key && keys[slot] >= 0) {
            slot = (slot + 1) & (slots - 1);
        }
        if (keys[slot] < 0) {
            keys[slot] = key;
            values[slot] = count++;
        }
        cells[v] = values[slot];
    }
    return { cells, count };
}

// The side of a cube that a normal points to: corners of different sides keep normals of their own.
function sideOf(normals: Float32Array, at: number): number {
    const [x, y, z] = [normals[at], normals[at + 1], normals[at + 2]];
    const [a, b, c] = [Math.abs(x), Math.abs(y), Math.abs(z)];
    if (a >= b && a >= c) {
        return x < 0 ? 0 : 1;
    }
    return b >= c ? (y < 0 ? 2 : 3) : z < 0 ? 4 : 5;
}

/// Null when little is gained by it.
export function coarser(primitive: Primitive, box: Box, level: number): Surface | null {
    const { positions, normals, indices } = primitive;
    const cell = cellOf(box, level);
    if (!indices || !(cell > 0) || !Number.isFinite(cell) || level > kFinest) {
        return null;
    }
    const { cells, count } = cellsOf(positions, box, cell);
    const kept: number[] = [];
    for (let i = 0; i < indices.length; i += 3) {
        const [a, b, c] = [cells[indices[i]], cells[indices[i + 1]], cells[indices[i + 2]]];
        if (a !== b && b !== c && c !== a) {
            kept.push(indices[i], indices[i + 1], indices[i + 2]);
        }
    }
    if (kept.length > kWorth * indices.length) {
        return null;
    }
    return joined(positions, normals, kept, cells, count);
}

// Corners that are used, each in the middle of those of its cell.
function joined(
    positions: Float32Array,
    normals: Float32Array | null,
    kept: number[],
    cells: Uint32Array,
    count: number,
): Surface {
    const middles = new Float32Array(3 * count);
    const members = new Uint32Array(count);
    for (let v = 0; v < cells.length; ++v) {
        ++members[cells[v]];
        for (let axis = 0; axis < 3; ++axis) {
            middles[3 * cells[v] + axis] += positions[3 * v + axis];
        }
    }
    const corners = new Int32Array(6 * count).fill(-1);
    const owners: number[] = [];
    const sums: number[] = [];
    const made = kept.map((v) => {
        const at = 6 * cells[v] + (normals ? sideOf(normals, 3 * v) : 0);
        if (corners[at] < 0) {
            corners[at] = owners.length;
            owners.push(cells[v]);
            sums.push(0, 0, 0);
        }
        for (let axis = 0; normals && axis < 3; ++axis) {
            sums[3 * corners[at] + axis] += normals[3 * v + axis];
        }
        return corners[at];
    });
    const placed = new Float32Array(3 * owners.length);
    owners.forEach((owner, i) => {
        for (let axis = 0; axis < 3; ++axis) {
            placed[3 * i + axis] = middles[3 * owner + axis] / members[owner];
        }
    });
    return {
        positions: placed,
        normals: normals && unitNormals(sums),
        indices: owners.length < 65536 ? Uint16Array.from(made) : Uint32Array.from(made),
    };
}

function unitNormals(sums: number[]): Float32Array {
    const normals = new Float32Array(sums);
    for (let i = 0; i < normals.length; i += 3) {
        const size = Math.hypot(normals[i], normals[i + 1], normals[i + 2]) || 1;
        normals[i] /= size;
        normals[i + 1] /= size;
        normals[i + 2] /= size;
    }
    return normals;
}

/// The coarser forms that were asked for. They are made one by one, when there is time.
export class CoarseForms {
    private readonly forms = new Map<Primitive, Map<number, Surface | null>>();
    private wanted: (() => void)[] = [];

    /// The form of a level, or the next finer one that there is; null for the surface itself.
    find(primitive: Primitive, box: Box, level: number): Surface | null {
        if (level > kFinest) {
            return null;
        }
        let forms = this.forms.get(primitive);
        forms ?? this.forms.set(primitive, (forms = new Map()));
        const known = forms;
        if (!known.has(level)) {
            this.wanted.push(() => known.has(level) || known.set(level, coarser(primitive, box, level)));
            for (let finer = level + 1; finer <= kFinest; ++finer) {
                const form = known.get(finer);
                if (form) {
                    return form;
                }
            }
        }
        return known.get(level) ?? null;
    }

    get isComplete(): boolean {
        return this.wanted.length === 0;
    }

    /// Makes some of what was asked for.
    work(milliseconds: number): void {
        const end = performance.now() + milliseconds;
        while (this.wanted.length > 0 && performance.now() < end) {
            this.wanted.pop()?.();
        }
    }

    /// What is not made yet is not wanted any more.
    forget(): void {
        this.wanted = [];
    }
}
