// What the user, a saved view and switches make of the scene: what is shown, where, in which style. Those who draw or
// list it are told of changes.
import type { Triple, ViewMembers } from '../data/format';
import { keyOf, sameNode, type Node, type SceneModel } from './model';

/// A face or an edge of a selected geometry, by its number.
export interface Detail {
    item: number;
    kind: 'face' | 'edge';
    number: number;
}

export type Topic = 'visibility' | 'placement' | 'selection' | 'hover' | 'detail' | 'sections' | 'view' | 'notes';

export interface CutPlane {
    /// Of length 1, towards what is taken away.
    normal: Triple;
    /// Along the normal from the scene's zero point.
    offset: number;
    /// What the plane is called in the list.
    label: string;
    /// "x", "y" or "z" for one of the axes.
    axis?: 'x' | 'y' | 'z';
}

export class SceneState {
    readonly occurrenceVisible: Uint8Array;
    readonly itemVisible: Uint8Array;
    readonly ghost: Uint8Array;
    /// Index in the scene's transforms.
    readonly occurrenceTransform: Int32Array;
    readonly itemTransform: Int32Array;
    /// Imposed by a view on an occurrence or an item; -1 for none.
    readonly occurrenceStyle: Int32Array;
    readonly itemStyle: Int32Array;
    /// Whether layers and groups let it be shown.
    readonly occurrenceSwitched: Uint8Array;
    readonly itemSwitched: Uint8Array;
    /// What is seen in the end, with all that stands above it.
    readonly occurrenceShown: Uint8Array;
    readonly itemShown: Uint8Array;
    readonly itemGhost: Uint8Array;

    selection: Node[] = [];
    hovered: Node | null = null;
    detail: Detail | null = null;
    cuts: CutPlane[] = [];
    /// How far things are moved apart, from 0 to 1.
    explosion = 0;
    /// Index of the saved view that was chosen last; -1 for none.
    view = -1;
    notesShown = true;
    /// Whether the chosen view gives anything a style.
    hasStyles = false;

    private readonly listeners = new Map<Topic, (() => void)[]>();

    constructor(readonly model: SceneModel) {
        const size = model.occurrenceCount;
        const items = model.itemCount;
        this.occurrenceVisible = new Uint8Array(size);
        this.ghost = new Uint8Array(size);
        this.occurrenceTransform = new Int32Array(size);
        this.occurrenceStyle = new Int32Array(size);
        this.occurrenceSwitched = new Uint8Array(size).fill(1);
        this.occurrenceShown = new Uint8Array(size);
        this.itemVisible = new Uint8Array(items);
        this.itemTransform = new Int32Array(items);
        this.itemStyle = new Int32Array(items);
        this.itemSwitched = new Uint8Array(items).fill(1);
        this.itemShown = new Uint8Array(items);
        this.itemGhost = new Uint8Array(items);
        this.takeMembers(null);
        this.resolve();
    }

    on(topic: Topic, listener: () => void): void {
        this.listeners.set(topic, [...(this.listeners.get(topic) ?? []), listener]);
    }

    tell(...topics: Topic[]): void {
        for (const topic of topics) {
            for (const listener of this.listeners.get(topic) ?? []) {
                listener();
            }
        }
    }

    /// What is visible by the scene and then by the members of the chosen view, before anybody changed it.
    unchanged(): { occurrences: Uint8Array; items: Uint8Array } {
        const { occurrences, items } = this.model.file;
        const visible = { occurrences: Uint8Array.from(occurrences.visible), items: Uint8Array.from(items.visible) };
        const members = this.model.file.views[this.view]?.members;
        this.eachMember(members ?? null, (list, whole, i) =>
            list.forEach((index) => ((whole ? visible.occurrences : visible.items)[index] = members?.visible[i] ?? 1)),
        );
        return visible;
    }

    // Occurrences, or items, that the members of a view stand for.
    private eachMember(members: ViewMembers | null, each: (list: number[], whole: boolean, i: number) => void): void {
        members?.occurrence.forEach((occurrence, i) => {
            const geometry = members.geometry[i];
            each(geometry < 0 ? [occurrence] : this.model.items({ occurrence, geometry }), geometry < 0, i);
        });
    }

    /// As the scene has it, and then as the members of a view say. Nobody is told yet.
    takeMembers(members: ViewMembers | null): void {
        const { occurrences, items } = this.model.file;
        this.occurrenceVisible.set(occurrences.visible);
        this.occurrenceTransform.set(occurrences.transform);
        this.itemVisible.set(items.visible);
        this.itemTransform.set(items.transform);
        this.occurrenceStyle.fill(-1);
        this.itemStyle.fill(-1);
        this.ghost.fill(0);
        this.hasStyles = members?.style.some((style) => style >= 0) ?? false;
        this.eachMember(members, (list, whole, i) => {
            for (const index of list) {
                (whole ? this.occurrenceVisible : this.itemVisible)[index] = members?.visible[i] ?? 1;
                if (members && members.transform[i] >= 0) {
                    (whole ? this.occurrenceTransform : this.itemTransform)[index] = members.transform[i];
                }
                if (members && members.style[i] >= 0) {
                    (whole ? this.occurrenceStyle : this.itemStyle)[index] = members.style[i];
                }
            }
        });
    }

    /// Works out what is seen in the end.
    resolve(): void {
        const { parent } = this.model.file.occurrences;
        const { occurrence } = this.model.file.items;
        const ghosts = new Uint8Array(parent.length);
        for (let o = 0; o < parent.length; ++o) {
            const above = o === 0 ? 1 : this.occurrenceShown[parent[o]];
            this.occurrenceShown[o] = above & this.occurrenceVisible[o] & this.occurrenceSwitched[o];
            ghosts[o] = this.ghost[o] | (o === 0 ? 0 : ghosts[parent[o]]);
        }
        for (let i = 0; i < occurrence.length; ++i) {
            const o = occurrence[i];
            const isLeftOut = !this.notesShown && this.model.geometryOfItem(i).kind === 'note';
            this.itemShown[i] = isLeftOut ? 0 : this.occurrenceShown[o] & this.itemVisible[i] & this.itemSwitched[i];
            this.itemGhost[i] = ghosts[o];
        }
    }

    private changed(): void {
        this.resolve();
        this.tell('visibility');
    }

    isShown(node: Node): boolean {
        if (node.geometry < 0) {
            return this.occurrenceShown[node.occurrence] === 1;
        }
        const items = this.model.items(node);
        return items.length > 0 && items.some((i) => this.itemShown[i] === 1);
    }

    setShown(nodes: Node[], shown: boolean): void {
        for (const node of nodes) {
            if (node.geometry >= 0) {
                this.model.items(node).forEach((i) => (this.itemVisible[i] = shown ? 1 : 0));
            } else {
                this.occurrenceVisible[node.occurrence] = shown ? 1 : 0;
            }
            for (const o of shown ? [0, ...this.model.ancestors(node.occurrence)] : []) {
                this.occurrenceVisible[o] = 1;
            }
        }
        this.changed();
    }

    /// As the scene has it, or as the chosen view does.
    showAll(): void {
        const members = this.model.file.views[this.view]?.members ?? null;
        const transforms = this.occurrenceTransform.slice();
        this.takeMembers(members);
        this.occurrenceTransform.set(transforms);
        this.changed();
    }

    /// Also what the scene hides.
    showEverything(): void {
        this.occurrenceVisible.fill(1);
        this.itemVisible.fill(1);
        this.changed();
    }

    /// Only these, what is below them and what leads to them.
    isolate(nodes: Node[]): void {
        const { parent } = this.model.file.occurrences;
        const keep = new Uint8Array(this.model.occurrenceCount);
        for (const node of nodes) {
            keep.fill(1, node.occurrence, node.geometry < 0 ? this.model.end[node.occurrence] : node.occurrence + 1);
            for (let o = node.occurrence; o >= 0; o = parent[o]) {
                keep[o] = Math.max(keep[o], 1);
                this.occurrenceVisible[o] = 1;
            }
        }
        for (let o = 0; o < keep.length; ++o) {
            this.occurrenceVisible[o] &= keep[o];
        }
        const wanted = new Set(nodes.flatMap((node) => this.model.items(node)));
        for (let i = 0; i < this.itemVisible.length; ++i) {
            this.itemVisible[i] = wanted.has(i) ? (this.model.file.items.visible[i] as 0 | 1) : 0;
        }
        for (const node of nodes.filter((one) => one.geometry >= 0)) {
            this.model.items(node).forEach((i) => (this.itemVisible[i] = 1));
        }
        this.changed();
    }

    /// Makes them transparent, or solid again when all are.
    toggleGhost(nodes: Node[]): void {
        const to = nodes.every((node) => this.ghost[node.occurrence]) ? 0 : 1;
        nodes.forEach((node) => (this.ghost[node.occurrence] = to));
        this.changed();
    }

    isSelected(node: Node): boolean {
        return this.selection.some((one) => sameNode(one, node));
    }

    /// `add` adds, or takes away what is selected.
    select(node: Node | null, add = false, detail: Detail | null = null): void {
        if (!node) {
            this.selection = [];
        } else if (add) {
            const key = keyOf(node);
            const rest = this.selection.filter((one) => keyOf(one) !== key);
            this.selection = rest.length < this.selection.length ? rest : [...rest, node];
        } else {
            this.selection = [node];
        }
        this.detail = detail;
        this.tell('selection', 'detail');
    }

    hover(node: Node | null): void {
        if (!sameNode(node, this.hovered)) {
            this.hovered = node;
            this.tell('hover');
        }
    }

    setCuts(cuts: CutPlane[]): void {
        this.cuts = cuts;
        this.tell('sections');
    }
}
