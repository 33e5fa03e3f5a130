// The slider that moves parts apart.
import { element, slider } from '../panels/dom';
import type { Placing } from '../scene/placing';
import type { SceneState } from '../scene/state';

export class Explode {
    readonly box: HTMLElement;
    private readonly slider: HTMLInputElement;

    constructor(
        private readonly state: SceneState,
        private readonly placing: Placing,
    ) {
        this.slider = slider('Explode', { low: 0, high: 1, step: 0.01, value: 0 }, (value) => this.set(value));
        this.box = element('div', { class: 'card-body' }, this.slider);
    }

    set(value: number): void {
        this.slider.valueAsNumber = value;
        this.state.explosion = Math.min(1, Math.max(0, value));
        this.placing.update();
        this.state.tell('placement');
    }
}
