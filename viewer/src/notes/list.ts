// The list of notes, and what a chosen note points at.
import type { Note } from '../data/format';
import { shownInLine } from '../data/text';
import { checkbox, element } from '../panels/dom';
import { icon } from '../panels/icons';
import type { Node, SceneModel } from '../scene/model';
import type { Detail, SceneState } from '../scene/state';
import { linesOf } from './drawing';

const kMostRows = 2000;

/// What a note speaks of, wherever it occurs: faces and edges, and what is meant as a whole.
export function targetsOf(model: SceneModel, note: Note): { nodes: Node[]; details: Detail[] } {
    const nodes: Node[] = [];
    const details: Detail[] = [];
    const { geometry, occurrence } = model.file.items;
    for (const target of note.targets ?? []) {
        // A mesh stands for the body that is meant.
        const own = target.geometry;
        for (let item = 0; own !== undefined && item < geometry.length; ++item) {
            const stands = geometry[item] === own || model.geometryOfItem(item).body === own;
            if (!stands || !model.meshOfItem(item)) {
                continue;
            }
            const faces = (target.faces ?? []).map((number): Detail => ({ item, kind: 'face', number }));
            const edges = (target.edges ?? []).map((number): Detail => ({ item, kind: 'edge', number }));
            details.push(...faces, ...edges);
            if (faces.length + edges.length === 0) {
                nodes.push({ occurrence: occurrence[item], geometry: geometry[item] });
            }
        }
        if (target.component !== undefined) {
            model.file.occurrences.component.forEach(
                (component, o) => component === target.component && nodes.push({ occurrence: o, geometry: -1 }),
            );
        }
    }
    return { nodes, details };
}

export class NoteList {
    readonly box: HTMLElement;
    private readonly list = element('ul', { class: 'entries', attributes: { 'aria-label': 'Notes' } });

    constructor(
        model: SceneModel,
        private readonly state: SceneState,
        private readonly choose: (index: number) => void,
    ) {
        const { notes } = model.file;
        const all = checkbox('Show notes', state.notesShown, (checked) => this.setShown(checked));
        state.on('notes', () => ((all.firstChild as HTMLInputElement).checked = state.notesShown));
        this.list.append(...notes.slice(0, kMostRows).map((note, index) => this.row(note, index)));
        const empty = element('p', { class: 'hint', text: 'The scene has no notes.' });
        this.box = element('div', { class: 'tab-body scrolls' }, ...(notes.length > 0 ? [all, this.list] : [empty]));
    }

    setShown(shown: boolean): void {
        this.state.notesShown = shown;
        this.state.resolve();
        this.state.tell('visibility', 'notes');
    }

    private row(note: Note, index: number): HTMLElement {
        const text = linesOf(note)
            .map((line) => line.map((part) => part.text).join(''))
            .join(' \u00b7 ');
        const name = shownInLine(note.label || note.id);
        const choose = element(
            'button',
            {
                class: 'entry',
                attributes: { type: 'button', 'aria-pressed': 'false' },
                on: { click: () => this.mark(index) },
            },
            icon('note'),
            element(
                'span',
                { class: 'entry-text' },
                element('span', { class: 'entry-name', text: shownInLine(text) }),
                element('span', {
                    class: 'entry-more',
                    text: note.kind ? `${name} \u00b7 ${shownInLine(note.kind)}` : name,
                }),
            ),
        );
        return element('li', {}, choose);
    }

    mark(index: number): void {
        this.list.querySelectorAll('button').forEach((one, i) => one.setAttribute('aria-pressed', String(i === index)));
        this.choose(index);
    }
}
