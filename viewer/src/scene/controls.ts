// Turning, moving and zooming by mouse, trackpad, touch and keys.
import type { Triple } from '../data/format';
import type { Camera } from './camera';
import { cross, dot, minus, plus, times, unit } from './transform';

export interface ControlEvents {
    /// A press and release at one place; `twice` for the second of two.
    click(x: number, y: number, event: PointerEvent, twice: boolean): void;
    hover(x: number, y: number): void;
    leave(): void;
    /// The point that is turned around, and zoomed to: what is under the pointer.
    pointAt(x: number, y: number): Triple | null;
}

const kClickDistance = 4;
const kTwice = 350;

function rotated(vector: Triple, axis: Triple, angle: number): Triple {
    const [c, s] = [Math.cos(angle), Math.sin(angle)];
    return plus(plus(times(vector, c), times(cross(axis, vector), s)), times(axis, dot(axis, vector) * (1 - c)));
}

export class Controls {
    private readonly pointers = new Map<number, { x: number; y: number }>();
    private start = { x: 0, y: 0, moved: false, button: 0 };
    private pivot: Triple | null = null;
    private last = { time: 0, x: 0, y: 0 };
    private hoverPending: { x: number; y: number } | null = null;

    constructor(
        /// What is clicked and dragged.
        private readonly element: HTMLElement,
        /// What has the keys: the element is in it.
        private readonly host: HTMLElement,
        private readonly camera: Camera,
        private readonly events: ControlEvents,
    ) {
        element.addEventListener('pointerdown', (event) => this.down(event));
        element.addEventListener('pointermove', (event) => this.move(event));
        element.addEventListener('pointerup', (event) => this.up(event));
        element.addEventListener('pointercancel', (event) => this.pointers.delete(event.pointerId));
        element.addEventListener('pointerleave', () => {
            this.hoverPending = null;
            this.events.leave();
        });
        element.addEventListener('contextmenu', (event) => event.preventDefault());
        element.addEventListener('wheel', (event) => this.wheel(event), { passive: false });
        host.addEventListener('keydown', (event) => event.target === host && this.key(event));
    }

    private place(event: MouseEvent): { x: number; y: number } {
        const box = this.element.getBoundingClientRect();
        return { x: event.clientX - box.left, y: event.clientY - box.top };
    }

    private down(event: PointerEvent): void {
        const at = this.place(event);
        this.pointers.set(event.pointerId, at);
        this.element.setPointerCapture(event.pointerId);
        this.host.focus({ preventScroll: true, focusVisible: false } as FocusOptions);
        if (this.pointers.size === 1) {
            this.start = { ...at, moved: false, button: event.button };
            this.pivot = this.events.pointAt(at.x, at.y);
        }
        // No automatic scrolling by the middle button.
        event.preventDefault();
    }

    private move(event: PointerEvent): void {
        const at = this.place(event);
        const before = this.pointers.get(event.pointerId);
        if (!before) {
            this.hoverLater(at);
            return;
        }
        if (Math.hypot(at.x - this.start.x, at.y - this.start.y) > kClickDistance) {
            this.start.moved = true;
        }
        this.pointers.set(event.pointerId, at);
        if (this.pointers.size >= 2) {
            this.pinch(event.pointerId, before, at);
        } else if (this.start.moved) {
            const [dx, dy] = [at.x - before.x, at.y - before.y];
            if (this.start.button !== 0 || event.shiftKey) {
                this.pan(dx, dy);
            } else if (event.ctrlKey || event.metaKey) {
                this.zoom(Math.exp(dy * 0.006), this.start.x, this.start.y);
            } else {
                this.turn(dx, dy);
            }
        }
    }

    // One look at what is under the pointer for each picture.
    private hoverLater(at: { x: number; y: number }): void {
        if (!this.hoverPending) {
            requestAnimationFrame(() => {
                const place = this.hoverPending;
                this.hoverPending = null;
                place && this.events.hover(place.x, place.y);
            });
        }
        this.hoverPending = at;
    }

    private up(event: PointerEvent): void {
        const at = this.place(event);
        const known = this.pointers.delete(event.pointerId);
        if (known && this.pointers.size === 0 && !this.start.moved && this.start.button === 0) {
            const near = Math.hypot(at.x - this.last.x, at.y - this.last.y) < 2 * kClickDistance;
            const twice = near && event.timeStamp - this.last.time < kTwice;
            this.last = { time: twice ? 0 : event.timeStamp, ...at };
            this.events.click(at.x, at.y, event, twice);
        }
    }

    private pinch(moved: number, before: { x: number; y: number }, at: { x: number; y: number }): void {
        const other = [...this.pointers].find(([id]) => id !== moved)?.[1];
        if (!other) {
            return;
        }
        this.start.moved = true;
        const was = Math.hypot(before.x - other.x, before.y - other.y);
        const is = Math.hypot(at.x - other.x, at.y - other.y);
        this.pan((at.x - before.x) / 2, (at.y - before.y) / 2);
        if (was > 1 && is > 1) {
            this.zoom(was / is, (at.x + other.x) / 2, (at.y + other.y) / 2);
        }
    }

    private wheel(event: WheelEvent): void {
        event.preventDefault();
        const { x, y } = this.place(event);
        const unitOfWheel = event.deltaMode === 1 ? 30 : event.deltaMode === 2 ? 300 : 1;
        if (event.shiftKey) {
            this.pan(-(event.deltaX || event.deltaY) * unitOfWheel, -(event.deltaX ? event.deltaY : 0) * unitOfWheel);
            return;
        }
        // Pinching a trackpad comes as a wheel with the control key, in small steps.
        const speed = event.ctrlKey ? 0.01 : 0.0016;
        const by = Math.max(-240, Math.min(240, event.deltaY * unitOfWheel));
        this.zoom(Math.exp(by * speed), x, y);
    }

    /// Around the scene's up axis, and up or down, in pixels.
    turn(dx: number, dy: number): void {
        const { look } = this.camera;
        const up = unit(this.camera.sceneUp);
        const pivot = this.pivot ?? look.target;
        const round = (-dx * Math.PI) / Math.max(300, this.camera.heightOfPicture);
        const steep = Math.asin(Math.max(-1, Math.min(1, -dot(look.direction, up))));
        const most = Math.PI / 2 - 1e-4;
        const wanted = steep + (dy * Math.PI) / Math.max(300, this.camera.heightOfPicture);
        const above = Math.max(-most, Math.min(most, wanted)) - steep;
        const side = this.camera.right();
        const both = (vector: Triple): Triple => rotated(rotated(vector, side, -above), up, round);
        this.camera.set({
            direction: both(look.direction),
            up: both(look.up),
            target: plus(pivot, both(minus(look.target, pivot))),
        });
    }

    pan(dx: number, dy: number): void {
        const { look } = this.camera;
        const pixel = look.height / this.camera.heightOfPicture;
        const by = plus(times(this.camera.right(), -dx * pixel), times(look.up, dy * pixel));
        this.camera.set({ target: plus(look.target, by) });
    }

    /// The point under a place of the picture stays there.
    zoom(factor: number, x = this.camera.width / 2, y = this.camera.heightOfPicture / 2): void {
        const { look } = this.camera;
        const ray = this.camera.ray(x, y);
        const ahead = dot(minus(look.target, ray.origin), look.direction) / dot(ray.direction, look.direction);
        const fixed = plus(ray.origin, times(ray.direction, ahead));
        const height = look.height * factor;
        if (height > 1e-9 && height < 1e15) {
            this.camera.set({ height, target: plus(fixed, times(minus(look.target, fixed), factor)) });
        }
    }

    private key(event: KeyboardEvent): void {
        if (event.altKey || event.ctrlKey || event.metaKey) {
            return;
        }
        const step = 30;
        const arrows: Record<string, [number, number]> = {
            ArrowLeft: [-step, 0],
            ArrowRight: [step, 0],
            ArrowUp: [0, -step],
            ArrowDown: [0, step],
        };
        const arrow = arrows[event.key];
        if (arrow) {
            this.pivot = null;
            event.shiftKey ? this.pan(-arrow[0], -arrow[1]) : this.turn(arrow[0], arrow[1]);
        } else if (event.key === '+' || event.key === '=') {
            this.zoom(1 / 1.25);
        } else if (event.key === '-') {
            this.zoom(1.25);
        } else {
            return;
        }
        event.preventDefault();
        event.stopPropagation();
    }
}
