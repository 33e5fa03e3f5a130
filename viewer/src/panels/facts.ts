// All that is known of what is selected, in groups, for the panel and as JSON.
import type { Geometry, NoteTarget, Property } from '../data/format';
import { count, figure } from '../data/text';
import type { Units } from '../measure/units';
import type { Node, SceneModel } from '../scene/model';
import type { Placing } from '../scene/placing';
import type { Detail, SceneState } from '../scene/state';

/// Of the faces or edges that a note points at so many are named.
const kMostNumbers = 8;

export interface Group {
    title: string;
    /// Names with what is shown and what a program gets.
    rows: { name: string; text: string; value: unknown }[];
}

class Facts {
    readonly groups: Group[] = [];

    group(title: string, fill: (add: (name: string, value: unknown, text?: string) => void) => void): void {
        const made: Group = { title, rows: [] };
        fill((name, value, text) => {
            if (value !== undefined && value !== null && value !== '') {
                made.rows.push({ name, value, text: text ?? String(value) });
            }
        });
        made.rows.length > 0 && this.groups.push(made);
    }

    properties(title: string, list: Property[] | undefined): void {
        this.group(title, (add) =>
            list?.forEach(([name, value]) =>
                add(name, value ?? '-', typeof value === 'number' ? figure(value, 8) : undefined),
            ),
        );
    }
}

export class FactsOf {
    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly units: Units,
    ) {}

    of(node: Node, detail: Detail | null): Group[] {
        const facts = new Facts();
        detail && this.detail(facts, detail);
        this.note(facts, node.geometry);
        node.geometry >= 0 && this.geometry(facts, this.model.file.geometry[node.geometry]);
        this.occurrence(facts, node);
        if (node.geometry < 0) {
            this.ofOnlyGeometry(facts, node.occurrence);
        }
        return facts.groups;
    }

    private note(facts: Facts, geometry: number): void {
        const note = this.model.file.notes.find((one) => one.geometry === geometry);
        note &&
            facts.group('Note', (add) => {
                add('Text', note.text?.map((line) => line.map(({ text }) => text).join('')).join('\n'));
                add('Kind', note.kind);
                for (const target of note.targets ?? []) {
                    add('Points at', target, this.nameOfTarget(target));
                }
                if (note.details && typeof note.details === 'object') {
                    Object.entries(note.details).forEach(([name, value]) =>
                        add(spaced(name), value, typeof value === 'object' ? JSON.stringify(value) : undefined),
                    );
                }
            });
    }

    private nameOfTarget({ id, label, geometry, faces = [], edges = [] }: NoteTarget): string {
        const whole = geometry === undefined ? label || (id ?? '') : this.model.name({ occurrence: 0, geometry });
        const parts = [
            ...faces.slice(0, kMostNumbers).map((number) => `face ${number}`),
            ...edges.slice(0, kMostNumbers).map((number) => `edge ${number}`),
        ];
        const more = faces.length + edges.length - parts.length;
        return [whole, ...parts, more > 0 && `and ${more} more`].filter(Boolean).join(', ');
    }

    private detail(facts: Facts, { item, kind, number }: Detail): void {
        const geometry = this.model.geometryOfItem(item);
        const list = kind === 'face' ? geometry.faces : geometry.edges;
        const scale = geometry.metres / this.model.file.unit.metres;
        facts.group(kind === 'face' ? 'Face' : 'Edge', (add) => {
            add('Number', number);
            add('Persistent id', list?.persistentIds?.[number]);
            add('Data id', list?.dataIds?.[number]);
            add('Surface', geometry.faces?.surface && kind === 'face' ? geometry.faces.surface[number] : '');
            add('Curve', geometry.edges?.curve && kind === 'edge' ? geometry.edges.curve[number] : '');
            const radius = list?.radius?.[number];
            radius != null && add('Radius', radius, this.units.length(radius * scale));
            const area = kind === 'face' ? geometry.faces?.area?.[number] : null;
            area != null && add('Area', area, this.units.area(area * scale * scale));
            const length = kind === 'edge' ? geometry.edges?.length?.[number] : null;
            length != null && add('Length', length, this.units.length(length * scale));
        });
    }

    private geometry(facts: Facts, geometry: Geometry): void {
        const scale = geometry.metres / this.model.file.unit.metres;
        facts.group('Geometry', (add) => {
            add('Name', geometry.label);
            add('Id', geometry.id);
            add('Kind', geometry.kind);
            add('Class', geometry.class);
            add('Persistent id', geometry.persistentId);
            this.addStyle(add, geometry.style);
            for (const name of ['triangles', 'vertices', 'points'] as const) {
                add(name[0].toUpperCase() + name.slice(1), geometry[name], count(geometry[name] ?? 0));
            }
            add('Faces', geometry.faceCount);
            add('Edges', geometry.edgeCount);
            geometry.area !== undefined && add('Area', geometry.area, this.units.area(geometry.area * scale ** 2));
            geometry.volume !== undefined &&
                add('Volume', geometry.volume, this.units.volume(geometry.volume * scale ** 3));
            geometry.mass !== undefined && add('Mass', geometry.mass, `${figure(geometry.mass)} kg`);
            geometry.body !== undefined && add('Mesh of', this.model.file.geometry[geometry.body]?.id);
        });
        facts.properties('Properties of the geometry', geometry.properties);
        // What is known of a body is so of the mesh that stands for it.
        const body = geometry.body === undefined ? null : this.model.file.geometry[geometry.body];
        body &&
            facts.group('Body', (add) => {
                add('Name', body.label);
                add('Id', body.id);
                body.area !== undefined && add('Area', body.area, this.units.area(body.area * scale ** 2));
                body.volume !== undefined && add('Volume', body.volume, this.units.volume(body.volume * scale ** 3));
                body.mass !== undefined && add('Mass', body.mass, `${figure(body.mass)} kg`);
            });
    }

    private addStyle(add: (name: string, value: unknown, text?: string) => void, index: number | undefined): void {
        const style = this.model.style(index);
        if (style) {
            const color = style.diffuse
                ?.map((part) =>
                    Math.round(255 * part)
                        .toString(16)
                        .padStart(2, '0'),
                )
                .join('');
            const name = style.label || style.id;
            add(
                'Style',
                style,
                color ? `${name} (#${color}${style.opacity < 1 ? `, ${figure(100 * style.opacity, 3)} %` : ''})` : name,
            );
        }
    }

    private occurrence(facts: Facts, node: Node): void {
        const { occurrence } = node;
        const component = this.model.component(occurrence);
        const placement = this.model.placement(occurrence);
        placement &&
            facts.group('Occurrence', (add) => {
                add('Name', placement.label);
                add('Id', placement.id);
                add('Persistent id', placement.persistentId);
                this.addStyle(add, placement.style);
                add(
                    'Shown',
                    this.state.occurrenceShown[occurrence] === 1,
                    this.state.occurrenceShown[occurrence] ? 'yes' : 'no',
                );
            });
        facts.properties('Properties of the occurrence', placement?.properties);
        facts.group(component.kind === 'part' ? 'Part' : component.kind === 'assembly' ? 'Assembly' : 'File', (add) => {
            add('Name', component.label);
            add('Id', component.id);
            add('Persistent id', component.persistentId);
            add('Unit', component.unit?.name);
            this.addStyle(add, component.style);
            component.density !== undefined &&
                add('Density', component.density, `${figure(component.density)} kg/m\u00b3`);
            const items = this.model.items(node);
            const below = this.model.end[occurrence] - occurrence - 1;
            below > 0 && add('Occurrences below', below, count(below));
            const triangles = items.reduce((sum, item) => sum + (this.model.geometryOfItem(item).triangles ?? 0), 0);
            triangles > 0 && node.geometry < 0 && add('Triangles', triangles, count(triangles));
            const box = this.placing.boxOf(items);
            if (box) {
                const size = [0, 1, 2].map((k) => box.high[k] - box.low[k]);
                // What is left of a subtraction is no length.
                const least = 1e-10 * Math.max(...size);
                const whole = (part: number): number => (Math.abs(part) < least ? 0 : part);
                const [low, high] = [box.low.map(whole), box.high.map(whole)];
                add('Size', size, size.map((side) => this.units.length(side)).join(' \u00d7 '));
                add('Box from', low, low.map((part) => this.units.length(part)).join(', '));
                add('Box to', high, high.map((part) => this.units.length(part)).join(', '));
            }
        });
        facts.properties('Properties', component.properties);
        facts.group('File properties', (add) =>
            Object.entries(component.fileProperties ?? {}).forEach(([name, value]) => add(spaced(name), value)),
        );
    }

    // A part with one body is that body to a reader.
    private ofOnlyGeometry(facts: Facts, occurrence: number): void {
        const { geometry } = this.model.component(occurrence);
        const solid = geometry.filter((g) => /body|mesh/.test(this.model.file.geometry[g].kind));
        const drawn = solid.find((g) => this.model.file.geometry[g].mesh !== undefined);
        if (drawn !== undefined && solid.length <= 2) {
            this.geometry(facts, this.model.file.geometry[drawn]);
        }
    }

    /// All of it for a program.
    json(node: Node, detail: Detail | null): string {
        const groups = this.of(node, detail).map(({ title, rows }) => [
            title,
            Object.fromEntries(rows.map(({ name, value }) => [name, value])),
        ]);
        return JSON.stringify({ path: this.model.path(node), ...Object.fromEntries(groups) }, null, 2);
    }
}

const spaced = (name: string): string => {
    const words = name.replace(/([A-Z])/g, ' $1').toLowerCase();
    return words.charAt(0).toUpperCase() + words.slice(1);
};
