// Makes pages of scenes that no bundled file has: hostile names, very many parts.
import { readFileSync, writeFileSync } from 'node:fs';
import { gzipSync } from 'node:zlib';

/// Arrays of numbers become a GLB, a mesh at a time.
export class Glb {
    json = { asset: { version: '2.0' }, accessors: [], bufferViews: [], meshes: [], buffers: [] };
    chunks = [];
    size = 0;

    accessor(array, type, componentType) {
        const bytes = Buffer.from(array.buffer, array.byteOffset, array.byteLength);
        this.json.bufferViews.push({ buffer: 0, byteOffset: this.size, byteLength: bytes.length });
        this.chunks.push(bytes);
        this.size += bytes.length;
        const count = array.length / (type === 'VEC3' ? 3 : 1);
        this.json.accessors.push({ bufferView: this.json.bufferViews.length - 1, componentType, count, type });
        return this.json.accessors.length - 1;
    }

    floats = (numbers) => this.accessor(Float32Array.from(numbers), 'VEC3', 5126);
    whole = (numbers) => this.accessor(Uint32Array.from(numbers), 'SCALAR', 5125);

    /// faces: lists of corners (four each), with a style or none; edges by pairs of points.
    mesh({ positions, normals, triangles, faceStarts, edges = [] }) {
        const extras = {
            role: 'faces',
            ranges: this.whole(faceStarts),
            numbers: this.whole(faceStarts.map((_, i) => i)),
        };
        const attributes = { POSITION: this.floats(positions) };
        if (normals) {
            attributes.NORMAL = this.floats(normals);
        }
        const primitives = [{ mode: 4, attributes, indices: this.whole(triangles), extras }];
        if (edges.length > 0) {
            primitives.push({
                mode: 1,
                attributes: { POSITION: this.floats(edges.flat()) },
                indices: this.whole(edges.map((_, i) => i)),
                extras: {
                    role: 'edges',
                    ranges: this.whole(edges.filter((_, i) => i % 2).map((_, i) => i)),
                    numbers: this.whole(edges.filter((_, i) => i % 2).map((_, i) => i)),
                },
            });
        }
        this.json.meshes.push({ primitives });
        return this.json.meshes.length - 1;
    }

    bytes() {
        this.json.buffers = [{ byteLength: this.size }];
        let text = JSON.stringify(this.json);
        text += ' '.repeat((4 - (Buffer.byteLength(text) % 4)) % 4);
        const json = Buffer.from(text);
        const head = Buffer.alloc(20);
        head.write('glTF', 0);
        head.writeUInt32LE(2, 4);
        head.writeUInt32LE(28 + json.length + this.size, 8);
        head.writeUInt32LE(json.length, 12);
        head.write('JSON', 16);
        const middle = Buffer.alloc(8);
        middle.writeUInt32LE(this.size, 0);
        middle.write('BIN\0', 4);
        return Buffer.concat([head, json, middle, ...this.chunks]);
    }
}

const kCorners = [
    [0, 0, 0],
    [1, 0, 0],
    [1, 1, 0],
    [0, 1, 0],
    [0, 0, 1],
    [1, 0, 1],
    [1, 1, 1],
    [0, 1, 1],
];
const kSides = [
    [0, 3, 2, 1],
    [4, 5, 6, 7],
    [0, 1, 5, 4],
    [1, 2, 6, 5],
    [2, 3, 7, 6],
    [3, 0, 4, 7],
];
const kNormals = [
    [0, 0, -1],
    [0, 0, 1],
    [0, -1, 0],
    [1, 0, 0],
    [0, 1, 0],
    [-1, 0, 0],
];

/// A box from zero to its size: six faces, twelve edges.
export function boxMesh([x, y, z]) {
    const corner = (i) => [kCorners[i][0] * x, kCorners[i][1] * y, kCorners[i][2] * z];
    const lines = [
        [0, 1],
        [1, 2],
        [2, 3],
        [3, 0],
        [4, 5],
        [5, 6],
        [6, 7],
        [7, 4],
        [0, 4],
        [1, 5],
        [2, 6],
        [3, 7],
    ];
    return {
        positions: kSides.flat().flatMap(corner),
        normals: kSides.flatMap((side, i) => side.flatMap(() => kNormals[i])),
        triangles: kSides.flatMap((_, i) => [0, 1, 2, 0, 2, 3].map((k) => 4 * i + k)),
        faceStarts: kSides.map((_, i) => 2 * i),
        edges: lines.flat().map(corner),
    };
}

/// A wavy sheet of about so many triangles.
export function sheetMesh(size, triangles, seed) {
    const side = Math.ceil(Math.sqrt(triangles / 2));
    const positions = [];
    const normals = [];
    for (let i = 0; i <= side; ++i) {
        for (let j = 0; j <= side; ++j) {
            const [u, v] = [i / side, j / side];
            const z = 0.2 * size * Math.sin(6 * u + seed) * Math.cos(5 * v + 2 * seed);
            positions.push(size * u, size * v, z);
            normals.push(0, 0, 1);
        }
    }
    const list = [];
    for (let i = 0; i < side; ++i) {
        for (let j = 0; j < side; ++j) {
            const a = i * (side + 1) + j;
            const b = a + side + 1;
            list.push(a, b, b + 1, a, b + 1, a + 1);
        }
    }
    return { positions, normals, triangles: list, faceStarts: [0] };
}

const kPlace = (x, y, z) => [1, 0, 0, x, 0, 1, 0, y, 0, 0, 1, z];

/// An assembly of parts: each `{label, id, mesh, at, color, opacity, properties}`, where `mesh` is what Glb made.
export class SceneData {
    constructor(glb, title = 'scene') {
        this.glb = glb;
        const lists = (names) => Object.fromEntries(names.map((name) => [name, []]));
        this.file = {
            format: 'kvr-view',
            version: 1,
            generator: 'test',
            title,
            source: { file: 'test.xml' },
            remarks: [],
            unit: { name: 'millimeter', symbol: 'mm', metres: 0.001 },
            up: [0, 0, 1],
            defaults: { surface: [0.7, 0.7, 0.7], curve: [0, 0, 0] },
            counts: {},
            transforms: kPlace(0, 0, 0),
            styles: [],
            components: [{ kind: 'assembly', id: 'root', label: title, metres: 0.001, geometry: [], placements: [] }],
            geometry: [],
            occurrences: lists(['component', 'parent', 'placement', 'transform', 'visible', 'style']),
            items: lists(['occurrence', 'geometry', 'transform', 'visible', 'style', 'keeps']),
            layers: [],
            groups: [],
            lods: [],
            cameras: [],
            views: [],
            notes: [],
        };
        this.occurrence(0, -1, -1, 0);
    }

    occurrence(component, parent, placement, transform) {
        const { occurrences } = this.file;
        const entry = { component, parent, placement, transform, visible: 1, style: -1 };
        Object.entries(entry).forEach(([name, value]) => occurrences[name].push(value));
        return occurrences.component.length - 1;
    }

    transform(numbers) {
        this.file.transforms.push(...numbers);
        return this.file.transforms.length / 12 - 1;
    }

    style(color, opacity = 1) {
        this.file.styles.push({ id: `style${this.file.styles.length}`, label: '', diffuse: color, opacity });
        return this.file.styles.length - 1;
    }

    /// A part with one geometry; answers the component.
    part({ id, label, mesh, properties, geometry = {} }) {
        this.file.geometry.push({
            kind: 'mesh',
            class: 'IPolygonMesh',
            id: `${id}-mesh`,
            label: `${label} mesh`.slice(0, 200),
            mesh,
            metres: 0.001,
            ...geometry,
        });
        const part = {
            kind: 'part',
            id,
            label,
            metres: 0.001,
            geometry: [this.file.geometry.length - 1],
            placements: [],
        };
        this.file.components.push(properties ? { ...part, properties } : part);
        return this.file.components.length - 1;
    }

    /// Places a part in the root or another occurrence.
    place(component, { id, label, at = [0, 0, 0], style = -1, parent = 0 }) {
        const above = this.file.components[this.file.occurrences.component[parent]];
        above.placements.push({ id, label, component });
        const occurrence = this.occurrence(
            component,
            parent,
            above.placements.length - 1,
            this.transform(kPlace(...at)),
        );
        for (const geometry of this.file.components[component].geometry) {
            const entry = { occurrence, geometry, transform: 0, visible: 1, style, keeps: 1 };
            Object.entries(entry).forEach(([name, value]) => this.file.items[name].push(value));
        }
        return occurrence;
    }

    /// Writes the page.
    write(template, path) {
        const packed = (bytes) => gzipSync(bytes, { level: 1 }).toString('base64');
        const page = readFileSync(template, 'utf8')
            .replace('{{KVR_TITLE}}', () => 'test')
            .replace('{{KVR_GEOMETRY}}', () => packed(this.glb.bytes()))
            .replace('{{KVR_SCENE}}', () => packed(Buffer.from(JSON.stringify(this.file))));
        writeFileSync(path, page);
    }
}
