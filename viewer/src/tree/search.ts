// Search by name, id and property.
import type { Property } from '../data/format';
import { keyOf, type Node, type SceneModel } from '../scene/model';

const textOf = (parts: (string | undefined)[], properties: Property[] | undefined): string =>
    [...parts, ...(properties ?? []).map(([name, value]) => `${name}: ${String(value)}`)].join('\n').toLowerCase();

export class Search {
    // By index; made when they are first looked at.
    private components: string[] | null = null;
    private placements: string[][] = [];
    private geometry: string[] = [];

    constructor(private readonly model: SceneModel) {}

    private prepare(): void {
        const { components, geometry } = this.model.file;
        this.components = components.map((one) =>
            textOf(
                [
                    one.label,
                    one.id,
                    one.persistentId,
                    ...Object.entries(one.fileProperties ?? {}).map((e) => e.join(': ')),
                ],
                one.properties,
            ),
        );
        this.placements = components.map((one) =>
            one.placements.map((placed) => textOf([placed.label, placed.id, placed.persistentId], placed.properties)),
        );
        this.geometry = geometry.map((one) => textOf([one.label, one.id, one.class, one.persistentId], one.properties));
    }

    /// All nodes that hold every word of the question, in the order of the tree.
    find(question: string): Node[] {
        const words = question.toLowerCase().split(/\s+/).filter(Boolean);
        if (words.length === 0) {
            return [];
        }
        if (!this.components) {
            this.prepare();
        }
        const fits = (text: string): boolean => words.every((word) => text.includes(word));
        const ofComponent = (this.components ?? []).map(fits);
        const ofPlacement = this.placements.map((list) => list.map(fits));
        const ofGeometry = this.geometry.map(fits);
        const { component, parent, placement } = this.model.file.occurrences;
        const found: Node[] = [];
        for (let o = 0; o < component.length; ++o) {
            const placed = o > 0 && ofPlacement[component[parent[o]]]?.[placement[o]];
            if (placed || ofComponent[component[o]]) {
                found.push({ occurrence: o, geometry: -1 });
            }
            for (const g of this.model.component(o).geometry) {
                ofGeometry[g] && found.push({ occurrence: o, geometry: g });
            }
        }
        return found;
    }

    /// What the tree needs to show them alone.
    static shape(model: SceneModel, nodes: Node[]): { nodes: Set<string>; leads: Set<number> } {
        const { parent } = model.file.occurrences;
        const leads = new Set<number>();
        for (const { occurrence, geometry } of nodes) {
            for (let o = geometry >= 0 ? occurrence : parent[occurrence]; o >= 0 && !leads.has(o); o = parent[o]) {
                leads.add(o);
            }
        }
        return { nodes: new Set(nodes.map(keyOf)), leads };
    }
}
