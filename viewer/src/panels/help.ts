// The list of keys and mouse actions.
import { button, element } from './dom';

const kKeys: [string, string][] = [
    ['Left drag, arrow keys', 'Turn'],
    ['Right, middle or shift drag, shift and arrow keys', 'Move'],
    ['Wheel, pinch, + and -', 'Zoom'],
    ['Click', 'Select; with control add'],
    ['Double click, F', 'Fit'],
    ['1 to 7', 'Front, back, left, right, top, bottom, corner'],
    ['P', 'Perspective or parallel'],
    ['E', 'Edges'],
    ['H, I, G, A', 'Hide, isolate, transparent, show all'],
    ['C, X, M', 'Section, explode, measure'],
    ['N', 'Notes'],
    ['/', 'Search'],
    ['T', 'Light or dark'],
    ['Escape', 'Select nothing'],
    ['In the tree: arrow keys, Enter, space', 'Go, select, show or hide'],
];

export class Help {
    readonly box: HTMLDialogElement;

    constructor() {
        const list = element('dl', { class: 'keys' });
        kKeys.forEach(([keys, what]) => list.append(element('dt', { text: keys }), element('dd', { text: what })));
        this.box = element(
            'dialog',
            { class: 'help', attributes: { 'aria-label': 'Keys' } },
            element('h2', { text: 'Keys and mouse' }),
            list,
            button('Close', () => this.box.close()),
        );
    }

    open(): void {
        this.box.showModal();
    }
}
