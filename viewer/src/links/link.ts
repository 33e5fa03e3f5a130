// The state of the page as a link: #view=..&path=a/b/c&cut=x:12.5
import type { Triple } from '../data/format';
import type { Layers } from '../panels/layers';
import { sameNode, type Node, type SceneModel } from '../scene/model';
import type { Picture } from '../scene/picture';
import type { Placing } from '../scene/placing';
import type { CutPlane, SceneState } from '../scene/state';
import { kAxes } from '../sections/panel';
import type { SavedViews } from '../views/saved';
import { times, unit } from '../scene/transform';

const kMostLength = 20000;

const digits = (value: number): string => String(Number(value.toPrecision(7)));
const joined = (values: ArrayLike<number>): string => Array.from(values, digits).join(',');

function numbers(text: string, size: number): number[] | null {
    const list = text.split(',').map(Number);
    return list.length === size && list.every(Number.isFinite) ? list : null;
}

export class Links {
    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly views: SavedViews,
        private readonly layers: Layers,
        private readonly picture: Picture | null,
    ) {}

    private cutText({ axis, normal, offset }: CutPlane): string {
        if (axis) {
            const flipped = normal['xyz'.indexOf(axis)] < 0;
            return flipped ? `-${axis}:${digits(-offset)}` : `${axis}:${digits(offset)}`;
        }
        return `n:${joined(normal)},${digits(offset)}`;
    }

    private cutOf(text: string): CutPlane | null {
        const [kind, value] = text.split(':');
        const axis = kind.replace('-', '') as 'x' | 'y' | 'z';
        if (kAxes[axis]) {
            const offset = Number(value);
            const sign = kind.startsWith('-') ? -1 : 1;
            const normal = times(kAxes[axis], sign);
            return value && Number.isFinite(offset)
                ? { normal, offset: sign * offset, label: axis.toUpperCase(), axis }
                : null;
        }
        const list = kind === 'n' ? numbers(value ?? '', 4) : null;
        return list ? { normal: unit(list.slice(0, 3)), offset: list[3], label: 'Plane' } : null;
    }

    private pathText(path: string[]): string {
        return path.map(encodeURIComponent).join('/');
    }

    /// What follows the # of the link.
    text(): string {
        const { state, model } = this;
        const parts: string[] = [];
        const add = (name: string, value: string): void => {
            parts.push(`${name}=${value}`);
        };
        const look = this.picture?.camera.look;
        if (look) {
            const kind = look.perspective ? 'perspective' : 'parallel';
            const values = [...look.target, ...look.direction, ...look.up, look.height, look.angle];
            add('camera', `${kind},${joined(values)}`);
        }
        const view = model.file.views[state.view];
        view && add('view', encodeURIComponent(view.id));
        state.cuts.forEach((cut) => add('cut', this.cutText(cut)));
        view && state.cuts.length === 0 && add('cut', 'none');
        this.layers.changes().forEach(([name, value]) => add(name, value));
        state.explosion > 0 && add('explode', digits(state.explosion));
        state.selection.forEach((node) => add('path', this.pathText(model.path(node))));
        this.addVisibility(add);
        // What is hidden comes last, and may be too much for a link.
        let text = '';
        for (const part of parts) {
            text = text.length + part.length < kMostLength ? `${text}&${part}` : text;
        }
        return text.slice(1);
    }

    private addVisibility(add: (name: string, value: string) => void): void {
        const { state, model } = this;
        const { parent } = model.file.occurrences;
        const { occurrence, geometry } = model.file.items;
        const before = state.unchanged();
        const path = (node: Node): string => this.pathText(model.path(node));
        const name = (visible: number): string => (visible ? 'show' : 'hide');
        for (let o = 0; o < model.occurrenceCount; ++o) {
            // Below what is hidden it makes no difference.
            const seen = o === 0 || state.occurrenceShown[parent[o]] === 1;
            if (seen && state.occurrenceVisible[o] !== before.occurrences[o]) {
                add(name(state.occurrenceVisible[o]), path({ occurrence: o, geometry: -1 }));
            }
            state.ghost[o] && add('ghost', path({ occurrence: o, geometry: -1 }));
        }
        for (let i = 0; i < model.itemCount; ++i) {
            if (state.occurrenceShown[occurrence[i]] && state.itemVisible[i] !== before.items[i]) {
                add(name(state.itemVisible[i]), path({ occurrence: occurrence[i], geometry: geometry[i] }));
            }
        }
    }

    /// Brings back what a link says; what it says wrongly is left out.
    restore(text: string): void {
        const said: [string, string][] = text
            .replace(/^#/, '')
            .split('&')
            .map((part) => {
                const at = part.indexOf('=');
                return [part.slice(0, at), part.slice(at + 1)];
            });
        const decoded = (value: string): string => {
            try {
                return decodeURIComponent(value);
            } catch {
                return value;
            }
        };
        const all = (name: string): string[] => said.filter(([key]) => key === name).map(([, value]) => value);
        const nodes = (name: string) =>
            all(name).flatMap((path) => this.model.find(path === '' ? [] : path.split('/').map(decoded)) ?? []);
        const [view] = all('view');
        const index = view === undefined ? -1 : this.model.file.views.findIndex(({ id }) => id === decoded(view));
        this.views.open(index, false);
        const set = (node: Node, visible: number): void => {
            if (node.geometry < 0) {
                this.state.occurrenceVisible[node.occurrence] = visible;
            } else {
                this.model.items(node).forEach((item) => (this.state.itemVisible[item] = visible));
            }
        };
        nodes('hide').forEach((node) => set(node, 0));
        nodes('show').forEach((node) => set(node, 1));
        nodes('ghost').forEach(({ occurrence }) => (this.state.ghost[occurrence] = 1));
        const explosion = Number(all('explode')[0] ?? 0);
        this.layers.restore(said.filter(([name]) => name === 'on' || name === 'off'));
        this.state.explosion = explosion > 0 && explosion <= 1 ? explosion : 0;
        this.state.resolve();
        this.placing.update();
        this.state.tell('visibility', 'placement');
        const cuts = all('cut');
        cuts.length > 0 && this.state.setCuts(cuts.flatMap((cut) => this.cutOf(cut) ?? []));
        const selected = nodes('path');
        selected.forEach((node, i) => {
            const isFirst = !selected.slice(0, i).some((other) => sameNode(other, node));
            isFirst && this.state.select(node, i > 0);
        });
        const [camera] = all('camera');
        this.look(camera ?? '', selected.length > 0 && index < 0);
    }

    private look(text: string, fits: boolean): void {
        const [kind, ...rest] = text.split(',');
        const list = numbers(rest.join(','), 11);
        if (list && list[9] > 0) {
            const triple = (at: number): Triple => [list[at], list[at + 1], list[at + 2]];
            const [height, angle] = [list[9], Math.min(3, Math.max(0.001, list[10]))];
            const perspective = kind === 'perspective';
            this.picture?.camera.set({
                target: triple(0),
                direction: triple(3),
                up: triple(6),
                height,
                angle,
                perspective,
            });
        } else if (fits) {
            this.picture?.fit(this.state.selection);
        }
    }
}
