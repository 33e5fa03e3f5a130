// The tree, its search and keys, the panel, notes and layers, as they are read out.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import { boxes, kBackground, kGreen, kGrey, kRed } from './support/boxes.mjs';
import { Page, assertColor, finish, near } from './support/browser.mjs';

after(finish);

const rows = (page) => page.page.$$eval('[role=treeitem]', (all) => all.map((row) => row.getAttribute('aria-label')));

test('roles and names for those who do not see the page', async () => {
    const page = await Page.open(boxes());
    const spoken = await page.spoken();
    for (const line of [
        'tree Occurrences',
        'treeitem Red box',
        'tab Tree',
        'tab Views',
        'tab Layers',
        'searchbox Search names, ids and properties',
        'toolbar Tools',
        'button Fit',
        'button Section',
        'button Front view',
        'application Picture of the model',
    ]) {
        assert.ok(spoken.includes(line), `${line} in ${spoken.join('\n')}`);
    }
    const unnamed = await page.page.$$eval(
        'button, input, select',
        (all) =>
            all.filter(
                (one) =>
                    !(one.textContent.trim() || one.getAttribute('aria-label') || one.closest('label')?.textContent),
            ).length,
    );
    assert.equal(unnamed, 0);
    await page.close();
});

test('keys go through the tree, open, choose and hide', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    await (await page.find('tree', 'Occurrences')).focus();
    await page.press('ArrowDown', 'ArrowDown', 'Enter');
    assert.ok((await page.text('.panel h2')) === 'Red box');
    await page.press('ArrowRight');
    assert.deepEqual((await rows(page)).slice(0, 5), ['Boxes', 'Plate:1', 'Red box', 'Box mesh', 'Blue box']);
    await page.press('ArrowLeft', 'Space');
    assertColor(await page.color([10, 5, 5]), kBackground);
    await page.press('Space', 'End', 'Enter');
    assert.equal(await page.text('.panel h2'), 'Grey box');
    await page.press('Home', 'ArrowLeft');
    assert.deepEqual(await rows(page), ['Boxes']);
    await page.close();
});

test('the path of what is under the pointer, and of what is chosen', async () => {
    const page = await Page.open(
        boxes((file, scene) => {
            file.components.push({ kind: 'assembly', id: 'frame', label: 'Frame', geometry: [], placements: [] });
            const frame = scene.place(file.components.length - 1, { id: 'f', label: 'Frame:1', at: [0, 0, 30] });
            scene.place(1, { id: 'inner', label: 'Inner', at: [5, 5, 0], style: 0, parent: frame });
        }, 'nested'),
    );
    await page.press('1');
    await page.moveTo([10, 5, 35]);
    assert.equal(await page.text('.status'), 'Frame:1 \u203a Inner \u00b7 face 2, f2');
    await page.clickAt([10, 5, 35]);
    assert.ok((await rows(page)).includes('Inner'), 'the tree opens down to it');
    assert.ok((await page.spoken()).includes('navigation Path'));
    await page.click('button', 'Frame:1');
    assert.equal(await page.text('.panel h2'), 'Frame:1');
    // Keys reach what is chosen from the tree as well.
    await (await page.find('tree', 'Occurrences')).focus();
    await page.press('i', 'Escape');
    assertColor(await page.color([10, 5, 5]), kBackground);
    assertColor(await page.color([10, 5, 35]), kRed);
    await page.close();
});

test('search finds names, ids and properties', async () => {
    const page = await Page.open(boxes());
    await page.press('/');
    await page.page.keyboard.type('grey');
    assert.deepEqual(await rows(page), ['Boxes', 'Grey box']);
    assert.equal(await page.text('.found'), '1 found');
    await page.press('Enter');
    assert.equal(await page.text('.panel h2'), 'Grey box');
    await page.press('Escape');
    await page.page.keyboard.type('material: steel');
    assert.equal(await page.text('.found'), '3 found');
    await page.press('Escape');
    await page.page.keyboard.type('box-mesh');
    assert.equal(await page.text('.found'), '3 found');
    await page.press('Escape');
    assert.equal((await rows(page)).length, 5);
    await page.close();
});

test('ten thousand rows are some dozens of elements', async () => {
    const page = await Page.open(
        boxes((file, scene) => {
            for (let i = 0; i < 10000; ++i) {
                scene.place(1, {
                    id: `n${i}`,
                    label: `Number ${i}`,
                    at: [12 * (i % 100), 12 * Math.floor(i / 100), 0],
                });
            }
        }, 'rows'),
    );
    assert.ok((await rows(page)).length < 60);
    await (await page.find('tree', 'Occurrences')).focus();
    await page.press('End');
    assert.ok((await rows(page)).includes('Number 9999'));
    assert.ok((await rows(page)).length < 60);
    await page.run(() => (document.querySelector('.tree').scrollTop = 26 * 5000));
    await page.settle();
    assert.ok((await rows(page)).includes('Number 5000'));
    await page.press('/');
    await page.page.keyboard.type('number 4711');
    await page.press('Enter');
    assert.equal(await page.text('.panel h2'), 'Number 4711');
    const { calls, pairs } = await page.totals();
    assert.ok(calls <= 3 * pairs);
    await page.close();
});

test('the panel can be copied as JSON', async () => {
    const page = await Page.open(boxes(), {
        before: () =>
            Object.defineProperty(navigator, 'clipboard', {
                value: { writeText: async (text) => void (window.copied = text) },
            }),
    });
    await page.press('1');
    await page.clickAt([10, 5, 5]);
    await page.click('button', 'Copy as JSON');
    const copied = JSON.parse(await page.run(() => window.copied));
    assert.deepEqual(copied.path, ['red']);
    assert.equal(copied.Properties.Count, 3);
    assert.equal(copied.Face['Persistent id'], 'f2');
    assert.equal(copied.Geometry.Volume, 1000);
    await page.close();
});

const withLayers = () =>
    boxes((file) => {
        file.layers.push({ id: 'l', label: 'Reds', number: 7, visible: true, items: ['red'] });
        file.layers.push({ id: 'm', label: 'Off at first', number: 8, visible: false, items: ['grey'] });
        file.layers.push({ id: 'n', label: 'Sheets', number: 9, visible: true, items: ['plate-mesh'] });
        file.groups.push({ id: 'g', label: 'All boxes', items: ['box'] });
        file.lods.push({ id: 'd', label: 'Coarse', description: 'for a look from afar', items: ['plate-mesh'] });
        file.lods.push({ id: 'e', label: 'Fine', items: ['box-mesh'] });
    }, 'layers');

test('layers and groups are switches', async () => {
    const page = await Page.open(withLayers());
    await page.press('1');
    assertColor(await page.color([50, 5, 5]), kBackground);
    await page.tab('Layers');
    await page.click('checkbox', 'Off at first');
    assertColor(await page.color([50, 5, 5]), kGrey);
    await page.click('checkbox', 'Reds');
    assertColor(await page.color([10, 5, 5]), kBackground);
    await page.click('checkbox', 'Reds');
    await page.click('checkbox', 'All boxes');
    assertColor(await page.color([10, 5, 5]), kBackground);
    await page.click('checkbox', 'All boxes');
    assertColor(await page.color([10, 5, 5]), kRed);
    await page.click('checkbox', 'Sheets');
    assertColor(await page.color([30, 0, -2]), kBackground);
    await page.click('button', 'Select what is in Reds');
    assert.equal(await page.text('.panel h2'), 'Red box');
    assert.ok((await page.text('.side')).includes('for a look from afar'));
    await page.close();
});

test('of levels of detail one is chosen, or all are shown', async () => {
    const page = await Page.open(withLayers());
    await page.press('1');
    const [box, plate] = [
        [10, 5, 5],
        [30, 0, -2],
    ];
    await page.tab('Layers');
    await page.click('radio', 'Coarse');
    assertColor(await page.color(plate), kGreen);
    assertColor(await page.color(box), kBackground);
    await page.press('ArrowDown');
    assertColor(await page.color(plate), kBackground);
    assertColor(await page.color(box), kRed);
    // A layer that is off stays off.
    assertColor(await page.color([50, 5, 5]), kBackground);
    await page.press('l');
    const hash = await page.run(() => location.hash);
    assert.match(hash, /on=level:e/);
    await page.click('radio', 'All levels');
    assertColor(await page.color(plate), kGreen);
    assertColor(await page.color(box), kRed);
    await page.close();
    const again = await Page.open(withLayers(), { hash: `${hash}&off=layer:l&on=layer:m&on=level:nobody` });
    await again.tab('Layers');
    assert.ok(await again.run(() => document.querySelector('[role=radiogroup] li:nth-child(3) input').checked));
    assertColor(await again.color(plate), kBackground);
    assertColor(await again.color(box), kBackground);
    assertColor(await again.color([50, 5, 5]), kGrey);
    await again.close();
});

test('everything that is known of a choice is in the panel', async () => {
    const page = await Page.open(
        boxes((file) => {
            file.components[1].unit = { name: 'centimeter', symbol: 'cm', metres: 0.01 };
            file.components[1].persistentId = 'part-7';
            file.components[1].fileProperties = { author: 'Ada', partNumber: '4711' };
            file.components[1].density = 7850;
            file.components[0].placements[1].style = 1;
            file.components[0].placements[1].properties = [['Serial', 'S-1']];
            Object.assign(file.geometry[0], { vertices: 24, faceCount: 6, edgeCount: 12 });
        }, 'known'),
    );
    await (await page.find('tree', 'Occurrences')).focus();
    await page.press('ArrowDown', 'ArrowDown', 'Enter');
    const said = await page.page.$$eval('.panel dt', (all) =>
        all.map((one) => `${one.textContent}: ${one.nextElementSibling.textContent}`),
    );
    for (const line of [
        'Id: red',
        'Id: box-mesh',
        'Persistent id: part-7',
        'Unit: centimeter',
        'Style: style1 (#3366e6, 50 %)',
        'Serial: S-1',
        'Material: Steel',
        'Author: Ada',
        'Part number: 4711',
        'Density: 7850 kg/m\u00b3',
        'Triangles: 12',
        'Vertices: 24',
        'Faces: 6',
        'Edges: 12',
        'Mass: 0.00785 kg',
        'Box from: 5 mm, 5 mm, 0 mm',
        'Box to: 15 mm, 15 mm, 10 mm',
    ]) {
        assert.ok(said.includes(line), `${line} in ${said.join('\n')}`);
    }
    await page.close();
});

const withNote = () =>
    boxes((file, scene, glb) => {
        glb.json.meshes.push({
            primitives: [
                {
                    mode: 1,
                    attributes: { POSITION: glb.floats([0, 0, 25, -4, 0, 25]) },
                    indices: glb.whole([0, 1]),
                    extras: { role: 'lines' },
                },
            ],
        });
        const geometry =
            file.geometry.push({
                kind: 'note',
                mesh: glb.json.meshes.length - 1,
                class: 'IAnnotationCallout',
                id: 'note',
                label: 'Flat',
                metres: 0.001,
            }) - 1;
        file.components[1].geometry.push(geometry);
        const entry = { occurrence: 2, geometry, transform: 0, visible: 1, style: -1, keeps: 1 };
        Object.entries(entry).forEach(([name, value]) => file.items[name].push(value));
        // Items stand in the order of their occurrences.
        for (const list of Object.values(file.items)) {
            list.splice(2, 0, list.pop());
        }
        file.notes.push({
            geometry,
            id: 'note',
            label: 'Flat',
            kind: 'tolerance',
            visible: true,
            height: 6,
            text: [[{ text: 'MMMM', bold: true }], [{ text: 'second line', italic: true }]],
            plane: { origin: [0, 0, 20], normal: [0, -1, 0], reference: [1, 0, 0] },
            targets: [{ id: 'box-mesh', geometry: 0, faces: [2] }],
        });
    }, 'note');

// Dark pixels around a place.
async function ink(page, point, size) {
    const image = await page.screenshot();
    const [x, y] = (await page.place(point)).map(Math.round);
    let dark = 0;
    for (let j = y - size; j < y; ++j) {
        for (let i = x; i < x + size; ++i) {
            dark += image.data[4 * (j * image.width + i)] < 110 ? 1 : 0;
        }
    }
    return dark;
}

test('notes stand in their planes, with a list that shows what they point at', async () => {
    const page = await Page.open(withNote());
    await page.press('1');
    const written = await ink(page, [5, 5, 20], 90);
    assert.ok(written > 150, `${written} dark pixels`);
    await page.press('2');
    assert.ok((await ink(page, [25, 5, 20], 90)) > 100, 'from behind it is written, too');
    await page.press('1');
    // The red box stands at 5: so does what is drawn of its note.
    const leader = [3, 5, 25];
    assertColor(await page.color(leader), [0, 0, 0]);
    await page.tab('Notes (1)');
    assert.ok((await page.text('.side')).includes('MMMM \u00b7 second line'));
    const before = await page.color([10, 5, 5]);
    await page.page.click('.page:not([hidden]) .entry');
    await page.settle();
    assert.ok(!near(await page.color([10, 5, 5]), before, 15), 'what it points at is lit');
    assert.match(await page.text('.panel'), /Note.*Text.*MMMM.*tolerance.*Points atBox mesh, face 2/s);
    const { target } = await page.camera();
    await page.drag([10, 5, 5], [900, 0], 'right');
    await page.page.click('.page:not([hidden]) .entry');
    await page.settle();
    assert.ok((await page.camera()).target[0] < target[0], 'what is out of sight is fetched');
    await page.press('1');
    await page.press('Escape');
    await page.click('checkbox', 'Show notes');
    assert.ok((await ink(page, [5, 5, 20], 90)) < written / 4);
    assertColor(await page.color(leader), kBackground);
    await page.press('n');
    assertColor(await page.color(leader), [0, 0, 0]);
    await page.close();
});

test('without WebGL there is a sentence, and lists and panel work', async () => {
    const page = await Page.open(withNote(), { before: () => (HTMLCanvasElement.prototype.getContext = () => null) });
    assert.match(await page.text('[role=alert]'), /cannot draw the model.*work all the same/s);
    await (await page.find('tree', 'Occurrences')).focus();
    await page.press('ArrowDown', 'ArrowDown', 'Enter');
    assert.ok((await page.text('.panel')).includes('Steel'));
    await page.tab('Notes (1)');
    assert.ok((await page.text('.side')).includes('MMMM'));
    await page.page.click('.page:not([hidden]) .entry');
    await page.close();
});
