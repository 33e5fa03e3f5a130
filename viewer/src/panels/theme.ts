// Light and dark.
import type { Triple } from '../data/format';

export interface Theme {
    background: string;
    edge: Triple;
    accent: Triple;
    ink: string;
    link: string;
}

const kThemes: Record<'light' | 'dark', Theme> = {
    light: {
        background: '#f4f5f7',
        edge: [0.09, 0.1, 0.13],
        accent: [0.12, 0.44, 0.92],
        ink: '#1b1e24',
        link: '#1a5fd0',
    },
    dark: { background: '#1b1d22', edge: [0.02, 0.02, 0.03], accent: [0.32, 0.6, 1], ink: '#eceef2', link: '#7fb2ff' },
};

export class Themes {
    private isDark = matchMedia('(prefers-color-scheme: dark)').matches;

    constructor(private readonly changed: (theme: Theme) => void) {
        this.apply();
    }

    private apply(): void {
        document.documentElement.dataset.theme = this.isDark ? 'dark' : 'light';
        this.changed(this.theme);
    }

    get theme(): Theme {
        return kThemes[this.isDark ? 'dark' : 'light'];
    }

    toggle(): void {
        this.isDark = !this.isDark;
        this.apply();
    }
}
