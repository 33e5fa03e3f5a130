// The picture: colours, what is shown, and how one moves in it.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import { boxes, kBackground, kBlue, kGreen, kGrey, kRed } from './support/boxes.mjs';
import { Page, assertColor, finish, near } from './support/browser.mjs';
import { boxMesh } from './support/scene.mjs';

after(finish);

const kRedFront = [10, 5, 5];
const kGreyFront = [50, 5, 5];
const kBlueFront = [30, 5, 5];

test('a face square to the eye has exactly the colour of its style', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    assertColor(await page.color(kRedFront), kRed);
    assertColor(await page.color(kGreyFront), kGrey);
    assertColor(await page.color([30, 0, -2]), kGreen);
    // Two transparent faces in front of the background.
    const through = kBlue.map((part, i) => part * 0.75 + kBackground[i] * 0.25);
    assertColor(await page.color(kBlueFront), through, 6);
    await page.close();
});

test('what is hidden is gone, and comes back', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    await page.clickAt(kRedFront);
    await page.press('h');
    assertColor(await page.color(kRedFront), kBackground);
    assert.ok((await page.spoken()).includes('treeitem Red box, hidden'));
    await page.click('button', 'Show Red box');
    await page.press('Escape');
    assertColor(await page.color(kRedFront), kRed);
    await page.close();
});

test('isolated, a part is alone; transparent, it shows what is behind', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    await page.clickAt(kRedFront);
    await page.press('i', 'Escape');
    assertColor(await page.color(kGreyFront), kBackground);
    await page.press('a');
    await page.clickAt(kGreyFront);
    await page.press('g', 'Escape');
    const [red] = await page.color(kGreyFront);
    assert.ok(red > kGrey[0] + 20 && red < kBackground[0] - 5, `${red}`);
    await page.close();
});

test('dragging turns, the right button moves, the wheel zooms to the pointer', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    const before = await page.camera();
    await page.drag(kRedFront, [80, 0]);
    const turned = await page.camera();
    assert.ok(turned.direction[0] < -0.1 || turned.direction[0] > 0.1);
    assert.ok(Math.abs(turned.up[2] - 1) < 1e-6, 'the scene stands upright');
    await page.press('1');
    const place = await page.place(kRedFront);
    await page.drag(kRedFront, [40, 25], 'right');
    assert.ok(near(await page.place(kRedFront), [place[0] + 40, place[1] + 25], 1));
    await page.moveTo(kGreyFront);
    const fixed = await page.place(kGreyFront);
    await page.page.mouse.wheel({ deltaY: -240 });
    await page.settle();
    assert.ok(near(await page.place(kGreyFront), fixed, 1));
    assert.ok((await page.camera()).height < before.height * 0.8);
    await page.close();
});

test('two fingers zoom', async () => {
    const page = await Page.open(boxes());
    const { height } = await page.camera();
    const client = await page.page.createCDPSession();
    const touch = (type, points) =>
        client.send('Input.dispatchTouchEvent', { type, touchPoints: points.map(([x, y], id) => ({ x, y, id })) });
    await touch('touchStart', [
        [450, 300],
        [490, 300],
    ]);
    await touch('touchMove', [
        [430, 300],
        [510, 300],
    ]);
    await touch('touchMove', [
        [410, 300],
        [530, 300],
    ]);
    await touch('touchEnd', []);
    await page.settle();
    assert.ok((await page.camera()).height < height * 0.5);
    await page.close();
});

test('keys turn, move and zoom', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    await page.clickAt([30, 5, 40]);
    const { height, target } = await page.camera();
    await page.press('ArrowRight');
    assert.ok(Math.abs((await page.camera()).direction[0]) > 0.1);
    await page.press('1');
    await page.page.keyboard.down('Shift');
    await page.press('ArrowRight');
    await page.page.keyboard.up('Shift');
    assert.ok(!near((await page.camera()).target, target, 0.1));
    await page.press('+');
    assert.ok((await page.camera()).height < height);
    await page.close();
});

test('the cube and the keys look along the axes', async () => {
    const page = await Page.open(boxes());
    await page.press('5');
    assert.ok(near((await page.camera()).direction, [0, 0, -1], 1e-6));
    assert.ok(near((await page.camera()).up, [0, 1, 0], 1e-6));
    assertColor(await page.color([10, 10, 10]), kRed);
    await page.press('7');
    await page.click('button', 'Front view');
    assert.ok(near((await page.camera()).direction, [0, 1, 0], 1e-6));
    assert.ok(near((await page.camera()).up, [0, 0, 1], 1e-6));
    await page.press('4');
    assert.ok(near((await page.camera()).direction, [-1, 0, 0], 1e-6));
    await page.close();
});

test('a scene whose y is up stands upright', async () => {
    const page = await Page.open(boxes((file) => (file.up = [0, 1, 0]), 'upright'));
    await page.press('1');
    const { direction, up } = await page.camera();
    assert.ok(near(direction, [0, 0, -1], 1e-6) && near(up, [0, 1, 0], 1e-6));
    await page.close();
});

test('perspective and fit', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    const width = async () => (await page.place([60, 20, 0]))[0] - (await page.place([0, 20, 0]))[0];
    const parallel = await width();
    await page.click('button', 'Perspective');
    assert.equal((await page.camera()).perspective, true);
    assert.ok((await width()) < parallel - 5, 'what is further away is smaller');
    await page.press('p', 'Escape');
    await page.clickAt(kRedFront);
    await page.click('button', 'Fit');
    const [left] = await page.place([5, 5, 0]);
    const [right] = await page.place([15, 5, 0]);
    assert.ok(right - left > 200);
    await page.close();
});

test('the view of a click: tree, panel and line of state follow; a row is chosen in the picture', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    await page.moveTo(kRedFront);
    assert.equal(await page.text('.status'), 'Red box \u00b7 face 2, f2');
    const hovered = await page.color(kRedFront, { stays: true });
    assert.ok(!near(hovered, kRed, 15), 'what is under the pointer is lit');
    await page.clickAt(kRedFront);
    assert.ok(await page.page.$('[role=treeitem][aria-selected=true][aria-label="Red box"]'));
    const panel = await page.text('.panel');
    for (const text of [
        'Red box',
        'Material',
        'Steel',
        'f2',
        '1000 mm\u00b3',
        '600 mm\u00b2',
        '0.00785 kg',
        '10 mm \u00d7 10 mm',
    ]) {
        assert.ok(panel.includes(text), `${text} in ${panel}`);
    }
    await page.page.click('[role=treeitem][aria-label="Grey box"]');
    const [r, , b] = await page.color(kGreyFront);
    assert.ok(b > r + 60, 'what is selected is blue');
    await page.close();
});

test('edges are drawn, and can be left out', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    const dark = async () => {
        const { data } = await page.screenshot();
        let count = 0;
        for (let i = 0; i < data.length; i += 4) {
            count += data[i] < 90 && data[i + 1] < 90 && data[i + 2] < 90 ? 1 : 0;
        }
        return count;
    };
    const withEdges = await dark();
    await page.click('button', 'Edges');
    assert.ok((await dark()) < withEdges - 500);
    await page.close();
});

test('a light background and a dark one', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    assertColor(await page.color([30, 5, 30]), kBackground);
    await page.click('button', 'Light or dark');
    assertColor(await page.color([30, 5, 30]), [27, 29, 34]);
    assertColor(await page.color(kRedFront), kRed);
    await page.close();
});

test('draw calls depend on meshes, not on occurrences', async () => {
    const page = await Page.open(
        boxes((file, scene) => {
            for (let i = 0; i < 500; ++i) {
                scene.place(1, {
                    id: `more${i}`,
                    label: `More ${i}`,
                    at: [12 * (i % 25), 40 + 12 * Math.floor(i / 25), 0],
                    style: i % 3,
                });
            }
        }, 'many'),
    );
    const { calls, pairs, trianglesDrawn } = await page.totals();
    assert.ok(calls <= 3 * pairs, `${calls} calls for ${pairs} pairs`);
    assert.equal(trianglesDrawn, 12 * 504);
    await page.close();
});

// A box beside the others, whose mesh and place the test makes.
const withBox = (change, transform, name, keeps = 1) =>
    boxes((file, scene, glb) => {
        const mesh = glb.mesh(boxMesh([10, 10, 10]));
        change(glb.json.meshes[mesh].primitives, scene, glb);
        const part = scene.part({ id: 'extra', label: 'Extra', mesh });
        const occurrence = scene.place(part, { id: 'extra', label: 'Extra', style: 0 });
        file.occurrences.transform[occurrence] = scene.transform(transform);
        file.items.keeps.splice(-1, 1, keeps);
    }, name);
const kUp = [1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1, 20];

test('without normals a surface is flat', async () => {
    const page = await Page.open(withBox((primitives) => delete primitives[0].attributes.NORMAL, kUp, 'flat'));
    await page.press('1');
    assertColor(await page.color([5, 5, 25]), kRed);
    await page.press('3');
    assertColor(await page.color([0, 10, 25]), kRed);
    await page.close();
});

test('mirrored and stretched parts are lit as others', async () => {
    const page = await Page.open(withBox(() => {}, [-2, 0, 0, 20, 0, 1, 0, 5, 0.5, 0, 1, 20], 'mirrored'));
    await page.press('1');
    assertColor(await page.color([10, 5, 27]), kRed);
    await page.close();
});

test('faces have their own styles unless an override covers them', async () => {
    const own = (primitives, scene) => (primitives[0].extras.style = scene.style([51 / 255, 102 / 255, 230 / 255]));
    const kept = await Page.open(withBox(own, kUp, 'own'));
    await kept.press('1');
    assertColor(await kept.color([5, 5, 25]), kBlue);
    await kept.close();
    const covered = await Page.open(withBox(own, kUp, 'covered', 0));
    await covered.press('1');
    assertColor(await covered.color([5, 5, 25]), kRed);
    await covered.close();
});

test('lines, points and clouds are drawn in their styles, and can be chosen', async () => {
    const page = await Page.open(
        boxes((file, scene, glb) => {
            const lines = {
                mode: 1,
                attributes: { POSITION: glb.floats([0, 5, 30, 60, 5, 30]) },
                indices: glb.whole([0, 1]),
                extras: { role: 'lines' },
            };
            const points = {
                mode: 0,
                attributes: { POSITION: glb.floats([10, 5, 40, 30, 5, 40, 50, 5, 40]) },
                extras: { role: 'points' },
            };
            [lines, points].forEach((primitive, i) => {
                glb.json.meshes.push({ primitives: [primitive] });
                const name = ['Line', 'Cloud'][i];
                const part = scene.part({
                    id: name,
                    label: name,
                    mesh: glb.json.meshes.length - 1,
                    geometry: { kind: ['curve', 'cloud'][i] },
                });
                scene.place(part, { id: name, label: name, style: 0 });
            });
        }, 'thin'),
    );
    await page.press('1');
    assertColor(await page.color([30, 5, 40]), kRed);
    await page.clickAt([30, 5, 40]);
    assert.equal(await page.text('.panel h2'), 'Cloud');
    await page.clickAt([20, 5, 30]);
    assert.equal(await page.text('.panel h2'), 'Line');
    await page.close();
});
