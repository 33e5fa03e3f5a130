// How much is left out of the picture while it moves, so that it follows the hand.

interface Step {
    edges: boolean;
    /// Shapes may be so many pixels off.
    pixels: number;
}

/// Each takes about half the time of the one before.
const kSteps: Step[] = [
    { edges: true, pixels: 0 },
    { edges: false, pixels: 0 },
    { edges: false, pixels: 1 },
    { edges: false, pixels: 1.4 },
    { edges: false, pixels: 2 },
    { edges: false, pixels: 2.8 },
    { edges: false, pixels: 4 },
];
// Milliseconds that drawing may take: pictures are put together and shown in the rest of a thirtieth of a second.
const kSlow = 22;
const kFast = 7;
const kLooked = 3;
const kMostFences = 4;

export class Pace {
    private step = 0;
    private costs: number[] = [];
    private readonly fences: { sync: WebGLSync; start: number }[] = [];
    private lastDone = 0;
    private counts = true;

    constructor(private readonly context: WebGL2RenderingContext) {}

    /// What a renderer without a graphics processor is likely to need for so many triangles.
    expect(triangles: number): void {
        this.step = [10e3, 60e3, 90e3, 130e3, 260e3, 600e3].filter((most) => triangles > most).length;
    }

    get now(): Step {
        return kSteps[this.step];
    }

    /// A movement begins.
    begin(): void {
        if (this.costs.length >= kLooked && this.usual() < kFast && this.step > 0) {
            this.change(this.step - 1);
        }
    }

    /// A picture of a movement has been asked for; whether it is as wanted, or cost more.
    drew(isAsWanted: boolean): void {
        this.counts = isAsWanted;
        if (this.fences.length >= kMostFences) {
            return;
        }
        const sync = this.context.fenceSync(this.context.SYNC_GPU_COMMANDS_COMPLETE, 0);
        this.context.flush();
        if (sync) {
            this.fences.push({ sync, start: performance.now() });
            this.fences.length === 1 && setTimeout(() => this.look(), 4);
        }
    }

    /// Whether a picture that was asked for is not done.
    get isBusy(): boolean {
        return this.fences.length > 0;
    }

    // Which pictures are done.
    private look(): void {
        const { context, fences } = this;
        while (
            fences.length > 0 &&
            context.getSyncParameter(fences[0].sync, context.SYNC_STATUS) === context.SIGNALED
        ) {
            const now = performance.now();
            this.counts && this.costs.push(now - Math.max(fences[0].start, this.lastDone));
            this.lastDone = now;
            context.deleteSync(fences[0].sync);
            fences.shift();
        }
        this.costs = this.costs.slice(-kLooked);
        if (context.isContextLost()) {
            fences.length = 0;
        } else if (fences.length > 0) {
            setTimeout(() => this.look(), 4);
        }
        if (this.costs.length >= kLooked && this.usual() > kSlow && this.step + 1 < kSteps.length) {
            this.change(this.step + 1);
        }
    }

    private usual(): number {
        return [...this.costs].sort((a, b) => a - b)[Math.floor(kLooked / 2)];
    }

    private change(step: number): void {
        this.step = step;
        this.costs = [];
    }
}
