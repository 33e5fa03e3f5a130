// A scene of coloured boxes: what stands where is plain to see.
import { join } from 'node:path';
import { folder, kTemplate } from './browser.mjs';
import { Glb, SceneData, boxMesh } from './scene.mjs';

export const kRed = [230, 51, 38];
export const kGreen = [51, 179, 77];
export const kBlue = [51, 102, 230];
export const kGrey = [178, 178, 178];
export const kBackground = [244, 245, 247];
const fractions = (color) => color.map((part) => part / 255);

/// A plate with boxes of 10 on it: red at 5, half transparent blue at 25, grey at 45.
export function boxes(change = () => {}, name = 'boxes') {
    const glb = new Glb();
    const scene = new SceneData(glb, 'Boxes');
    const styles = [scene.style(fractions(kRed)), scene.style(fractions(kBlue), 0.5), scene.style(fractions(kGreen))];
    const box = scene.part({
        id: 'box',
        label: 'Box',
        mesh: glb.mesh(boxMesh([10, 10, 10])),
        properties: [
            ['Material', 'Steel'],
            ['Count', 3],
        ],
        geometry: {
            area: 600,
            volume: 1000,
            mass: 0.00785,
            triangles: 12,
            faces: { persistentIds: ['f0', 'f1', 'f2', 'f3', 'f4', 'f5'] },
        },
    });
    const plate = scene.part({ id: 'plate', label: 'Plate', mesh: glb.mesh(boxMesh([60, 20, 4])) });
    scene.place(plate, { id: 'p', label: 'Plate:1', at: [0, 0, -4], style: styles[2] });
    scene.place(box, { id: 'red', label: 'Red box', at: [5, 5, 0], style: styles[0] });
    scene.place(box, { id: 'blue', label: 'Blue box', at: [25, 5, 0], style: styles[1] });
    scene.place(box, { id: 'grey', label: 'Grey box', at: [45, 5, 0] });
    scene.file.counts = { triangles: 24, drawnTriangles: 48 };
    change(scene.file, scene, glb);
    const page = join(folder, `${name}.html`);
    scene.write(kTemplate, page);
    return page;
}
