// Base64 and gzip, as data stand in the page.

type FromBase64 = { fromBase64?(text: string): Uint8Array<ArrayBuffer> };

function bytesOf(text: string): Uint8Array<ArrayBuffer> {
    const native = (Uint8Array as unknown as FromBase64).fromBase64;
    if (native) {
        return native.call(Uint8Array, text);
    }
    const characters = atob(text);
    const bytes = new Uint8Array(characters.length);
    for (let i = 0; i < bytes.length; ++i) {
        bytes[i] = characters.charCodeAt(i);
    }
    return bytes;
}

/// The unpacked content of a data element, which is emptied: nobody needs the text twice.
export async function unpack(elementId: string): Promise<ArrayBuffer> {
    const element = document.getElementById(elementId);
    const text = element?.textContent ?? '';
    const packed = bytesOf(text.trim());
    element?.replaceChildren();
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
    return new Response(stream).arrayBuffer();
}
