// Measuring: what is clicked, what comes of it, and how that is drawn.
import { Group } from 'three';
import type { Triple } from '../data/format';
import { button, element } from '../panels/dom';
import type { SceneModel } from '../scene/model';
import { emptyGroup, flatObject, type Overlays } from '../scene/overlays';
import type { Hit, Picking } from '../scene/picking';
import type { Picture } from '../scene/picture';
import type { Detail } from '../scene/state';
import { length, minus, plus, times } from '../scene/transform';
import { angleBetween, distanceOfFaces, edgeFacts, faceFacts, nearestCorners } from './shapes';
import { degrees, type Units } from './units';

type Mode = 'points' | 'edges' | 'faces';
type Line = [string, () => string];

const kModes: [Mode, string, string][] = [
    ['points', 'Points', 'Click two points. Ends of edges catch.'],
    ['edges', 'Edges', 'Click an edge, and another one.'],
    ['faces', 'Faces', 'Click a face, and another one.'],
];
const kSnap = 9;

export class Measure {
    readonly box = element('div', { class: 'card-body' });
    isActive = false;
    private mode: Mode = 'points';
    private points: Triple[] = [];
    private details: Detail[] = [];
    private lines: Line[] = [];
    private span: [Triple, Triple] | null = null;
    private readonly group = new Group();
    private readonly hint = element('p', { class: 'hint' });
    private readonly results = element('dl', { class: 'results', attributes: { 'aria-live': 'polite' } });
    private readonly label = element('div', { class: 'measure-label', attributes: { 'aria-hidden': 'true' } });
    private readonly modes: HTMLButtonElement[];

    constructor(
        private readonly model: SceneModel,
        private readonly picture: Picture,
        private readonly picking: Picking,
        private readonly overlays: Overlays,
        private readonly units: Units,
        host: HTMLElement,
    ) {
        picture.drawing.add(this.group);
        picture.drawn.push(() => this.placeLabel());
        this.label.hidden = true;
        host.append(this.label);
        this.modes = kModes.map(([mode, name]) => button(name, () => this.setMode(mode), 'button small'));
        const unit = element('select', { class: 'field', attributes: { 'aria-label': 'Unit of measures' } });
        units
            .choices()
            .forEach((one, i) => unit.append(element('option', { text: one.symbol, attributes: { value: i } })));
        unit.addEventListener('change', () => {
            units.choose(units.choices()[unit.selectedIndex]);
            this.show();
        });
        const clear = button('Clear', () => this.clear(), 'button small');
        const choice = element(
            'div',
            { class: 'segments', attributes: { role: 'group', 'aria-label': 'What is measured' } },
            ...this.modes,
        );
        this.box.append(choice, this.hint, this.results, element('div', { class: 'buttons' }, unit, clear));
        this.setMode('points');
    }

    setActive(active: boolean): void {
        this.isActive = active;
        active || this.clear();
    }

    setMode(mode: Mode): void {
        this.mode = mode;
        kModes.forEach(([one], i) => this.modes[i].setAttribute('aria-pressed', String(one === mode)));
        this.hint.textContent = kModes.find(([one]) => one === mode)?.[2] ?? '';
        this.clear();
    }

    clear(): void {
        this.points = [];
        this.details = [];
        this.lines = [];
        this.span = null;
        this.show();
    }

    /// A click in the picture.
    click(x: number, y: number): void {
        const hit = this.picking.at(x, y);
        if (!hit) {
            return;
        }
        if (this.mode === 'points') {
            this.points = [...(this.points.length >= 2 ? [] : this.points), this.caught(hit, x, y)];
            this.measurePoints();
        } else {
            const detail = this.mode === 'edges' ? this.edgeAt(hit, x, y) : this.faceAt(hit);
            if (detail) {
                this.details = [...(this.details.length >= 2 ? [] : this.details), detail];
                this.mode === 'edges' ? this.measureEdges() : this.measureFaces();
            }
        }
        this.show();
    }

    private faceAt(hit: Hit): Detail | null {
        return hit.primitive.role === 'faces' && hit.number >= 0
            ? { item: hit.item, kind: 'face', number: hit.number }
            : null;
    }

    private edgeHit(hit: Hit, x: number, y: number): Hit | null {
        const edges = this.model
            .meshOfItem(hit.item)
            ?.primitives.find(({ role }) => role === 'edges' || role === 'lines');
        return edges ? this.picking.nearest(hit.item, edges, x, y, kSnap) : null;
    }

    private edgeAt(hit: Hit, x: number, y: number): Detail | null {
        const edge = this.edgeHit(hit, x, y);
        return edge && edge.number >= 0 ? { item: hit.item, kind: 'edge', number: edge.number } : null;
    }

    // The end of an edge, a place on an edge, or on a face.
    private caught(hit: Hit, x: number, y: number): Triple {
        const edge = this.edgeHit(hit, x, y);
        if (!edge || !edge.primitive.indices) {
            return hit.point;
        }
        for (const end of [0, 1]) {
            const at = 3 * edge.primitive.indices[2 * edge.index + end];
            const point = this.picture.pointOf(edge.item, edge.primitive.positions.subarray(at, at + 3));
            const place = this.picture.camera.project(point);
            if (Math.hypot(place[0] - x, place[1] - y) < kSnap) {
                return point;
            }
        }
        return edge.point;
    }

    private measurePoints(): void {
        const [a, b] = this.points;
        this.span = b ? [a, b] : null;
        if (!b) {
            this.lines = [['Point', () => a.map((part) => this.units.length(part)).join(', ')]];
            return;
        }
        const by = minus(b, a);
        this.lines = [
            ['Distance', () => this.units.length(length(by))],
            ...(['X', 'Y', 'Z'].map((name, k) => [
                `Along ${name}`,
                () => this.units.length(Math.abs(by[k])),
            ]) as Line[]),
        ];
    }

    private measureEdges(): void {
        const edges = this.details.map((detail) => edgeFacts(this.model, this.picture, detail));
        this.lines = edges.flatMap((edge): Line[] => [
            ['Edge', () => edge.kind],
            ['Length', () => this.units.length(edge.length)],
            ...(edge.radius !== null ? ([['Radius', () => this.units.length(edge.radius ?? 0)]] as Line[]) : []),
        ]);
        const [a, b] = edges;
        this.span = null;
        if (b) {
            const near =
                a.center && b.center
                    ? { value: length(minus(b.center, a.center)), from: a.center, to: b.center }
                    : nearestCorners(a.corners, b.corners);
            this.lines.push([
                a.center && b.center ? 'Between centres' : 'Distance',
                () => this.units.length(near.value),
            ]);
            this.span = [near.from, near.to];
            const [u, v] = [a.direction, b.direction];
            u && v && this.lines.push(['Angle', () => degrees(angleBetween(u, v))]);
        }
    }

    private measureFaces(): void {
        const faces = this.details.map((detail) => faceFacts(this.model, this.picture, detail));
        this.lines = faces.flatMap((face): Line[] => [
            ['Face', () => face.kind],
            ['Area', () => this.units.area(face.area)],
            ...(face.radius !== null ? ([['Radius', () => this.units.length(face.radius ?? 0)]] as Line[]) : []),
        ]);
        const [a, b] = faces;
        this.span = null;
        if (b) {
            const apart = distanceOfFaces(a, b);
            this.lines.push(['Distance', () => this.units.length(apart.value)]);
            this.span = [apart.from, apart.to];
            const [u, v] = [a.normal, b.normal];
            u && v && this.lines.push(['Angle', () => degrees(angleBetween(u, v))]);
        }
    }

    private show(): void {
        this.results.replaceChildren(
            ...this.lines.flatMap(([name, value]) => [element('dt', { text: name }), element('dd', { text: value() })]),
        );
        emptyGroup(this.group);
        const color: [number, number, number, number] = [0.93, 0.38, 0.07, 1];
        const ends = this.span ?? this.points;
        if (ends.length > 0) {
            this.group.add(flatObject(this.picture, 'points', [...ends], color, { onTop: true }));
        }
        if (this.span) {
            this.group.add(flatObject(this.picture, 'lines', this.span, color, { onTop: true }));
        }
        this.overlays.show(this.details, [0.93, 0.38, 0.07, 0.55]);
        this.placeLabel();
        this.picture.invalidate();
    }

    private placeLabel(): void {
        this.label.hidden = !this.span;
        if (this.span) {
            const [x, y] = this.picture.camera.project(times(plus(this.span[0], this.span[1]), 0.5));
            this.label.textContent = this.units.length(length(minus(this.span[1], this.span[0])));
            this.label.style.transform = `translate(${Math.round(x)}px, ${Math.round(y)}px)`;
        }
    }
}
