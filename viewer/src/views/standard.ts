// The usual directions to look from.
import type { Camera } from '../scene/camera';
import type { Triple } from '../data/format';

export interface StandardView {
    name: string;
    key: string;
    /// Degrees round to the right of the front, and above it.
    round: number;
    above: number;
}

export const kStandardViews: StandardView[] = [
    { name: 'Front', key: '1', round: 0, above: 0 },
    { name: 'Back', key: '2', round: 180, above: 0 },
    { name: 'Left', key: '3', round: -90, above: 0 },
    { name: 'Right', key: '4', round: 90, above: 0 },
    { name: 'Top', key: '5', round: 0, above: 90 },
    { name: 'Bottom', key: '6', round: 0, above: -90 },
    { name: 'Corner', key: '7', round: -35, above: 25 },
];

export const facing = (camera: Camera, view: StandardView): { direction: Triple; up: Triple } =>
    camera.fromAround(view.round, view.above);
