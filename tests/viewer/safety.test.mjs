// Texts from files that nobody trusts, and data that are damaged.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { boxes } from './support/boxes.mjs';
import { Page, finish, folder } from './support/browser.mjs';

after(finish);

const kScript = '<script>window.harmed = 1</script><img src=x onerror="window.harmed=1">';
const kHostile = [
    kScript,
    '</script></title></style><script>window.harmed=1</script>',
    '<!--<script>',
    'javascript:window.harmed=1',
    '{{KVR_SCENE}}',
    '"><svg onload=window.harmed=1>',
    '$& $` $1',
    'photo\u202egnp.exe\u2066',
    '\u0000\u0007bell\u2028line',
    '\ud800 half of a character',
    '__proto__',
];

const hostile = () =>
    boxes((file, scene) => {
        file.title = kScript;
        file.source = { file: kScript, model: kScript };
        file.remarks = [kScript];
        file.unit.name = kScript;
        kHostile.forEach((text, i) => {
            const part = scene.part({
                id: text,
                label: text,
                mesh: 0,
                properties: [
                    [text, text],
                    ['__proto__', kScript],
                ],
            });
            file.components[part].fileProperties = { title: text };
            scene.place(part, { id: text, label: text, at: [12 * i, 40, 0] });
            file.layers.push({ id: text, label: text, description: text, visible: true, items: [text] });
            file.groups.push({ id: text, label: text, items: [text, 'nobody'] });
            file.lods.push({ id: text, label: text, description: text, items: [text] });
            file.views.push({ id: text, label: text, cameras: [] });
            file.notes.push({
                geometry: 0,
                id: text,
                label: text,
                kind: text,
                text: [[{ text, bold: true }]],
                plane: {},
                targets: [{ id: text }],
            });
        });
    }, 'hostile');

async function unharmed(page) {
    assert.equal(await page.run(() => window.harmed), undefined);
    assert.equal(
        await page.run(() => document.querySelectorAll('img, iframe, object, embed, [onerror], [onload]').length),
        0,
    );
}

test('names that are scripts, tags or marks are shown as text', async () => {
    const page = await Page.open(hostile());
    await unharmed(page);
    assert.equal(await page.text('h1'), kScript.slice(0, 120));
    const count = 5 + kHostile.length;
    const labels = await page.page.$$eval('[role=treeitem] .name', (all) => all.map((one) => one.textContent));
    assert.ok(labels.includes(kHostile[1]));
    assert.ok(labels.length === count, `${labels.length} rows`);
    assert.ok(labels.includes('photo\u2039U+202E\u203agnp.exe\u2039U+2066\u203a'), labels.join('\n'));
    await (await page.find('tree', 'Occurrences')).focus();
    for (let i = 0; i < count; ++i) {
        await page.press('ArrowDown', 'Enter');
    }
    await unharmed(page);
    for (const tab of ['Views', `Notes (${kHostile.length})`, 'Layers']) {
        await page.tab(tab);
        const text = await page.text('.page:not([hidden])');
        assert.ok(text.includes(kScript), tab);
        assert.ok(!/[\u202a-\u202e\u2066-\u2069]/.test(text));
    }
    await page.press('l', '/');
    await page.page.keyboard.type('<script>');
    await page.settle();
    await unharmed(page);
    await page.close();
});

test('links that are scripts do nothing', async () => {
    const script = encodeURIComponent(kScript);
    const camera = `perspective,${'NaN,'.repeat(11)}`;
    const hash = `#view=${script}&path=${script}&path=%E0%A4%A&cut=n:NaN,1,2,3&camera=${camera}&explode=1e999&__proto__=1`;
    const page = await Page.open(boxes(), { hash });
    await unharmed(page);
    assert.ok((await page.camera()).height > 0);
    await page.close();
});

test('a name of ten megabytes is shown by its beginning', async () => {
    const long = `begin ${'x'.repeat(10_000_000)}`;
    const page = await Page.open(
        boxes((file, scene) => {
            const part = scene.part({
                id: 'long',
                label: long,
                mesh: 0,
                properties: [
                    ['Text', long],
                    [long, 1],
                ],
            });
            scene.place(part, { id: 'long', label: long, at: [0, 40, 0] });
            file.notes.push({ geometry: 0, id: 'n', label: long, text: [[{ text: long }]], plane: {} });
        }, 'long'),
    );
    assert.ok((await page.run(() => document.body.textContent.length)) < 20000);
    await (await page.find('tree', 'Occurrences')).focus();
    await page.press('End', 'Enter');
    assert.match(await page.text('.panel h2'), /^begin x{190,}\u2026 \(10,000,006 characters\)$/);
    assert.ok((await page.run(() => document.body.textContent.length)) < 60000);
    await page.close();
});

test('the policy of the page lets nothing else run or load', async () => {
    const page = await Page.open(boxes());
    await page.run(() => {
        const script = document.createElement('script');
        script.textContent = 'window.harmed = 1';
        document.body.append(script);
        const holder = document.createElement('div');
        holder.innerHTML = '<img src="https://example.invalid/x.png" onerror="window.harmed = 1">';
        document.body.append(holder);
    });
    // Text as code, at a time when nobody else has a hand in the page.
    await page.run(
        () =>
            new Promise((done) => {
                setTimeout('window.harmed = 1');
                setTimeout(done, 50);
            }),
    );
    assert.equal(
        await page.run(() =>
            fetch('https://example.invalid/').then(
                () => 'loaded',
                () => 'refused',
            ),
        ),
        'refused',
    );
    assert.equal(await page.run(() => window.harmed), undefined);
    assert.ok(
        page.errors.length >= 3 &&
            page.errors.every((error) => /Content Security Policy|Refused|violates|Fetch API/.test(error)),
        page.errors.join('\n'),
    );
    page.errors = [];
    await page.close();
});

test('damaged data are a sentence', async () => {
    const whole = readFileSync(boxes(), 'utf8');
    const at = whole.indexOf('id="kvr-geometry">') + 'id="kvr-geometry">'.length;
    const damaged = {
        'cut.html': whole.slice(0, at) + whole.slice(at + 400),
        'letters.html': `${whole.slice(0, at)}!!!!${whole.slice(at)}`,
        'other.html': whole.replace(/(id="kvr-scene">)[^<]*/, '$1H4sIAAAAAAAAA6tWKkgsLlayUqgGAFb8n2YNAAAA'),
    };
    for (const [name, text] of Object.entries(damaged)) {
        const path = join(folder, name);
        writeFileSync(path, text);
        const page = new Page();
        const message = await page.message(path);
        assert.match(message, /The model cannot be shown/, name);
    }
});
