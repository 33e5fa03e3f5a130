// The start: unpacks what the page holds and shows it.
import { App } from './app';
import type { SceneFile, Triple } from './data/format';
import { readGeometry } from './data/geometry';
import { unpack } from './data/unpack';
import { element } from './panels/dom';
import { SceneModel } from './scene/model';

/// For scripts of whoever opens the page, and for tests: numbers of the picture.
export interface PageNumbers {
    project(point: Triple): Triple;
    camera(): unknown;
    totals(): { calls: number; pairs: number; triangles: number; trianglesDrawn: number };
    frames(): number;
    firstPicture: number;
    isMoving(): boolean;
}

declare global {
    interface Window {
        kvrView?: PageNumbers;
    }
}

async function start(host: HTMLElement): Promise<void> {
    host.replaceChildren(
        element('p', { class: 'loading', text: 'Reading the model\u2026', attributes: { role: 'status' } }),
    );
    const [scene, geometry] = await Promise.all([unpack('kvr-scene'), unpack('kvr-geometry')]);
    const file = JSON.parse(new TextDecoder().decode(scene)) as SceneFile;
    if (file.format !== 'kvr-view' || file.version !== 1) {
        throw new Error('The page holds data of another layout.');
    }
    const app = new App(new SceneModel(file, readGeometry(geometry)), host);
    const { picture } = app;
    picture?.draw();
    window.kvrView = {
        project: (point) => picture?.camera.project(point) ?? [0, 0, 0],
        camera: () => picture && { ...picture.camera.look, eye: picture.camera.eye() },
        totals: () => ({
            calls: picture?.calls ?? 0,
            ...(picture?.batches.totals() ?? { pairs: 0, triangles: 0 }),
            trianglesDrawn: picture?.trianglesDrawn ?? 0,
        }),
        frames: () => picture?.frames ?? 0,
        firstPicture: performance.now(),
        isMoving: () => picture?.isMoving ?? false,
    };
}

const host = document.getElementById('app');
if (host) {
    start(host).catch((error: unknown) => {
        const reason = error instanceof Error ? error.message : String(error);
        host.replaceChildren(
            element('p', {
                class: 'loading',
                text: `The model cannot be shown. ${reason}`,
                attributes: { role: 'alert' },
            }),
        );
        throw error;
    });
}
