// Meshes of the GLB, as arrays that share its buffer.
import type { Box, Triple } from './format';

export type Role = 'faces' | 'edges' | 'lines' | 'points';

/// Triangles of one style, or segments, or points.
export interface Primitive {
    role: Role;
    /// Of its own; -1 for none.
    style: number;
    positions: Float32Array;
    normals: Float32Array | null;
    indices: Uint32Array | Uint16Array | null;
    /// The first triangle or segment of each run of one face or edge, and its number.
    ranges: Uint32Array | null;
    numbers: Uint32Array | null;
}

export interface MeshData {
    origin: Triple;
    primitives: Primitive[];
    /// Without the origin.
    box: Box;
}

export const kNoNumber = 0xffffffff;

interface Accessor {
    bufferView?: number;
    byteOffset?: number;
    componentType: number;
    count: number;
    type: string;
}

interface GltfPrimitive {
    attributes: Record<string, number>;
    indices?: number;
    extras?: { role?: Role; style?: number; ranges?: number; numbers?: number };
}

interface Gltf {
    accessors?: Accessor[];
    bufferViews?: { byteOffset?: number; byteLength: number }[];
    meshes?: { primitives: GltfPrimitive[]; extras?: { origin?: Triple } }[];
}

const kMagic = 0x46546c67;
const kJson = 0x4e4f534a;
const kBinary = 0x004e4942;
const kWidth: Record<string, number> = { SCALAR: 1, VEC2: 2, VEC3: 3, VEC4: 4 };

/// The number of the face or edge that a triangle or segment belongs to; -1 for none.
export function numberAt(primitive: Primitive, index: number): number {
    const { ranges, numbers } = primitive;
    if (!ranges || !numbers || ranges.length === 0) {
        return -1;
    }
    let low = 0;
    let high = ranges.length;
    while (high - low > 1) {
        const middle = (low + high) >> 1;
        if (ranges[middle] <= index) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return numbers[low] === kNoNumber ? -1 : numbers[low];
}

/// How many triangles, segments or points there are.
export function sizeOf(primitive: Primitive): number {
    const corners = primitive.indices ? primitive.indices.length : primitive.positions.length / 3;
    return primitive.role === 'faces' ? corners / 3 : primitive.role === 'points' ? corners : corners / 2;
}

/// Calls back with the first and last + 1 triangle or segment of each run of the number.
export function runsOf(primitive: Primitive, number: number, each: (first: number, end: number) => void): void {
    const { ranges, numbers } = primitive;
    if (!ranges || !numbers) {
        return;
    }
    for (let i = 0; i < ranges.length; ++i) {
        if (numbers[i] === number) {
            each(ranges[i], i + 1 < ranges.length ? ranges[i + 1] : sizeOf(primitive));
        }
    }
}

function chunksOf(file: ArrayBuffer): { json: Gltf; binary: number; length: number } {
    const view = new DataView(file);
    if (file.byteLength < 20 || view.getUint32(0, true) !== kMagic || view.getUint32(4, true) !== 2) {
        throw new Error('The geometry is no GLB file.');
    }
    let json: Gltf | null = null;
    for (let at = 12; at + 8 <= file.byteLength;) {
        const length = view.getUint32(at, true);
        const type = view.getUint32(at + 4, true);
        if (at + 8 + length > file.byteLength) {
            break;
        }
        if (type === kJson) {
            json = JSON.parse(new TextDecoder().decode(new Uint8Array(file, at + 8, length))) as Gltf;
        } else if (type === kBinary && json) {
            return { json, binary: at + 8, length };
        }
        at += 8 + length;
    }
    if (!json) {
        throw new Error('The geometry ends too early.');
    }
    return { json, binary: file.byteLength, length: 0 };
}

function boxOf(primitives: Primitive[]): Box {
    const low: Triple = [Infinity, Infinity, Infinity];
    const high: Triple = [-Infinity, -Infinity, -Infinity];
    for (const { positions } of primitives) {
        for (let i = 0; i < positions.length; i += 3) {
            for (let axis = 0; axis < 3; ++axis) {
                const value = positions[i + axis];
                low[axis] = Math.min(low[axis], value);
                high[axis] = Math.max(high[axis], value);
            }
        }
    }
    return low[0] <= high[0] ? { low, high } : { low: [0, 0, 0], high: [0, 0, 0] };
}

export function readGeometry(file: ArrayBuffer): MeshData[] {
    const { json, binary, length } = chunksOf(file);

    function place(index: number): { accessor: Accessor; at: number; size: number } {
        const accessor = json.accessors?.[index];
        const view = accessor && json.bufferViews?.[accessor.bufferView ?? -1];
        if (!accessor || !view) {
            throw new Error('The geometry lacks an accessor.');
        }
        const offset = (view.byteOffset ?? 0) + (accessor.byteOffset ?? 0);
        const size = accessor.count * (kWidth[accessor.type] ?? 1);
        if (offset > length) {
            throw new Error('The geometry ends too early.');
        }
        return { accessor, at: binary + offset, size };
    }
    function floats(index: number): Float32Array {
        const { at, size } = place(index);
        return new Float32Array(file, at, size);
    }
    function whole(index: number): Uint32Array | Uint16Array {
        const { accessor, at, size } = place(index);
        switch (accessor.componentType) {
            case 5125:
                return new Uint32Array(file, at, size);
            case 5123:
                return new Uint16Array(file, at, size);
            default:
                return Uint16Array.from(new Uint8Array(file, at, size));
        }
    }
    const numbers = (index: number | undefined): Uint32Array | null =>
        index === undefined ? null : Uint32Array.from(whole(index));

    return (json.meshes ?? []).map((mesh) => {
        const primitives = mesh.primitives.map((primitive): Primitive => ({
            role: primitive.extras?.role ?? 'faces',
            style: primitive.extras?.style ?? -1,
            positions: floats(primitive.attributes.POSITION),
            normals: primitive.attributes.NORMAL === undefined ? null : floats(primitive.attributes.NORMAL),
            indices: primitive.indices === undefined ? null : whole(primitive.indices),
            ranges: numbers(primitive.extras?.ranges),
            numbers: numbers(primitive.extras?.numbers),
        }));
        return { origin: mesh.extras?.origin ?? [0, 0, 0], primitives, box: boxOf(primitives) };
    });
}
