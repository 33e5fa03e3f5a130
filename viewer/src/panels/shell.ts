// The frame of the page: bar, tabs at the side, picture, cards, line of state.
import { element, iconButton, setPressed } from './dom';
import { icon, type IconName } from './icons';

export class Tabs {
    readonly box = element('aside', { class: 'side', attributes: { 'aria-label': 'Scene' } });
    private readonly list = element('div', { class: 'tabs', attributes: { role: 'tablist', 'aria-label': 'Lists' } });
    private readonly tabs: { tab: HTMLButtonElement; page: HTMLElement }[] = [];

    constructor() {
        this.box.append(this.list);
        this.list.addEventListener('keydown', (event) => {
            const at = this.tabs.findIndex(({ tab }) => tab.getAttribute('aria-selected') === 'true');
            const step = { ArrowRight: 1, ArrowLeft: this.tabs.length - 1 }[event.key];
            if (step !== undefined) {
                this.open((at + step) % this.tabs.length);
                this.tabs[(at + step) % this.tabs.length].tab.focus();
                event.preventDefault();
                event.stopPropagation();
            }
        });
    }

    add(name: string, body: HTMLElement): void {
        const index = this.tabs.length;
        const tab = element('button', {
            class: 'tab',
            text: name,
            attributes: { type: 'button', role: 'tab', id: `tab-${index}`, 'aria-controls': `page-${index}` },
            on: { click: () => this.open(index) },
        });
        const page = element(
            'div',
            { class: 'page', attributes: { role: 'tabpanel', id: `page-${index}`, 'aria-labelledby': `tab-${index}` } },
            body,
        );
        this.tabs.push({ tab, page });
        this.list.append(tab);
        this.box.append(page);
        this.open(0);
    }

    open(index: number): void {
        this.tabs.forEach(({ tab, page }, i) => {
            tab.setAttribute('aria-selected', String(i === index));
            tab.tabIndex = i === index ? 0 : -1;
            page.hidden = i !== index;
        });
    }
}

/// Small windows over the picture, each with a button that opens it.
export class Cards {
    readonly box = element('div', { class: 'cards' });
    private readonly cards = new Map<
        string,
        { card: HTMLElement; button: HTMLElement; changed: (open: boolean) => void }
    >();

    add(
        name: string,
        image: IconName,
        key: string,
        body: HTMLElement,
        changed: (open: boolean) => void = () => {},
    ): HTMLElement {
        const card = element(
            'section',
            { class: 'card', attributes: { 'aria-label': name } },
            element(
                'header',
                { class: 'card-head' },
                element('h2', { text: name }),
                iconButton(`Close ${name.toLowerCase()}`, icon('close'), () => this.open(name, false)),
            ),
            body,
        );
        card.hidden = true;
        card.addEventListener('keydown', (event) => {
            if (event.key === 'Escape') {
                this.open(name, false);
                event.stopPropagation();
            }
        });
        const made = iconButton(name, icon(image), () => this.open(name, card.hidden !== false), key);
        setPressed(made, false);
        this.cards.set(name, { card, button: made, changed });
        this.box.append(card);
        return made;
    }

    isOpen(name: string): boolean {
        return this.cards.get(name)?.card.hidden === false;
    }

    open(name: string, open = true): void {
        const found = this.cards.get(name);
        if (found && found.card.hidden === open) {
            found.card.hidden = !open;
            setPressed(found.button, open);
            found.changed(open);
            open
                ? (found.card.querySelector('.card-body button, .card-body input') as HTMLElement | null)?.focus()
                : found.button.focus();
        }
    }
}

/// A sentence that goes away by itself.
export class Messages {
    readonly box = element('div', { class: 'message', attributes: { role: 'status' } });
    private timer = 0;

    constructor() {
        this.box.hidden = true;
    }

    say(text: string): void {
        this.box.textContent = text;
        this.box.hidden = false;
        clearTimeout(this.timer);
        this.timer = setTimeout(() => (this.box.hidden = true), 2600);
    }
}
