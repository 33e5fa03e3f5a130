// A list of any length, of which only the rows that are seen are elements of the page.
import { element } from '../panels/dom';

const kSpare = 6;
// Browsers cannot scroll further than some millions of pixels.
const kMostHeight = 8_000_000;

export class VirtualList {
    readonly box: HTMLElement;
    private readonly content: HTMLElement;
    private size = 0;
    private pending = false;
    private readonly rows = new Map<number, HTMLElement>();

    constructor(
        private readonly rowHeight: number,
        private readonly make: (index: number) => HTMLElement,
    ) {
        this.content = element('div', { class: 'list-content', attributes: { role: 'presentation' } });
        this.box = element('div', { class: 'list' }, this.content);
        this.box.addEventListener('scroll', () => this.later());
        new ResizeObserver(() => this.later()).observe(this.box);
    }

    private later(): void {
        if (!this.pending) {
            this.pending = true;
            requestAnimationFrame(() => {
                this.pending = false;
                this.draw();
            });
        }
    }

    // In a list that is too long for the browser scrolling goes faster than the mouse.
    private get stretch(): number {
        const whole = this.size * this.rowHeight;
        return whole > kMostHeight ? (whole - this.box.clientHeight) / (kMostHeight - this.box.clientHeight) : 1;
    }

    /// Makes all rows anew.
    setSize(size: number): void {
        this.size = size;
        this.content.style.height = `${Math.min(size * this.rowHeight, kMostHeight)}px`;
        this.refresh();
    }

    refresh(): void {
        this.rows.forEach((row) => row.remove());
        this.rows.clear();
        this.draw();
    }

    row(index: number): HTMLElement | undefined {
        return this.rows.get(index);
    }

    get rowsInView(): number {
        return Math.max(1, Math.floor(this.box.clientHeight / this.rowHeight) - 1);
    }

    private draw(): void {
        const top = this.box.scrollTop * this.stretch;
        const first = Math.max(0, Math.floor(top / this.rowHeight) - kSpare);
        const last = Math.min(this.size, Math.ceil((top + this.box.clientHeight) / this.rowHeight) + kSpare);
        for (const [index, row] of this.rows) {
            if (index < first || index >= last) {
                row.remove();
                this.rows.delete(index);
            }
        }
        const shift = this.box.scrollTop - top;
        for (let i = first; i < last; ++i) {
            let row = this.rows.get(i);
            if (!row) {
                row = this.make(i);
                this.rows.set(i, row);
                this.content.append(row);
            }
            row.style.transform = `translateY(${i * this.rowHeight + shift}px)`;
        }
    }

    scrollTo(index: number): void {
        const height = this.box.clientHeight;
        const top = index * this.rowHeight;
        const seen = this.box.scrollTop * this.stretch;
        if (top < seen) {
            this.box.scrollTop = top / this.stretch;
        } else if (top + this.rowHeight > seen + height) {
            this.box.scrollTop = (top + this.rowHeight - height) / this.stretch;
        }
        this.draw();
    }
}
