// What of the scene is under a place of the picture.
import { BufferAttribute, BufferGeometry, DoubleSide, Ray, Vector3 } from 'three';
import { MeshBVH } from 'three-mesh-bvh';
import type { Triple } from '../data/format';
import { numberAt, type Primitive } from '../data/geometry';
import type { Camera } from './camera';
import type { SceneModel } from './model';
import type { Placing } from './placing';
import type { SceneState } from './state';
import { applied, cross, dot, minus, plus, times, turned, unit, type Numbers } from './transform';

export interface Hit {
    item: number;
    primitive: Primitive;
    /// The triangle, segment or point.
    index: number;
    /// Of the face or edge; -1 for none.
    number: number;
    /// In the scene's coordinates and unit.
    point: Triple;
    normal: Triple;
    distance: number;
}

/// The searchable triangles of a primitive; made when they are first asked for.
const trees = new WeakMap<Primitive, MeshBVH>();

export function treeOf(primitive: Primitive): MeshBVH {
    let tree = trees.get(primitive);
    if (!tree) {
        const geometry = new BufferGeometry();
        geometry.setAttribute('position', new BufferAttribute(primitive.positions, 3));
        const count = primitive.positions.length / 3;
        const index = primitive.indices ?? Uint32Array.from({ length: count }, (_, i) => i);
        geometry.setIndex(new BufferAttribute(index, 1));
        // The order of triangles tells their faces, and stays.
        tree = new MeshBVH(geometry, { indirect: true });
        trees.set(primitive, tree);
    }
    return tree;
}

/// From a point of the scene to positions of the mesh.
export function inverse(m: Numbers, at: number): Float64Array | null {
    const [a, b, c] = [0, 1, 2].map((k): Triple => [m[at + k], m[at + 4 + k], m[at + 8 + k]]);
    const volume = dot(a, cross(b, c));
    if (volume === 0 || !Number.isFinite(volume)) {
        return null;
    }
    const rows = [cross(b, c), cross(c, a), cross(a, b)].map((row) => times(row, 1 / volume));
    const shift: Triple = [m[at + 3], m[at + 7], m[at + 11]];
    return Float64Array.from(rows.flatMap((row) => [...row, -dot(row, shift)]));
}

export class Picking {
    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly camera: Camera,
    ) {}

    /// The nearest surface, line or point; lines within some pixels.
    at(x: number, y: number): Hit | null {
        const { origin, direction } = this.camera.ray(x, y);
        const [near, far] = this.kept(origin, direction);
        if (near > far) {
            return null;
        }
        const line = this.thin(x, y, near, far);
        const face = this.face(origin, direction, near, line ? Math.min(far, line.distance) : far);
        if (face && line) {
            const slack = 6 * this.camera.pixelAt(face.point);
            return line.distance <= face.distance + slack ? line : face;
        }
        return face ?? line;
    }

    /// What of a ray the cuts leave: from and to which distance.
    private kept(origin: Triple, direction: Triple): [number, number] {
        let near = 0;
        let far = Infinity;
        for (const { normal, offset } of this.state.cuts) {
            const slope = dot(normal, direction);
            const distance = offset - dot(normal, origin);
            if (Math.abs(slope) < 1e-12) {
                far = distance < 0 ? -1 : far;
            } else if (slope > 0) {
                far = Math.min(far, distance / slope);
            } else {
                near = Math.max(near, distance / slope);
            }
        }
        return [near, far];
    }

    private boxAt(item: number, origin: Triple, direction: Triple, slack: number): number {
        let near = 0;
        let far = Infinity;
        for (let axis = 0; axis < 3; ++axis) {
            const low = this.placing.boxes[6 * item + axis] - slack;
            const high = this.placing.boxes[6 * item + 3 + axis] + slack;
            const a = (low - origin[axis]) / direction[axis];
            const b = (high - origin[axis]) / direction[axis];
            if (direction[axis] === 0) {
                far = origin[axis] < low || origin[axis] > high ? -1 : far;
            } else {
                near = Math.max(near, Math.min(a, b));
                far = Math.min(far, Math.max(a, b));
            }
        }
        return near <= far ? near : Infinity;
    }

    private candidates(origin: Triple, direction: Triple, slack: number): { item: number; near: number }[] {
        const found: { item: number; near: number }[] = [];
        for (let item = 0; item < this.model.itemCount; ++item) {
            if (this.state.itemShown[item] && this.model.meshOfItem(item)) {
                const near = this.boxAt(item, origin, direction, slack);
                near < Infinity && found.push({ item, near });
            }
        }
        return found.sort((a, b) => a.near - b.near);
    }

    private face(origin: Triple, direction: Triple, near: number, far: number): Hit | null {
        let best: Hit | null = null;
        const ray = new Ray();
        for (const { item, near: first } of this.candidates(origin, direction, 0)) {
            if (first > (best?.distance ?? far)) {
                break;
            }
            const back = inverse(this.placing.items, 12 * item);
            if (!back) {
                continue;
            }
            const start = applied(back, 0, origin);
            const along = turned(back, 0, direction);
            const scale = Math.hypot(...along);
            ray.set(new Vector3(...start), new Vector3(...along).divideScalar(scale));
            for (const primitive of this.model.meshOfItem(item)?.primitives ?? []) {
                if (primitive.role !== 'faces') {
                    continue;
                }
                const most = (best?.distance ?? far) * scale;
                const hit = treeOf(primitive).raycastFirst(ray, DoubleSide, near * scale, most);
                if (hit && hit.distance < most && hit.faceIndex != null) {
                    const m = 12 * item;
                    const distance = hit.distance / scale;
                    const normal = hit.face?.normal.toArray() as Triple;
                    // Normals go the other way: by the inverse's columns.
                    const outward = unit([
                        dot(normal, [back[0], back[4], back[8]]),
                        dot(normal, [back[1], back[5], back[9]]),
                        dot(normal, [back[2], back[6], back[10]]),
                    ]);
                    best = {
                        item,
                        primitive,
                        index: hit.faceIndex,
                        number: numberAt(primitive, hit.faceIndex),
                        point: applied(this.placing.items, m, hit.point.toArray()),
                        normal: dot(outward, direction) > 0 ? times(outward, -1) : outward,
                        distance,
                    };
                }
            }
        }
        return best;
    }

    /// Lines and points near the pointer, the front one.
    private thin(x: number, y: number, near: number, far: number): Hit | null {
        const { origin, direction } = this.camera.ray(x, y);
        const slack = 6 * this.camera.pixelAt(this.camera.look.target);
        let best: Hit | null = null;
        for (const { item } of this.candidates(origin, direction, slack)) {
            for (const primitive of this.model.meshOfItem(item)?.primitives ?? []) {
                if (primitive.role === 'lines' || primitive.role === 'points') {
                    const hit = this.nearest(item, primitive, x, y, 6);
                    const distance = hit ? dot(minus(hit.point, origin), direction) : Infinity;
                    if (hit && distance >= near && distance <= far && distance < (best?.distance ?? Infinity)) {
                        best = { ...hit, distance };
                    }
                }
            }
        }
        return best;
    }

    /// The segment or point of a primitive that is drawn next to a place, within so many pixels; the front one of those
    /// that are drawn on one another.
    nearest(item: number, primitive: Primitive, x: number, y: number, pixels: number): Hit | null {
        const { positions, indices } = primitive;
        const isPoints = primitive.role === 'points';
        const size = isPoints ? positions.length / 3 : (indices?.length ?? 0) / 2;
        const corner = (index: number): Triple =>
            applied(this.placing.items, 12 * item, positions.subarray(3 * index, 3 * index + 3));
        let closest = pixels;
        let depth = Infinity;
        let found: Hit | null = null;
        for (let i = 0; i < size; ++i) {
            const from = corner(isPoints ? i : (indices as Uint32Array)[2 * i]);
            const to = isPoints ? from : corner((indices as Uint32Array)[2 * i + 1]);
            const a = this.camera.project(from);
            const b = isPoints ? a : this.camera.project(to);
            const [dx, dy] = [b[0] - a[0], b[1] - a[1]];
            const size2 = dx * dx + dy * dy;
            const part = size2 > 0 ? Math.max(0, Math.min(1, ((x - a[0]) * dx + (y - a[1]) * dy) / size2)) : 0;
            const off = Math.hypot(x - a[0] - part * dx, y - a[1] - part * dy);
            const behind = a[2] + (b[2] - a[2]) * part;
            if (off < closest - 0.5 || (off < Math.min(closest + 0.5, pixels) && behind < depth)) {
                closest = Math.min(off, closest);
                depth = behind;
                const point = plus(times(from, 1 - part), times(to, part));
                const normal = times(this.camera.look.direction, -1);
                found = { item, primitive, index: i, number: numberAt(primitive, i), point, normal, distance: 0 };
            }
        }
        return found;
    }
}
