// A composition that holds one thing of the format is cropped so that a player shows the same, or left: drawn or not.

import assert from "node:assert/strict";
import { mkdirSync, writeFileSync } from "node:fs";
import test from "node:test";
import { inOutput, openBrowser, openPage, packages, readJson, run } from "./browser.mjs";
import { drawn, drawnInPlace, notDrawn } from "./drawn.mjs";

const exitCodes = [0, 3, 4];  // done, nothing to do, some compositions put back
const frames = [0, 3, 5, 8];
const edgePixels = 4 * frames.length;  // that a player smooths otherwise once they lie elsewhere

// The document's picture in a larger one: its layers become a composition that is used once.
function wrapped({ layers, assets, w, h, ...document }) {
  const use = { ddd: 0, ind: 1, ty: 0, nm: "use", refId: "whole", sr: 1, ao: 0, ip: 0, op: 10, st: 0, bm: 0, w, h,
    ks: { o: { a: 0, k: 100 }, r: { a: 0, k: 0 }, p: { a: 0, k: [20, 20, 0] }, a: { a: 0, k: [0, 0, 0] },
      s: { a: 0, k: [100, 100, 100] } } };
  return { ...document, w: w + 40, h: h + 40, layers: [use], assets: [...(assets ?? []), { id: "whole", nm: "whole", layers }] };
}

function preparePage() {
  async function pixels(player) {
    const { w, h } = player.animationData;
    const svg = player.renderer.svgElement;
    svg.setAttribute("width", w);
    svg.setAttribute("height", h);
    const image = new Image();
    image.src = `data:image/svg+xml,${encodeURIComponent(new XMLSerializer().serializeToString(svg))}`;
    await image.decode();
    const context = new OffscreenCanvas(w, h).getContext("2d", { willReadFrequently: true });
    context.drawImage(image, 0, 0);
    return context.getImageData(0, 0, w, h).data;
  }
  const load = (animationData) => lottie.loadAnimation({ container: document.body.appendChild(document.createElement("div")),
    renderer: "svg", autoplay: false, loop: false, animationData });

  // Pixels of the frames that differ by more than what an edge makes of a hair's breadth.
  globalThis.apart = async (before, after, frames) => {
    const players = [before, after].map((text) => load(JSON.parse(text)));
    let count = 0;
    for (const frame of frames) {
      for (const player of players) player.goToAndStop(frame, true);
      const [one, other] = await Promise.all(players.map(pixels));
      for (let i = 0; i < one.length; i += 4)
        if ([0, 1, 2, 3].some((c) => Math.abs(one[i + c] * one[i + 3] - other[i + c] * other[i + 3]) > 64 * 255)) ++count;
    }
    players.forEach((player) => player.destroy());
    document.body.replaceChildren();
    return count;
  };
}

const browser = await openBrowser();
test.after(() => browser.close());
const page = await openPage(browser);
await page.addScriptTag({ path: `${packages}/node_modules/lottie-web/build/player/lottie.min.js` });
await page.evaluate(preparePage);

async function cropAll(name, documents) {
  const folder = inOutput(name);
  mkdirSync(`${folder}/out`, { recursive: true });
  const files = Object.entries(documents).map(([thing, document], i) => {
    const file = `${folder}/${i}.json`;
    writeFileSync(file, JSON.stringify(wrapped(document)));
    return { thing, file, result: `${folder}/out/${i}.json` };
  });
  const told = JSON.parse(await run(["crop", "--all", ...files.map(({ file }) => file), "-o", `${folder}/out`, "--json"], exitCodes));
  return files.map((entry, i) => ({ ...entry, counts: told.files[i].counts }));
}

for (const [name, documents, areCropped] of [["drawn", { ...drawn, ...drawnInPlace }, true], ["not drawn", notDrawn, false]]) {
  test(`what is ${name}`, async (t) => {
    let cropped = 0;
    for (const { thing, file, result, counts } of await cropAll(name, documents)) {
      await t.test(thing, async () => {
        cropped += counts.cropped;
        if (!areCropped) assert.equal(counts.cropped, 0);
        if (counts.cropped === 0) return;
        const [before, after] = [file, result].map((each) => JSON.stringify(readJson(each)));
        const count = await page.evaluate((given) => apart(...given), [before, after, frames]);
        assert.ok(count <= edgePixels, `${count} pixels differ`);
      });
    }
    if (areCropped) assert.ok(cropped > Object.keys(documents).length / 2, `${cropped} were cropped`);
  });
}
