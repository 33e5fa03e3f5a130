// The card of section planes: along the axes, or in a face.
import type { Triple } from '../data/format';
import { figure } from '../data/text';
import { button, element, iconButton, slider } from '../panels/dom';
import { icon } from '../panels/icons';
import { kMostCuts } from '../scene/materials';
import type { Picture } from '../scene/picture';
import type { Placing } from '../scene/placing';
import type { CutPlane, SceneState } from '../scene/state';
import { dot, times } from '../scene/transform';

export const kAxes: Record<'x' | 'y' | 'z', Triple> = { x: [1, 0, 0], y: [0, 1, 0], z: [0, 0, 1] };

export class SectionPanel {
    readonly box = element('div', { class: 'card-body' });
    private readonly list = element('ul', { class: 'cuts', attributes: { 'aria-label': 'Section planes' } });
    private readonly hint = element('p', { class: 'hint' });
    /// Whether the next face that is clicked makes a plane.
    isPicking = false;

    constructor(
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly picture: Picture,
        private readonly symbol: string,
    ) {
        const axes = (['x', 'y', 'z'] as const).map((axis) =>
            button(axis.toUpperCase(), () => this.addAxis(axis), 'button small'),
        );
        axes.forEach((one, i) => one.setAttribute('aria-label', `Cut across ${'XYZ'[i]}`));
        const face = button('By a face', () => this.pick(), 'button small');
        const none = button('None', () => this.state.setCuts([]), 'button small');
        none.setAttribute('aria-label', 'Remove all section planes');
        this.box.append(element('div', { class: 'buttons' }, ...axes, face, none), this.hint, this.list);
        state.on('sections', () => this.show());
    }

    private pick(): void {
        this.isPicking = true;
        this.hint.textContent = 'Click a face: the plane lies in it.';
    }

    /// A plane through a face.
    addFace(point: Triple, normal: Triple): void {
        this.isPicking = false;
        this.hint.textContent = '';
        this.add({ normal, offset: dot(normal, point) - 1e-4 * this.picture.size, label: 'Face' });
    }

    private addAxis(axis: 'x' | 'y' | 'z'): void {
        const box = this.placing.shownBox();
        const k = 'xyz'.indexOf(axis);
        const middle = box ? (box.low[k] + box.high[k]) / 2 : 0;
        // The side that is nearer goes, so that the inside is seen.
        const sign = kAxes[axis][k] * this.picture.camera.look.direction[k] > 1e-6 ? -1 : 1;
        this.add({ normal: times(kAxes[axis], sign), offset: sign * middle, label: axis.toUpperCase(), axis });
    }

    private add(plane: CutPlane): void {
        if (this.state.cuts.length >= kMostCuts) {
            this.hint.textContent = `There can be ${kMostCuts} planes.`;
        } else {
            this.state.setCuts([...this.state.cuts, plane]);
        }
    }

    private change(index: number, plane: CutPlane | null): void {
        const cuts = [...this.state.cuts];
        plane ? (cuts[index] = plane) : cuts.splice(index, 1);
        this.state.setCuts(cuts);
    }

    // What a plane may be moved over: the scene, along its normal.
    private range(normal: Triple): [number, number] {
        const box = this.placing.shownBox() ?? { low: [0, 0, 0], high: [1, 1, 1] };
        let [low, high] = [0, 0];
        for (let axis = 0; axis < 3; ++axis) {
            const [a, b] = [normal[axis] * box.low[axis], normal[axis] * box.high[axis]];
            low += Math.min(a, b);
            high += Math.max(a, b);
        }
        return [low, high];
    }

    private show(): void {
        if (this.list.children.length === this.state.cuts.length && this.list.contains(document.activeElement)) {
            // A slider that is being moved stays.
            this.state.cuts.forEach((plane, i) => this.label(this.list.children[i], plane));
            return;
        }
        this.list.replaceChildren(...this.state.cuts.map((plane, i) => this.row(plane, i)));
    }

    private label(row: Element, plane: CutPlane): void {
        const output = row.querySelector('output');
        const along = plane.axis && plane.normal['xyz'.indexOf(plane.axis)] < 0 ? -plane.offset : plane.offset;
        output && (output.textContent = `${figure(along, 5)} ${this.symbol}`);
    }

    private row(plane: CutPlane, index: number): HTMLElement {
        const [low, high] = this.range(plane.normal);
        const range = { low, high, step: 'any' as const, value: plane.offset };
        const place = slider(`Place of plane ${plane.label}`, range, (offset) =>
            this.change(index, { ...this.state.cuts[index], offset }),
        );
        const flip = iconButton(`Flip plane ${plane.label}`, icon('flip'), () => {
            (document.activeElement as HTMLElement | null)?.blur();
            const now = this.state.cuts[index];
            this.change(index, { ...now, normal: times(now.normal, -1), offset: -now.offset });
        });
        const remove = iconButton(`Remove plane ${plane.label}`, icon('close'), () => this.change(index, null));
        const name = element('span', { class: 'cut-name', text: plane.label });
        const row = element('li', { class: 'cut' }, name, place, element('output'), flip, remove);
        this.label(row, plane);
        return row;
    }
}
