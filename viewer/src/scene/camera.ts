// From where the scene is looked at. Points are in the scene's coordinates; the middle of the scene is drawn at zero.
import { Matrix4, OrthographicCamera, PerspectiveCamera, Vector3, type Camera as Drawing } from 'three';
import type { Box, Triple } from '../data/format';
import type { SharedUniforms } from './materials';
import { cross, dot, length, minus, plus, square, times, unit } from './transform';

export interface Look {
    /// What is looked at.
    target: Triple;
    /// Of length 1, from the eye to the target.
    direction: Triple;
    up: Triple;
    /// What is seen at the target, from the bottom to the top.
    height: number;
    perspective: boolean;
    /// The vertical angle of a perspective, in radians.
    angle: number;
}

export const kAngle = (35 * Math.PI) / 180;

const kMoving = 380;

/// Whether the reader asked for no more motion than is needed.
export const wantsStillness = (): boolean => matchMedia('(prefers-reduced-motion: reduce)').matches;

export class Camera {
    look: Look;
    width = 1;
    heightOfPicture = 1;
    private readonly parallel = new OrthographicCamera();
    private readonly perspective = new PerspectiveCamera();
    private animation: { from: Look; to: Look; start: number } | null = null;

    constructor(
        readonly sceneUp: Triple,
        private readonly middle: Triple,
        private readonly changed: () => void,
    ) {
        const front = this.fromAround(-35, 25);
        this.look = { target: middle, ...front, height: 1, perspective: false, angle: kAngle };
        this.parallel.matrixAutoUpdate = false;
        this.perspective.matrixAutoUpdate = false;
    }

    get drawing(): Drawing {
        return this.look.perspective ? this.perspective : this.parallel;
    }

    /// The axes of the scene as a reader of it stands: to the right and away, square to up.
    frame(): { right: Triple; away: Triple; up: Triple } {
        const up = unit(this.sceneUp);
        // With z upwards the front is seen along y; with y upwards along -z.
        const wanted: Triple = Math.abs(up[1]) > 0.7 ? [0, 0, -1] : [0, 1, 0];
        const away = unit(minus(wanted, times(up, dot(wanted, up))), square(up));
        return { right: cross(away, up), away, up };
    }

    /// The direction of somebody who went round by an angle and up by another, in degrees, from the front.
    fromAround(round: number, above: number): { direction: Triple; up: Triple } {
        const { right, away, up } = this.frame();
        const [a, b] = [(round * Math.PI) / 180, (above * Math.PI) / 180];
        const flat = plus(times(away, Math.cos(a)), times(right, -Math.sin(a)));
        return {
            direction: unit(plus(times(flat, Math.cos(b)), times(up, -Math.sin(b)))),
            up: unit(plus(times(flat, Math.sin(b)), times(up, Math.cos(b)))),
        };
    }

    right(): Triple {
        return unit(cross(this.look.direction, this.look.up), [1, 0, 0]);
    }

    /// How far the eye of a perspective stands from the target.
    distance(): number {
        return this.look.height / 2 / Math.tan(this.look.angle / 2);
    }

    eye(): Triple {
        return minus(this.look.target, times(this.look.direction, this.distance()));
    }

    set(look: Partial<Look>): void {
        this.animation = null;
        this.take({ ...this.look, ...look });
    }

    private take(look: Look): void {
        const direction = unit(look.direction, [0, 1, 0]);
        const flat = minus(look.up, times(direction, dot(look.up, direction)));
        this.look = { ...look, direction, up: unit(flat, square(direction)) };
        this.changed();
    }

    /// Moves there within a moment; at once where motion is not wanted.
    moveTo(look: Partial<Look>): void {
        const to = { ...this.look, ...look };
        if (wantsStillness()) {
            this.set(to);
            return;
        }
        this.animation = { from: this.look, to, start: performance.now() };
        this.changed();
    }

    get isMoving(): boolean {
        return this.animation !== null;
    }

    /// One step of a movement.
    advance(now: number): void {
        if (!this.animation) {
            return;
        }
        const { from, to, start } = this.animation;
        const part = Math.min(1, Math.max(0, (now - start) / kMoving));
        if (part === 1) {
            this.animation = null;
            this.take(to);
            return;
        }
        const t = part * part * (3 - 2 * part);
        const mix = (a: Triple, b: Triple): Triple => plus(times(a, 1 - t), times(b, t));
        let direction = mix(from.direction, to.direction);
        if (length(direction) < 0.05) {
            // Opposite directions: round by the side.
            direction = cross(from.direction, from.up);
        }
        let up = mix(from.up, to.up);
        up = length(up) < 0.05 ? from.up : up;
        const height = Math.exp(Math.log(from.height) * (1 - t) + Math.log(to.height) * t);
        const angle = from.angle * (1 - t) + to.angle * t;
        this.take({ target: mix(from.target, to.target), direction, up, height, angle, perspective: to.perspective });
    }

    /// So that a box fills the picture, looked at as now or in a given direction.
    fitted(box: Box, facing: { direction: Triple; up: Triple } = this.look): Partial<Look> {
        const up = unit(minus(facing.up, times(facing.direction, dot(facing.up, facing.direction))), this.look.up);
        const right = cross(facing.direction, up);
        const half = times(minus(box.high, box.low), 0.5);
        const across = (axis: Triple): number =>
            Math.abs(axis[0] * half[0]) + Math.abs(axis[1] * half[1]) + Math.abs(axis[2] * half[2]);
        const aspect = this.width / this.heightOfPicture;
        let height = 2.16 * Math.max(across(up), across(right) / aspect);
        if (this.look.perspective) {
            height += 2 * across(facing.direction) * Math.tan(this.look.angle / 2);
        }
        const target = times(plus(box.low, box.high), 0.5);
        return { target, direction: facing.direction, up, height: height > 0 ? height : this.look.height || 1 };
    }

    /// Matrices for a picture of the given size that reaches around a sphere.
    update(width: number, height: number, center: Triple, radius: number): void {
        this.width = width;
        this.heightOfPicture = height;
        const aspect = width / height;
        const { direction, up, target } = this.look;
        const depth = dot(minus(center, target), direction);
        const reach = Math.max(radius, this.look.height * 1e-3) * 1.05;
        const eye = this.look.perspective
            ? this.eye()
            : minus(target, times(direction, reach - depth + this.look.height));
        const right = this.right();
        const at = minus(eye, this.middle);
        const camera = this.drawing as OrthographicCamera | PerspectiveCamera;
        const back = times(direction, -1);
        camera.matrix.makeBasis(new Vector3(...right), new Vector3(...up), new Vector3(...back));
        camera.matrix.setPosition(...at);
        camera.matrixWorld.copy(camera.matrix);
        camera.matrixWorldInverse.copy(camera.matrix).invert();
        const ahead = dot(minus(center, eye), direction);
        if (camera instanceof PerspectiveCamera) {
            const far = Math.max(ahead + reach, this.distance() * 0.01);
            camera.fov = (this.look.angle * 180) / Math.PI;
            camera.aspect = aspect;
            camera.near = Math.max(ahead - reach, far / 5000);
            camera.far = far;
        } else {
            camera.top = this.look.height / 2;
            camera.bottom = -camera.top;
            camera.right = camera.top * aspect;
            camera.left = -camera.right;
            camera.near = ahead - reach;
            camera.far = ahead + reach;
        }
        camera.updateProjectionMatrix();
    }

    /// What shaders have to know.
    tell({ seen, light, eye }: SharedUniforms): void {
        const camera = this.drawing;
        seen.value.multiplyMatrices(camera.projectionMatrix, camera.matrixWorldInverse);
        const back = times(this.look.direction, -1);
        const side = plus(times(this.right(), 0.2085), times(this.look.up, 0.278));
        light.value.set(...plus(side, times(back, 0.9377)));
        if (this.look.perspective) {
            eye.value.set(...minus(this.eye(), this.middle), 1);
        } else {
            eye.value.set(...back, 0);
        }
    }

    /// The place of a point in the picture in CSS pixels, and its depth from -1 to 1.
    project(point: Triple): Triple {
        const at = new Vector3(...minus(point, this.middle));
        at.applyMatrix4(this.drawing.matrixWorldInverse).applyMatrix4(this.drawing.projectionMatrix);
        return [((at.x + 1) / 2) * this.width, ((1 - at.y) / 2) * this.heightOfPicture, at.z];
    }

    /// The line of sight through a place of the picture.
    ray(x: number, y: number): { origin: Triple; direction: Triple } {
        const inverse = new Matrix4().multiplyMatrices(this.drawing.matrixWorld, this.drawing.projectionMatrixInverse);
        const [u, v] = [(x / this.width) * 2 - 1, 1 - (y / this.heightOfPicture) * 2];
        const near = new Vector3(u, v, -1).applyMatrix4(inverse);
        const far = new Vector3(u, v, 1).applyMatrix4(inverse);
        const origin = plus(near.toArray() as Triple, this.middle);
        return { origin, direction: unit(far.sub(near).toArray(), this.look.direction) };
    }

    /// The length that a pixel has at a point.
    pixelAt(point: Triple): number {
        const whole = this.look.height / this.heightOfPicture;
        if (!this.look.perspective) {
            return whole;
        }
        const away = dot(minus(point, this.eye()), this.look.direction);
        return (whole * Math.max(away, 0)) / this.distance();
    }

    /// The least length that a pixel has in a sphere, as far as that lies well ahead of the eye.
    pixelNear(center: Triple, radius: number): number {
        const whole = this.look.height / this.heightOfPicture;
        if (!this.look.perspective) {
            return whole;
        }
        const away = dot(minus(center, this.eye()), this.look.direction) - radius;
        return whole * Math.max(away / this.distance(), 0.1);
    }
}
