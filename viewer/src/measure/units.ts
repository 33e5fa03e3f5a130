// Lengths in the unit that is asked for.
import type { Unit } from '../data/format';
import { figure } from '../data/text';

export const kUnits: Unit[] = [
    { name: 'millimeter', symbol: 'mm', metres: 1e-3 },
    { name: 'centimeter', symbol: 'cm', metres: 1e-2 },
    { name: 'meter', symbol: 'm', metres: 1 },
    { name: 'inch', symbol: 'in', metres: 0.0254 },
    { name: 'foot', symbol: 'ft', metres: 0.3048 },
];

export class Units {
    shown: Unit;
    /// Called when another unit was chosen.
    changed: () => void = () => {};

    constructor(readonly scene: Unit) {
        this.shown = scene;
    }

    /// All that can be chosen, the scene's first.
    choices(): Unit[] {
        const others = kUnits.filter(({ metres }) => Math.abs(metres / this.scene.metres - 1) > 1e-9);
        return [this.scene, ...others];
    }

    choose(unit: Unit): void {
        this.shown = unit;
        this.changed();
    }

    /// A length in the scene's unit, to be read.
    length(value: number): string {
        return `${figure((value * this.scene.metres) / this.shown.metres)} ${this.shown.symbol}`;
    }

    /// An area in the square of the scene's unit.
    area(value: number): string {
        return `${figure(value * (this.scene.metres / this.shown.metres) ** 2)} ${this.shown.symbol}\u00b2`;
    }

    volume(value: number): string {
        return `${figure(value * (this.scene.metres / this.shown.metres) ** 3)} ${this.shown.symbol}\u00b3`;
    }
}

export const degrees = (radians: number): string => `${figure((radians * 180) / Math.PI, 5)}\u00b0`;
