// Small documents, one for each line of what is drawn exactly and of what is not. All are 100 x 100 and have ten
// frames a second, of which `frames` are compared.

const still = (k) => ({ a: 0, k });
const ease = { i: { x: [0.8], y: [0.8] }, o: { x: [0.2], y: [0.2] } };
// Keys as [time, value, more].
const moving = (...keys) => ({ a: 1, k: keys.map(([t, s, more], i) =>
  ({ t, s, ...(i + 1 < keys.length ? ease : {}), ...more })) });
const says = (property, x) => ({ ...property, x: `var $bm_rt;\n$bm_rt = ${x};` });

const transform = (ks) => ({ o: still(100), r: still(0), p: still([0, 0, 0]), a: still([0, 0, 0]),
  s: still([100, 100, 100]), ...ks });
const layer = (ty, { ks, ...more } = {}) => ({ ddd: 0, ind: 1, ty, nm: "L", sr: 1, ks: transform(ks), ao: 0, ip: 0,
  op: 10, st: 0, bm: 0, ...more });
const scene = (layers, more) => ({ v: "5.7.0", fr: 10, ip: 0, op: 10, w: 100, h: 100, nm: "Scene", ddd: 0, assets: [],
  layers, ...more });
const animated = (document, frames = [0, 3, 5, 8]) => ({ ...document, frames });

const solid = (more) => layer(1, { sw: 60, sh: 40, sc: "#3366cc", ...more });
const shapes = (it, more) => scene([layer(4, { shapes: it, ...more })]);
const rectangle = (more) => ({ ty: "rc", d: 1, s: still([40, 30]), p: still([50, 50]), r: still(0), hd: false, ...more });
const ellipse = (more) => ({ ty: "el", d: 1, s: still([50, 30]), p: still([50, 50]), ...more });
const star = (more) => ({ ty: "sr", sy: 1, d: 1, pt: still(5), p: still([50, 50]), r: still(0), ir: still(15),
  is: still(0), or: still(40), os: still(0), ...more });
const fill = (more) => ({ ty: "fl", c: still([0.2, 0.5, 0.9, 1]), o: still(100), r: 1, ...more });
const stroke = (more) => ({ ty: "st", c: still([0.9, 0.2, 0.1, 1]), o: still(100), w: still(6), lc: 2, lj: 2, ...more });
const groupTransform = (more) => ({ ty: "tr", p: still([0, 0]), a: still([0, 0]), s: still([100, 100]), r: still(0),
  o: still(100), sk: still(0), sa: still(0), ...more });
const group = (it, more) => ({ ty: "gr", it: [...it, groupTransform(more)], np: it.length, cix: 2, bm: 0 });
const outline = (v, i, o, c = true) => ({ v, i: i ?? v.map(() => [0, 0]), o: o ?? v.map(() => [0, 0]), c });
const triangle = outline([[20, 20], [80, 30], [40, 80]]);
const crossed = outline([[20, 80], [50, 15], [80, 80], [15, 40], [85, 40]]);
const round = outline([[20, 50], [50, 20], [80, 50], [50, 80]], [[0, 20], [-20, 0], [0, -20], [20, 0]],
  [[0, -20], [20, 0], [0, 20], [-20, 0]]);
const wide = { ...round, v: [[0, 50], [50, 0], [80, 50], [50, 80]] };
const square = outline([[30, 30], [95, 30], [95, 95], [30, 95]]);
const open = (path) => ({ ...path, c: false });
const path = (k, more) => ({ ty: "sh", ind: 0, ks: still(k), ...more });
const trim = (more) => ({ ty: "tm", s: still(0), e: still(50), o: still(0), m: 1, ...more });
const gradient = (more) => ({ ty: "gf", o: still(100), r: 1, g: { p: 3, k: still([0, 1, 0, 0, 0.5, 0, 1, 0, 1, 0, 0, 1]) },
  s: still([20, 50]), e: still([80, 50]), t: 1, ...more });
const plate = rectangle({ s: still([80, 80]) });
const dash = (n, v) => ({ n, nm: n, v: still(v) });
const copies = (more, tr) => ({ ty: "rp", c: still(3), o: still(0), m: 1, tr: { ty: "tr", p: still([15, 10]),
  a: still([0, 0]), s: still([100, 100]), r: still(0), so: still(100), eo: still(100), ...tr }, ...more });
const dot = group([rectangle({ s: still([14, 14]), p: still([20, 20]) }), fill()]);

const use = (more) => layer(0, { refId: "c", w: 60, h: 60, ...more });
const inside = (...layers) => ({ assets: [{ id: "c", nm: "c", layers }] });
const oval = layer(4, { shapes: [ellipse({ s: still([70, 40]), p: still([40, 30]) }), fill()] });
const mover = solid({ sw: 20, sh: 20, ks: { p: moving([0, [0, 0, 0]], [9, [60, 60, 0]]) } });

const mask = (mode, pt = round, more) => ({ inv: false, mode, pt: still(pt), o: still(100), x: still(0), ...more });
const masked = (...masksProperties) => scene([solid({ sw: 100, sh: 100, hasMask: true, masksProperties })]);
const source = (more) => ({ ...layer(4, { td: 1, shapes: [ellipse(), fill({ c: still([1, 1, 1, 1]) })], ...more }), ind: 1 });
const target = (tt, more) => ({ ...solid({ sw: 100, sh: 100, tt, ...more }), ind: 2 });

const keyed = (k) => animated(scene([solid({ sw: 20, sh: 20, ks: { p: { a: 1, k } } })]));
const control = (nm, ty, k, of) => ({ ty: 5, nm, en: 1, ef: [{ ty, nm: of, v: still(k) }] });
const told = (name, base, x, frames) => animated(scene([
  { ...solid({ sw: 20, sh: 20, ks: { [name]: says(base, x) } }), nm: "A" },
  { ...layer(3, { ks: { p: still([30, 20, 0]), r: still(30) }, ef: [control("S", 0, 25, "Slider"),
    control("P", 3, [30, 40], "Point")] }), nm: "controls", ind: 2 }]), frames);
const effect = (ty, values, more) => shapes([rectangle(), fill()], { ef: [{ ty, nm: "e", en: 1,
  ef: values.map(([type, k], i) => ({ ty: type, nm: `v${i}`, v: still(k) })), ...more }] });

const glyph = (ch, v, w = 60) => ({ ch, size: 20, style: "Regular", w, fFamily: "F", data: v
  ? { shapes: [{ ty: "gr", it: [path(outline(v))] }] } : {} });
const written = (s, t, more) => scene([layer(5, { ks: { p: still([10, 50, 0]) }, t: { d: { k: [{ t: 0, s: { s: 20,
  f: "F-Regular", t: "AB", j: 0, tr: 0, lh: 24, ls: 0, fc: [0.2, 0.4, 0.9], ...s } }] }, p: {}, m: { g: 1,
  a: still([0, 0]) }, a: [], ...t } })], { fonts: { list: [{ fName: "F-Regular", fFamily: "F", fStyle: "Regular",
  ascent: 72 }] }, chars: [glyph("A", [[5, 0], [30, -70], [55, 0]]), glyph("B", [[5, 0], [5, -70], [50, -60], [50, 0]]),
  glyph(" ", null, 30)], ...more });
const range = (a) => [{ s: { t: 0, xe: still(0), ne: still(0), a: still(100), b: 1, rn: 0, sh: 1, r: 1 }, a }];

const png = "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAQAAAADCAIAAAA7ljmRAAAAGklEQVR42mNg6Pj/v4MBiIAMBjgLRMJZQAQAaZgSVekL5QMAAAAASUVORK5CYII=";
const svg = "data:image/svg+xml;base64,PHN2ZyB4bWxucz0iaHR0cDovL3d3dy53My5vcmcvMjAwMC9zdmciIHdpZHRoPSI0MCIgaGVpZ2h0PSIzMCIvPg==";
const pictured = (asset, more) => scene([layer(2, { refId: "i", ...more })],
  { assets: [{ id: "i", w: 4, h: 3, u: "", e: 1, p: png, ...asset }] });

export const drawn = {
  // Layers
  "solid": scene([solid({ ks: { p: still([20, 30, 0]) } })]),
  "rotated": scene([solid({ ks: { p: still([50, 50, 0]), a: still([30, 20, 0]), r: still(30) } })]),
  "skewed": scene([solid({ ks: { p: still([40, 30, 0]), sk: still(30), sa: still(45) } })]),
  "mirrored": scene([solid({ ks: { p: still([80, 30, 0]), s: still([-100, 50, 100]) } })]),
  "turned by rz": scene([solid({ ks: { p: still([50, 50, 0]), r: undefined, rz: still(30) } })]),
  "separated position": animated(scene([solid({ ks: { p: { s: true, x: moving([0, [0]], [9, [40]]), y: still(20) } } })])),
  "parents": scene([solid({ parent: 2, ks: { p: still([10, 10, 0]) } }),
    { ...layer(3, { ks: { p: still([20, 20, 0]), r: still(20), o: still(10) } }), ind: 2 }]),
  "in and out": animated(scene([solid({ ip: 3, op: 6 })])),
  "hidden": scene([solid({ hd: true }), { ...solid({ sw: 20 }), ind: 2 }]),
  "partly clear shapes": shapes([rectangle(), fill({ o: still(50) })], { ks: { o: still(40) } }),
  "start of a layer": animated(scene([solid({ st: 3, sr: 2, ks: { p: moving([0, [0, 0, 0]], [9, [40, 50, 0]]) } })])),
  "members that say nothing": scene([solid({ ct: 1, cl: "x", ln: "y", bounds: { t: 0, l: 0, b: 3, r: 3 } })]),
  // Uses
  "use": scene([use({ ks: { p: still([20, 20, 0]) } })], inside(oval)),
  "rotated use": scene([use({ ks: { p: still([50, 50, 0]), a: still([30, 30, 0]), r: still(30) } })], inside(oval)),
  "partly clear use": scene([use({ ks: { o: still(40) } })], inside(oval, { ...solid(), ind: 2 })),
  "start and stretch": animated(scene([use({ sr: 0.5, st: 2 })], inside(mover))),
  "start between frames": animated(scene([use({ st: 0.5 })], inside(mover))),
  "time remap": animated(scene([use({ tm: moving([0, [0]], [9, [0.5]]) })], inside(mover))),
  "time stands still": animated(scene([use({ st: 3, sr: 2, tm: still(0.4) })], inside(mover))),
  "collapsed use": scene([use({ ct: 1, ks: { p: still([20, 20, 0]) } })], inside(oval)),
  // Masks
  ...Object.fromEntries(["a", "s", "i", "n"].map((mode) => [`mask ${mode}`, masked(mask(mode))])),
  "masks added": masked(mask("a", triangle), mask("a", square), mask("a")),
  "masks subtracted": masked(mask("s", triangle), mask("s")),
  "masks intersected": masked(mask("i"), mask("i", triangle)),
  "masks added, intersected, subtracted": masked(mask("a"), mask("i", square), mask("n"), mask("s", triangle)),
  "mask partly clear": masked(mask("a", round, { o: still(40) })),
  "mask moves": animated(masked(mask("a", round, { pt: moving([0, [round]], [9, [wide]]) }))),
  "mask of a use": scene([use({ hasMask: true, masksProperties: [mask("a", triangle)] })], inside(oval)),
  // Mattes
  ...Object.fromEntries([1, 2, 3].map((mode) => [`matte ${mode}`,
    scene([source({ shapes: [ellipse(), fill({ c: still([0.2, 0.6, 0.3, 1]), o: still(70) })] }), target(mode)])])),
  "matte by index": scene([{ ...solid({ sw: 20, sh: 20 }), ind: 3 }, source(), { ...solid({ sh: 30 }), ind: 4 },
    target(1, { tp: 1 })]),
  "matte by index from below": scene([target(1, { tp: 1 }), source()]),
  "matte out of time": animated(scene([source({ op: 4 }), target(2)])),
  "masked matte": scene([source({ hasMask: true, masksProperties: [mask("a", triangle)] }), target(1)]),
  "masked under a matte": scene([source(), target(1, { hasMask: true, masksProperties: [mask("a", triangle)] })]),
  "mattes of compositions": scene([use({ td: 1 }), { ...use({ tt: 2, refId: "c" }), ind: 2 }], inside(oval)),
  // Shapes
  "rectangle": shapes([rectangle({ r: still(10) }), fill(), stroke()]),
  "rectangle rounder than it is": shapes([rectangle({ r: still(100) }), fill()]),
  "ellipse": shapes([ellipse(), fill(), stroke({ o: still(50) })]),
  "star": shapes([star({ r: still(20), is: still(40), os: still(60) }), fill()]),
  "path": shapes([path(round), fill(), stroke()]),
  "open path": shapes([path(open(triangle)), fill(), stroke()]),
  "path moves": animated(shapes([path(null, { ks: moving([0, [round]], [9, [wide]]) }), fill()])),
  "fill rules": shapes([group([path(crossed), fill({ r: 2 })]), group([path(square), fill({ r: 1 })])]),
  "paints between shapes": shapes([fill(), rectangle({ p: still([40, 40]) }), fill(), rectangle({ p: still([60, 60]) }),
    fill({ c: still([1, 0, 0, 1]) })]),
  ...Object.fromEntries([1, 2, 3].map((kind) => [`line ends and joins ${kind}`,
    shapes([path(open(triangle)), stroke({ lc: kind, lj: kind, w: still(12), ml: 4 })])])),
  "mitre below its limit": shapes([path(open(outline([[20, 70], [80, 60], [20, 50]]))), stroke({ lj: 1, ml: 20 })]),
  "mitre above its limit": shapes([path(open(outline([[20, 70], [80, 60], [20, 50]]))), stroke({ lj: 1, ml: 2 })]),
  "dashes": shapes([rectangle(), stroke({ d: [dash("d", 10), dash("g", 6), dash("o", 4)] })]),
  "line without width": shapes([rectangle(), stroke({ w: still(0) })]),
  "line scaled by its group": shapes([group([rectangle({ p: still([0, 0]) }), stroke()],
    { p: still([50, 50]), s: still([200, 50]) })]),
  "line around a scaled group": shapes([group([rectangle({ p: still([0, 0]) })],
    { p: still([50, 50]), s: still([200, 50]) }), stroke()]),
  "groups": shapes([group([group([rectangle({ p: still([0, 0]) })], { p: still([20, 0]) }), fill()],
    { p: still([40, 50]), r: still(45), sk: still(30), sa: still(40) })]),
  "partly clear group": shapes([group([rectangle(), fill({ o: still(50) })], { o: still(40) })]),
  "gradient": shapes([plate, gradient({ o: still(50) })]),
  "round gradient": shapes([plate, gradient({ t: 2, s: still([50, 50]), e: still([90, 50]) })]),
  "gradient that fades": shapes([plate, gradient({ g: { p: 2, k: still([0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 1, 0]) } })]),
  "line of a gradient": shapes([plate, { ...gradient({ w: still(10), lc: 2, lj: 2, ml: 4 }), ty: "gs", r: undefined }]),
  "trim": shapes([path(round), stroke(), trim({ s: still(20), e: still(80), o: still(200) })]),
  "trim of a rectangle": shapes([rectangle({ r: still(8) }), stroke(), trim({ e: still(33) })]),
  "trim of groups": shapes([group([path(round), stroke()]), group([rectangle(), stroke()]), trim()]),
  "trim moves": animated(shapes([path(round), stroke(), trim({ e: moving([0, [0]], [9, [100]]) })])),
  "merged": shapes([rectangle(), ellipse({ p: still([60, 60]) }), { ty: "mm", mm: 3 }, fill()]),
  "copies": shapes([dot, copies({}, { s: still([80, 80]), r: still(10), a: still([20, 20]) })]),
  // Keyframes
  "keys": keyed([{ t: 0.5, s: [0, 0, 0], ...ease }, { t: 7.25, s: [50, 50, 0] }]),
  "keys that hold": keyed([{ t: 0, s: [0, 0, 0], h: 1 }, { t: 5, s: [50, 50, 0], h: 1 }, { t: 9, s: [20, 20, 0] }]),
  "keys with their ends": keyed([{ t: 0, s: [0, 0, 0], e: [50, 50, 0], ...ease, n: "x" }, { t: 9 }]),
  "keys with ends of their own": keyed([{ t: 0, s: [0, 0, 0], e: [50, 50, 0], ...ease },
    { t: 5, s: [20, 70, 0], e: [0, 0, 0], ...ease }, { t: 9 }]),
  "keys beyond their values": keyed([{ t: 0, s: [0, 0, 0], i: { x: 0.5, y: 1.6 }, o: { x: 0.5, y: -0.6 } },
    { t: 9, s: [50, 50, 0] }]),
  // Expressions
  "value of its own": told("p", still([20, 20, 0]), "$bm_sum(value, [10, 5])"),
  "time": told("r", still(0), "$bm_mul(time, 90)"),
  "condition": told("r", still(20), "time > 0.4 ? 60 : 10"),
  "mathematics": told("r", still(0), "Math.sin(time * 3) * 40"),
  "linear": told("p", still([0, 0, 0]), "linear(time, 0, 1, [0, 0], [50, 60])"),
  "slider": told("r", still(0), "$bm_mul(thisComp.layer('controls').effect('S')('Slider'), 2)"),
  "point": told("p", still([0, 0, 0]), "thisComp.layer('controls').effect('P')('Point')"),
  "other layer": told("r", still(0), "thisComp.layer('controls').transform.rotation"),
  "index": told("r", still(20), "$bm_mul(index, 20)"),
  "size of a shape": animated(shapes([rectangle({ s: says(still([40, 30]), "[60, $bm_mul(time, 50)]") }), fill()])),
  "width of a line": animated(shapes([rectangle(), stroke({ w: says(still(2), "$bm_sum(value, 6)") })])),
  "expression in a group": animated(shapes([group([ellipse(), fill()], { r: says(still(0), "$bm_mul(time, 40)") })])),
  "time remap by time": animated(scene([use({ tm: says(still(0), "$bm_mul(time, 0.5)") })], inside(mover))),
  "another composition that says the same": shapes([rectangle(), stroke({ w: says(still(6),
    "$bm_mul($bm_div(value, 2), comp('Scene').layer('L').effect('Width')('Menu'))") })],
    { ef: [control("Width", 7, 2, "Menu")] }),
  // Effects
  "controls": shapes([rectangle(), fill()], { ef: [control("S", 0, 25, "Slider")] }),
  "fill effect": effect(21, [[10, 0], [7, 0], [2, [0, 0, 1, 1]], [7, 0], [0, 0], [0, 0], [0, 0.5]]),
  "effect that is off": effect(25, [[2, [0, 0, 0, 1]], [0, 180], [0, 135], [0, 10], [0, 8]], { en: 0 }),
  // Text
  "text": written(),
  "text in the middle": written({ j: 1, ls: 5, t: "A B" }),
  "spaced text": written({ tr: 100 }),
  "text at the end": written({ j: 2, s: 37.5 }),
  "lines of text": written({ t: "AB\rBA" }),
  "text with outline": written({ sc: [1, 0, 0], sw: 2, of: true }),
  "ranges that change nothing": written({}, { a: range({ t: still(0) }) }),
  "other text later": animated(written({}, { d: { k: ["AB", "BA"].map((t, i) => ({ t: 4 * i, s: { s: 20 + 10 * i,
    f: "F-Regular", t, j: 0, tr: 0, lh: 24, ls: 0, fc: [0.2, 0.4, 0.9] } })) } })),
  // Pictures
  "picture": pictured({}, { ks: { s: still([1000, 1000, 100]) } }),
  "larger picture": pictured({ w: 80, h: 60 }, { ks: { p: still([10, 10, 0]) } }),
};

// Drawn where it is, in other colours.
export const drawnInPlace = {
  "expression on a colour": shapes([rectangle(), fill({ c: says(still([1, 0, 0, 1]), "loopOut('cycle')") })]),
  "tint": effect(20, [[2, [0, 0, 0, 1]], [2, [0, 1, 1, 1]], [0, 100]]),
  "tritone": effect(23, [[2, [1, 1, 1, 1]], [2, [0, 0.5, 1, 1]], [2, [0, 0, 0, 1]], [0, 0]]),
};

const bad = (name, base, x) => told(name, base, x);
export const notDrawn = {
  "layer-unknown": scene([solid({ glow: 1 })]),
  "layer-type": scene([layer(99)]),
  "layer-bm": scene([solid({ bm: 3 })]),
  "layer-ao": scene([solid({ ao: 1 })]),
  "layer-ddd": scene([solid({ ddd: 1 })]),
  "layer-sw": scene([solid({ sw: 60.5 })]),
  "layer-sc": scene([solid({ sc: "#36c" })]),
  "layer-tt": scene([source(), target(4)]),
  "camera": scene([layer(13)]),
  "transform-rx": scene([solid({ ks: { rx: still(20) } })]),
  "transform-unknown": scene([solid({ ks: { bend: still(20) } })]),
  "solid-opacity": scene([solid({ ks: { o: still(50) } })]),
  "use-without-size": scene([use({ w: undefined, h: undefined })], inside(oval)),
  "between-frames": scene([solid({ ip: 2.2, op: 2.8 })]),
  "mask-inv": masked(mask("a", round, { inv: true })),
  "mask-x": masked(mask("a", round, { x: still(8) })),
  "mask-mode": masked(mask("d")),
  "mask-pt": masked(mask("a", open(round))),
  "mask-order": masked(mask("s"), mask("a", triangle)),
  "mask-unmarked": scene([solid({ masksProperties: [mask("a")] })]),
  "matte-source": scene([source({ td: undefined }), target(1)]),
  "matte-hidden": scene([source({ hd: true }), target(1)]),
  "matte-matted": scene([{ ...source(), ind: 3 }, source({ tt: 1 }), target(1)]),
  "matte-colours": scene([source({ shapes: [ellipse(), fill({ c: says(still([1, 0, 0, 1]), "value") })] }), target(3)]),
  ...Object.fromEntries(["op", "zz", "pb", "tw", "rd", "??"].map((ty) => [`shape-${ty}`,
    shapes([rectangle(), fill(), { ty, a: still(6) }])])),
  "rectangle-s": shapes([rectangle({ s: still([-40, 30]) }), fill()]),
  "rectangle-hd": shapes([rectangle({ hd: 1 }), fill()]),
  "fill-bm": shapes([rectangle(), fill({ bm: 1 })]),
  "star-sy": shapes([star({ sy: 2 }), fill()]),
  "star-pt": shapes([star({ pt: still(5.5) }), fill()]),
  "path-closed": shapes([path({ ...round, c: undefined }, { closed: true }), fill()]),
  "path-ks": shapes([path(null, { ks: moving([0, [round]], [9, [triangle]]) }), fill()]),
  "gradient-point": shapes([plate, gradient({ t: 2, s: still([50, 50]), e: still([50, 50]) })]),
  "trim-m": shapes([rectangle(), stroke(), trim({ m: 2 })]),
  "miter-limit": shapes([path(triangle), stroke({ lj: 1 })]),
  "dash-caps": shapes([rectangle(), stroke({ lc: 1, d: [dash("d", 10), dash("g", 6)] })]),
  "repeater-c": shapes([dot, copies({ c: still(2.5) })]),
  "repeater-m": shapes([dot, copies({ m: 2 })]),
  "repeater-twice": shapes([dot, copies(), copies()]),
  "group-order": shapes([{ ty: "gr", it: [groupTransform(), rectangle(), fill()] }]),
  "group-opacity": shapes([group([rectangle(), fill(), ellipse(), fill()], { o: still(50) })]),
  "keyframe-h": keyed([{ t: 0, s: [0, 0, 0], h: true }, { t: 9, s: [50, 50, 0] }]),
  "keyframe-i": keyed([{ t: 0, s: [0, 0, 0], i: { x: [0.8, 0.2], y: [1, 0] }, o: { x: [0.2], y: [0] } },
    { t: 9, s: [50, 50, 0] }]),
  "transform-p": keyed([{ t: 0, s: [0, 0, 0] }, { t: 9, s: [50, 50, 0] }]),
  "curved-motion": keyed([{ t: 0, s: [0, 0, 0], to: [30, 0, 0], ti: [0, -30, 0], ...ease }, { t: 9, s: [50, 50, 0] }]),
  "expression": told("p", still([20, 20, 0]), "comp('Other').layer('x').transform.position"),
  ...Object.fromEntries([22, 24, 25, 29, 35, 99].map((ty) => [`effect-${ty}`, effect(ty, [])])),
  "styles": scene([solid({ sy: [{ ty: 1 }] })]),
  "text-without-font": written({ t: "AC" }),
  "text-outlined": written({ fc: undefined, sc: [1, 0, 0], sw: 2 }),
  "text-spaced": written({ tr: 100, j: 1 }),
  "text-unknown": written({ sz: [60, 60], ps: [0, -20] }),
  "text-a": written({}, { a: range({ r: still(30) }) }),
  "text-p": written({}, { p: { m: 0 } }),
  "text-d": written({}, { d: { ...written().layers[0].t.d, x: "'B'" } }),
  "image-type": pictured({ p: svg }),
  "image-shape": pictured({ w: 60, h: 20 }),
};

// One code, in several forms.
export const moreExpressionsNotDrawn = ["wiggle(2, 20)", "random(90)", "thisComp.layer('controls').effect(1)(1)",
  "thisComp.layer('nobody').transform.rotation", "loopOut('cycle')", "ease(time, 0, 1, 0, 90)", "thisProperty.value",
  "eval('1')", "value/**/"].map((x) => bad("r", still(0), x));
