// The cube that turns with the scene; its sides are buttons.
import { button, element } from '../panels/dom';
import type { Camera } from '../scene/camera';
import type { Triple } from '../data/format';
import { dot } from '../scene/transform';
import { facing, kStandardViews } from './standard';

const kHalf = 31;

export class ViewCube {
    readonly box: HTMLElement;
    private readonly cube = element('div', { class: 'cube' });

    constructor(
        private readonly camera: Camera,
        turnTo: (facing: { direction: Triple; up: Triple }) => void,
    ) {
        const { right, away, up } = camera.frame();
        const inFrame = (v: Triple): Triple => [dot(v, right), -dot(v, up), -dot(v, away)];
        for (const view of kStandardViews.slice(0, 6)) {
            const seen = facing(camera, view);
            const side = button(view.name, () => turnTo(seen), 'cube-side');
            side.setAttribute('aria-label', `${view.name} view`);
            // Of the page: x to the right, y down, z to the reader.
            const z = inFrame([-seen.direction[0], -seen.direction[1], -seen.direction[2]]);
            const y = inFrame([-seen.up[0], -seen.up[1], -seen.up[2]]);
            const x = [y[1] * z[2] - y[2] * z[1], y[2] * z[0] - y[0] * z[2], y[0] * z[1] - y[1] * z[0]];
            const parts = [...x, 0, ...y, 0, ...z, 0, ...z.map((part) => part * kHalf), 1];
            side.style.transform = `matrix3d(${parts.map((part) => part.toFixed(4)).join(',')})`;
            this.cube.append(side);
        }
        this.box = element(
            'div',
            { class: 'view-cube', attributes: { role: 'group', 'aria-label': 'Standard views' } },
            this.cube,
        );
    }

    /// Turns it as the scene stands.
    update(): void {
        const { right, away, up } = this.camera.frame();
        const eye = { right: this.camera.right(), up: this.camera.look.up, ahead: this.camera.look.direction };
        // Columns: where the frame's right, down and nearer go on the page.
        const column = (v: Triple, sign: number): number[] =>
            [dot(v, eye.right), -dot(v, eye.up), -dot(v, eye.ahead)].map((part) => part * sign);
        const parts = [...column(right, 1), 0, ...column(up, -1), 0, ...column(away, -1), 0, 0, 0, 0, 1];
        this.cube.style.transform = `matrix3d(${parts.map((part) => part.toFixed(4)).join(',')})`;
    }
}
