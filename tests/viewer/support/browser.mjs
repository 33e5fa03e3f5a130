// A browser for the tests of a file, and what a person does with a page in it.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

const root = join(dirname(fileURLToPath(import.meta.url)), '..', '..', '..');
const require = createRequire(join(root, 'viewer', 'package.json'));
const puppeteer = (await import(pathToFileURL(require.resolve('puppeteer-core')))).default;
export const { PNG } = require('pngjs');
export const pixelmatch = (await import(pathToFileURL(require.resolve('pixelmatch')))).default;

export const kTool = process.env.KVR_TOOL ?? join(root, 'build/release/bin/kvr');
export const kTemplate = process.env.KVR_VIEWER_PAGE ?? join(root, 'build/release/viewer/template.html');
export const kExamples = join(root, 'examples');

export const folder = mkdtempSync(join(tmpdir(), 'kvr-viewer-'));

const browser = await puppeteer.launch({
    executablePath: process.env.KVR_CHROMIUM ?? '/usr/bin/chromium',
    userDataDir: join(folder, 'profile'),
    args: [
        '--no-sandbox',
        '--use-angle=swiftshader',
        '--enable-unsafe-swiftshader',
        '--force-color-profile=srgb',
        '--hide-scrollbars',
        '--force-device-scale-factor=1',
        '--disable-lcd-text',
    ],
});

export const processId = browser.process().pid;

/// Ends the browser; for the last of a file's tests.
export async function finish() {
    await browser.close();
    rmSync(folder, { recursive: true, force: true });
}

/// A scene or model as a page.
export function view(file, ...options) {
    const page = join(folder, `${file.replaceAll(/[^\w]/g, '_')}.html`);
    execFileSync(kTool, ['view', file, page, '--force', ...options], { stdio: 'pipe' });
    return page;
}

export class Page {
    errors = [];

    /// Opens a file; `before` runs in the page first.
    static async open(file, { hash = '', before, motion = 'reduce', width = 1000, height = 640 } = {}) {
        const made = new Page();
        made.page = await browser.newPage();
        await made.page.setViewport({ width, height });
        await made.page.emulateMediaFeatures([
            { name: 'prefers-reduced-motion', value: motion },
            { name: 'prefers-color-scheme', value: 'light' },
        ]);
        made.page.on('pageerror', (error) => made.errors.push(String(error.stack ?? error)));
        made.page.on('console', (message) => {
            if (message.type() === 'error' || message.type() === 'warn') {
                made.errors.push(message.text());
            }
        });
        before && (await made.page.evaluateOnNewDocument(before));
        await made.page.goto(pathToFileURL(file) + hash);
        await made.page.waitForFunction('window.kvrView', { timeout: 30000 });
        await made.settle();
        return made;
    }

    /// What a page says that shows no model.
    async message(file) {
        this.page = await browser.newPage();
        await this.page.goto(String(pathToFileURL(file)));
        await this.page.waitForSelector('[role=alert]', { timeout: 30000 });
        const text = await this.text('[role=alert]');
        await this.page.close();
        return text;
    }

    /// All errors that the page had fail the test.
    async close() {
        await this.page.close();
        assert.deepEqual(this.errors, []);
    }

    run = (code, ...values) => this.page.evaluate(code, ...values);

    /// Until all has been drawn that was asked for.
    settle() {
        return this.run(
            () =>
                new Promise((done) => {
                    let still = 0;
                    let last = -1;
                    const look = () => {
                        const frames = window.kvrView.frames();
                        still = frames === last && !window.kvrView.isMoving() ? still + 1 : 0;
                        last = frames;
                        still >= 3 ? done() : requestAnimationFrame(look);
                    };
                    look();
                }),
        );
    }

    /// By its role and name, as one would ask for it aloud.
    async find(role, name) {
        const handle = await this.page.$(`aria/${name}[role="${role}"]`);
        assert.ok(handle, `no ${role} "${name}"`);
        return handle;
    }

    async press(...keys) {
        for (const key of keys) {
            await this.page.keyboard.press(key);
        }
        await this.settle();
    }

    async click(role, name) {
        await (await this.find(role, name)).click();
        await this.settle();
    }

    async tab(name) {
        await this.click('tab', name);
    }

    /// Where a point of the scene is on the page.
    async place(point) {
        const [[x, y], box] = await this.run((at) => {
            const { left, top } = document.querySelector('canvas').getBoundingClientRect();
            return [window.kvrView.project(at), [left, top]];
        }, point);
        return [x + box[0], y + box[1]];
    }

    async clickAt(point, options = {}) {
        await this.page.mouse.click(...(await this.place(point)), options);
        await this.settle();
    }

    async moveTo(point) {
        await this.page.mouse.move(...(await this.place(point)));
        await this.settle();
    }

    async drag(from, by, button = 'left') {
        const [x, y] = await this.place(from);
        await this.page.mouse.move(x, y);
        await this.page.mouse.down({ button });
        for (let i = 1; i <= 5; ++i) {
            await this.page.mouse.move(x + (by[0] * i) / 5, y + (by[1] * i) / 5);
        }
        await this.page.mouse.up({ button });
        await this.settle();
    }

    async screenshot() {
        return PNG.sync.read(Buffer.from(await this.page.screenshot({ type: 'png' })));
    }

    /// The colour where a point of the scene is drawn; with the pointer elsewhere, unless it is to stay.
    async color(point, { stays = false } = {}) {
        if (!stays) {
            await this.page.mouse.move(3, this.page.viewport().height - 4);
            await this.settle();
        }
        const image = await this.screenshot();
        const [x, y] = (await this.place(point)).map(Math.round);
        const at = 4 * (y * image.width + x);
        return [...image.data.subarray(at, at + 3)];
    }

    camera = () => this.run(() => window.kvrView.camera());
    totals = () => this.run(() => window.kvrView.totals());
    text = (selector) => this.page.$eval(selector, (element) => element.textContent);

    /// All roles and names that a screen reader finds, one a line.
    async spoken() {
        const tree = await this.page.accessibility.snapshot({ interestingOnly: false });
        const lines = [];
        const walk = (node) => {
            node.name && lines.push(`${node.role} ${node.name}`);
            node.children?.forEach(walk);
        };
        walk(tree);
        return lines;
    }
}

export const near = (a, b, by) => a.length === b.length && a.every((part, i) => Math.abs(part - b[i]) <= by);

export function assertColor(found, wanted, by = 3) {
    assert.ok(near(found, wanted, by), `colour ${found} instead of ${wanted}`);
}
