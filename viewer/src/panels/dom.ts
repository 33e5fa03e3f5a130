// Elements of the page. Text goes in as text nodes, whatever it holds.

type Child = Node | string | null | undefined | false;

interface Settings {
    class?: string;
    text?: string;
    title?: string;
    /// Attributes, `role` and `aria-...` among them. A boolean is set or left out.
    attributes?: Record<string, string | number | boolean>;
    on?: { [name in keyof HTMLElementEventMap]?: (event: HTMLElementEventMap[name]) => void };
}

export function element<Tag extends keyof HTMLElementTagNameMap>(
    tag: Tag,
    settings: Settings = {},
    ...children: Child[]
): HTMLElementTagNameMap[Tag] {
    const made = document.createElement(tag);
    if (settings.class) {
        made.className = settings.class;
    }
    if (settings.text !== undefined) {
        made.textContent = settings.text;
    }
    if (settings.title) {
        made.title = settings.title;
    }
    for (const [name, value] of Object.entries(settings.attributes ?? {})) {
        if (value !== false) {
            made.setAttribute(name, value === true ? '' : String(value));
        }
    }
    for (const [name, listener] of Object.entries(settings.on ?? {})) {
        made.addEventListener(name, listener as EventListener);
    }
    made.append(
        ...children.filter((child): child is Node | string => child !== null && child !== undefined && child !== false),
    );
    return made;
}

/// A button with an icon, whose name is told to those who do not see it.
export function iconButton(name: string, icon: SVGElement, press: () => void, key = ''): HTMLButtonElement {
    return element(
        'button',
        {
            class: 'icon-button',
            title: key ? `${name} (${key})` : name,
            attributes: { type: 'button', 'aria-label': name, ...(key ? { 'aria-keyshortcuts': key } : {}) },
            on: { click: press },
        },
        icon,
    );
}

export function button(name: string, press: () => void, className = 'button'): HTMLButtonElement {
    return element('button', { class: className, text: name, attributes: { type: 'button' }, on: { click: press } });
}

export function setPressed(of: HTMLElement, pressed: boolean): void {
    of.setAttribute('aria-pressed', String(pressed));
}

/// A labelled switch.
export function checkbox(name: string, checked: boolean, change: (checked: boolean) => void): HTMLLabelElement {
    const box = element('input', { attributes: { type: 'checkbox' } });
    box.checked = checked;
    box.addEventListener('change', () => change(box.checked));
    return element('label', { class: 'check' }, box, element('span', { text: name }));
}

/// One of several labelled switches, of which one is on: those of a group.
export function radio(name: string, group: string, checked: boolean, choose: () => void): HTMLLabelElement {
    const dot = element('input', { attributes: { type: 'radio', name: group } });
    dot.checked = checked;
    dot.addEventListener('change', choose);
    return element('label', { class: 'check' }, dot, element('span', { text: name }));
}

export function slider(
    name: string,
    range: { low: number; high: number; step: number | 'any'; value: number },
    change: (value: number) => void,
): HTMLInputElement {
    const made = element('input', {
        attributes: { type: 'range', 'aria-label': name, min: range.low, max: range.high, step: range.step },
    });
    made.valueAsNumber = range.value;
    made.addEventListener('input', () => change(made.valueAsNumber));
    return made;
}
