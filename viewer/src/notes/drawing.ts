// Callouts in their planes: the text of each as a picture on a sheet in the scene. Leaders and frames are lines of the
// scene's own.
import { CanvasTexture, Group, LinearFilter, Matrix4, Mesh, MeshBasicMaterial, PlaneGeometry, Vector3 } from 'three';
import type { Note, Triple } from '../data/format';
import { sizeOf } from '../data/geometry';
import { shown } from '../data/text';
import type { SceneModel } from '../scene/model';
import { emptyGroup } from '../scene/overlays';
import type { Picture } from '../scene/picture';
import type { Placing } from '../scene/placing';
import type { SceneState } from '../scene/state';
import { applied, cross, dot, minus, plus, square, times, turned, unit } from '../scene/transform';

const kMostLines = 30;
/// Leaders and frames alone have fewer segments.
const kLettered = 40;
const kMostCharacters = 160;
const kPixels = 40;
/// Without a height of text in the scene: as a part of the scene's size.
const kUsualHeight = 0.035;
/// Notes that begin in one place stand on one another, so many at most; all are in the list.
const kMostInPile = 12;

/// The lines of a note's text; its label for one without.
export function linesOf(note: Note): { text: string; bold: boolean; italic: boolean }[][] {
    const lines = (note.text ?? []).slice(0, kMostLines).map((line) =>
        line.slice(0, 50).map(({ text, bold, italic }) => ({
            text: shown(text, kMostCharacters),
            bold: bold ?? false,
            italic: italic ?? false,
        })),
    );
    const hasText = lines.some((line) => line.some(({ text }) => text.trim() !== ''));
    return hasText ? lines : [[{ text: shown(note.label || note.id, kMostCharacters), bold: false, italic: false }]];
}

export class NoteDrawing {
    private readonly group = new Group();
    private readonly piles = new Map<string, number>();
    ink = '#16181d';
    accent = '#1f6feb';
    marked = -1;

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly picture: Picture,
    ) {
        picture.drawing.add(this.group);
        for (const topic of ['visibility', 'placement'] as const) {
            state.on(topic, () => this.update());
        }
    }

    /// The items of a note: where it occurs.
    itemsOf(note: Note): number[] {
        const found: number[] = [];
        this.model.file.items.geometry.forEach((geometry, item) => geometry === note.geometry && found.push(item));
        return found;
    }

    update(): void {
        emptyGroup(this.group);
        this.piles.clear();
        this.model.file.notes.forEach((note, index) => {
            const items = this.itemsOf(note).filter((item) => this.state.itemShown[item]);
            // A note that occurs everywhere is written some times only.
            items.slice(0, 20).forEach((item) => note.plane && !this.isLettered(item) && this.write(note, index, item));
        });
        this.picture.invalidate();
    }

    private write(note: Note, index: number, item: number): void {
        const m = this.placing.items;
        const at = 12 * item;
        const start: Triple = applied(m, at, note.anchor ?? note.plane?.origin ?? [0, 0, 0]);
        const key = start.map((part) => (part / this.picture.size).toFixed(4)).join();
        const below = this.piles.get(key) ?? 0;
        if (below >= kMostInPile) {
            return;
        }
        const { texture, width, height, lines } = this.texture(note, index === this.marked);
        this.piles.set(key, below + lines);
        const normal = unit(turned(m, at, note.plane?.normal ?? [0, 0, 1]));
        const wanted = turned(m, at, note.plane?.reference ?? square(note.plane?.normal ?? [0, 0, 1]));
        const along = unit(minus(wanted, times(normal, dot(wanted, normal))), square(normal));
        const upwards = cross(normal, along);
        const scale = Math.hypot(...turned(m, at, [1, 0, 0]));
        const size = note.height ? note.height * scale : kUsualHeight * this.picture.size;
        const sheetHeight = 1.35 * size * lines;
        const sheetWidth = (sheetHeight * width) / height;
        const rise = 1.35 * size * below + sheetHeight / 2;
        const middle = plus(plus(start, times(along, sheetWidth / 2)), times(upwards, rise));
        // One sheet for each side, so that text is never seen from behind.
        for (const side of [1, -1]) {
            const sheet = new Mesh(
                new PlaneGeometry(sheetWidth, sheetHeight),
                new MeshBasicMaterial({ map: texture, transparent: true, depthTest: false, depthWrite: false }),
            );
            const axes = [times(along, side), upwards, times(normal, side)].map((axis) => new Vector3(...axis));
            sheet.matrixAutoUpdate = false;
            sheet.matrix = new Matrix4().makeBasis(axes[0], axes[1], axes[2]);
            sheet.matrix.setPosition(...minus(middle, this.picture.middle));
            sheet.matrixWorld.copy(sheet.matrix);
            sheet.renderOrder = 9;
            sheet.frustumCulled = false;
            this.group.add(sheet);
        }
    }

    // A callout of many lines is drawn with its letters.
    private isLettered(item: number): boolean {
        const lines = this.model.meshOfItem(item)?.primitives.find(({ role }) => role === 'lines');
        return lines !== undefined && sizeOf(lines) >= kLettered;
    }

    private texture(
        note: Note,
        marked: boolean,
    ): { texture: CanvasTexture; width: number; height: number; lines: number } {
        const lines = linesOf(note);
        const canvas = document.createElement('canvas');
        const context = canvas.getContext('2d') as CanvasRenderingContext2D;
        const font = (bold: boolean, italic: boolean): string =>
            `${italic ? 'italic ' : ''}${bold ? '700' : '500'} ${kPixels}px system-ui, "DejaVu Sans", sans-serif`;
        const widths = lines.map((line) =>
            line.reduce((sum, { text, bold, italic }) => {
                context.font = font(bold, italic);
                return sum + context.measureText(text).width;
            }, 0),
        );
        canvas.width = Math.min(4096, Math.ceil(Math.max(8, ...widths)) + 12);
        canvas.height = Math.ceil(1.35 * kPixels * lines.length);
        context.fillStyle = marked ? this.accent : this.ink;
        context.textBaseline = 'middle';
        lines.forEach((line, i) => {
            let x = 6;
            for (const { text, bold, italic } of line) {
                context.font = font(bold, italic);
                context.fillText(text, x, 1.35 * kPixels * (i + 0.5));
                x += context.measureText(text).width;
            }
        });
        const texture = new CanvasTexture(canvas);
        texture.minFilter = LinearFilter;
        texture.generateMipmaps = false;
        return { texture, width: canvas.width, height: canvas.height, lines: lines.length };
    }
}
