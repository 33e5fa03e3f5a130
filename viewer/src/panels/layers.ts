// Layers, groups and levels of detail as switches.
import type { Layer, LevelOfDetail } from '../data/format';
import { shownInLine } from '../data/text';
import type { Node, SceneModel } from '../scene/model';
import type { SceneState } from '../scene/state';
import { button, checkbox, element } from './dom';

interface Switch {
    members: { occurrences: number[]; items: number[] };
    nodes: Node[];
    isOn: boolean;
}

export class Layers {
    readonly box = element('div', { class: 'tab-body scrolls' });
    private readonly switches: Switch[] = [];
    private readonly byId = new Map<string, { occurrences: number[]; items: number[] }>();

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
    ) {
        const { layers, groups, lods } = model.file;
        if (layers.length + groups.length + lods.length === 0) {
            this.box.append(element('p', { class: 'hint', text: 'The scene has neither layers nor groups.' }));
            return;
        }
        this.index();
        this.add('Layers', layers);
        this.add('Groups', groups);
        this.addLevels(lods);
        this.apply(false);
    }

    private index(): void {
        const at = (id: string): { occurrences: number[]; items: number[] } => {
            let entry = this.byId.get(id);
            entry ?? this.byId.set(id, (entry = { occurrences: [], items: [] }));
            return entry;
        };
        for (let o = 0; o < this.model.occurrenceCount; ++o) {
            const component = this.model.component(o).id;
            const placement = this.model.placement(o)?.id;
            at(component).occurrences.push(o);
            placement !== undefined && placement !== component && at(placement).occurrences.push(o);
        }
        for (let i = 0; i < this.model.itemCount; ++i) {
            const geometry = this.model.geometryOfItem(i);
            at(geometry.id).items.push(i);
            // A mesh is switched as the body that it stands for.
            const body = geometry.body === undefined ? undefined : this.model.file.geometry[geometry.body]?.id;
            body !== undefined && body !== geometry.id && at(body).items.push(i);
        }
    }

    private entry(name: string, more: string, ids: string[], isOn: boolean): HTMLElement {
        const occurrences: number[] = [];
        const items: number[] = [];
        for (const id of ids) {
            const found = this.byId.get(id);
            found?.occurrences.forEach((o) => occurrences.push(o));
            found?.items.forEach((i) => items.push(i));
        }
        const { occurrence, geometry } = this.model.file.items;
        const nodes = [
            ...occurrences.map((o): Node => ({ occurrence: o, geometry: -1 })),
            ...items.map((i): Node => ({ occurrence: occurrence[i], geometry: geometry[i] })),
        ];
        const made: Switch = { members: { occurrences, items }, nodes, isOn };
        this.switches.push(made);
        const box = checkbox(shownInLine(name), isOn, (checked) => {
            made.isOn = checked;
            this.apply(true);
        });
        const select = button(
            'Select',
            () => {
                this.state.select(null);
                made.nodes.slice(0, 5000).forEach((node) => this.state.selection.push(node));
                this.state.tell('selection');
            },
            'button small quiet',
        );
        select.setAttribute('aria-label', `Select what is in ${shownInLine(name)}`);
        select.disabled = nodes.length === 0;
        return element(
            'li',
            { class: 'switch' },
            box,
            more !== '' && element('span', { class: 'entry-more', text: more }),
            select,
        );
    }

    private add(title: string, layers: Layer[]): void {
        if (layers.length > 0) {
            const list = element('ul', { class: 'entries', attributes: { 'aria-label': title } });
            for (const layer of layers.slice(0, 5000)) {
                const number = layer.number === undefined ? '' : `${layer.number}`;
                const more = [number, shownInLine(layer.description ?? '', 60)].filter(Boolean).join(' \u00b7 ');
                list.append(this.entry(layer.label || layer.id, more, layer.items, layer.visible !== false));
            }
            this.box.append(element('h3', { text: title }), list);
        }
    }

    private addLevels(levels: LevelOfDetail[]): void {
        if (levels.length > 0) {
            const list = element('ul', { class: 'entries', attributes: { 'aria-label': 'Levels of detail' } });
            for (const level of levels) {
                const name = level.label || level.id;
                const more = shownInLine(level.description ?? '', 60);
                list.append(
                    level.items
                        ? this.entry(name, more, level.items, true)
                        : element(
                              'li',
                              { class: 'switch' },
                              element('span', { text: shownInLine(name) }),
                              element('span', { class: 'entry-more', text: more }),
                          ),
                );
            }
            this.box.append(element('h3', { text: 'Levels of detail' }), list);
        }
    }

    private apply(tell: boolean): void {
        this.state.occurrenceSwitched.fill(1);
        this.state.itemSwitched.fill(1);
        for (const { members, isOn } of this.switches) {
            if (!isOn) {
                members.occurrences.forEach((o) => (this.state.occurrenceSwitched[o] = 0));
                members.items.forEach((i) => (this.state.itemSwitched[i] = 0));
            }
        }
        this.state.resolve();
        tell && this.state.tell('visibility');
    }
}
