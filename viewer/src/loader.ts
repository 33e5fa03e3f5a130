// The program stands packed in the page, which makes the file small. Unpacked it is a script whose hash the page's
// policy has.
async function load(): Promise<void> {
    const holder = document.getElementById('kvr-program');
    const packed = Uint8Array.from(atob(holder?.textContent ?? ''), (character) => character.charCodeAt(0));
    holder?.remove();
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
    const script = document.createElement('script');
    script.textContent = await new Response(stream).text();
    document.head.append(script);
}

load().catch((error: unknown) => {
    const host = document.getElementById('app');
    host && (host.textContent = 'This page needs a browser that can unpack data: one of 2023 or newer.');
    throw error;
});

export {};
