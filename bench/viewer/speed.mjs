// How fast the page of kvr view is: node bench/viewer/speed.mjs SCENE|MODEL|PAGE.html...
// Prints the size of the page, the time to the first picture, pictures a second while the scene turns at 1280x800,
// draw calls, and the memory of the page's program.
import { statSync } from 'node:fs';
import { basename } from 'node:path';
import { Page, finish, view } from '../../tests/viewer/support/browser.mjs';

const kTurns = 40;
const line = (...cells) => console.log(cells.map((cell, i) => String(cell).padEnd(i === 0 ? 28 : 12)).join(' '));

line('', 'page kB', 'triangles', 'first s', 'a second', 'calls', 'pairs', 'memory MB');
for (const file of process.argv.slice(2)) {
    const path = file.endsWith('.html') ? file : view(file);
    const page = await Page.open(path, { width: 1280, height: 800 });
    const first = await page.run(() => window.kvrView.firstPicture);
    // Only what is waited for counts as drawn.
    const each = await page.run((turns) => {
        const times = [];
        for (let i = 0; i < turns + 5; ++i) {
            document.querySelector('main').dispatchEvent(new KeyboardEvent('keydown', { key: 'ArrowRight' }));
            times.push(window.kvrView.timed());
        }
        return times.slice(5).sort((a, b) => a - b)[Math.floor(turns / 2)];
    }, kTurns);
    const { calls, pairs, triangles } = await page.totals();
    const { JSHeapUsedSize } = await page.page.metrics();
    line(
        basename(file),
        Math.round(statSync(path).size / 1e3),
        triangles,
        (first / 1e3).toFixed(2),
        (1e3 / each).toFixed(1),
        calls,
        pairs,
        Math.round(JSHeapUsedSize / 1e6),
    );
    await page.close();
}
await finish();
