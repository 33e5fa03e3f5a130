// The cut surfaces of bodies: what a section plane goes through is filled in the colour of its part.
import { BufferAttribute, BufferGeometry, Group, LineSegments, Mesh, Vector2 } from 'three';
import type { Triple } from '../data/format';
import { sizeOf } from '../data/geometry';
import { colorOf } from '../scene/looks';
import { flatMaterial, kMostCuts } from '../scene/materials';
import type { SceneModel } from '../scene/model';
import { emptyGroup } from '../scene/overlays';
import type { Picture } from '../scene/picture';
import type { Placing } from '../scene/placing';
import type { CutPlane, SceneState } from '../scene/state';
import { applied, cross, dot, plus, square, times } from '../scene/transform';
import { contoursOf } from './contours';
import { fillLoops } from './fill';

// While a plane is dragged, filling may take so long; else it waits until the plane rests.
const kMostMilliseconds = 25;

interface Sheet {
    corners: number[];
    paint: number[];
    lines: number[];
}

export class Caps {
    readonly group = new Group();
    private lastTook = 0;
    private waiting = 0;

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly picture: Picture,
    ) {
        picture.drawing.add(this.group);
        for (const topic of ['sections', 'visibility', 'placement'] as const) {
            state.on(topic, () => this.later());
        }
    }

    private later(): void {
        clearTimeout(this.waiting);
        if (this.lastTook > kMostMilliseconds) {
            emptyGroup(this.group);
            this.waiting = setTimeout(() => this.update(), 160);
        } else {
            this.update();
        }
    }

    update(): void {
        const start = performance.now();
        emptyGroup(this.group);
        const cuts = this.state.cuts.slice(0, kMostCuts);
        cuts.forEach((plane, i) => this.add(plane, i, cuts.length));
        this.lastTook = performance.now() - start;
        this.picture.invalidate();
    }

    private add(plane: CutPlane, index: number, cuts: number): void {
        const sheet: Sheet = { corners: [], paint: [], lines: [] };
        for (let item = 0; item < this.model.itemCount; ++item) {
            if (this.state.itemShown[item] && this.crosses(plane, item)) {
                this.cap(plane, item, sheet);
            }
        }
        const filled = new BufferGeometry();
        filled.setAttribute('position', new BufferAttribute(new Float32Array(sheet.corners), 3));
        filled.setAttribute('paint', new BufferAttribute(new Uint8Array(sheet.paint), 4, true));
        const options = { cuts, ownCut: index };
        const faces = new Mesh(filled, flatMaterial(this.picture.shared, { ...options, hatched: true }));
        const outline = new BufferGeometry();
        outline.setAttribute('position', new BufferAttribute(new Float32Array(sheet.lines), 3));
        const black = new Uint8Array((sheet.lines.length / 3) * 4).map((_, i) => (i % 4 === 3 ? 255 : 24));
        outline.setAttribute('paint', new BufferAttribute(black, 4, true));
        const lines = new LineSegments(outline, flatMaterial(this.picture.shared, { ...options, depthShift: 1e-4 }));
        for (const object of [faces, lines]) {
            object.frustumCulled = false;
            object.renderOrder = 2;
            this.group.add(object);
        }
    }

    private crosses({ normal, offset }: CutPlane, item: number): boolean {
        let low = -offset;
        let high = -offset;
        for (let axis = 0; axis < 3; ++axis) {
            const a = normal[axis] * this.placing.boxes[6 * item + axis];
            const b = normal[axis] * this.placing.boxes[6 * item + 3 + axis];
            low += Math.min(a, b);
            high += Math.max(a, b);
        }
        return low <= 0 && high >= 0;
    }

    private cap({ normal, offset }: CutPlane, item: number, sheet: Sheet): void {
        const mesh = this.model.meshOfItem(item);
        const surfaces = mesh?.primitives.filter(({ role }) => role === 'faces') ?? [];
        if (!mesh || surfaces.length === 0) {
            return;
        }
        // The inside looks as most of the outside does.
        const most = surfaces.reduce((a, b) => (sizeOf(b) > sizeOf(a) ? b : a));
        const color = colorOf(this.model, this.state, item, most);
        if (color[3] < 1) {
            // Through what is transparent the inside is seen anyway.
            return;
        }
        const m = this.placing.items;
        const at = 12 * item;
        const column = (k: number): Triple => [m[at + k], m[at + 4 + k], m[at + 8 + k]];
        const own: Triple = [dot(normal, column(0)), dot(normal, column(1)), dot(normal, column(2))];
        const { loops, segments } = contoursOf(mesh, own, offset - dot(normal, column(3)));
        const { middle } = this.picture;
        const inScene = (point: Triple): Triple => plus(applied(m, at, point), times(middle, -1));
        sheet.lines.push(...segments.flatMap(inScene));
        const u = square(normal);
        const v = cross(normal, u);
        const height = offset - dot(normal, middle);
        const flat = loops.map((loop) =>
            loop.map((point) => {
                const place = inScene(point);
                return new Vector2(dot(place, u), dot(place, v));
            }),
        );
        const bytes = color.map((part) => Math.round(255 * part));
        for (const corner of fillLoops(flat)) {
            sheet.corners.push(...plus(plus(times(u, corner.x), times(v, corner.y)), times(normal, height)));
            sheet.paint.push(...bytes);
        }
    }
}
