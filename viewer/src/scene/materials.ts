// Shaders. Colours go through as they are: a face square to the line of sight has exactly its style's colour.
import { DoubleSide, GLSL3, Matrix4, RawShaderMaterial, Vector3, Vector4 } from 'three';

export const kMostCuts = 6;

/// Shared by all materials: changing a value here changes it for all.
export interface SharedUniforms {
    cuts: { value: Vector4[] };
    accent: { value: Vector3 };
    hover: { value: Vector3 };
    edge: { value: Vector3 };
    edgeMix: { value: number };
    pointSize: { value: number };
    /// The size of what is drawn as one, in pixels of the page.
    pixel: { value: number };
    /// Everything to the picture.
    seen: { value: Matrix4 };
    /// The direction to the light, which goes with the eye.
    light: { value: Vector3 };
    /// The place of the eye and 1, or of parallel lines of sight the direction to it and 0.
    eye: { value: Vector4 };
    [name: string]: { value: unknown };
}

export function sharedUniforms(): SharedUniforms {
    return {
        cuts: { value: Array.from({ length: kMostCuts }, () => new Vector4()) },
        accent: { value: new Vector3(0.13, 0.45, 0.95) },
        hover: { value: new Vector3(0.13, 0.45, 0.95) },
        edge: { value: new Vector3(0.08, 0.09, 0.11) },
        edgeMix: { value: 0.82 },
        pointSize: { value: 4 },
        pixel: { value: 1 },
        seen: { value: new Matrix4() },
        light: { value: new Vector3(0, 0, 1) },
        eye: { value: new Vector4(0, 0, 1, 0) },
    };
}

const kLighting = `
vec4 litColor(vec3 n, vec3 world, vec4 paint, float mark) {
    // Against the line of sight: of a perspective from the eye, else the same everywhere.
    vec3 sight = eye.xyz - eye.w * world;
    float lit = dot(n, light) * (dot(n, sight) < 0.0 ? -0.46 : 0.46);
    float bright = clamp(0.58 + lit, 0.0, 1.0);
    vec3 c = paint.rgb * bright;
    if (mark > 1.5) c = mix(c, accent * (0.35 + 0.65 * bright), 0.62);
    else if (mark > 0.5) c = mix(c, hover, 0.22);
    return vec4(c, paint.a);
}`;

const kVertex = `
precision highp float;
uniform mat4 seen;
uniform float pointSize;
in vec3 position;
in vec4 row0;
in vec4 row1;
in vec4 row2;
in vec4 paint;
in float mark;
#ifdef SMOOTH
in vec3 normal;
#endif
#ifdef LIT
uniform vec3 accent;
uniform vec3 hover;
uniform vec3 light;
uniform vec4 eye;
out vec4 vColor;
${kLighting}
#else
#ifdef SMOOTH
out vec3 vNormal;
#endif
flat out vec4 vPaint;
flat out float vMark;
#endif
#ifdef WORLD
out vec3 vWorld;
#endif
void main() {
    vec4 own = vec4(position, 1.0);
    vec3 world = vec3(dot(row0, own), dot(row1, own), dot(row2, own));
#ifdef WORLD
    vWorld = world;
#endif
#ifdef SMOOTH
#ifdef UNEVEN
    vec3 x = vec3(row0.x, row1.x, row2.x);
    vec3 y = vec3(row0.y, row1.y, row2.y);
    vec3 z = vec3(row0.z, row1.z, row2.z);
    vec3 n = cross(y, z) * normal.x + cross(z, x) * normal.y + cross(x, y) * normal.z;
#else
    vec3 n = vec3(dot(row0.xyz, normal), dot(row1.xyz, normal), dot(row2.xyz, normal));
#endif
#endif
#ifdef LIT
    vColor = litColor(normalize(n), world, paint, mark);
#else
#ifdef SMOOTH
    vNormal = n;
#endif
    vPaint = paint;
    vMark = mark;
#endif
    gl_Position = seen * vec4(world, 1.0);
    gl_PointSize = pointSize;
}`;

const kCut = `
#if CUTS > 0
uniform vec4 cuts[${kMostCuts}];
void cutAway(vec3 world) {
    for (int i = 0; i < CUTS; ++i) {
#ifdef OWN_CUT
        if (i == OWN_CUT) continue;
#endif
        if (dot(cuts[i].xyz, world) > cuts[i].w) discard;
    }
}
#endif`;

const kFaces = `
precision highp float;
uniform vec3 accent;
uniform vec3 hover;
uniform vec3 light;
uniform vec4 eye;
${kCut}
#ifdef LIT
in vec4 vColor;
#else
#ifdef SMOOTH
in vec3 vNormal;
#endif
flat in vec4 vPaint;
flat in float vMark;
${kLighting}
#endif
#ifdef WORLD
in vec3 vWorld;
#endif
out vec4 color;
void main() {
#if CUTS > 0
    cutAway(vWorld);
#endif
#ifdef LIT
    color = vColor;
#else
#ifdef SMOOTH
    vec3 n = normalize(vNormal);
#else
    vec3 n = normalize(cross(dFdx(vWorld), dFdy(vWorld)));
#endif
    color = litColor(n, vWorld, vPaint, vMark);
#endif
}`;

const kLines = `
precision highp float;
uniform vec3 accent;
uniform vec3 edge;
uniform float edgeMix;
${kCut}
in vec3 vWorld;
flat in vec4 vPaint;
flat in float vMark;
out vec4 color;
void main() {
#if CUTS > 0
    cutAway(vWorld);
#endif
#ifdef EDGES
    vec3 c = mix(vPaint.rgb, edge, edgeMix);
#else
    vec3 c = vPaint.rgb;
#endif
#ifdef ROUND
    vec2 from = gl_PointCoord - 0.5;
    if (dot(from, from) > 0.25) discard;
#endif
    if (vMark > 0.5) c = accent;
    color = vec4(c, vPaint.a);
}`;

const kFlatVertex = `
precision highp float;
uniform mat4 seen;
uniform float depthShift;
in vec3 position;
in vec4 paint;
out vec3 vWorld;
flat out vec4 vPaint;
void main() {
    vWorld = position;
    vPaint = paint;
    gl_Position = seen * vec4(position, 1.0);
    gl_Position.z -= depthShift * gl_Position.w;
    gl_PointSize = 9.0;
}`;

const kFlat = `
precision highp float;
uniform float pixel;
${kCut}
in vec3 vWorld;
flat in vec4 vPaint;
out vec4 color;
void main() {
#if CUTS > 0
    cutAway(vWorld);
#endif
    vec3 c = vPaint.rgb;
#ifdef HATCHED
    if (mod((gl_FragCoord.x + gl_FragCoord.y) * pixel, 9.0) < 1.2) c *= 0.62;
#endif
    color = vec4(c, vPaint.a);
}`;

interface Kind {
    role: 'faces' | 'edges' | 'lines' | 'points';
    smooth?: boolean;
    /// Scaled differently in different directions.
    uneven?: boolean;
    transparent?: boolean;
    cuts: number;
    /// Lit at its corners alone, which is less work.
    light?: boolean;
}

/// Of what is drawn by instances: each has its place, its paint and a mark (1 hovered, 2 selected).
export function instanceMaterial(shared: SharedUniforms, kind: Kind): RawShaderMaterial {
    const isFaces = kind.role === 'faces';
    const defines: Record<string, number> = { CUTS: kind.cuts };
    const isLitAtCorners = isFaces && kind.smooth && kind.light;
    if (isLitAtCorners) {
        defines.LIT = 1;
    }
    if (!isLitAtCorners || kind.cuts > 0) {
        defines.WORLD = 1;
    }
    if (kind.smooth) {
        defines.SMOOTH = 1;
    }
    if (kind.uneven) {
        defines.UNEVEN = 1;
    }
    if (kind.role === 'edges') {
        defines.EDGES = 1;
    } else if (kind.role === 'points') {
        defines.ROUND = 1;
    }
    return new RawShaderMaterial({
        glslVersion: GLSL3,
        vertexShader: kVertex,
        fragmentShader: isFaces ? kFaces : kLines,
        uniforms: shared,
        defines,
        side: DoubleSide,
        transparent: kind.transparent ?? false,
        depthWrite: !kind.transparent,
        polygonOffset: isFaces,
        polygonOffsetFactor: 1,
        polygonOffsetUnits: 1,
    });
}

/// Of what stands in the scene's coordinates with a paint for each corner.
export function flatMaterial(
    shared: SharedUniforms,
    options: { cuts?: number; ownCut?: number; hatched?: boolean; depthShift?: number; onTop?: boolean },
): RawShaderMaterial {
    const defines: Record<string, number> = { CUTS: options.cuts ?? 0 };
    if (options.ownCut !== undefined) {
        defines.OWN_CUT = options.ownCut;
    }
    if (options.hatched) {
        defines.HATCHED = 1;
    }
    return new RawShaderMaterial({
        glslVersion: GLSL3,
        vertexShader: kFlatVertex,
        fragmentShader: kFlat,
        uniforms: { ...shared, depthShift: { value: options.depthShift ?? 0 } },
        defines,
        side: DoubleSide,
        transparent: true,
        depthTest: !options.onTop,
        depthWrite: !options.onTop && !options.depthShift,
    });
}
