// The panel of what is selected.
import { count, kMostInPanel, shown, shownInLine } from '../data/text';
import type { SceneModel } from '../scene/model';
import type { SceneState } from '../scene/state';
import { element, iconButton } from './dom';
import type { FactsOf, Group } from './facts';
import { icon } from './icons';

const kMostRows = 400;

export class Properties {
    readonly box = element('aside', { class: 'panel', attributes: { 'aria-label': 'Properties' } });
    private pending = false;

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly facts: FactsOf,
        private readonly fit: () => void,
        private readonly say: (text: string) => void,
    ) {
        for (const topic of ['selection', 'detail', 'visibility', 'placement'] as const) {
            state.on(topic, () => this.later());
        }
        this.show();
    }

    private later(): void {
        if (!this.pending) {
            this.pending = true;
            requestAnimationFrame(() => {
                this.pending = false;
                this.show();
            });
        }
    }

    private show(): void {
        const node = this.state.selection.at(-1);
        if (!node) {
            this.box.replaceChildren(...this.ofScene());
            return;
        }
        const name = shownInLine(this.model.name(node));
        const more = this.state.selection.length - 1;
        const line = this.model.ancestors(node.occurrence).map((occurrence) => ({ occurrence, geometry: -1 }));
        const path = element('nav', { class: 'path', attributes: { 'aria-label': 'Path' } });
        [{ occurrence: 0, geometry: -1 }, ...line].slice(-12).forEach((above, i) => {
            i > 0 &&
                path.append(
                    element('span', { class: 'path-mark', text: '\u203a', attributes: { 'aria-hidden': 'true' } }),
                );
            path.append(
                element('button', {
                    class: 'path-step',
                    text: shownInLine(this.model.name(above), 40),
                    attributes: { type: 'button' },
                    on: { click: () => this.state.select(above) },
                }),
            );
        });
        this.box.replaceChildren(
            element('h2', { text: name }),
            path,
            ...(more > 0 ? [element('p', { class: 'hint', text: `and ${count(more)} more selected` })] : []),
            this.actions(),
            ...this.facts.of(node, this.state.detail).map((group) => this.group(group)),
        );
    }

    private actions(): HTMLElement {
        const { state } = this;
        const all = state.selection;
        const shownNow = all.every((one) => state.isShown(one));
        const node = all[all.length - 1];
        return element(
            'div',
            { class: 'actions', attributes: { role: 'toolbar', 'aria-label': 'Selection' } },
            iconButton(
                shownNow ? 'Hide' : 'Show',
                icon(shownNow ? 'eyeOff' : 'eye'),
                () => state.setShown(all, !shownNow),
                'H',
            ),
            iconButton('Isolate', icon('isolate'), () => state.isolate(all), 'I'),
            iconButton('Transparent', icon('ghost'), () => state.toggleGhost(all), 'G'),
            iconButton('Show all', icon('all'), () => state.showAll(), 'A'),
            iconButton('Fit', icon('fit'), () => this.fit(), 'F'),
            iconButton('Copy as JSON', icon('copy'), () => void this.copy(this.facts.json(node, state.detail))),
        );
    }

    private group({ title, rows }: Group): HTMLElement {
        const list = element('dl', { class: 'facts' });
        for (const { name, text } of rows.slice(0, kMostRows)) {
            list.append(
                element('dt', { text: shownInLine(name, 100) }),
                element('dd', { text: shown(text, kMostInPanel) }),
            );
        }
        const made = element('details', { class: 'group' }, element('summary', { text: title }), list);
        made.open = true;
        rows.length > kMostRows &&
            made.append(
                element('p', { class: 'hint', text: `and ${count(rows.length - kMostRows)} more: copy them as JSON` }),
            );
        return made;
    }

    private ofScene(): HTMLElement[] {
        const { file } = this.model;
        const rows = [
            { name: 'Scene', text: file.source?.file ?? '', value: '' },
            { name: 'Model', text: file.source?.model ?? '', value: '' },
            { name: 'Written by', text: file.generator ?? '', value: '' },
            { name: 'Unit', text: file.unit.name, value: '' },
            ...Object.entries(file.counts ?? {}).map(([name, value]) => ({
                name: name === 'drawnTriangles' ? 'Triangles drawn' : name[0].toUpperCase() + name.slice(1),
                text: count(value),
                value,
            })),
        ].filter(({ text }) => text !== '');
        return [
            element('h2', { text: shownInLine(file.title) }),
            element('p', { class: 'hint', text: 'Select something in the tree or in the picture.' }),
            ...(file.remarks ?? []).map((remark) =>
                element('p', { class: 'remark', text: shown(remark, kMostInPanel) }),
            ),
            this.group({ title: 'Scene', rows }),
        ];
    }

    private async copy(text: string): Promise<void> {
        try {
            await navigator.clipboard.writeText(text);
        } catch {
            // Where the clipboard is closed to pages from disk.
            const area = element('textarea', { class: 'offscreen', attributes: { 'aria-hidden': 'true' } });
            area.value = text;
            document.body.append(area);
            area.select();
            document.execCommand('copy');
            area.remove();
        }
        this.say('Copied.');
    }
}
