// Layers, groups and levels of detail as switches.
import type { Layer, LevelOfDetail } from '../data/format';
import { shownInLine } from '../data/text';
import type { Node, SceneModel } from '../scene/model';
import type { SceneState } from '../scene/state';
import { button, checkbox, element, radio } from './dom';

type Kind = 'layer' | 'group' | 'level';

interface Switch {
    kind: Kind;
    id: string;
    members: { occurrences: number[]; items: number[] };
    nodes: Node[];
    /// Of a level, whether it is the one that is chosen.
    isOn: boolean;
    isOnAtFirst: boolean;
    input: HTMLInputElement;
}

export class Layers {
    readonly box = element('div', { class: 'tab-body scrolls' });
    private readonly switches: Switch[] = [];
    /// That of all levels of detail together.
    private allLevels: HTMLInputElement | null = null;
    private readonly byId = new Map<string, { occurrences: number[]; items: number[] }>();

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
    ) {
        const { layers, groups, lods } = model.file;
        if (layers.length + groups.length + lods.length === 0) {
            this.box.append(
                element('p', { class: 'hint', text: 'The scene has no layers, groups or levels of detail.' }),
            );
            return;
        }
        this.index();
        this.add('Layers', 'layer', layers);
        this.add('Groups', 'group', groups);
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

    private entry(
        kind: Kind,
        { id, label, items: ids }: Layer | LevelOfDetail,
        more: string,
        isOn: boolean,
    ): HTMLElement {
        const name = label || id;
        const occurrences: number[] = [];
        const items: number[] = [];
        for (const one of ids) {
            const found = this.byId.get(one);
            found?.occurrences.forEach((o) => occurrences.push(o));
            found?.items.forEach((i) => items.push(i));
        }
        const { occurrence, geometry } = this.model.file.items;
        const nodes = [
            ...occurrences.map((o): Node => ({ occurrence: o, geometry: -1 })),
            ...items.map((i): Node => ({ occurrence: occurrence[i], geometry: geometry[i] })),
        ];
        const box =
            kind === 'level'
                ? radio(shownInLine(name), 'level', false, () => this.choose(made))
                : checkbox(shownInLine(name), isOn, (checked) => {
                      made.isOn = checked;
                      this.apply(true);
                  });
        const input = box.control as HTMLInputElement;
        const made: Switch = { kind, id, members: { occurrences, items }, nodes, isOn, isOnAtFirst: isOn, input };
        this.switches.push(made);
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

    private add(title: string, kind: Kind, layers: Layer[]): void {
        if (layers.length > 0) {
            const list = element('ul', { class: 'entries', attributes: { 'aria-label': title } });
            for (const layer of layers.slice(0, 5000)) {
                const number = layer.number === undefined ? '' : `${layer.number}`;
                const more = [number, shownInLine(layer.description ?? '', 60)].filter(Boolean).join(' \u00b7 ');
                list.append(this.entry(kind, layer, more, layer.visible !== false));
            }
            this.box.append(element('h3', { text: title }), list);
        }
    }

    // Of levels one is chosen, or all are shown together.
    private addLevels(levels: LevelOfDetail[]): void {
        if (levels.length > 0) {
            const attributes = { role: 'radiogroup', 'aria-label': 'Levels of detail' };
            const all = radio('All levels', 'level', true, () => this.choose(null));
            this.allLevels = all.control as HTMLInputElement;
            const list = element('ul', { class: 'entries', attributes }, element('li', { class: 'switch' }, all));
            for (const level of levels.slice(0, 5000)) {
                list.append(this.entry('level', level, shownInLine(level.description ?? '', 60), false));
            }
            this.box.append(element('h3', { text: 'Levels of detail' }), list);
        }
    }

    private choose(level: Switch | null): void {
        this.switches.filter(({ kind }) => kind === 'level').forEach((one) => (one.isOn = one === level));
        this.apply(true);
    }

    private apply(tell: boolean): void {
        this.state.occurrenceSwitched.fill(1);
        this.state.itemSwitched.fill(1);
        const set = ({ members }: Switch, to: number): void => {
            members.occurrences.forEach((o) => (this.state.occurrenceSwitched[o] = to));
            members.items.forEach((i) => (this.state.itemSwitched[i] = to));
        };
        // What is in several levels goes with the one that is chosen.
        const levels = this.switches.filter(({ kind }) => kind === 'level');
        const chosen = levels.find(({ isOn }) => isOn);
        chosen && levels.forEach((level) => set(level, 0));
        chosen && set(chosen, 1);
        this.switches.filter(({ kind, isOn }) => kind !== 'level' && !isOn).forEach((one) => set(one, 0));
        this.state.resolve();
        tell && this.state.tell('visibility');
    }

    /// What differs from how the scene has it: names and values of a link.
    changes(): [string, string][] {
        return this.switches
            .filter(({ isOn, isOnAtFirst }) => isOn !== isOnAtFirst)
            .map(({ kind, id, isOn }) => [isOn ? 'on' : 'off', `${kind}:${encodeURIComponent(id)}`]);
    }

    /// Sets all as the scene has it, but for what a link says.
    restore(changes: [string, string][]): void {
        for (const one of this.switches) {
            const change = changes.find(([, value]) => value === `${one.kind}:${encodeURIComponent(one.id)}`);
            one.isOn = change ? change[0] === 'on' : one.isOnAtFirst;
            one.input.checked = one.isOn;
        }
        const isChosen = this.switches.some(({ kind, isOn }) => kind === 'level' && isOn);
        this.allLevels && (this.allLevels.checked = !isChosen);
        this.apply(false);
    }
}
