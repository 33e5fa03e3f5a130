// Saved views of the scene: camera, members, section planes.
import type { Camera as SceneCamera, SavedView } from '../data/format';
import { shownInLine } from '../data/text';
import { button, element } from '../panels/dom';
import { icon } from '../panels/icons';
import { kAngle, type Look } from '../scene/camera';
import type { SceneModel } from '../scene/model';
import type { Picture } from '../scene/picture';
import type { Placing } from '../scene/placing';
import type { CutPlane, SceneState } from '../scene/state';
import { dot, plus, times, unit } from '../scene/transform';
import { facing, kStandardViews } from './standard';

/// What a camera of the scene says, as numbers of the picture's.
export function lookOf(camera: SceneCamera, picture: Picture): Look {
    const direction = unit(camera.direction, [0, 1, 0]);
    const middle = picture.middle;
    // Without a distance the middle of the scene is what is looked at.
    const ahead = dot(
        [0, 1, 2].map((k) => middle[k] - camera.position[k]),
        direction,
    );
    const distance = camera.distance && camera.distance > 0 ? camera.distance : ahead > 0 ? ahead : picture.size;
    const perspective = camera.type === 'perspective';
    const angle = camera.angle && camera.angle > 0.001 && camera.angle < 3 ? camera.angle : kAngle;
    const seen = perspective ? 2 * distance * Math.tan(angle / 2) : (camera.height ?? 0);
    return {
        target: plus(camera.position, times(direction, distance)),
        direction,
        up: camera.up,
        height: seen > 0 ? seen : 2.2 * picture.size,
        perspective,
        angle,
    };
}

export function cutsOf(camera: SceneCamera): CutPlane[] {
    return (camera.sections ?? []).map(({ origin, normal }, i) => {
        const towards = unit(normal);
        return { normal: towards, offset: dot(towards, origin), label: `${i + 1}` };
    });
}

export class SavedViews {
    readonly box: HTMLElement;
    private readonly buttons: HTMLButtonElement[];

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly placing: Placing,
        private readonly picture: Picture | null,
    ) {
        const { views, cameras } = model.file;
        this.buttons = views.map((view, index) =>
            this.entry(view.label || view.id, this.about(view), () => this.open(index)),
        );
        const original = button('As in the scene', () => this.open(-1), 'button');
        const list = element('ul', { class: 'entries', attributes: { 'aria-label': 'Saved views' } });
        list.append(...this.buttons.map((one) => element('li', {}, one)));
        // Cameras that no view has can be looked through as well.
        const named = new Set(views.flatMap((view) => view.cameras ?? []));
        cameras.forEach((camera, index) => {
            if (!named.has(index)) {
                const entry = this.entry(camera.label || camera.id, 'camera', () => this.openCamera(camera));
                list.append(element('li', {}, entry));
            }
        });
        const usual = element('div', { class: 'grid', attributes: { role: 'group', 'aria-label': 'Directions' } });
        usual.append(
            ...kStandardViews.map((view) => {
                const made = button(view.name, () => picture?.turnTo(facing(picture.camera, view)), 'button small');
                made.setAttribute('aria-keyshortcuts', view.key);
                made.disabled = !picture;
                return made;
            }),
        );
        const none = element('p', { class: 'hint', text: 'The scene has no saved views.' });
        this.box = element(
            'div',
            { class: 'tab-body scrolls' },
            element('h3', { text: 'Directions' }),
            usual,
            element('h3', { text: 'Saved views' }),
            ...(views.length + cameras.length > 0 ? [list, original] : [none]),
        );
        state.on('view', () => this.mark());
    }

    private about(view: SavedView): string {
        const parts = [];
        const members = view.members?.occurrence.length ?? 0;
        const hidden = view.members?.visible.filter((is) => is === 0).length ?? 0;
        const planes = (view.cameras ?? []).reduce(
            (sum, c) => sum + (this.model.file.cameras[c]?.sections?.length ?? 0),
            0,
        );
        members > 0 && parts.push(members === 1 ? '1 member' : `${members} members`);
        hidden > 0 && parts.push(`${hidden} hidden`);
        planes > 0 && parts.push(planes === 1 ? '1 section' : `${planes} sections`);
        view.active && parts.push('active');
        return parts.join(' \u00b7 ');
    }

    private entry(name: string, about: string, press: () => void): HTMLButtonElement {
        return element(
            'button',
            { class: 'entry', attributes: { type: 'button', 'aria-pressed': 'false' }, on: { click: press } },
            icon('image'),
            element(
                'span',
                { class: 'entry-text' },
                element('span', { class: 'entry-name', text: shownInLine(name) }),
                about && element('span', { class: 'entry-more', text: about }),
            ),
        );
    }

    private mark(): void {
        this.buttons.forEach((one, i) => one.setAttribute('aria-pressed', String(i === this.state.view)));
    }

    /// All that a view says; -1 for the scene as it is without one.
    open(index: number, animated = true): void {
        const view = this.model.file.views[index];
        const before = this.placing.items.slice();
        this.state.view = view ? index : -1;
        this.state.takeMembers(view?.members ?? null);
        this.state.resolve();
        this.placing.update();
        this.state.tell('visibility', 'placement', 'view');
        animated && this.picture?.moveItems(before);
        const camera = this.model.file.cameras[view?.cameras?.[0] ?? -1];
        const sections = (view?.cameras ?? []).flatMap((c) =>
            this.model.file.cameras[c] ? cutsOf(this.model.file.cameras[c]) : [],
        );
        this.state.setCuts(sections.map((cut, i) => ({ ...cut, label: `${i + 1}` })));
        if (this.picture && camera) {
            const look = lookOf(camera, this.picture);
            animated ? this.picture.camera.moveTo(look) : this.picture.camera.set(look);
        } else if (!view && animated) {
            this.picture?.fit();
        }
    }

    private openCamera(camera: SceneCamera): void {
        this.state.setCuts(cutsOf(camera));
        this.picture && this.picture.camera.moveTo(lookOf(camera, this.picture));
    }
}
