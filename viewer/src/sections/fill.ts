// Fills closed loops in a plane: what lies within an odd number of them.
import { ShapeUtils, Vector2 } from 'three';

interface Loop {
    points: Vector2[];
    area: number;
    low: Vector2;
    high: Vector2;
    depth: number;
}

function inside(point: Vector2, loop: Loop): boolean {
    if (point.x < loop.low.x || point.x > loop.high.x || point.y < loop.low.y || point.y > loop.high.y) {
        return false;
    }
    let is = false;
    const { points } = loop;
    for (let i = 0, j = points.length - 1; i < points.length; j = i++) {
        const [a, b] = [points[i], points[j]];
        if (a.y > point.y !== b.y > point.y && point.x < ((b.x - a.x) * (point.y - a.y)) / (b.y - a.y) + a.x) {
            is = !is;
        }
    }
    return is;
}

/// Corners of triangles.
export function fillLoops(outlines: Vector2[][]): Vector2[] {
    const loops = outlines.map((points): Loop => {
        const low = new Vector2(Infinity, Infinity);
        const high = new Vector2(-Infinity, -Infinity);
        points.forEach((point) => {
            low.min(point);
            high.max(point);
        });
        return { points, area: Math.abs(ShapeUtils.area(points)), low, high, depth: 0 };
    });
    // From the outside inwards.
    loops.sort((a, b) => b.area - a.area);
    const holes = new Map<Loop, Vector2[][]>();
    const corners: Vector2[] = [];
    loops.forEach((loop, i) => {
        const around = loops.slice(0, i).filter((outer) => inside(loop.points[0], outer));
        loop.depth = around.length;
        if (loop.depth % 2 === 0) {
            holes.set(loop, []);
        } else {
            const owner = around.findLast((outer) => outer.depth === loop.depth - 1);
            owner && holes.get(owner)?.push(loop.points);
        }
    });
    for (const [loop, within] of holes) {
        if (loop.area > 0) {
            const outline = oriented(loop.points, false);
            const cut = within.map((hole) => oriented(hole, true));
            const all = [outline, ...cut].flat();
            for (const triangle of ShapeUtils.triangulateShape(outline, cut)) {
                corners.push(...triangle.map((index) => all[index]));
            }
        }
    }
    return corners;
}

const oriented = (points: Vector2[], clockwise: boolean): Vector2[] =>
    ShapeUtils.isClockWise(points) === clockwise ? points : [...points].reverse();
