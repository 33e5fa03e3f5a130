// The layout of the JSON in a page of kvr view; docs/viewer.md explains it.

export type Triple = [number, number, number];

export interface Box {
    low: Triple;
    high: Triple;
}

export interface Unit {
    name: string;
    symbol: string;
    metres: number;
}

export interface Style {
    id: string;
    label: string;
    diffuse?: Triple;
    emission?: Triple;
    opacity: number;
    metallic?: number;
    roughness?: number;
}

export type PropertyValue = string | number | boolean | null;
export type Property = [string, PropertyValue];

export interface Placement {
    id: string;
    label: string;
    component: number;
    style?: number;
    persistentId?: string;
    properties?: Property[];
    cut?: string;
}

export interface Component {
    kind: 'file' | 'assembly' | 'part';
    id: string;
    label: string;
    unit?: Unit;
    metres: number;
    style?: number;
    persistentId?: string;
    placements: Placement[];
    geometry: number[];
    properties?: Property[];
    fileProperties?: Record<string, string>;
    density?: number;
}

export interface Faces {
    dataIds?: string[];
    persistentIds?: string[];
    surface?: string[];
    radius?: (number | null)[];
    area?: (number | null)[];
    hidden?: number[];
}

export interface Edges {
    dataIds?: string[];
    persistentIds?: string[];
    curve?: string[];
    length?: (number | null)[];
    radius?: (number | null)[];
    center?: (Triple | null)[];
}

export interface Geometry {
    kind: 'body' | 'mesh' | 'curve' | 'point' | 'cloud' | 'note' | 'other';
    class: string;
    id: string;
    label: string;
    mesh?: number;
    body?: number;
    metres: number;
    style?: number;
    visible?: boolean;
    persistentId?: string;
    properties?: Property[];
    triangles?: number;
    vertices?: number;
    points?: number;
    faceCount?: number;
    edgeCount?: number;
    area?: number;
    volume?: number;
    mass?: number;
    box?: Box;
    faces?: Faces;
    edges?: Edges;
}

export interface Occurrences {
    component: number[];
    parent: number[];
    placement: number[];
    transform: number[];
    visible: number[];
    style: number[];
}

export interface Items {
    occurrence: number[];
    geometry: number[];
    transform: number[];
    visible: number[];
    style: number[];
    keeps: number[];
}

export interface Layer {
    id: string;
    label: string;
    description?: string;
    number?: number;
    visible?: boolean;
    style?: number;
    items: string[];
}

export interface LevelOfDetail {
    id: string;
    label: string;
    description?: string;
    items: string[];
}

export interface Plane {
    origin: Triple;
    normal: Triple;
}

export interface Camera {
    id: string;
    label: string;
    type: 'parallel' | 'perspective';
    position: Triple;
    direction: Triple;
    up: Triple;
    distance?: number;
    aspect?: number;
    angle?: number;
    height?: number;
    near?: Plane;
    far?: Plane;
    sections?: Plane[];
    operations?: string;
}

export interface ViewMembers {
    occurrence: number[];
    geometry: number[];
    visible: number[];
    transform: number[];
    style: number[];
}

export interface SavedView {
    id: string;
    label: string;
    visible?: boolean;
    active?: boolean;
    cameras?: number[];
    members?: ViewMembers;
    unresolved?: number;
}

export interface NoteText {
    text: string;
    bold?: boolean;
    italic?: boolean;
}

export interface NoteTarget {
    id?: string;
    kind?: string;
    label?: string;
    geometry?: number;
    faces?: number[];
    edges?: number[];
    component?: number;
}

export interface Note {
    geometry: number;
    id: string;
    label: string;
    kind?: string;
    visible?: boolean;
    text?: NoteText[][];
    height?: number;
    plane?: { origin?: Triple; normal?: Triple; reference?: Triple };
    anchor?: Triple;
    targets?: NoteTarget[];
    details?: unknown;
}

export interface SceneFile {
    format: string;
    version: number;
    generator: string;
    title: string;
    source: { file: string; model?: string };
    created?: string;
    remarks: string[];
    unit: Unit;
    up: Triple;
    box?: Box;
    defaults: { surface: Triple; curve: Triple };
    counts: Record<string, number>;
    thinned?: { from: number; to: number };
    transforms: number[];
    styles: Style[];
    components: Component[];
    geometry: Geometry[];
    occurrences: Occurrences;
    items: Items;
    layers: Layer[];
    groups: Layer[];
    lods: LevelOfDetail[];
    cameras: Camera[];
    views: SavedView[];
    notes: Note[];
}
