// What is called drawn is drawn by us as by lottie-web, and what is not is reported.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync, writeFileSync } from "node:fs";
import test from "node:test";
import { inOutput, openBrowser, openPage, packages, run } from "./browser.mjs";
import { drawn, drawnInPlace, moreExpressionsNotDrawn, notDrawn } from "./drawn.mjs";

const sameLevel = 32;    // of 255, where no edge is near
const fewPixels = 8;     // two ways to draw a corner

function write(name, document) {
  const file = inOutput(`${name.replace(/[^\w-]/g, "_")}.json`);
  writeFileSync(file, JSON.stringify(document));
  return file;
}

// The codes that are reported of each document.
function reported(documents) {
  const files = documents.map(([name, document]) => write(name, document));
  const lines = execFileSync(process.env.KESTRIN_VERDICTS, files, { encoding: "utf8" }).split("\n");
  return documents.map(([name], i) => [name, lines[i].trim().split(" ").filter(Boolean)]);
}

test("what is drawn is not reported", () => {
  for (const [name, codes] of reported(Object.entries({ ...drawn, ...drawnInPlace }))) assert.deepEqual(codes, [], name);
});

test("what is not drawn is reported", () => {
  for (const [code, codes] of reported(Object.entries(notDrawn))) assert.ok(codes.includes(code), `${code}: ${codes}`);
  for (const [i, codes] of reported(Object.entries(moreExpressionsNotDrawn))) assert.deepEqual(codes, ["expression"], i);
});

// ---- In the page --------------------------------------------------------------------------------------

function preparePage() {
  const size = 100;

  async function pixels(source) {
    const image = new Image();
    image.src = source;
    await image.decode();
    const context = new OffscreenCanvas(size, size).getContext("2d", { willReadFrequently: true });
    context.drawImage(image, 0, 0);
    const { data } = context.getImageData(0, 0, size, size);
    return data.map((level, i) => (i % 4 === 3 ? level : (level * data[i | 3]) / 255));
  }

  // Pixels of `one` that are beyond what lies around them in `other`: whatever way edges are smoothed.
  function beyond(one, other, first, tolerance) {
    let count = 0;
    for (let at = 0; at < size * size; ++at) {
      let isBeyond = false;
      for (let channel = first; channel < 4; ++channel) {
        const around = [];
        for (let y = Math.max(0, (at / size | 0) - 1); y <= Math.min(size - 1, (at / size | 0) + 1); ++y)
          for (let x = Math.max(0, at % size - 1); x <= Math.min(size - 1, at % size + 1); ++x)
            around.push(other[4 * (y * size + x) + channel]);
        const level = one[4 * at + channel];
        isBeyond ||= level > Math.max(...around) + tolerance || level < Math.min(...around) - tolerance;
      }
      count += isBeyond;
    }
    return count;
  }

  // For each frame the pixels that differ, and whether it is blank.
  window.differences = async (document_, frames, first, tolerance) => {
    const animationData = JSON.parse(document_);
    const player = lottie.loadAnimation({ container: document.body.appendChild(document.createElement("div")),
      renderer: "svg", autoplay: false, loop: false, animationData });
    if (animationData.assets.some(({ p }) => p)) {
      await new Promise((done) => player.addEventListener("loaded_images", done));
    }
    const results = [];
    for (const [frame, picture] of frames) {
      player.goToAndStop(frame, true);
      const svg = player.renderer.svgElement;
      svg.setAttribute("width", size);
      svg.setAttribute("height", size);
      const theirs = await pixels(`data:image/svg+xml,${encodeURIComponent(new XMLSerializer().serializeToString(svg))}`);
      const ours = await pixels(picture);
      results.push([beyond(ours, theirs, first, tolerance) + beyond(theirs, ours, first, tolerance),
        theirs.every((level) => level === 0)]);
    }
    player.destroy();
    return results;
  };
}

// ---- Here ---------------------------------------------------------------------------------------------

const browser = await openBrowser();
test.after(() => browser.close());
const page = await openPage(browser);
await page.addScriptTag({ path: `${packages}/node_modules/lottie-web/build/player/lottie.min.js` });
await page.evaluate(preparePage);
const blank = new Set(["line without width"]);

async function compare(name, document, firstChannel) {
  const file = write(name, document);
  const pictures = await Promise.all((document.frames ?? [5]).map(async (frame) => {
    const picture = file.replace(/json$/, `${frame}.png`);
    await run(["render", file, "--frame", String(frame), "-o", picture, "--force"]);
    return [frame, `data:image/png;base64,${readFileSync(picture).toString("base64")}`];
  }));
  const results = await page.evaluate((given) => differences(...given),
    [JSON.stringify(document), pictures, firstChannel, sameLevel]);
  assert.ok(results.every(([count]) => count <= fewPixels), `${name}: ${results}`);
  assert.ok(blank.has(name) || results.some(([, isBlank]) => !isBlank), `${name}: nothing was drawn`);
}

for (const [list, firstChannel] of [[drawn, 0], [drawnInPlace, 3]]) {
  for (const [name, document] of Object.entries(list)) test(name, () => compare(name, document, firstChannel));
}

test("a difference of three pixels is seen", async () => {
  const moved = structuredClone(drawn.solid);
  moved.layers[0].ks.p.k = [23, 30, 0];
  const picture = inOutput("solid.png");
  await run(["render", write("solid", drawn.solid), "--frame", "5", "-o", picture, "--force"]);
  const [[count]] = await page.evaluate((given) => differences(...given), [JSON.stringify(moved),
    [[5, `data:image/png;base64,${readFileSync(picture).toString("base64")}`]], 0, sameLevel]);
  assert.ok(count > fewPixels);
});
