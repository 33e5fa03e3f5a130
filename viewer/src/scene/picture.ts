// The drawing: when it is made, with what, and as a file.
import { Color, ColorManagement, LinearSRGBColorSpace, Scene as Drawing, WebGLRenderer } from 'three';
import type { Box, Triple } from '../data/format';
import { Batches } from './batches';
import { Camera, wantsStillness, type Look } from './camera';
import { kMostCuts, sharedUniforms, type SharedUniforms } from './materials';
import type { Node, SceneModel } from './model';
import { Pace } from './pace';
import type { Placing } from './placing';
import type { SceneState } from './state';
import { applied, dot, length, minus, plus, times } from './transform';

/// Milliseconds between pieces of work that the reader is not to notice.
const kPause = 10;
/// After so many milliseconds without a movement all rests.
const kRest = 180;

/// Whether the browser can draw in three dimensions; a sentence when it cannot.
export function whyNoPicture(): string | null {
    try {
        const context = document.createElement('canvas').getContext('webgl2');
        context?.getExtension('WEBGL_lose_context')?.loseContext();
        return context ? null : 'This browser cannot draw the model: WebGL 2 is missing or switched off.';
    } catch {
        return 'This browser cannot draw the model: WebGL 2 does not work.';
    }
}

export class Picture {
    readonly canvas: HTMLCanvasElement;
    readonly camera: Camera;
    readonly batches: Batches;
    readonly shared: SharedUniforms = sharedUniforms();
    /// What else is drawn: sections, notes, measures.
    readonly drawing = new Drawing();
    /// Called after each drawing, for what follows it on the page.
    readonly drawn: (() => void)[] = [];
    /// What is drawn at zero.
    readonly middle: Triple;
    frames = 0;
    private readonly renderer: WebGLRenderer;
    private center: Triple;
    private radius = 1;
    private pending = false;
    private readonly software = isSoftware();
    private readonly pace: Pace;
    /// The camera as it was drawn last.
    private lastLook: Look | null = null;
    private lastFrame = 0;
    /// Whether more than the camera moved.
    private moved = false;
    private isReduced = false;
    /// Waits for the picture to rest.
    private rest = 0;
    private scale = 1;
    private movement: { from: Float64Array; start: number } | null = null;

    constructor(
        private readonly host: HTMLElement,
        private readonly model: SceneModel,
        private readonly state: SceneState,
        readonly placed: Placing,
    ) {
        const nothing: Box = { low: [0, 0, 0], high: [1, 1, 1] };
        const box = placed.shownBox() ?? placed.boxOf(state.itemShown.keys()) ?? nothing;
        this.middle = times(plus(box.low, box.high), 0.5);
        this.center = this.middle;
        this.renderer = new WebGLRenderer({ antialias: !this.software, powerPreference: 'high-performance' });
        // Colours are shown as the scene has them.
        ColorManagement.enabled = false;
        this.renderer.outputColorSpace = LinearSRGBColorSpace;
        this.canvas = this.renderer.domElement;
        this.canvas.className = 'picture-canvas';
        host.append(this.canvas);
        this.camera = new Camera(model.file.up, this.middle, () => this.invalidate());
        this.batches = new Batches(model, state, placed, this.shared, this.middle);
        this.drawing.add(this.batches.group);
        this.drawing.matrixWorldAutoUpdate = false;
        this.pace = new Pace(this.renderer.getContext() as WebGL2RenderingContext);
        this.software && this.pace.expect(this.batches.totals().triangles);
        this.measure();
        this.resize();
        this.camera.set(this.camera.fitted(box));
        new ResizeObserver(() => this.resize()).observe(host);
        state.on('visibility', () => this.showItems());
        state.on('placement', () => this.placeItems());
        state.on('sections', () => this.cut());
        for (const topic of ['selection', 'hover'] as const) {
            state.on(topic, () => {
                this.batches.highlight();
                this.invalidate();
            });
        }
    }

    setColors(background: string, edge: Triple, accent: Triple): void {
        this.drawing.background = new Color(background);
        this.shared.edge.value.set(...edge);
        this.shared.accent.value.set(...accent);
        this.shared.hover.value.set(...accent);
        this.invalidate();
    }

    private showItems(): void {
        this.batches.showItems();
        this.measure();
        this.invalidate();
    }

    private placeItems(): void {
        this.moved = true;
        this.measure();
        this.batches.placeItems();
        this.invalidate();
    }

    setEdgesShown(shown: boolean): void {
        this.batches.edgesShown = shown;
        this.showItems();
    }

    // All that may be drawn lies within this sphere.
    private measure(): void {
        const box = this.placed.shownBox();
        if (box) {
            this.center = times(plus(box.low, box.high), 0.5);
            this.radius = length(minus(box.high, box.low)) / 2 || 1;
        }
    }

    get size(): number {
        return this.radius;
    }

    /// Moves items from where they stood to where they stand now.
    moveItems(from: Float64Array): void {
        if (!wantsStillness()) {
            this.movement = { from, start: performance.now() };
        }
        this.invalidate();
    }

    private cut(): void {
        this.moved = true;
        const cuts = this.state.cuts.slice(0, kMostCuts);
        cuts.forEach(({ normal, offset }, i) =>
            this.shared.cuts.value[i].set(...normal, offset - dot(normal, this.middle)),
        );
        this.batches.setCuts(cuts.length);
        this.invalidate();
    }

    fit(nodes: Node[] = []): void {
        const items = nodes.flatMap((node) => this.model.items(node));
        const box = items.length > 0 ? this.placed.boxOf(items) : this.placed.shownBox();
        if (box) {
            this.camera.moveTo(this.camera.fitted(box));
        }
    }

    /// Whether the middle of them, if they are drawn, lies in the picture.
    isInSight(nodes: Node[]): boolean {
        const box = this.placed.boxOf(nodes.flatMap((node) => this.model.items(node)));
        const [x, y] = box ? this.camera.project(times(plus(box.low, box.high), 0.5)) : [0, 0];
        return x >= 0 && x <= this.camera.width && y >= 0 && y <= this.camera.heightOfPicture;
    }

    turnTo(facing: { direction: Triple; up: Triple }): void {
        const box = this.placed.shownBox();
        const look: Partial<Look> = box ? this.camera.fitted(box, facing) : facing;
        this.camera.moveTo(look);
    }

    private resize(): void {
        const { clientWidth, clientHeight } = this.host;
        if (clientWidth > 0 && clientHeight > 0) {
            this.setScale(this.plainScale);
            this.renderer.setSize(clientWidth, clientHeight);
            this.camera.width = clientWidth;
            this.camera.heightOfPicture = clientHeight;
            this.camera.update(clientWidth, clientHeight, this.center, this.radius);
            this.invalidate();
        }
    }

    private get plainScale(): number {
        return Math.min(devicePixelRatio, 2);
    }

    private setScale(scale: number): void {
        if (scale !== this.scale) {
            this.scale = scale;
            this.renderer.setPixelRatio(scale);
            this.shared.pointSize.value = 4 * scale;
            this.shared.pixel.value = 1 / scale;
        }
    }

    /// Whether what is seen is not yet what it will be.
    get isMoving(): boolean {
        return this.pending || this.movement !== null || this.camera.isMoving || this.isReduced;
    }

    invalidate(): void {
        if (!this.pending) {
            this.pending = true;
            requestAnimationFrame((now) => this.frame(now));
        }
    }

    private frame(now: number): void {
        this.pending = false;
        this.setScale(this.plainScale);
        this.camera.advance(now);
        this.advance(now);
        const gap = now - this.lastFrame;
        this.lastFrame = now;
        const moves = this.moved || this.movement !== null || this.camera.look !== this.lastLook;
        moves && this.reduce();
        this.moved = false;
        this.draw();
        moves && this.pace.drew(this.batches.prepare(Math.min(100, 4 + gap / 4)));
        if (this.camera.isMoving || this.movement) {
            this.invalidate();
        }
        clearTimeout(this.rest);
        this.rest = setTimeout(() => this.finish(), kRest);
    }

    // What moves is drawn with less, where all of it would take too long.
    private reduce(): void {
        this.isReduced || this.pace.begin();
        this.isReduced = true;
        this.batches.reduce(this.pace.now, this.camera);
    }

    // At rest there is time for a better picture.
    private finish(): void {
        if (this.pending) {
            return;
        }
        if (this.pace.isBusy) {
            // It moves on when what was asked for is there.
            this.rest = setTimeout(() => this.finish(), kRest);
            return;
        }
        this.isReduced = false;
        // What the next movement is likely to need can be made now.
        this.batches.reduce(this.pace.now, this.camera);
        this.batches.restore();
        if (this.software && !wantsStillness()) {
            this.setScale(2 * this.plainScale);
        }
        this.draw();
        this.rest = setTimeout(() => this.prepare(), kPause);
    }

    private prepare(): void {
        if (!this.pending && !this.batches.prepare(12)) {
            this.rest = setTimeout(() => this.prepare(), kPause);
        }
    }

    private advance(now: number): void {
        if (!this.movement) {
            return;
        }
        const { from, start } = this.movement;
        const part = Math.min(1, Math.max(0, (now - start) / 380));
        const t = part * part * (3 - 2 * part);
        const to = this.placed.items;
        if (part === 1) {
            this.movement = null;
            this.batches.placeItems();
        } else {
            this.batches.placeItems(Float64Array.from(to, (value, i) => value * t + from[i] * (1 - t)));
        }
    }

    draw(): void {
        this.camera.update(this.camera.width, this.camera.heightOfPicture, this.center, this.radius);
        this.camera.tell(this.shared);
        this.lastLook = this.camera.look;
        this.renderer.render(this.drawing, this.camera.drawing);
        ++this.frames;
        this.drawn.forEach((each) => each());
    }

    get calls(): number {
        return this.renderer.info.render.calls;
    }

    get trianglesDrawn(): number {
        return this.renderer.info.render.triangles;
    }

    /// The picture as it stands, as a PNG file.
    image(): Promise<Blob | null> {
        this.isReduced && this.batches.restore();
        this.draw();
        return new Promise((resolve) => this.canvas.toBlob(resolve, 'image/png'));
    }

    /// A point of the mesh of an item, in the scene.
    pointOf(item: number, position: ArrayLike<number>): Triple {
        return applied(this.placed.items, 12 * item, position);
    }
}

// Smoothing edges costs a software renderer four times its work.
function isSoftware(): boolean {
    const context = document.createElement('canvas').getContext('webgl2');
    const info = context?.getExtension('WEBGL_debug_renderer_info');
    const name = String(context?.getParameter(info?.UNMASKED_RENDERER_WEBGL ?? context.RENDERER) ?? '');
    context?.getExtension('WEBGL_lose_context')?.loseContext();
    return /swiftshader|llvmpipe|software|basic render/i.test(name);
}
