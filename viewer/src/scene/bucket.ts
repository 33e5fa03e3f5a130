// What of a primitive is drawn in one call: its instances, with what each of them has of its own.
import {
    BufferAttribute,
    InstancedBufferAttribute,
    InstancedBufferGeometry,
    LineSegments,
    Mesh,
    Points,
    Sphere,
    type RawShaderMaterial,
} from 'three';
import type { Triple } from '../data/format';
import type { Role } from '../data/geometry';
import type { Surface } from './coarse';
import type { Placing } from './placing';
import { dot } from './transform';

type Drawn = Mesh<InstancedBufferGeometry, RawShaderMaterial>;

/// Attributes of corners, which buckets of one primitive share.
export class Corners {
    private readonly position: BufferAttribute;
    private readonly normal: BufferAttribute | null;
    private readonly index: BufferAttribute | null;

    constructor(surface: { [Part in keyof Surface]: Surface[Part] | null } & { positions: Float32Array }) {
        this.position = new BufferAttribute(surface.positions, 3);
        this.normal = surface.normals && new BufferAttribute(surface.normals, 3);
        this.index = surface.indices && new BufferAttribute(surface.indices, 1);
    }

    geometry(): InstancedBufferGeometry {
        const geometry = new InstancedBufferGeometry();
        geometry.setAttribute('position', this.position);
        this.normal && geometry.setAttribute('normal', this.normal);
        geometry.setIndex(this.index);
        return geometry;
    }
}

export class Bucket {
    readonly drawn: Drawn;
    items: number[] = [];
    /// Around all items, from the middle of the scene.
    readonly sphere = new Sphere();
    /// The greatest factor from the mesh to the scene.
    scale = 1;
    /// Whether normals do not simply turn with the places of the items.
    isUneven = false;
    private readonly whole: InstancedBufferGeometry;
    private readonly coarse = new Map<Corners, InstancedBufferGeometry>();
    private rows: InstancedBufferAttribute[] = [];
    private paint!: InstancedBufferAttribute;
    private mark?: InstancedBufferAttribute;

    constructor(
        corners: Corners,
        role: Role,
        /// How many items it may have.
        private readonly most: number,
    ) {
        this.whole = corners.geometry();
        this.whole.boundingSphere = this.sphere;
        const make = role === 'faces' ? Mesh : role === 'points' ? Points : LineSegments;
        this.drawn = new (make as unknown as new (g: InstancedBufferGeometry) => Drawn)(this.whole);
        this.drawn.matrixAutoUpdate = false;
    }

    // For all occurrences at once: an attribute cannot grow.
    private reserve(size: number): void {
        if (this.mark) {
            return;
        }
        this.rows = [0, 1, 2].map(() => new InstancedBufferAttribute(new Float32Array(4 * size), 4));
        this.paint = new InstancedBufferAttribute(new Uint8Array(4 * size), 4, true);
        this.mark = new InstancedBufferAttribute(new Uint8Array(size), 1, false);
        this.equip(this.whole);
    }

    private equip(geometry: InstancedBufferGeometry): void {
        this.rows.forEach((row, i) => geometry.setAttribute(`row${i}`, row));
        geometry.setAttribute('paint', this.paint);
        this.mark && geometry.setAttribute('mark', this.mark);
    }

    /// Draws other corners in the place of its own; null for its own.
    show(corners: Corners | null): void {
        let geometry = this.whole;
        if (corners) {
            const known = this.coarse.get(corners);
            geometry = known ?? corners.geometry();
            if (!known) {
                geometry.boundingSphere = this.sphere;
                this.equip(geometry);
                this.coarse.set(corners, geometry);
            }
        }
        geometry.instanceCount = this.items.length;
        this.drawn.geometry = geometry;
        this.drawn.visible = this.items.length > 0;
    }

    fill(items: number[], colors: Uint8Array): void {
        this.items = items;
        if (items.length > 0) {
            this.reserve(this.most);
            (this.paint.array as Uint8Array).set(colors.subarray(0, 4 * items.length));
            this.paint.needsUpdate = true;
        }
        this.show(null);
    }

    /// Numbers may be those of an animation.
    place(placing: Placing, numbers: Float64Array, middle: Triple): void {
        this.items.forEach((item, i) => {
            for (let row = 0; row < 3; ++row) {
                const from = 12 * item + 4 * row;
                const to = this.rows[row].array as Float32Array;
                to[4 * i] = numbers[from];
                to[4 * i + 1] = numbers[from + 1];
                to[4 * i + 2] = numbers[from + 2];
                to[4 * i + 3] = numbers[from + 3] - middle[row];
            }
        });
        this.rows.forEach((row) => (row.needsUpdate = true));
        this.drawn.frustumCulled = numbers === placing.items;
        this.survey(placing, middle);
    }

    // What there is to know of the places.
    private survey(placing: Placing, middle: Triple): void {
        const box = placing.boxOf(this.items);
        if (box) {
            const { center } = this.sphere;
            center
                .set(...box.low)
                .add({ x: box.high[0], y: box.high[1], z: box.high[2] })
                .multiplyScalar(0.5);
            this.sphere.radius = center.distanceTo({ x: box.high[0], y: box.high[1], z: box.high[2] }) * 1.001;
            center.sub({ x: middle[0], y: middle[1], z: middle[2] });
        }
        this.scale = 0;
        this.isUneven = false;
        const m = placing.items;
        for (const item of this.items) {
            const [a, b, c] = [0, 1, 2].map((k) => [m[12 * item + k], m[12 * item + 4 + k], m[12 * item + 8 + k]]);
            const sizes = [dot(a, a), dot(b, b), dot(c, c)];
            const most = 1e-3 * sizes[0];
            const skew = Math.max(Math.abs(dot(a, b)), Math.abs(dot(b, c)), Math.abs(dot(a, c)));
            this.scale = Math.max(this.scale, Math.sqrt(Math.max(...sizes)));
            this.isUneven ||= skew > most || sizes.some((size) => Math.abs(size - sizes[0]) > most);
        }
    }

    highlight(marks: Uint8Array): void {
        const { mark } = this;
        let changed = false;
        for (let i = 0; mark && i < this.items.length; ++i) {
            const is = marks[this.items[i]];
            changed ||= mark.array[i] !== is;
            mark.array[i] = is;
        }
        if (mark && changed) {
            mark.needsUpdate = true;
        }
    }
}
