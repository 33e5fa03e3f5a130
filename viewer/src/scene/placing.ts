// Where items stand in the scene: the transforms of the scene or of a view, and what is moved apart.
import type { Triple } from '../data/format';
import type { SceneModel } from './model';
import type { SceneState } from './state';
import { multiply } from './transform';

export class Placing {
    /// Twelve numbers for each item: from positions of its mesh to the scene, in the scene's unit.
    readonly items: Float64Array;
    /// Lowest and highest corner of each item in the scene, six numbers.
    readonly boxes: Float64Array;
    private readonly occurrences: Float64Array;
    private readonly moved: Float64Array;

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
    ) {
        this.items = new Float64Array(12 * model.itemCount);
        this.boxes = new Float64Array(6 * model.itemCount);
        this.occurrences = new Float64Array(12 * model.occurrenceCount);
        this.moved = new Float64Array(3 * model.occurrenceCount);
        this.update();
    }

    update(): void {
        this.place();
        if (this.state.explosion > 0) {
            this.explode();
        }
    }

    private place(): void {
        const { transforms, occurrences, items } = this.model.file;
        const local = new Float64Array(12);
        for (let o = 0; o < this.model.occurrenceCount; ++o) {
            const at = 12 * this.state.occurrenceTransform[o];
            if (o === 0) {
                this.occurrences.set(transforms.slice(at, at + 12));
            } else {
                multiply(this.occurrences, 12 * o, this.occurrences, 12 * occurrences.parent[o], transforms, at);
            }
        }
        for (let i = 0; i < this.model.itemCount; ++i) {
            const at = 12 * this.state.itemTransform[i];
            const [x, y, z] = this.model.meshOfItem(i)?.origin ?? [0, 0, 0];
            for (let row = 0; row < 12; row += 4) {
                const [a, b, c, d] = [0, 1, 2, 3].map((k) => transforms[at + row + k]);
                local[row] = a;
                local[row + 1] = b;
                local[row + 2] = c;
                local[row + 3] = d + a * x + b * y + c * z;
            }
            multiply(this.items, 12 * i, this.occurrences, 12 * items.occurrence[i], local, 0);
            this.boxItem(i);
        }
    }

    private boxItem(item: number): void {
        const mesh = this.model.meshOfItem(item);
        const box = mesh?.box ?? { low: [0, 0, 0] as Triple, high: [0, 0, 0] as Triple };
        const m = 12 * item;
        const at = 6 * item;
        for (let row = 0; row < 3; ++row) {
            let low = this.items[m + 4 * row + 3];
            let high = low;
            for (let axis = 0; axis < 3; ++axis) {
                const factor = this.items[m + 4 * row + axis];
                const a = factor * box.low[axis];
                const b = factor * box.high[axis];
                low += Math.min(a, b);
                high += Math.max(a, b);
            }
            this.boxes[at + row] = low;
            this.boxes[at + 3 + row] = high;
        }
    }

    // Everything moves away from the middle of what it belongs to, level by level.
    private explode(): void {
        const { parent } = this.model.file.occurrences;
        const { occurrence } = this.model.file.items;
        const count = this.model.occurrenceCount;
        const low = new Float64Array(3 * count).fill(Infinity);
        const high = new Float64Array(3 * count).fill(-Infinity);
        for (let i = 0; i < occurrence.length; ++i) {
            if (!this.model.meshOfItem(i)) {
                continue;
            }
            for (let axis = 0; axis < 3; ++axis) {
                const at = 3 * occurrence[i] + axis;
                low[at] = Math.min(low[at], this.boxes[6 * i + axis]);
                high[at] = Math.max(high[at], this.boxes[6 * i + 3 + axis]);
            }
        }
        for (let o = count - 1; o > 0; --o) {
            for (let axis = 0; axis < 3; ++axis) {
                const above = 3 * parent[o] + axis;
                low[above] = Math.min(low[above], low[3 * o + axis]);
                high[above] = Math.max(high[above], high[3 * o + axis]);
            }
        }
        const factor = 1.6 * this.state.explosion;
        this.moved.fill(0);
        for (let o = 1; o < count; ++o) {
            for (let axis = 0; axis < 3; ++axis) {
                const at = 3 * o + axis;
                const above = 3 * parent[o] + axis;
                const apart = (low[at] + high[at] - low[above] - high[above]) / 2;
                this.moved[at] = this.moved[above] + (Number.isFinite(apart) ? factor * apart : 0);
            }
        }
        for (let i = 0; i < occurrence.length; ++i) {
            for (let axis = 0; axis < 3; ++axis) {
                const by = this.moved[3 * occurrence[i] + axis];
                this.items[12 * i + 4 * axis + 3] += by;
                this.boxes[6 * i + axis] += by;
                this.boxes[6 * i + 3 + axis] += by;
            }
        }
    }

    /// Around those of the items that can be drawn; null for none.
    boxOf(items: Iterable<number>): { low: Triple; high: Triple } | null {
        const low: Triple = [Infinity, Infinity, Infinity];
        const high: Triple = [-Infinity, -Infinity, -Infinity];
        for (const i of items) {
            if (!this.model.meshOfItem(i)) {
                continue;
            }
            for (let axis = 0; axis < 3; ++axis) {
                low[axis] = Math.min(low[axis], this.boxes[6 * i + axis]);
                high[axis] = Math.max(high[axis], this.boxes[6 * i + 3 + axis]);
            }
        }
        return low[0] <= high[0] ? { low, high } : null;
    }

    shownBox(): { low: Triple; high: Triple } | null {
        const shown: number[] = [];
        this.state.itemShown.forEach((is, i) => is && shown.push(i));
        return this.boxOf(shown);
    }
}
