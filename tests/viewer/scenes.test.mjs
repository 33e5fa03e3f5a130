// The bundled scenes and models, as kvr view writes them: no errors, all triangles, and the picture that is kept.
// KVR_KEEP_PICTURES=1 keeps new pictures. KVR_VIEW_MODELS names further scenes and models, with colons between them.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, readdirSync, statSync, writeFileSync } from 'node:fs';
import { basename, dirname, join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { kBackground } from './support/boxes.mjs';
import { PNG, Page, finish, folder, kExamples, kTool, near, pixelmatch, view } from './support/browser.mjs';

after(finish);

const pictures = join(dirname(fileURLToPath(import.meta.url)), 'pictures');
const kScenes = ['as1-oc-214/as1-oc-214.xml', 'complete/complete.xml', 'lcr_follower_arm/lcr_follower_arm.xml'];
const kSize = { width: 900, height: 420 };
/// Of all pixels so many may differ: letters and lines fall differently with other fonts and drivers.
const kMostDifferent = 0.02;

async function compare(page, name) {
    await page.run(() => document.querySelectorAll('.view-cube, .cards').forEach((one) => (one.hidden = true)));
    const { x, y, width, height } = await (await page.page.$('canvas')).boundingBox();
    const bytes = Buffer.from(await page.page.screenshot({ type: 'png', clip: { x, y, width, height } }));
    const kept = join(pictures, `${name}.png`);
    if (process.env.KVR_KEEP_PICTURES) {
        mkdirSync(pictures, { recursive: true });
        writeFileSync(kept, bytes);
    }
    assert.ok(existsSync(kept), `there is no ${kept}`);
    const [a, b] = [PNG.sync.read(readFileSync(kept)), PNG.sync.read(bytes)];
    assert.deepEqual([b.width, b.height], [a.width, a.height]);
    const different = pixelmatch(a.data, b.data, null, a.width, a.height, { threshold: 0.2 });
    assert.ok(different <= kMostDifferent * a.width * a.height, `${different} pixels of ${name} differ`);
}

function certified(model) {
    try {
        return JSON.parse(
            execFileSync(kTool, ['certify', '--quiet', '--json', model], { stdio: ['ignore', 'pipe', 'ignore'] }),
        );
    } catch (error) {
        // A status other than 0 says that something differs; the counts are there all the same.
        return JSON.parse(error.stdout);
    }
}

// What the certificate of a model counts; of a scene, which has none, how many triangles its STL file has.
function trianglesOf(file) {
    if (!file.endsWith('.xml')) {
        return Number(certified(file).Rows.find((one) => one.Name === 'triangles').scene);
    }
    const target = join(folder, 'count.stl');
    try {
        execFileSync(kTool, ['export', '--quiet', '--force', file, target], { stdio: ['ignore', 'ignore', 'pipe'] });
    } catch (error) {
        // A scene that shows nothing makes no such file.
        assert.match(String(error.stderr), /nothing|no triangles/);
        return 0;
    }
    return (statSync(target).size - 84) / 50;
}

for (const name of ['as1-oc-214.stp', 'iso14405_fig17a.stp', 'nist_ctc_03_ap203.stp', 'nist_plate_creo_lbls.stp']) {
    test(`${name} is drawn whole: the triangles are those of the certificate`, async () => {
        const model = join(kExamples, 'models', name);
        const page = await Page.open(view(model), kSize);
        const { triangles, calls, pairs } = await page.totals();
        assert.equal(triangles, trianglesOf(model));
        assert.ok(calls <= 3 * pairs + 2 * 20);
        await compare(page, name);
        await page.close();
    });
}

for (const name of kScenes) {
    test(`${name} looks as it is kept`, async () => {
        const page = await Page.open(view(join(kExamples, name)), kSize);
        const { triangles, calls, pairs } = await page.totals();
        assert.equal(triangles, trianglesOf(join(kExamples, name)));
        assert.ok(calls <= 3 * pairs, `${calls} calls for ${pairs} pairs`);
        if (await page.page.$('.all-hidden:not([hidden])')) {
            await page.click('button', 'Show everything');
            await page.press('Escape', 'f');
        }
        await compare(page, name.split('/')[1]);
        await page.close();
    });
}

test('no scene that is bundled is left out', () => {
    const found = readdirSync(kExamples, { recursive: true }).filter((name) => /^([^/]+)\/\1\.xml$/.test(name));
    assert.deepEqual(found.sort(), kScenes);
});

for (const file of (process.env.KVR_VIEW_MODELS ?? '').split(':').filter(Boolean)) {
    test(`${basename(file)} opens, and is drawn whole`, async () => {
        const page = await Page.open(view(file), kSize);
        const { triangles } = await page.totals();
        console.log(`${basename(file)}: ${triangles} triangles`);
        assert.equal(triangles, trianglesOf(file));
        await page.close();
    });
}

test('parts of the assembly stand where they are, in their colours, and can be hidden', async () => {
    const page = await Page.open(view(join(kExamples, 'models', 'as1-oc-214.stp')), kSize);
    await page.press('5');
    // The upper side of the plate, beside the brackets.
    const plate = await page.color([90, 5, 20]);
    assert.ok(plate[0] > 150 && plate[1] > 200 && plate[2] < 40, `${plate}`);
    await page.press('/');
    await page.page.keyboard.type('plate_1');
    await page.press('Enter', 'ArrowDown', 'Space', 'Escape');
    assert.ok(near(await page.color([90, 5, 20]), kBackground, 2), `${await page.color([90, 5, 20])}`);
    await page.close();
});

test('a view of the scene moves the camera to its numbers, and cuts', async () => {
    const page = await Page.open(view(join(kExamples, 'complete', 'complete.xml')), kSize);
    assert.match(await page.text('.all-hidden'), /Everything is hidden/);
    await page.tab('Views');
    await page.page.click('.page:not([hidden]) .entry');
    await page.settle();
    const camera = await page.camera();
    assert.ok(near(camera.eye, [0, -200, 90], 1e-6), `${camera.eye}`);
    assert.ok(near(camera.direction, [0, 1, 0], 1e-9));
    assert.equal(camera.perspective, true);
    await page.press('c');
    assert.equal(await page.run(() => document.querySelectorAll('.cut').length), 1);
    await page.close();
});

test('what is known of a picked face is in the panel', async () => {
    const page = await Page.open(view(join(kExamples, 'models', 'as1-oc-214.stp')), kSize);
    await page.press('5');
    await page.clickAt([90, 5, 20]);
    const panel = await page.text('.panel');
    for (const text of ['plate', 'Face', 'plane', 'Volume', 'Area', 'Style']) {
        assert.ok(panel.includes(text), `${text} in ${panel}`);
    }
    await page.press('m');
    const modes = await page.page.$$('.segments button');
    await modes[2].click();
    await page.clickAt([90, 5, 20]);
    assert.match(await page.text('.results'), /Face.*plane.*Area.*mm\u00b2/);
    await page.close();
});
