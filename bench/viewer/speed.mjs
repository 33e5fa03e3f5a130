// How fast the page of kvr view is: node bench/viewer/speed.mjs [--rounds N] SCENE|MODEL|PAGE.html|made:MESHESxTRIANGLESxPARTS...
// Turns each scene with the mouse for some seconds at 1280x800, as a person would, one after the other in each round,
// and prints medians: the size of the page, the triangles of the scene, the time to the first picture, the pictures a
// second while it is turned, what the browser needs of the processor for one of them (Linux alone), the triangles that
// are drawn while it moves, draw calls, pairs of mesh and material, and the memory of the page's program.
import { readFileSync, readdirSync, statSync } from 'node:fs';
import { basename, join } from 'node:path';
import { Page, finish, folder, kTemplate, processId, view } from '../../tests/viewer/support/browser.mjs';
import { Glb, SceneData, sheetMesh } from '../../tests/viewer/support/scene.mjs';

const kSeconds = 4;
const kRest = 700;

/// Parts of so many wavy sheets, side by side.
function made(name) {
    const [meshes, triangles, parts] = name.slice('made:'.length).split('x').map(Number);
    const glb = new Glb();
    const scene = new SceneData(glb, name);
    const styles = [0, 1, 2, 3].map((i) => scene.style([0.3 + i * 0.15, 0.5, 0.9 - i * 0.2]));
    const components = Array.from({ length: meshes }, (_, i) =>
        scene.part({ id: `m${i}`, label: `Part ${i}`, mesh: glb.mesh(sheetMesh(10, triangles, i)) }),
    );
    const side = Math.ceil(Math.sqrt(parts));
    for (let i = 0; i < parts; ++i) {
        const at = [12 * (i % side), 12 * Math.floor(i / side), 0];
        scene.place(components[i % meshes], { id: `o${i}`, label: `Part ${i}`, at, style: styles[i % 4] });
    }
    const page = join(folder, `${name.replaceAll(/\W/g, '_')}.html`);
    scene.write(kTemplate, page);
    return page;
}

// Milliseconds of the processor that the browser has used.
function used() {
    const processes = new Map();
    for (const id of readdirSync('/proc').filter((name) => /^\d+$/.test(name))) {
        try {
            const text = readFileSync(`/proc/${id}/stat`, 'utf8');
            const [, parent, ...more] = text.slice(text.lastIndexOf(')') + 2).split(' ');
            processes.set(Number(id), { parent: Number(parent), time: 10 * (Number(more[9]) + Number(more[10])) });
        } catch {
            // It has ended.
        }
    }
    const isOurs = (id) => id === processId || (processes.has(id) && isOurs(processes.get(id).parent));
    return [...processes].reduce((sum, [id, { time }]) => sum + (isOurs(id) ? time : 0), 0);
}

const pause = (milliseconds) => new Promise((done) => setTimeout(done, milliseconds));

async function measure(path) {
    const page = await Page.open(path, { width: 1280, height: 800, motion: 'no-preference' });
    const { mouse } = page.page;
    const { calls, pairs, triangles } = await page.totals();
    const first = await page.run(() => window.kvrView.firstPicture);
    await pause(kRest);
    const { x, y, width, height } = await (await page.page.$('canvas')).boundingBox();
    const [left, top] = [x + width / 2, y + height / 2];
    await mouse.move(left, top);
    await mouse.down();
    // The page finds its pace first.
    const state = () => page.run(() => [window.kvrView.frames(), window.kvrView.totals().trianglesDrawn]);
    let [begin, before, processor] = [0, 0, 0];
    const start = performance.now();
    for (let t = 0; t < kSeconds + 1; t = (performance.now() - start) / 1e3) {
        if (begin === 0 && t > 1) {
            [[before], begin, processor] = [await state(), performance.now(), used()];
        }
        await mouse.move(left + 150 * Math.sin(2 * t), top + 60 * Math.sin(1.3 * t));
    }
    const [after, moving] = await state();
    const frames = after - before;
    const took = performance.now() - begin;
    processor = used() - processor;
    await mouse.up();
    const { JSHeapUsedSize } = await page.page.metrics();
    await page.close();
    return {
        'page kB': statSync(path).size / 1e3,
        triangles,
        'first s': first / 1e3,
        'a second': (1e3 * frames) / took,
        'CPU ms': processor / frames,
        moving,
        calls,
        pairs,
        'memory MB': JSHeapUsedSize / 1e6,
    };
}

const words = process.argv.slice(2);
const rounds = words[0] === '--rounds' ? Number(words.splice(0, 2)[1]) : 3;
const pages = words.map((word) => (word.startsWith('made:') ? made(word) : word.endsWith('.html') ? word : view(word)));
const found = words.map(() => []);
for (let round = 0; round < rounds; ++round) {
    for (const [i, path] of pages.entries()) {
        found[i].push(await measure(path));
    }
}
const line = (...cells) => console.log(cells.map((cell, i) => String(cell).padEnd(i === 0 ? 34 : 10)).join(' '));
const kDigits = { 'first s': 2, 'a second': 1, 'CPU ms': 1 };
line('', ...Object.keys(found[0]?.[0] ?? {}));
words.forEach((word, i) => {
    const median = (name) => found[i].map((one) => one[name]).sort((a, b) => a - b)[Math.floor(rounds / 2)];
    line(basename(word), ...Object.keys(found[i][0]).map((name) => median(name).toFixed(kDigits[name] ?? 0)));
});
await finish();
