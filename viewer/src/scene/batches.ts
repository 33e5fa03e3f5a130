// Instanced drawing: each primitive of a mesh is one call for all of its opaque occurrences, and one for all that are
// transparent.
import {
    BufferAttribute,
    Group,
    InstancedBufferAttribute,
    InstancedBufferGeometry,
    LineSegments,
    Mesh,
    Points,
    type RawShaderMaterial,
} from 'three';
import type { Triple } from '../data/format';
import type { Primitive } from '../data/geometry';
import { colorOf } from './looks';
import { instanceMaterial, type SharedUniforms } from './materials';
import type { SceneModel } from './model';
import type { Placing } from './placing';
import type { SceneState } from './state';
import { dot } from './transform';

type Drawn = Mesh<InstancedBufferGeometry, RawShaderMaterial>;

/// What of a primitive is drawn in one call.
class Bucket {
    readonly drawn: Drawn;
    private rows: InstancedBufferAttribute[] = [];
    private paint!: InstancedBufferAttribute;
    private mark?: InstancedBufferAttribute;
    items: number[] = [];

    constructor(
        private readonly geometry: InstancedBufferGeometry,
        primitive: Primitive,
        /// How many items it may have.
        private readonly most: number,
    ) {
        const make = primitive.role === 'faces' ? Mesh : primitive.role === 'points' ? Points : LineSegments;
        this.drawn = new (make as unknown as new (g: InstancedBufferGeometry) => Drawn)(geometry);
        this.drawn.frustumCulled = false;
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
        this.rows.forEach((row, i) => this.geometry.setAttribute(`row${i}`, row));
        this.geometry.setAttribute('paint', this.paint);
        this.geometry.setAttribute('mark', this.mark);
    }

    fill(items: number[], colors: Uint8Array): void {
        this.items = items;
        this.drawn.visible = items.length > 0;
        this.geometry.instanceCount = items.length;
        if (items.length > 0) {
            this.reserve(this.most);
            (this.paint.array as Uint8Array).set(colors.subarray(0, 4 * items.length));
            this.paint.needsUpdate = true;
        }
    }

    place(numbers: Float64Array, middle: Triple): void {
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

interface Batch {
    primitive: Primitive;
    mesh: number;
    opaque: Bucket;
    clear: Bucket;
}

export class Batches {
    readonly group = new Group();
    /// Those of faces, which can be left out for speed.
    readonly edges = new Group();
    edgesShown = true;
    private readonly batches: Batch[] = [];
    private readonly materials = new Map<string, RawShaderMaterial>();
    private readonly marks: Uint8Array;
    private cuts = 0;

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly shared: SharedUniforms,
        private readonly middle: Triple,
    ) {
        this.marks = new Uint8Array(model.itemCount);
        this.group.add(this.edges);
        model.meshes.forEach((mesh, index) => {
            if (model.itemsOfMesh[index].length > 0) {
                mesh.primitives.forEach((primitive) => this.add(primitive, index));
            }
        });
        this.showItems();
    }

    private add(primitive: Primitive, mesh: number): void {
        const shared = {
            position: new BufferAttribute(primitive.positions, 3),
            normal: primitive.normals ? new BufferAttribute(primitive.normals, 3) : null,
            index: primitive.indices ? new BufferAttribute(primitive.indices, 1) : null,
        };
        const bucket = (): Bucket => {
            const geometry = new InstancedBufferGeometry();
            geometry.setAttribute('position', shared.position);
            if (shared.normal) {
                geometry.setAttribute('normal', shared.normal);
            }
            geometry.setIndex(shared.index);
            return new Bucket(geometry, primitive, this.model.itemsOfMesh[mesh].length);
        };
        const batch = { primitive, mesh, opaque: bucket(), clear: bucket() };
        batch.opaque.drawn.renderOrder = primitive.role === 'faces' ? 0 : 1;
        batch.clear.drawn.renderOrder = primitive.role === 'faces' ? 4 : 5;
        (primitive.role === 'edges' ? this.edges : this.group).add(batch.opaque.drawn, batch.clear.drawn);
        this.batches.push(batch);
    }

    private material(primitive: Primitive, transparent: boolean, uneven: boolean): RawShaderMaterial {
        const { role } = primitive;
        const smooth = role === 'faces' && primitive.normals !== null;
        const key = `${role} ${smooth} ${transparent} ${uneven} ${this.cuts}`;
        let material = this.materials.get(key);
        if (!material) {
            material = instanceMaterial(this.shared, { role, smooth, uneven, transparent, cuts: this.cuts });
            this.materials.set(key, material);
        }
        return material;
    }

    /// After a change of what is shown, or of its style.
    showItems(): void {
        for (const batch of this.batches) {
            const opaque: number[] = [];
            const clear: number[] = [];
            const all = this.model.itemsOfMesh[batch.mesh];
            const colors = [new Uint8Array(4 * all.length), new Uint8Array(4 * all.length)];
            for (const item of all) {
                if (!this.state.itemShown[item] || (batch.primitive.role === 'edges' && !this.edgesShown)) {
                    continue;
                }
                const color = colorOf(this.model, this.state, item, batch.primitive);
                const list = color[3] < 1 ? clear : opaque;
                colors[color[3] < 1 ? 1 : 0].set(
                    color.map((part) => Math.round(255 * Math.min(1, Math.max(0, part)))),
                    4 * list.length,
                );
                list.push(item);
            }
            batch.opaque.fill(opaque, colors[0]);
            batch.clear.fill(clear, colors[1]);
        }
        this.dress();
        this.placeItems();
        this.highlight();
    }

    /// After a change of places. Numbers may be those of an animation.
    placeItems(numbers: Float64Array = this.placing.items): void {
        for (const { opaque, clear } of this.batches) {
            opaque.items.length && opaque.place(numbers, this.middle);
            clear.items.length && clear.place(numbers, this.middle);
        }
    }

    /// After a change of what is selected or hovered.
    highlight(): void {
        this.marks.fill(0);
        if (this.state.hovered) {
            this.model.items(this.state.hovered).forEach((i) => (this.marks[i] = 1));
        }
        for (const node of this.state.selection) {
            this.model.items(node).forEach((i) => (this.marks[i] = 2));
        }
        for (const { opaque, clear } of this.batches) {
            opaque.items.length && opaque.highlight(this.marks);
            clear.items.length && clear.highlight(this.marks);
        }
    }

    get cutCount(): number {
        return this.cuts;
    }

    setCuts(count: number): void {
        this.cuts = count;
        this.dress();
    }

    // Whether normals do not simply turn with the places of these items.
    private isUneven(items: number[]): boolean {
        const m = this.placing.items;
        return items.some((item) => {
            const [a, b, c] = [0, 1, 2].map((k) => [m[12 * item + k], m[12 * item + 4 + k], m[12 * item + 8 + k]]);
            const most = 1e-3 * dot(a, a);
            const differs = Math.abs(dot(a, a) - dot(b, b)) > most || Math.abs(dot(a, a) - dot(c, c)) > most;
            return differs || Math.abs(dot(a, b)) > most || Math.abs(dot(b, c)) > most || Math.abs(dot(a, c)) > most;
        });
    }

    private dress(): void {
        for (const { primitive, opaque, clear } of this.batches) {
            opaque.drawn.material = this.material(primitive, false, this.isUneven(opaque.items));
            clear.drawn.material = this.material(primitive, true, this.isUneven(clear.items));
        }
    }

    /// Numbers of pairs of a mesh's primitive and a material that are drawn, and of triangles.
    totals(): { pairs: number; triangles: number } {
        let pairs = 0;
        let triangles = 0;
        for (const { primitive, opaque, clear } of this.batches) {
            const shown = opaque.items.length + clear.items.length;
            pairs += shown > 0 ? 1 : 0;
            if (primitive.role === 'faces') {
                const corners = primitive.indices?.length ?? primitive.positions.length / 3;
                triangles += (shown * corners) / 3;
            }
        }
        return { pairs, triangles };
    }
}
