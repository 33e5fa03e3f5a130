// The scene as it was served: occurrences, items, names and places. Nothing here changes.
import type { Component, Geometry, Placement, SceneFile, Style } from '../data/format';
import type { MeshData } from '../data/geometry';

/// A row of the tree and what can be selected: an occurrence, or one of its component's geometry.
export interface Node {
    occurrence: number;
    /// Index among all geometry; -1 for the occurrence itself.
    geometry: number;
}

export class SceneModel {
    readonly depth: Int32Array;
    /// One behind the last occurrence below each occurrence.
    readonly end: Int32Array;
    /// The first item of each occurrence; one more entry than there are occurrences.
    readonly firstItem: Int32Array;
    /// Items by mesh.
    readonly itemsOfMesh: number[][];

    constructor(
        readonly file: SceneFile,
        readonly meshes: MeshData[],
    ) {
        const { parent } = file.occurrences;
        const size = parent.length;
        this.depth = new Int32Array(size);
        this.end = new Int32Array(size);
        for (let o = 0; o < size; ++o) {
            this.depth[o] = o === 0 ? 0 : this.depth[parent[o]] + 1;
            this.end[o] = o + 1;
        }
        for (let o = size - 1; o > 0; --o) {
            this.end[parent[o]] = Math.max(this.end[parent[o]], this.end[o]);
        }
        this.firstItem = new Int32Array(size + 1);
        const { occurrence, geometry } = file.items;
        for (const o of occurrence) {
            ++this.firstItem[o + 1];
        }
        for (let o = 0; o < size; ++o) {
            this.firstItem[o + 1] += this.firstItem[o];
        }
        this.itemsOfMesh = meshes.map(() => []);
        for (let i = 0; i < geometry.length; ++i) {
            const mesh = file.geometry[geometry[i]].mesh;
            if (mesh !== undefined) {
                this.itemsOfMesh[mesh]?.push(i);
            }
        }
    }

    get occurrenceCount(): number {
        return this.end.length;
    }

    get itemCount(): number {
        return this.file.items.geometry.length;
    }

    component(occurrence: number): Component {
        return this.file.components[this.file.occurrences.component[occurrence]];
    }

    /// What places the occurrence; null for the root.
    placement(occurrence: number): Placement | null {
        const above = this.file.occurrences.parent[occurrence];
        if (above < 0) {
            return null;
        }
        return this.component(above).placements[this.file.occurrences.placement[occurrence]] ?? null;
    }

    geometryOfItem(item: number): Geometry {
        return this.file.geometry[this.file.items.geometry[item]];
    }

    meshOfItem(item: number): MeshData | null {
        const mesh = this.geometryOfItem(item).mesh;
        return mesh === undefined ? null : (this.meshes[mesh] ?? null);
    }

    style(index: number | undefined): Style | null {
        return index === undefined || index < 0 ? null : (this.file.styles[index] ?? null);
    }

    /// The items of a node: of an occurrence all at and below it.
    items(node: Node): number[] {
        const found: number[] = [];
        if (node.geometry >= 0) {
            for (let i = this.firstItem[node.occurrence]; i < this.firstItem[node.occurrence + 1]; ++i) {
                if (this.file.items.geometry[i] === node.geometry) {
                    found.push(i);
                }
            }
            return found;
        }
        for (let i = this.firstItem[node.occurrence]; i < this.firstItem[this.end[node.occurrence]]; ++i) {
            found.push(i);
        }
        return found;
    }

    /// The name of a node as the scene has it, never empty.
    name(node: Node): string {
        if (node.geometry >= 0) {
            const geometry = this.file.geometry[node.geometry];
            return geometry.label || geometry.id || geometry.class;
        }
        const placement = this.placement(node.occurrence);
        const component = this.component(node.occurrence);
        return placement?.label || component.label || placement?.id || component.id || component.kind;
    }

    id(node: Node): string {
        if (node.geometry >= 0) {
            return this.file.geometry[node.geometry].id;
        }
        return this.placement(node.occurrence)?.id ?? this.component(node.occurrence).id;
    }

    /// From below the root down to the occurrence.
    ancestors(occurrence: number): number[] {
        const line: number[] = [];
        for (let o = occurrence; o > 0; o = this.file.occurrences.parent[o]) {
            line.push(o);
        }
        return line.reverse();
    }

    /// Ids of placements down to the occurrence, then that of geometry.
    path(node: Node): string[] {
        const ids = this.ancestors(node.occurrence).map((o) => this.placement(o)?.id ?? '');
        return node.geometry >= 0 ? [...ids, this.file.geometry[node.geometry].id] : ids;
    }

    /// The node of a path; null for one that leads nowhere.
    find(path: string[]): Node | null {
        let occurrence = 0;
        for (let i = 0; i < path.length; ++i) {
            const next = this.children(occurrence).find((o) => this.placement(o)?.id === path[i]);
            if (next === undefined) {
                const geometry = this.component(occurrence).geometry.find((g) => this.file.geometry[g].id === path[i]);
                return geometry !== undefined && i === path.length - 1 ? { occurrence, geometry } : null;
            }
            occurrence = next;
        }
        return { occurrence, geometry: -1 };
    }

    /// Occurrences directly below.
    children(occurrence: number): number[] {
        const found: number[] = [];
        for (let o = occurrence + 1; o < this.end[occurrence]; o = this.end[o]) {
            found.push(o);
        }
        return found;
    }
}

export const sameNode = (a: Node | null, b: Node | null): boolean =>
    a === b || (a !== null && b !== null && a.occurrence === b.occurrence && a.geometry === b.geometry);

/// A key for sets and maps.
export const keyOf = (node: Node): string => `${node.occurrence}/${node.geometry}`;
