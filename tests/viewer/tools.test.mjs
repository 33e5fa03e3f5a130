// Sections, explosion, measures, saved views, links, and the file of the picture.
import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { boxes, kBackground, kBlue, kGreen, kGrey, kRed } from './support/boxes.mjs';
import { PNG, Page, assertColor, finish, folder, near } from './support/browser.mjs';

after(finish);

// How many pixels between two points, the lower left and the upper right one, are those of a hatched cut surface.
async function hatched(page, color, from, to) {
    const image = await page.screenshot();
    const [[left, bottom], [right, top]] = [await page.place(from), await page.place(to)].map((place) =>
        place.map(Math.round),
    );
    const hatch = color.map((part) => part * 0.62);
    let count = 0;
    for (let y = top + 3; y < bottom - 3; ++y) {
        for (let x = left + 3; x < right - 3; ++x) {
            const at = 4 * (y * image.width + x);
            count += near([...image.data.subarray(at, at + 3)], hatch, 3) ? 1 : 0;
        }
    }
    return count;
}

test('a section shows the inside, filled, and can be moved, turned and taken away', async () => {
    const page = await Page.open(boxes());
    await page.press('1', 'c');
    await page.click('button', 'Cut across Y');
    // The plane is at y = 10: what is nearer is gone.
    assert.ok((await hatched(page, kRed, [5, 10, 0], [15, 10, 10])) > 100);
    assert.ok((await hatched(page, kGrey, [45, 10, 0], [55, 10, 10])) > 100);
    assert.equal(await hatched(page, kBlue, [25, 10, 0], [35, 10, 10]), 0, 'what is transparent is not filled');
    const slider = await page.find('slider', 'Place of plane Y');
    await slider.focus();
    await page.press('Home');
    assertColor(await page.color([10, 20, 5]), kBackground);
    await page.press('End');
    await page.click('button', 'Flip plane Y');
    assertColor(await page.color([10, 5, 5]), kBackground);
    await page.click('button', 'Remove plane Y');
    assertColor(await page.color([10, 5, 5]), kRed);
    await page.close();
});

test('inside of a hollow body there is nothing', async () => {
    const page = await Page.open(
        boxes((file, scene, glb) => {
            // A box in a box, both closed: what lies between is filled.
            const mesh = glb.json.meshes[0].primitives[0];
            const outer = glb.chunks[glb.json.accessors[mesh.attributes.POSITION].bufferView];
            const positions = [...new Float32Array(outer.buffer, outer.byteOffset, outer.length / 4)];
            const inner = positions.map((part) => 2.5 + part / 2);
            const index = glb.chunks[glb.json.accessors[mesh.indices].bufferView];
            const triangles = [...new Uint32Array(index.buffer, index.byteOffset, index.length / 4)];
            const hollow = glb.mesh({
                positions: [...positions, ...inner],
                triangles: [...triangles, ...triangles.map((i) => i + 24)],
                faceStarts: [0],
            });
            const part = scene.part({ id: 'hollow', label: 'Hollow', mesh: hollow });
            scene.place(part, { id: 'h', label: 'Hollow', at: [0, 0, 40], style: 0 });
        }, 'hollow'),
    );
    await page.press('1', 'c');
    await page.click('button', 'Cut across Y');
    await page.run((value) => {
        const range = document.querySelector('.cut input');
        range.valueAsNumber = value;
        range.dispatchEvent(new Event('input'));
    }, -5);
    await page.settle();
    assert.ok((await hatched(page, kRed, [0, 5, 40], [2.5, 5, 50])) > 20, 'the wall is filled');
    assert.equal(await hatched(page, kRed, [2.5, 5, 42.5], [7.5, 5, 47.5]), 0, 'what it encloses is empty');
    await page.close();
});

test('a section by a face', async () => {
    const page = await Page.open(boxes());
    await page.press('5', 'c');
    await page.click('button', 'By a face');
    await page.clickAt([30, 2, 0]);
    // The plate is cut just below its upper side, and filled.
    assert.ok((await hatched(page, kGreen, [1, 1, 0], [59, 19, 0])) > 1000);
    await page.press('1');
    assertColor(await page.color([10, 5, 5]), kBackground);
    assertColor(await page.color([30, 0, -2]), kGreen);
    await page.click('button', 'Remove all section planes');
    assertColor(await page.color([10, 5, 5]), kRed);
    await page.close();
});

test('the explode slider moves parts apart', async () => {
    const page = await Page.open(boxes());
    await page.press('1', 'x');
    await (await page.find('slider', 'Explode')).focus();
    await page.press('End', 'f');
    assertColor(await page.color([10, 5, 5]), kBackground);
    await page.press('l');
    const hash = await page.run(() => location.hash);
    const again = await Page.open(boxes(), { hash });
    assertColor(await again.color([10, 5, 5]), kBackground);
    await again.close();
    await page.page.bringToFront();
    await (await page.find('slider', 'Explode')).focus();
    await page.press('Home');
    assertColor(await page.color([10, 5, 5]), kRed);
    await page.close();
});

const result = (page, name) =>
    page.run(
        (wanted) =>
            [...document.querySelectorAll('.results dt')]
                .filter((one) => one.textContent === wanted)
                .map((one) => one.nextSibling.textContent),
        name,
    );

test('measuring points, edges and faces, in other units too', async () => {
    const page = await Page.open(boxes());
    await page.press('1', 'm');
    await page.clickAt([5.2, 5, 9.8]);
    await page.clickAt([54.8, 5, 9.8]);
    assert.deepEqual(await result(page, 'Distance'), ['50 mm']);
    assert.deepEqual(await result(page, 'Along X'), ['50 mm']);
    assert.equal(await page.text('.measure-label'), '50 mm');
    await (await page.find('combobox', 'Unit of measures')).select('3');
    assert.deepEqual(await result(page, 'Distance'), ['1.9685 in']);
    await (await page.find('combobox', 'Unit of measures')).select('0');
    await page.click('button', 'Edges');
    await page.close();
});

test('edges and faces have lengths, areas, angles', async () => {
    const page = await Page.open(boxes());
    await page.press('1', 'm');
    const modes = await page.page.$$('.segments button');
    await modes[1].click();
    await page.clickAt([10, 5, 9.9]);
    assert.deepEqual(await result(page, 'Length'), ['10 mm']);
    await page.clickAt([45.1, 5, 5]);
    assert.deepEqual(await result(page, 'Angle'), ['90\u00b0']);
    await modes[2].click();
    await page.clickAt([10, 5, 5]);
    await page.clickAt([30, 0, -2]);
    assert.deepEqual(await result(page, 'Area'), ['100 mm\u00b2', '240 mm\u00b2']);
    assert.deepEqual(await result(page, 'Distance'), ['5 mm']);
    assert.deepEqual(await result(page, 'Angle'), ['0\u00b0']);
    await page.close();
});

test('a round edge has its radius, and of two the distance of their centres', async () => {
    const known = { curve: Array(12).fill('line'), radius: Array(12).fill(null), center: Array(12).fill(null) };
    Object.assign(known.curve, { 4: 'circle', 5: 'circle' });
    Object.assign(known.radius, { 4: 12.5, 5: 7 });
    Object.assign(known.center, { 4: [0, 0, 0], 5: [0, 0, 40] });
    const page = await Page.open(boxes((file) => (file.geometry[0].edges = known), 'round'));
    await page.press('1', 'm');
    const modes = await page.page.$$('.segments button');
    await modes[1].click();
    // The upper front edge, and the one on its right.
    await page.clickAt([10, 5, 9.9]);
    assert.deepEqual(await result(page, 'Edge'), ['circle']);
    assert.deepEqual(await result(page, 'Radius'), ['12.5 mm']);
    await page.press('5');
    await page.clickAt([14.7, 12, 10]);
    await page.press('1');
    assert.deepEqual(await result(page, 'Radius'), ['12.5 mm', '7 mm']);
    assert.deepEqual(await result(page, 'Between centres'), ['40 mm']);
    await page.close();
});

test('faces at an angle, and what the panel knows of an edge', async () => {
    const page = await Page.open(boxes());
    await page.press('7', 'm');
    const modes = await page.page.$$('.segments button');
    await modes[2].click();
    await page.clickAt([10, 10, 10]);
    await page.clickAt([10, 5, 5]);
    assert.deepEqual(await result(page, 'Angle'), ['90\u00b0']);
    await page.click('button', 'Clear');
    assert.deepEqual(await result(page, 'Angle'), []);
    await page.close();
});

const withView = () =>
    boxes((file, scene) => {
        file.cameras.push({
            id: 'cam',
            label: 'Camera',
            type: 'perspective',
            position: [30, -100, 40],
            direction: [0, 1, 0],
            up: [0, 0, 1],
            angle: 0.7,
            distance: 105,
            sections: [{ origin: [0, 0, 8], normal: [0, 0, 1] }],
        });
        file.cameras.push({
            id: 'flat',
            label: 'Flat',
            type: 'parallel',
            position: [30, 10, 200],
            direction: [0, 0, -1],
            up: [0, 1, 0],
            height: 55,
        });
        const moved = scene.transform([1, 0, 0, 5, 0, 1, 0, 5, 0, 0, 1, 30]);
        file.views.push({
            id: 'v/1',
            label: 'Open',
            cameras: [0],
            members: {
                occurrence: [2, 4],
                geometry: [-1, -1],
                visible: [1, 0],
                transform: [moved, -1],
                style: [1, -1],
            },
        });
        file.views.push({ id: 'v2', label: 'From above', cameras: [1] });
    }, 'view');

test('a saved view brings camera, members, styles and sections', async () => {
    const page = await Page.open(withView(), { motion: 'no-preference' });
    await page.tab('Views');
    const [open, above] = await page.page.$$('.page:not([hidden]) .entry');
    await open.click();
    await page.settle();
    const camera = await page.camera();
    assert.ok(near(camera.eye, [30, -100, 40], 1e-6) && near(camera.direction, [0, 1, 0], 1e-9));
    assert.equal(camera.angle, 0.7);
    assert.equal(camera.perspective, true);
    const [red, green] = await page.color([50, 5, 5]);
    assert.ok(green > red + 20, 'where the grey box stood the green plate is seen');
    assert.equal(
        await page.run(() => document.querySelector('.page:not([hidden]) .entry').getAttribute('aria-pressed')),
        'true',
    );
    await above.click();
    await page.settle();
    assert.equal((await page.camera()).height, 55);
    assert.ok(near((await page.camera()).direction, [0, 0, -1], 1e-9));
    assertColor(await page.color([47, 10, 10]), kGrey);
    await page.close();
});

test('the change to a view is animated, unless that is not wanted', async () => {
    for (const [motion, isAnimated] of [
        ['no-preference', true],
        ['reduce', false],
    ]) {
        const page = await Page.open(withView(), { motion });
        await page.tab('Views');
        await page.run(() => {
            window.seen = [];
            const look = () => {
                window.seen.push(window.kvrView.camera().eye.join());
                requestAnimationFrame(look);
            };
            look();
        });
        const [open] = await page.page.$$('.page:not([hidden]) .entry');
        await open.click();
        await page.settle();
        const eyes = await page.run(() => new Set(window.seen).size);
        // Where it began, and where it ends.
        assert.ok(isAnimated ? eyes > 2 : eyes === 2, `${motion}: ${eyes}`);
        await page.close();
    }
});

test('a member of a view is moved and has the style of the view', async () => {
    const page = await Page.open(withView());
    await page.tab('Views');
    await (await page.page.$('.page:not([hidden]) .entry')).click();
    await page.press('c');
    await page.click('button', 'Remove all section planes');
    await page.press('p', '1', 'Escape');
    // From 5, 5, 0 it went up by 30, in transparent blue.
    const found = await page.color([10, 5, 35]);
    assert.ok(
        near(
            found,
            kBlue.map((part, i) => part * 0.75 + kBackground[i] * 0.25),
            6,
        ),
        `${found}`,
    );
    assertColor(await page.color([10, 5, 5]), kBackground);
    await page.tab('Views');
    await page.click('button', 'As in the scene');
    await page.press('1');
    assertColor(await page.color([10, 5, 5]), kRed);
    await page.close();
});

test('a link brings back the state', async () => {
    const file = withView();
    const page = await Page.open(file);
    await page.press('1');
    await page.clickAt([50, 5, 5]);
    await page.press('c');
    await page.click('button', 'Cut across X');
    await page.press('l');
    const hash = await page.run(() => location.hash);
    assert.match(hash, /path=grey/);
    assert.match(hash, /cut=x:30/);
    const camera = await page.camera();
    await page.close();
    const again = await Page.open(file, { hash });
    assert.ok(near((await again.camera()).target, camera.target, 1e-3));
    assert.equal((await again.camera()).height.toPrecision(5), camera.height.toPrecision(5));
    assert.equal(await again.text('.panel h2'), 'Grey box');
    assertColor(await again.color([50, 5, 5]), kBackground);
    await again.close();
    const written = await Page.open(file, {
        hash: '#view=v%2F1&path=red&path=nowhere/at/all&cut=z:3&cut=wrong&hide=p',
    });
    assert.equal(await written.text('.panel h2'), 'Red box');
    assert.equal((await written.camera()).angle, 0.7);
    assert.equal(await written.run(() => document.querySelectorAll('.cut').length), 1);
    await written.close();
});

test('a link holds what is hidden and transparent, in a view too', async () => {
    const file = withView();
    const page = await Page.open(file);
    await page.press('1');
    await page.clickAt([10, 5, 5]);
    await page.press('h');
    await page.clickAt([50, 5, 5]);
    await page.press('g', 'l');
    const hash = await page.run(() => location.hash);
    assert.match(hash, /&hide=red&ghost=grey$/);
    await page.tab('Views');
    await (await page.page.$('.page:not([hidden]) .entry')).click();
    await page.press('c');
    await page.click('button', 'Remove all section planes');
    await page.press('l');
    assert.match(await page.run(() => location.hash), /view=v%2F1&cut=none/);
    assert.doesNotMatch(await page.run(() => location.hash), /hide/);
    await page.close();
    const again = await Page.open(file, { hash });
    assertColor(await again.color([10, 5, 5]), kBackground);
    await again.press('Escape');
    assert.ok(!near(await again.color([50, 5, 5]), kGrey, 15));
    await again.close();
});

test('the picture can be saved', async () => {
    const page = await Page.open(boxes());
    const client = await page.page.createCDPSession();
    await client.send('Browser.setDownloadBehavior', { behavior: 'allow', downloadPath: folder, eventsEnabled: true });
    const done = new Promise((resolve) =>
        client.on('Browser.downloadProgress', ({ state }) => state === 'completed' && resolve()),
    );
    await page.press('1');
    await page.click('button', 'Save as PNG');
    await done;
    const path = join(folder, 'Boxes.png');
    assert.ok(existsSync(path));
    const image = PNG.sync.read(readFileSync(path));
    const [x, y] = (await page.run((at) => window.kvrView.project(at), [10, 5, 5])).map(Math.round);
    const at = 4 * (y * image.width + x);
    assertColor([...image.data.subarray(at, at + 3)], kRed);
    await page.close();
});

test('every tool has a key, and the list of keys opens', async () => {
    const page = await Page.open(boxes());
    await page.press('?');
    assert.ok((await page.spoken()).includes('dialog Keys'));
    await page.press('Escape', 'n', 'e', 't', 'x', 'x', 'c', 'Escape');
    await page.close();
});
