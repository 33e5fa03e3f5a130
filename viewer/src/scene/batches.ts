// Instanced drawing: each primitive of a mesh is one call for all of its opaque occurrences, and one for all that are
// transparent.
import { Group, type RawShaderMaterial } from 'three';
import type { Triple } from '../data/format';
import type { Primitive } from '../data/geometry';
import { Bucket, Corners } from './bucket';
import type { Camera } from './camera';
import { cellOf, CoarseForms, type Surface } from './coarse';
import { colorOf } from './looks';
import { instanceMaterial, type SharedUniforms } from './materials';
import type { SceneModel } from './model';
import type { Placing } from './placing';
import type { SceneState } from './state';
import { plus } from './transform';

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
    private isLight = false;
    private readonly forms = new CoarseForms();
    private readonly cornersOf = new WeakMap<Surface, Corners>();

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
        const corners = new Corners(primitive);
        const bucket = (): Bucket => new Bucket(corners, primitive.role, this.model.itemsOfMesh[mesh].length);
        const batch = { primitive, mesh, opaque: bucket(), clear: bucket() };
        batch.opaque.drawn.renderOrder = primitive.role === 'faces' ? 0 : 1;
        batch.clear.drawn.renderOrder = primitive.role === 'faces' ? 4 : 5;
        (primitive.role === 'edges' ? this.edges : this.group).add(batch.opaque.drawn, batch.clear.drawn);
        this.batches.push(batch);
    }

    private material(primitive: Primitive, transparent: boolean, uneven: boolean): RawShaderMaterial {
        const { role } = primitive;
        const smooth = role === 'faces' && primitive.normals !== null;
        const key = `${role} ${smooth} ${transparent} ${uneven} ${this.cuts} ${this.isLight}`;
        let material = this.materials.get(key);
        if (!material) {
            material = instanceMaterial(this.shared, {
                role,
                smooth,
                uneven,
                transparent,
                cuts: this.cuts,
                light: this.isLight,
            });
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
        this.placeItems();
        this.highlight();
    }

    /// After a change of places. Numbers may be those of an animation.
    placeItems(numbers: Float64Array = this.placing.items): void {
        for (const { opaque, clear } of this.batches) {
            opaque.items.length && opaque.place(this.placing, numbers, this.middle);
            clear.items.length && clear.place(this.placing, numbers, this.middle);
        }
        this.dress();
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

    private dress(): void {
        for (const { primitive, opaque, clear } of this.batches) {
            opaque.drawn.material = this.material(primitive, false, opaque.isUneven);
            clear.drawn.material = this.material(primitive, true, clear.isUneven);
        }
    }

    /// Draws with less work: without edges if they are not wanted, and shapes so many pixels off.
    reduce(step: { edges: boolean; pixels: number }, camera: Camera): void {
        this.edges.visible = step.edges;
        this.lighten(!step.edges);
        this.forms.forget();
        for (const { primitive, mesh, opaque, clear } of this.batches) {
            if (primitive.role === 'faces') {
                this.coarsen(opaque, primitive, mesh, step.pixels, camera);
                this.coarsen(clear, primitive, mesh, step.pixels, camera);
            }
        }
    }

    /// Draws all there is.
    restore(): void {
        this.edges.visible = true;
        this.lighten(false);
        this.batches.forEach(({ opaque, clear }) => [opaque, clear].forEach((bucket) => bucket.show(null)));
    }

    /// Takes some time for what `reduce` lacked; whether nothing is lacking any more.
    prepare(milliseconds: number): boolean {
        this.forms.work(milliseconds);
        return this.forms.isComplete;
    }

    private lighten(isLight: boolean): void {
        if (isLight !== this.isLight) {
            this.isLight = isLight;
            this.dress();
        }
    }

    private coarsen(bucket: Bucket, primitive: Primitive, mesh: number, pixels: number, camera: Camera): void {
        const { box } = this.model.meshes[mesh];
        if (bucket.items.length === 0 || pixels === 0) {
            bucket.show(null);
            return;
        }
        const { center, radius } = bucket.sphere;
        const pixel = camera.pixelNear(plus(center.toArray() as Triple, this.middle), radius) / bucket.scale;
        const size = cellOf(box, 0);
        // Of what is small only the coarsest form is left, and of what is tiny nothing.
        const level = Math.max(2, Math.ceil(2 * Math.log2(size / (pixels * pixel))));
        const form = this.forms.find(primitive, box, level);
        let corners = form && this.cornersOf.get(form);
        form && !corners && this.cornersOf.set(form, (corners = new Corners(form)));
        bucket.show(corners ?? null);
        bucket.drawn.visible = size > 2 * pixel;
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
