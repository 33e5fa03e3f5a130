// Gestures, and what is left out of the picture while it moves.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import { boxes, kBackground, kRed } from './support/boxes.mjs';
import { Page, assertColor, finish, near, pixelmatch } from './support/browser.mjs';
import { boxMesh, sheetMesh } from './support/scene.mjs';

after(finish);

const kRedFront = [10, 5, 5];

// Fingers that go through places of the page, one list for each finger.
async function touch(page, ...fingers) {
    const client = await page.page.createCDPSession();
    const send = (type, points) => client.send('Input.dispatchTouchEvent', { type, touchPoints: points });
    for (let step = 0; step < fingers[0].length; ++step) {
        const points = fingers.map((places, id) => ({ x: places[step][0], y: places[step][1], id }));
        await send(step === 0 ? 'touchStart' : 'touchMove', points);
    }
    await send('touchEnd', []);
    await page.settle();
}

test('one finger turns, two move and zoom, a tap chooses', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    await touch(page, [
        [450, 300],
        [480, 300],
        [530, 300],
    ]);
    assert.ok(Math.abs((await page.camera()).direction[0]) > 0.1, 'it turned');
    await page.press('1');
    const before = await page.place(kRedFront);
    const { height } = await page.camera();
    await touch(
        page,
        [
            [450, 300],
            [460, 320],
            [480, 340],
        ],
        [
            [500, 300],
            [510, 320],
            [530, 340],
        ],
    );
    const after = await page.place(kRedFront);
    assert.ok(near(after, [before[0] + 30, before[1] + 40], 12), `from ${before} to ${after}`);
    assert.ok(Math.abs((await page.camera()).height / height - 1) < 0.1, 'it did not zoom');
    await touch(page, [await page.place(kRedFront)]);
    assert.equal(await page.text('.panel h2'), 'Red box');
    await page.close();
});

test('a trackpad scrolls to zoom, pinches in small steps, and moves with the shift key', async () => {
    const page = await Page.open(boxes());
    await page.press('1');
    const client = await page.page.createCDPSession();
    const wheel = async (deltaX, deltaY, modifiers = 0) => {
        const [x, y] = await page.place(kRedFront);
        await client.send('Input.dispatchMouseEvent', { type: 'mouseWheel', x, y, deltaX, deltaY, modifiers });
        await page.settle();
    };
    const { height } = await page.camera();
    const place = await page.place(kRedFront);
    await wheel(0, -30);
    const scrolled = (await page.camera()).height;
    assert.ok(scrolled < height && scrolled > 0.9 * height);
    // A pinch comes with the control key.
    await wheel(0, -30, 2);
    const pinched = (await page.camera()).height;
    assert.ok(pinched < 0.8 * scrolled);
    assert.ok(near(await page.place(kRedFront), place, 1), 'what is under the pointer stays there');
    await wheel(40, 0, 8);
    assert.equal((await page.camera()).height, pinched);
    assert.ok(near(await page.place(kRedFront), [place[0] - 40, place[1]], 1));
    await page.close();
});

test('smooth normals are lit smoothly', async () => {
    const page = await Page.open(
        boxes((file, scene, glb) => {
            // A side whose normals turn from the left to the right.
            const mesh = boxMesh([40, 10, 10]);
            [0, 1, 2, 3].forEach((i) => mesh.normals.splice(3 * (8 + i), 3, i === 0 || i === 3 ? -1 : 1, -1, 0));
            mesh.normals = mesh.normals.flat();
            const part = scene.part({ id: 'smooth', label: 'Smooth', mesh: glb.mesh(mesh) });
            scene.place(part, { id: 's', label: 'Smooth', at: [10, 0, 30], style: 0 });
        }, 'smooth'),
    );
    await page.press('1');
    const reds = [];
    for (const x of [11, 20, 30, 40, 49]) {
        reds.push((await page.color([x, 0, 35]))[0]);
    }
    assert.equal(Math.max(...reds.slice(1, 4)), reds[2], `${reds}`);
    assert.ok(reds[0] < reds[1] && reds[4] < reds[3], `brightest where it looks at the reader: ${reds}`);
    assertColor(await page.color([30, 0, 35]), kRed, 12);
    await page.close();
});

// Eighty sheets of some hundred triangles, and a box in front.
const heavy = () =>
    boxes((file, scene, glb) => {
        const part = scene.part({ id: 'sheet', label: 'Sheet', mesh: glb.mesh(sheetMesh(10, 2000, 1)) });
        for (let i = 0; i < 80; ++i) {
            scene.place(part, { id: `n${i}`, label: `N ${i}`, at: [12 * (i % 10), 100 + 12 * Math.floor(i / 10), 0] });
        }
    }, 'heavy');

test('while it moves it is drawn with less, and at rest with all', async () => {
    const page = await Page.open(heavy());
    const whole = (await page.totals()).trianglesDrawn;
    assert.ok(whole > 160000);
    await page.press('7');
    const before = await page.screenshot();
    const [x, y] = [500, 400];
    await page.page.mouse.move(x, y);
    await page.page.mouse.down();
    const moving = [];
    for (let i = 1; i <= 12; ++i) {
        await page.page.mouse.move(x + 15 * Math.sin(i), y);
        moving.push((await page.totals()).trianglesDrawn);
    }
    assert.ok(Math.min(...moving) < whole / 2, `${moving} of ${whole}`);
    assert.ok(Math.min(...moving) > 48, 'something is left of all');
    assert.ok(await page.run(() => window.kvrView.isMoving()));
    await page.page.mouse.up();
    await page.settle();
    assert.equal((await page.totals()).trianglesDrawn, whole);
    await page.page.mouse.move(3, 636);
    await page.press('7');
    const after = await page.screenshot();
    const different = pixelmatch(before.data, after.data, null, before.width, before.height, { threshold: 0.1 });
    assert.ok(different < 50, `${different} pixels differ`);
    await page.close();
});

test('what moves looks as it does at rest, but for details', async () => {
    const page = await Page.open(heavy());
    await page.press('1');
    // Seen while the button is down: nothing rests until then.
    await page.page.mouse.move(500, 150);
    await page.page.mouse.down({ button: 'right' });
    await page.page.mouse.move(510, 150);
    const places = [];
    for (let i = 0; i < 6; ++i) {
        await page.page.mouse.move(510 + (i % 2), 150);
    }
    const image = await page.screenshot();
    for (const point of [kRedFront, [30, 5, 30]]) {
        const [x, y] = (await page.place(point)).map(Math.round);
        const at = 4 * (y * image.width + x);
        places.push([...image.data.subarray(at, at + 3)]);
    }
    assertColor(places[0], kRed);
    assertColor(places[1], kBackground);
    await page.page.mouse.up({ button: 'right' });
    await page.settle();
    await page.close();
});

test('what is out of sight is passed over', async () => {
    const page = await Page.open(heavy());
    await page.press('5');
    const { trianglesDrawn } = await page.totals();
    await page.clickAt([10, 10, 10]);
    await page.press('f');
    assert.ok((await page.totals()).trianglesDrawn < trianglesDrawn - 150000);
    await page.close();
});
