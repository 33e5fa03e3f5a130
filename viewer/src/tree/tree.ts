// The tree of occurrences: rows, keys, search.
import { count, shownInLine } from '../data/text';
import { element, iconButton } from '../panels/dom';
import { icon, type IconName } from '../panels/icons';
import { sameNode, type Node, type SceneModel } from '../scene/model';
import type { SceneState } from '../scene/state';
import { Rows, type Row } from './rows';
import { Search } from './search';
import { VirtualList } from './virtualList';

const kRowHeight = 26;

export class Tree {
    readonly box: HTMLElement;
    readonly field: HTMLInputElement;
    private readonly rows: Rows;
    private readonly list: VirtualList;
    private readonly search: Search;
    private readonly found = element('output', { class: 'found', attributes: { 'aria-live': 'polite' } });
    private active = 0;
    private matches: Node[] = [];

    constructor(
        private readonly model: SceneModel,
        private readonly state: SceneState,
        private readonly fit: (nodes: Node[]) => void,
    ) {
        this.rows = new Rows(model);
        this.search = new Search(model);
        this.list = new VirtualList(kRowHeight, (index) => this.make(index));
        this.list.box.classList.add('tree');
        const settings = { role: 'tree', tabindex: '0', 'aria-label': 'Occurrences', 'aria-multiselectable': 'true' };
        Object.entries(settings).forEach(([name, value]) => this.list.box.setAttribute(name, value));
        this.list.box.addEventListener('keydown', (event) => this.key(event));
        this.field = element('input', {
            class: 'field',
            attributes: {
                type: 'search',
                placeholder: 'Search names, ids, properties',
                'aria-label': 'Search names, ids and properties',
                'aria-keyshortcuts': '/',
                spellcheck: 'false',
                autocomplete: 'off',
            },
        });
        this.field.addEventListener('input', () => this.look());
        this.field.addEventListener('keydown', (event) => this.searchKey(event));
        this.box = element(
            'div',
            { class: 'tab-body' },
            element('div', { class: 'search' }, this.field, this.found),
            this.list.box,
        );
        this.list.setSize(this.rows.list.length);
        state.on('visibility', () => this.list.refresh());
        state.on('selection', () => this.follow());
        state.on('hover', () => this.markHovered());
    }

    private iconOf(node: Node): IconName {
        return node.geometry >= 0
            ? this.model.file.geometry[node.geometry].kind
            : this.model.component(node.occurrence).kind;
    }

    private make(index: number): HTMLElement {
        const row = this.rows.list[index];
        const { node } = row;
        const name = shownInLine(this.model.name(node));
        const isShown = node.geometry >= 0 && this.model.items(node).length === 0 ? true : this.state.isShown(node);
        const eye = iconButton(isShown ? `Hide ${name}` : `Show ${name}`, icon(isShown ? 'eye' : 'eyeOff'), () =>
            this.state.setShown([node], !isShown),
        );
        eye.tabIndex = -1;
        eye.classList.add('eye');
        const opener = element('span', { class: 'opener' }, row.opens && icon('open'));
        const made = element(
            'div',
            {
                class: 'row',
                attributes: {
                    id: `row-${index}`,
                    role: 'treeitem',
                    'aria-level': row.level,
                    'aria-posinset': row.position,
                    'aria-setsize': row.neighbours,
                    'aria-selected': String(this.state.isSelected(node)),
                    'aria-label': isShown ? name : `${name}, hidden`,
                },
            },
            opener,
            icon(this.iconOf(node)),
            element('span', { class: 'name', text: name }),
            eye,
        );
        row.opens && made.setAttribute('aria-expanded', String(row.isOpen));
        made.classList.toggle('dim', !isShown);
        made.classList.toggle('ghostly', this.state.ghost[node.occurrence] === 1);
        made.classList.toggle('active', index === this.active);
        made.classList.toggle('hovered', sameNode(node, this.state.hovered));
        // Levels deeper than that stand below one another.
        made.style.paddingLeft = `${4 + 14 * Math.min(row.level - 1, 24)}px`;
        made.addEventListener('click', (event) => this.click(index, event, opener, eye));
        made.addEventListener('dblclick', () => this.fit([node]));
        made.addEventListener('pointerenter', () => this.state.hover(node));
        made.addEventListener('pointerleave', () => this.state.hover(null));
        return made;
    }

    private click(index: number, event: MouseEvent, opener: HTMLElement, eye: HTMLElement): void {
        const target = event.target as Node & Element;
        this.setActive(index);
        this.list.box.focus({ preventScroll: true });
        if (opener.contains(target)) {
            this.toggle(this.rows.list[index]);
        } else if (!eye.contains(target)) {
            this.state.select(this.rows.list[index].node, event.ctrlKey || event.metaKey);
        }
    }

    private toggle(row: Row, open = !row.isOpen): void {
        if (row.opens && !this.rows.found) {
            this.rows.setOpen(row.node.occurrence, open);
            this.list.setSize(this.rows.list.length);
            this.setActive(this.rows.placeOf(row.node));
        }
    }

    private setActive(index: number): void {
        this.list.row(this.active)?.classList.remove('active');
        this.active = Math.max(0, Math.min(index, this.rows.list.length - 1));
        this.list.scrollTo(this.active);
        this.list.row(this.active)?.classList.add('active');
        this.list.box.setAttribute('aria-activedescendant', `row-${this.active}`);
    }

    /// After a selection made elsewhere the row is shown.
    private follow(): void {
        const node = this.state.selection.at(-1);
        if (node) {
            if (this.rows.placeOf(node) < 0 && !this.rows.found) {
                this.rows.reveal(node);
                this.list.setSize(this.rows.list.length);
            }
            const place = this.rows.placeOf(node);
            place >= 0 && this.setActive(place);
        }
        this.list.refresh();
    }

    private markHovered(): void {
        const place = this.state.hovered ? this.rows.placeOf(this.state.hovered) : -1;
        this.list.box.querySelectorAll('.hovered').forEach((row) => row.classList.remove('hovered'));
        this.list.row(place)?.classList.add('hovered');
    }

    private key(event: KeyboardEvent): void {
        if (event.altKey || event.metaKey || (event.ctrlKey && event.key !== ' ')) {
            return;
        }
        const row = this.rows.list[this.active];
        const moves: Record<string, () => void> = {
            ArrowDown: () => this.setActive(this.active + 1),
            ArrowUp: () => this.setActive(this.active - 1),
            PageDown: () => this.setActive(this.active + this.list.rowsInView),
            PageUp: () => this.setActive(this.active - this.list.rowsInView),
            Home: () => this.setActive(0),
            End: () => this.setActive(this.rows.list.length - 1),
            ArrowRight: () => (row.opens && !row.isOpen ? this.toggle(row, true) : this.setActive(this.active + 1)),
            ArrowLeft: () =>
                row.isOpen && !this.rows.found ? this.toggle(row, false) : this.setActive(this.rows.above(this.active)),
            Enter: () => this.state.select(row.node, event.shiftKey),
            ' ': () => this.state.setShown([row.node], !this.state.isShown(row.node)),
        };
        if (moves[event.key]) {
            moves[event.key]();
            event.preventDefault();
            event.stopPropagation();
        }
    }

    private look(): void {
        const question = this.field.value;
        this.matches = this.search.find(question);
        this.rows.found = question.trim() ? Search.shape(this.model, this.matches) : null;
        this.found.textContent = question.trim() ? `${count(this.matches.length)} found` : '';
        this.rows.build();
        this.list.setSize(this.rows.list.length);
        this.setActive(this.matches.length > 0 ? this.rows.placeOf(this.matches[0]) : 0);
    }

    private searchKey(event: KeyboardEvent): void {
        if (event.key === 'Enter' && this.matches.length > 0) {
            const selected = this.state.selection.at(-1) ?? null;
            const at = this.matches.findIndex((node) => sameNode(node, selected));
            const step = event.shiftKey ? this.matches.length - 1 : 1;
            this.state.select(this.matches[at < 0 ? 0 : (at + step) % this.matches.length]);
        } else if (event.key === 'ArrowDown') {
            this.list.box.focus();
        } else if (event.key === 'Escape' && this.field.value) {
            this.field.value = '';
            this.look();
            this.follow();
        } else {
            return;
        }
        event.preventDefault();
        event.stopPropagation();
    }

    focus(): void {
        this.list.box.focus();
    }
}
