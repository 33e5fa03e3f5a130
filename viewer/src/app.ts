// Puts the page together from its parts.
import { count, shownInLine } from './data/text';
import { Links } from './links/link';
import { Measure } from './measure/measure';
import { Units } from './measure/units';
import { NoteDrawing } from './notes/drawing';
import { NoteList, targetsOf } from './notes/list';
import { button, element, iconButton, setPressed } from './panels/dom';
import { FactsOf } from './panels/facts';
import { Help } from './panels/help';
import { icon } from './panels/icons';
import { Layers } from './panels/layers';
import { Properties } from './panels/properties';
import { Cards, Messages, Tabs } from './panels/shell';
import { Themes, type Theme } from './panels/theme';
import { Controls } from './scene/controls';
import type { Node, SceneModel } from './scene/model';
import { Overlays } from './scene/overlays';
import { Picking, type Hit } from './scene/picking';
import { Picture, whyNoPicture } from './scene/picture';
import { Placing } from './scene/placing';
import { SceneState } from './scene/state';
import { Caps } from './sections/caps';
import { Explode } from './sections/explode';
import { SectionPanel } from './sections/panel';
import { Tree } from './tree/tree';
import { ViewCube } from './views/cube';
import { SavedViews } from './views/saved';
import { facing, kStandardViews } from './views/standard';

export class App {
    readonly state: SceneState;
    readonly picture: Picture | null = null;
    private readonly placing: Placing;
    private readonly units: Units;
    private readonly cards = new Cards();
    private readonly messages = new Messages();
    private readonly help = new Help();
    private readonly tree: Tree;
    private readonly tabs = new Tabs();
    private readonly notes: NoteList;
    private readonly links: Links;
    private readonly status = element('footer', { class: 'status', attributes: { 'aria-label': 'Under the pointer' } });
    private readonly place = element('main', {
        class: 'picture',
        attributes: { tabindex: '0', role: 'application', 'aria-label': 'Picture of the model' },
    });
    private readonly keys = new Map<string, () => void>();
    private readonly tools = element('div', { class: 'tools', attributes: { role: 'toolbar', 'aria-label': 'Tools' } });
    private theme: Theme | null = null;
    private drawing: NoteDrawing | null = null;
    private measure: Measure | null = null;
    private section: SectionPanel | null = null;
    private edges: Overlays | null = null;

    constructor(
        private readonly model: SceneModel,
        host: HTMLElement,
    ) {
        this.state = new SceneState(model);
        this.placing = new Placing(model, this.state);
        this.units = new Units(model.file.unit);
        const layers = new Layers(model, this.state);
        this.tree = new Tree(model, this.state, (nodes) => this.picture?.fit(nodes));
        const side = this.tabs.box;
        const facts = new FactsOf(model, this.state, this.placing, this.units);
        this.units.changed = () => this.state.tell('detail');
        const properties = new Properties(
            model,
            this.state,
            facts,
            () => this.fit(),
            (text) => this.messages.say(text),
        );
        const head = element('header', { class: 'bar' }, this.heading(), this.tools);
        host.replaceChildren(head, side, this.place, properties.box, this.status, this.help.box);

        const why = whyNoPicture();
        if (why) {
            const sentence = `${why} Tree, properties and notes work all the same.`;
            this.place.append(element('p', { class: 'no-picture', text: sentence, attributes: { role: 'alert' } }));
        } else {
            this.picture = new Picture(this.place, model, this.state, this.placing);
        }
        const views = new SavedViews(model, this.state, this.placing, this.picture);
        this.notes = new NoteList(model, this.state, (index) => this.chooseNote(index));
        this.links = new Links(model, this.state, this.placing, views, layers, this.picture);
        this.tabs.add('Tree', this.tree.box);
        this.tabs.add('Views', views.box);
        this.tabs.add(
            model.file.notes.length > 0 ? `Notes (${count(model.file.notes.length)})` : 'Notes',
            this.notes.box,
        );
        this.tabs.add('Layers', layers.box);
        this.place.append(this.cards.box, this.messages.box);
        this.picture && this.place.append(this.whenAllIsHidden());
        if (this.picture) {
            this.fillPicture(this.picture);
        }
        this.fillTools(host, side, properties.box);
        const themes = new Themes((theme) => this.dress(theme));
        this.tool('Light or dark', 'theme', 't', () => themes.toggle());
        this.tool('Keys and mouse', 'help', '?', () => this.help.open());
        this.state.on('hover', () => this.tellHovered());
        for (const topic of ['detail', 'visibility', 'placement', 'sections'] as const) {
            this.state.on(topic, () => this.showDetail());
        }
        document.addEventListener('keydown', (event) => this.key(event));
        addEventListener('hashchange', () => this.links.restore(location.hash));
        this.tellHovered();
        location.hash.length > 1 && this.links.restore(location.hash);
    }

    // An empty picture says why it is.
    private whenAllIsHidden(): HTMLElement {
        const all = button('Show everything', () => this.state.showEverything());
        const box = element('div', { class: 'all-hidden' }, element('p', { text: 'Everything is hidden.' }), all);
        const look = (): void => {
            box.hidden = this.state.itemShown.length === 0 || this.state.itemShown.includes(1);
        };
        this.state.on('visibility', look);
        look();
        return box;
    }

    private heading(): HTMLElement {
        const { file } = this.model;
        return element(
            'div',
            { class: 'heading' },
            element('h1', { text: shownInLine(file.title, 120) }),
            element('span', { class: 'source', text: shownInLine(file.source?.model ?? file.source?.file ?? '', 120) }),
        );
    }

    private tool(name: string, image: Parameters<typeof icon>[0], key: string, press: () => void): HTMLButtonElement {
        const made = iconButton(name, icon(image), press, key.toUpperCase());
        this.tools.append(made);
        key && this.keys.set(key, press);
        return made;
    }

    private card(...[name, image, key, body, changed]: Parameters<Cards['add']>): void {
        this.tools.append(this.cards.add(name, image, key.toUpperCase(), body, changed));
        this.keys.set(key, () => this.cards.open(name, !this.cards.isOpen(name)));
    }

    private fillPicture(picture: Picture): void {
        const picking = new Picking(this.model, this.state, this.placing, picture.camera);
        const cube = new ViewCube(picture.camera, (seen) => picture.turnTo(seen));
        picture.drawn.push(() => cube.update());
        this.place.append(cube.box);
        new Caps(this.model, this.state, this.placing, picture);
        this.drawing = new NoteDrawing(this.model, this.state, this.placing, picture);
        this.edges = new Overlays(this.model, picture);
        this.section = new SectionPanel(this.state, this.placing, picture, this.model.file.unit.symbol);
        const measured = new Overlays(this.model, picture);
        this.measure = new Measure(this.model, picture, picking, measured, this.units, this.place);
        const controls = new Controls(picture.canvas, this.place, picture.camera, {
            click: (x, y, event, twice) => this.click(picking, x, y, event, twice),
            hover: (x, y) => {
                const hit = picking.at(x, y);
                this.state.hover(hit ? this.nodeOf(hit.item) : null);
                this.tellHovered(hit);
            },
            leave: () => this.state.hover(null),
            pointAt: (x, y) => picking.at(x, y)?.point ?? null,
        });
        this.keys.set('+', () => controls.zoom(0.8));
        this.keys.set('-', () => controls.zoom(1.25));
        kStandardViews.forEach((view) => this.keys.set(view.key, () => picture.turnTo(facing(picture.camera, view))));
    }

    private fillTools(host: HTMLElement, side: HTMLElement, panel: HTMLElement): void {
        const { picture, state } = this;
        const toggled = (name: string, image: Parameters<typeof icon>[0], box: HTMLElement, hides: string): void => {
            const made = this.tool(name, image, '', () => {
                box.hidden = !box.hidden;
                host.classList.toggle(hides, box.hidden);
                setPressed(made, !box.hidden);
            });
            setPressed(made, true);
        };
        toggled('Lists', 'side', side, 'no-side');
        toggled('Properties', 'panel', panel, 'no-panel');
        if (picture) {
            this.tool('Fit', 'fit', 'f', () => this.fit());
            const perspective = this.tool('Perspective', 'perspective', 'p', () => {
                picture.camera.set({ perspective: !picture.camera.look.perspective });
            });
            picture.drawn.push(() => setPressed(perspective, picture.camera.look.perspective));
            const edges = this.tool('Edges', 'edges', 'e', () => {
                picture.setEdgesShown(!picture.batches.edgesShown);
                setPressed(edges, picture.batches.edgesShown);
            });
            setPressed(edges, true);
            this.section && this.card('Section', 'section', 'c', this.section.box);
            this.card('Explode', 'explode', 'x', new Explode(state, this.placing).box);
            this.measure &&
                this.card('Measure', 'measure', 'm', this.measure.box, (open) => this.measure?.setActive(open));
        }
        const selected = (action: (nodes: Node[]) => void) => () =>
            void (state.selection.length > 0 && action(state.selection));
        this.keys.set(
            'h',
            selected((nodes) => state.setShown(nodes, !nodes.every((node) => state.isShown(node)))),
        );
        this.keys.set(
            'i',
            selected((nodes) => state.isolate(nodes)),
        );
        this.keys.set(
            'g',
            selected((nodes) => state.toggleGhost(nodes)),
        );
        this.keys.set('a', () => state.showAll());
        this.keys.set('n', () => this.notes.setShown(!state.notesShown));
        this.keys.set('/', () => {
            this.tabs.open(0);
            this.tree.field.focus();
        });
        this.keys.set('Escape', () => state.select(null));
        this.tool('Link to this', 'link', 'l', () => this.link());
        picture && this.tool('Save as PNG', 'image', 's', () => void this.save(picture));
    }

    private nodeOf(item: number): Node {
        const { occurrence, geometry } = this.model.file.items;
        const o = occurrence[item];
        const drawn = this.model.firstItem[o + 1] - this.model.firstItem[o];
        return { occurrence: o, geometry: drawn > 1 ? geometry[item] : -1 };
    }

    private click(picking: Picking, x: number, y: number, event: PointerEvent, twice: boolean): void {
        if (this.measure?.isActive) {
            this.measure.click(x, y);
            return;
        }
        const hit = picking.at(x, y);
        if (this.section?.isPicking && hit) {
            this.section.addFace(hit.point, hit.normal);
            return;
        }
        if (twice) {
            this.picture?.fit(hit ? [this.nodeOf(hit.item)] : []);
            return;
        }
        const kind = hit?.primitive.role === 'faces' ? 'face' : 'edge';
        const detail = hit && hit.number >= 0 ? ({ item: hit.item, kind, number: hit.number } as const) : null;
        this.state.select(hit ? this.nodeOf(hit.item) : null, event.ctrlKey || event.metaKey, detail);
    }

    private fit(): void {
        this.picture?.fit(this.state.selection);
    }

    private chooseNote(index: number): void {
        const note = this.model.file.notes[index];
        const { nodes, details } = targetsOf(this.model, note);
        const { occurrence, geometry } = this.model.file.items;
        const item = geometry.indexOf(note.geometry);
        this.state.selection =
            item >= 0 ? [...nodes, { occurrence: occurrence[item], geometry: note.geometry }] : nodes;
        this.state.detail = null;
        this.state.tell('selection', 'detail');
        if (this.drawing) {
            this.drawing.marked = index;
            this.drawing.update();
        }
        this.edges?.show(details, [0.93, 0.38, 0.07, 0.6]);
        if (this.picture && !this.picture.isInSight(this.state.selection)) {
            this.fit();
        }
    }

    private showDetail(): void {
        const { detail, itemShown } = this.state;
        this.edges?.show(detail && itemShown[detail.item] ? [detail] : [], [
            ...(this.theme?.accent ?? [0, 0.4, 1]),
            0.75,
        ] as [number, number, number, number]);
    }

    // The path of what is under the pointer, and which face or edge of it that is.
    private tellHovered(hit: Hit | null = null): void {
        const node = this.state.hovered;
        const { file } = this.model;
        if (!node) {
            const triangles = `${count(file.counts.drawnTriangles ?? 0)} triangles`;
            const occurrences = `${count(this.model.occurrenceCount)} occurrences`;
            this.status.textContent = `${triangles} \u00b7 ${occurrences} \u00b7 ${shownInLine(file.unit.name)}`;
            return;
        }
        const line = this.model.ancestors(node.occurrence).map((occurrence): Node => ({ occurrence, geometry: -1 }));
        const names = [...line, ...(node.geometry >= 0 || line.length === 0 ? [node] : [])];
        const path = names.map((one) => shownInLine(this.model.name(one), 60)).join(' \u203a ');
        this.status.textContent = hit && hit.number >= 0 ? `${path} \u00b7 ${this.nameOfFace(hit)}` : path;
    }

    private nameOfFace({ item, primitive, number }: Hit): string {
        const isFace = primitive.role === 'faces';
        const { faces, edges } = this.model.geometryOfItem(item);
        const list = isFace ? faces : edges;
        const id = list?.persistentIds?.[number] || list?.dataIds?.[number];
        return `${isFace ? 'face' : 'edge'} ${number}${id ? `, ${shownInLine(id, 60)}` : ''}`;
    }

    private dress(theme: Theme): void {
        this.theme = theme;
        this.picture?.setColors(theme.background, theme.edge, theme.accent);
        if (this.drawing) {
            this.drawing.ink = theme.ink;
            this.drawing.accent = theme.link;
            this.drawing.update();
        }
    }

    private link(): void {
        const text = `#${this.links.text()}`;
        history.replaceState(null, '', text);
        navigator.clipboard?.writeText(location.href).then(
            () => this.messages.say('The link is in the address, and copied.'),
            () => this.messages.say('The link is in the address.'),
        );
    }

    private async save(picture: Picture): Promise<void> {
        const image = await picture.image();
        if (!image) {
            this.messages.say('The browser made no picture.');
            return;
        }
        const address = URL.createObjectURL(image);
        const name = shownInLine(this.model.file.title, 60).replace(/[^\p{L}\p{N}._-]+/gu, '_') || 'picture';
        element('a', { attributes: { href: address, download: `${name}.png` } }).click();
        setTimeout(() => URL.revokeObjectURL(address), 10000);
    }

    private key(event: KeyboardEvent): void {
        const target = event.target as HTMLElement;
        const isText = target.matches(
            'input:not([type=checkbox]):not([type=radio]):not([type=range]), textarea, select',
        );
        if (event.altKey || event.ctrlKey || event.metaKey || isText || this.help.box.open) {
            return;
        }
        const action = this.keys.get(event.key.length === 1 ? event.key.toLowerCase() : event.key);
        if (action) {
            event.preventDefault();
            action();
        }
    }
}
