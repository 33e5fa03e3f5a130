// Which rows the tree has: what is opened, or what a search found with all that leads there.
import { keyOf, type Node, type SceneModel } from '../scene/model';

export interface Row {
    node: Node;
    level: number;
    opens: boolean;
    isOpen: boolean;
    /// Among its neighbours, from 1.
    position: number;
    neighbours: number;
}

export class Rows {
    readonly opened = new Set<number>([0]);
    /// Null without a search; else whether an occurrence or its geometry was found, or leads to what was.
    found: { nodes: Set<string>; leads: Set<number> } | null = null;
    list: Row[] = [];
    private places = new Map<string, number>();

    constructor(private readonly model: SceneModel) {
        // A root that has one child alone says little.
        for (let o = 0; this.model.children(o).length === 1;) {
            o = this.model.children(o)[0];
            this.opened.add(o);
        }
        this.build();
    }

    private below(occurrence: number): Node[] {
        const children = this.model.children(occurrence).map((o): Node => ({ occurrence: o, geometry: -1 }));
        const geometry = this.model.component(occurrence).geometry.map((g): Node => ({ occurrence, geometry: g }));
        const all = [...geometry, ...children];
        const found = this.found;
        if (!found) {
            return all;
        }
        return all.filter((node) =>
            node.geometry < 0 && found.leads.has(node.occurrence) ? true : found.nodes.has(keyOf(node)),
        );
    }

    private opens(node: Node): boolean {
        if (node.geometry >= 0) {
            return false;
        }
        const o = node.occurrence;
        return this.model.end[o] > o + 1 || this.model.component(o).geometry.length > 0;
    }

    private isOpen(node: Node): boolean {
        const leads = this.found?.leads.has(node.occurrence) ?? false;
        return node.geometry < 0 && (leads || (!this.found && this.opened.has(node.occurrence)));
    }

    build(): void {
        this.list = [];
        this.places.clear();
        const waiting: Row[] = [this.row({ occurrence: 0, geometry: -1 }, 1, 1, 1)];
        for (let row = waiting.pop(); row; row = waiting.pop()) {
            this.places.set(keyOf(row.node), this.list.length);
            this.list.push(row);
            if (row.isOpen) {
                const below = this.below(row.node.occurrence);
                for (let i = below.length - 1; i >= 0; --i) {
                    waiting.push(this.row(below[i], row.level + 1, i + 1, below.length));
                }
            }
        }
    }

    private row(node: Node, level: number, position: number, neighbours: number): Row {
        return { node, level, position, neighbours, opens: this.opens(node), isOpen: this.isOpen(node) };
    }

    placeOf(node: Node): number {
        return this.places.get(keyOf(node)) ?? -1;
    }

    setOpen(occurrence: number, open: boolean): void {
        open ? this.opened.add(occurrence) : this.opened.delete(occurrence);
        this.build();
    }

    /// Opens all that leads to a node.
    reveal(node: Node): void {
        const line = [0, ...this.model.ancestors(node.occurrence)];
        if (node.geometry < 0) {
            line.pop();
        }
        line.forEach((o) => this.opened.add(o));
        this.build();
    }

    above(index: number): number {
        const level = this.list[index].level;
        for (let i = index - 1; i >= 0; --i) {
            if (this.list[i].level < level) {
                return i;
            }
        }
        return -1;
    }
}
