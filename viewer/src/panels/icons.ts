// Icons: strokes in a square of 16.

const kShapes = {
    file: 'M4 1.5h5l3 3v10H4zM9 1.5v3h3',
    assembly: 'M1.5 5 5 3l3.5 2v4L5 11 1.5 9zM7.5 9.5 11 7.5l3.5 2v4L11 15.5l-3.5-2z',
    part: 'M2.5 5 8 2l5.5 3v6L8 14l-5.5-3zM2.5 5 8 8l5.5-3M8 8v6',
    body: 'M3 4.5C3 1.8 13 1.8 13 4.5v7c0 2.700-10 2.700-10 0zM3 4.500c0 2.700 10 2.700 10 0',
    mesh: 'M2 13 8 2l6 11zM5 7.500h6L8 13z',
    curve: 'M2 13C4 2 9 14 14 3',
    point: 'M8 4.500v7M4.500 8h7',
    cloud: 'M4 5h.1M8 4h.1M12 6h.1M5 9h.1M9 8h.1M12 11h.1M7 12h.1M3 12h.1',
    note: 'M2 2.500h12v8H7l-3 3v-3H2zM5 5.500h6M5 7.500h4',
    other: 'M3 3h10v10H3z',
    eye: 'M1.500 8C4 3.500 12 3.500 14.500 8 12 12.500 4 12.500 1.500 8zM8 6.200a1.800 1.800 0 1 0 .01 0z',
    eyeOff: 'M1.500 8C4 3.500 12 3.500 14.500 8 12 12.500 4 12.500 1.500 8zM2.500 13.500l11-11',
    open: 'M6 4l4 4-4 4',
    fit: 'M2 6V2h4M10 2h4v4M14 10v4h-4M6 14H2v-4M6 6h4v4H6z',
    perspective: 'M2.500 3.500v9M13.500 5.500v5M2.500 3.500l11 2M2.500 12.500l11-2',
    edges: 'M3 5.500h7.500V13H3zM3 5.500l3-3h7.500L10.500 5.500M13.500 2.500V10l-3 3',
    section: 'M3 13V4.500L13 2v8.500zM1.500 8l13-1.500',
    explode:
        'M6.500 6.500h3v3h-3zM4.500 4.500l-3-3M11.500 4.500l3-3M4.500 11.500l-3 3M11.500 11.500l3 3' +
        'M1.500 4V1.500H4M12 1.500h2.500V4M1.500 12v2.500H4M14.500 12v2.500H12',
    measure: 'M1.500 10.500l9-9 4 4-9 9zM4.500 7.500l1.500 1.500M7 5l2 2M9.500 2.500 11 4',
    theme: 'M8 2a6 6 0 1 0 0 12zM8 2a6 6 0 0 1 0 12',
    link: 'M7 9.500 9.500 7M6.500 5l2-2a3 3 0 0 1 4.500 4.500l-2 2M9.500 11l-2 2A3 3 0 0 1 3 8.500l2-2',
    image: 'M2 3h12v10H2zM2 11l3.500-4 3 3 2-2L14 11M10.500 5.500h.1',
    help: 'M8 1.500a6.500 6.500 0 1 0 .01 0zM6 6.200C6 3.600 10 3.700 10 6.200 10 8 8 7.800 8 9.500M8 11.700v.1',
    isolate: 'M8 5a3 3 0 1 0 .01 0zM8 1v2M8 13v2M1 8h2M13 8h2',
    ghost: 'M3 14V7a5 5 0 0 1 10 0v7l-1.700-1.500L9.600 14 8 12.500 6.400 14l-1.700-1.500zM6.300 7h.1M9.700 7h.1',
    copy: 'M5.500 5.500h8v8h-8zM3.500 10.500h-1v-8h8v1',
    close: 'M4 4l8 8M12 4l-8 8',
    flip: 'M8 2v12M5 5 2 8l3 3M11 5l3 3-3 3',
    all: 'M2 2.500h5v5H2zM9 2.500h5v5H9zM2 9.500h5v5H2zM9 9.500h5v5H9z',
    side: 'M2 3h12v10H2zM6 3v10',
    panel: 'M2 3h12v10H2zM10 3v10',
};

export type IconName = keyof typeof kShapes;

const kSpace = 'http://www.w3.org/2000/svg';

export function icon(name: IconName): SVGSVGElement {
    const made = document.createElementNS(kSpace, 'svg');
    made.setAttribute('viewBox', '0 0 16 16');
    made.setAttribute('class', `icon icon-${name}`);
    made.setAttribute('aria-hidden', 'true');
    const path = document.createElementNS(kSpace, 'path');
    path.setAttribute('d', kShapes[name]);
    made.append(path);
    return made;
}
