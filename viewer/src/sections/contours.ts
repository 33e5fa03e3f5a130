// Where a plane goes through a mesh: closed loops, which bound what is inside.
import type { Box3, Triangle } from 'three';
import type { Triple } from '../data/format';
import type { MeshData, Primitive } from '../data/geometry';
import { treeOf } from '../scene/picking';
import { plus, times } from '../scene/transform';

interface Welded {
    /// For each primitive, of each position the number of its place; the same place has the same number.
    places: Map<Primitive, Uint32Array>;
    size: number;
}

const known = new WeakMap<MeshData, Welded>();

// Corners of neighbouring triangles are one place, though they may be several positions.
function weld(mesh: MeshData): Welded {
    let welded = known.get(mesh);
    if (welded) {
        return welded;
    }
    const places = new Map<Primitive, Uint32Array>();
    const byPlace = new Map<number, Map<number, Map<number, number>>>();
    let size = 0;
    for (const primitive of mesh.primitives) {
        if (primitive.role !== 'faces') {
            continue;
        }
        const { positions } = primitive;
        const list = new Uint32Array(positions.length / 3);
        for (let i = 0; i < list.length; ++i) {
            // Zero and minus zero are one key of a map.
            const [x, y, z] = [positions[3 * i], positions[3 * i + 1], positions[3 * i + 2]];
            let byY = byPlace.get(x);
            byY ?? byPlace.set(x, (byY = new Map()));
            let byZ = byY.get(y);
            byZ ?? byY.set(y, (byZ = new Map()));
            let place = byZ.get(z);
            place ?? byZ.set(z, (place = size++));
            list[i] = place;
        }
        places.set(primitive, list);
    }
    welded = { places, size };
    known.set(mesh, welded);
    return welded;
}

interface Segment {
    from: number;
    to: number;
    used: boolean;
}

export interface Contours {
    /// Each a closed line.
    loops: Triple[][];
    /// Pairs of ends, also of what does not close.
    segments: Triple[];
}

/// Of a plane in the mesh's own coordinates: where normal times place is the offset.
export function contoursOf(mesh: MeshData, normal: Triple, offset: number): Contours {
    const { places, size } = weld(mesh);
    const points = new Map<number, Triple>();
    const segments: Segment[] = [];
    const ends = new Map<number, number[]>();
    const side = (p: Float32Array, i: number): number =>
        normal[0] * p[3 * i] + normal[1] * p[3 * i + 1] + normal[2] * p[3 * i + 2] - offset;

    function crossing(primitive: Primitive, place: Uint32Array, a: number, b: number): number {
        const [low, high] = place[a] < place[b] ? [a, b] : [b, a];
        const key = place[low] * size + place[high];
        if (!points.has(key)) {
            const { positions } = primitive;
            const [from, to] = [side(positions, low), side(positions, high)];
            const part = from / (from - to);
            const at = (i: number): Triple => [positions[3 * i], positions[3 * i + 1], positions[3 * i + 2]];
            points.set(key, plus(times(at(low), 1 - part), times(at(high), part)));
        }
        return key;
    }
    function cutTriangle(primitive: Primitive, place: Uint32Array, index: number): void {
        const corner = [0, 1, 2].map((k) => (primitive.indices ? primitive.indices[3 * index + k] : 3 * index + k));
        // A corner on the plane counts as above it, for all triangles around it alike.
        const above = corner.map((i) => side(primitive.positions, i) >= 0);
        const keys: number[] = [];
        for (let k = 0; k < 3; ++k) {
            const next = (k + 1) % 3;
            if (above[k] !== above[next]) {
                keys.push(crossing(primitive, place, corner[k], corner[next]));
            }
        }
        if (keys.length === 2) {
            for (const key of keys) {
                const list = ends.get(key);
                list ? list.push(segments.length) : ends.set(key, [segments.length]);
            }
            segments.push({ from: keys[0], to: keys[1], used: false });
        }
    }
    for (const [primitive, place] of places) {
        treeOf(primitive).shapecast({
            intersectsBounds: (box: Box3) => crosses(box, normal, offset),
            intersectsTriangle: (_: Triangle, index: number) => {
                cutTriangle(primitive, place, index);
                return false;
            },
        });
    }
    const at = (key: number): Triple => points.get(key) as Triple;
    return {
        loops: chain(segments, ends).map((loop) => loop.map(at)),
        segments: segments.flatMap(({ from, to }) => [at(from), at(to)]),
    };
}

function crosses(box: Box3, normal: Triple, offset: number): boolean {
    let low = -offset;
    let high = -offset;
    const [from, to] = [box.min.toArray(), box.max.toArray()];
    for (let axis = 0; axis < 3; ++axis) {
        const [a, b] = [normal[axis] * from[axis], normal[axis] * to[axis]];
        low += Math.min(a, b);
        high += Math.max(a, b);
    }
    return low <= 0 && high >= 0;
}

// Segments that share an end follow one another; what does not come back to its start is left out.
function chain(segments: Segment[], ends: Map<number, number[]>): number[][] {
    const loops: number[][] = [];
    for (const first of segments) {
        if (first.used) {
            continue;
        }
        first.used = true;
        const loop = [first.from];
        let at = first.to;
        while (at !== first.from) {
            loop.push(at);
            const next = ends.get(at)?.find((i) => !segments[i].used);
            if (next === undefined) {
                break;
            }
            segments[next].used = true;
            at = segments[next].from === at ? segments[next].to : segments[next].from;
        }
        if (at === first.from && loop.length >= 3) {
            loops.push(loop);
        }
    }
    return loops;
}
