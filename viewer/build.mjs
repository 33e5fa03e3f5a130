// Bundles src/ into dist/template.html: one page with its script and style inside, and a policy that lets those run
// alone. What stands in {{...}} is filled in by kvr.
import { createHash } from 'node:crypto';
import { mkdir, readFile, rename, writeFile } from 'node:fs/promises';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';

const folder = dirname(fileURLToPath(import.meta.url));
// Another folder for the result may be named.
const output = process.argv[2] ?? join(folder, 'dist', 'template.html');

async function bundle(entry) {
    const result = await build({
        entryPoints: [join(folder, 'src', entry)],
        bundle: true,
        write: false,
        minify: true,
        format: 'iife',
        target: ['es2022', 'chrome110', 'firefox115', 'safari16.4'],
        legalComments: 'none',
        charset: 'ascii',
    });
    return result.outputFiles[0].text.trim();
}

const hash = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;

const program = await bundle('main.ts');
const loader = await bundle('loader.ts');
const style = await bundle('style.css');
if (/<\/script|<!--/i.test(loader) || /<\/style/i.test(style)) {
    throw new Error('a script or style would end its element');
}
const policy = [
    "default-src 'none'",
    `script-src ${hash(loader)} ${hash(program)}`,
    `style-src ${hash(style)}`,
    'img-src data: blob:',
    "base-uri 'none'",
    "form-action 'none'",
].join('; ');

const parts = {
    POLICY: policy,
    STYLE: style,
    LOADER: loader,
    PROGRAM: gzipSync(program, { level: 9 }).toString('base64'),
};
let page = await readFile(join(folder, 'src', 'page.html'), 'utf8');
for (const [name, text] of Object.entries(parts)) {
    page = page.replace(`{{${name}}}`, () => text);
}
for (const name of ['KVR_TITLE', 'KVR_GEOMETRY', 'KVR_SCENE']) {
    if (page.split(`{{${name}}}`).length !== 2) {
        throw new Error(`the page has to have {{${name}}} once`);
    }
}
await mkdir(dirname(output), { recursive: true });
await writeFile(`${output}.new`, page);
await rename(`${output}.new`, output);
