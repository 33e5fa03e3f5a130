// Faces and edges drawn once more on top of the scene, in a colour of their own.
import { BufferAttribute, BufferGeometry, Group, LineSegments, Mesh, Points, type Object3D } from 'three';
import type { Triple } from '../data/format';
import { runsOf } from '../data/geometry';
import type { Color } from './looks';
import { flatMaterial } from './materials';
import type { SceneModel } from './model';
import type { Picture } from './picture';
import type { Detail } from './state';
import { minus } from './transform';

/// Triangles, pairs of ends of lines, or points, in the scene's coordinates.
export function flatObject(
    picture: Picture,
    shape: 'triangles' | 'lines' | 'points',
    corners: Triple[],
    color: Color,
    options: Parameters<typeof flatMaterial>[1] = {},
): Object3D {
    const geometry = new BufferGeometry();
    const positions = new Float32Array(corners.flatMap((corner) => minus(corner, picture.middle)));
    geometry.setAttribute('position', new BufferAttribute(positions, 3));
    const paint = new Uint8Array(4 * corners.length);
    const bytes = color.map((part) => Math.round(255 * part));
    corners.forEach((_, i) => paint.set(bytes, 4 * i));
    geometry.setAttribute('paint', new BufferAttribute(paint, 4, true));
    const material = flatMaterial(picture.shared, options);
    const make = shape === 'triangles' ? Mesh : shape === 'lines' ? LineSegments : Points;
    const object = new (make as typeof Mesh)(geometry, material);
    object.frustumCulled = false;
    object.renderOrder = 8;
    return object;
}

/// Gives back what the children of a group took, and empties it.
export function emptyGroup(group: Group): void {
    for (const child of [...group.children]) {
        const { geometry, material } = child as Mesh;
        geometry?.dispose();
        if (material && !Array.isArray(material)) {
            (material as { map?: { dispose(): void } }).map?.dispose();
            material.dispose();
        }
    }
    group.clear();
}

/// The triangles of a face or the segments of an edge, as corners in the scene.
export function cornersOf(model: SceneModel, picture: Picture, detail: Detail): Triple[] {
    const corners: Triple[] = [];
    const size = detail.kind === 'face' ? 3 : 2;
    for (const primitive of model.meshOfItem(detail.item)?.primitives ?? []) {
        const fits = detail.kind === 'face' ? primitive.role === 'faces' : /edges|lines/.test(primitive.role);
        if (!fits) {
            continue;
        }
        runsOf(primitive, detail.number, (first, end) => {
            for (let i = size * first; i < size * end; ++i) {
                const at = 3 * (primitive.indices ? primitive.indices[i] : i);
                corners.push(picture.pointOf(detail.item, primitive.positions.subarray(at, at + 3)));
            }
        });
    }
    return corners;
}

export class Overlays {
    readonly group = new Group();

    constructor(
        private readonly model: SceneModel,
        private readonly picture: Picture,
    ) {
        picture.drawing.add(this.group);
    }

    show(details: Detail[], color: Color): void {
        emptyGroup(this.group);
        for (const detail of details) {
            const corners = cornersOf(this.model, this.picture, detail);
            if (corners.length > 0) {
                const shape = detail.kind === 'face' ? 'triangles' : 'lines';
                const cuts = this.picture.batches.cutCount;
                const options = { depthShift: 2e-4, onTop: detail.kind === 'edge', cuts };
                this.group.add(flatObject(this.picture, shape, corners, color, options));
            }
        }
        this.picture.invalidate();
    }
}
