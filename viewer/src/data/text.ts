// Texts of the scene, whatever they hold, made fit to be shown. They get into the page as text nodes alone.

/// Longer texts are cut where they are shown.
export const kMostInRow = 200;
export const kMostInPanel = 2000;

// What changes the direction of text, or shows as nothing: it is named instead.
const kHidden =
    /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u061c\u200b\u200e\u200f\u2028\u2029\u202a-\u202e\u2060-\u206f\ufeff]/g;

const named = (character: string): string =>
    `\u2039U+${character.charCodeAt(0).toString(16).toUpperCase().padStart(4, '0')}\u203a`;

/// The beginning of a text; marks that would turn text around are shown by their number.
export function shown(text: string, most = kMostInRow): string {
    let cut = text;
    if (text.length > most) {
        // Never half of a character.
        const last = text.charCodeAt(most - 1);
        cut = text.slice(0, last >= 0xd800 && last < 0xdc00 ? most - 1 : most);
    }
    const safe = cut.replace(kHidden, named);
    return text.length > most ? `${safe}\u2026 (${count(text.length)} characters)` : safe;
}

/// The same in one line.
export function shownInLine(text: string, most = kMostInRow): string {
    return shown(text.length > most * 4 ? text : text.replace(/[\t\n]+/g, ' '), most).replace(/[\t\n]+/g, ' ');
}

export function count(value: number): string {
    return value.toLocaleString('en-US');
}

/// A number with as many digits as tell something.
export function figure(value: number, digits = 6): string {
    if (!Number.isFinite(value)) {
        return '-';
    }
    const size = Math.abs(value);
    if (size !== 0 && (size >= 1e9 || size < 1e-4)) {
        return value.toExponential(Math.min(digits - 1, 4));
    }
    const text = value.toPrecision(digits);
    return text.includes('.') ? text.replace(/\.?0+$/, '') : text;
}
