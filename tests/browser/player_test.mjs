// Real files before and after `kestrin crop --all`, played by lottie-web.

import assert from "node:assert/strict";
import { mkdirSync } from "node:fs";
import test from "node:test";
import { inOutput, openBrowser, openPage, packages, readJson, realFiles, run } from "./browser.mjs";

const framesLookedAt = 5;
// Done, nothing to do, some compositions put back.
const exitCodes = [0, 3, 4];

// And whether there is a composition in it that can be cropped.
const files = {
  "lock.json": true,
  "puzzle.json": true,
  "coins.json": true,
  "morph-search.json": true,
  "starfish.json": false,  // expressions that are not drawn
  "animation.json": true,
  "background.json": false,
  "adrock.json": true,
  "banner.json": true,
  "ripple.json": false,  // an expression in it ends the renderer
};

// ---- In the page --------------------------------------------------------------------------------------

function preparePage() {
  // The measure of `kestrin compare`.
  const invisible = 2, faint = 8, noise = 64, noisePixels = 40;

  const load = (animationData) => lottie.loadAnimation({
    container: document.body.appendChild(document.createElement("div")),
    renderer: "svg", autoplay: false, loop: false, animationData,
  });

  // Premultiplied pixels of the frame that a player shows.
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
    const { data } = context.getImageData(0, 0, w, h);
    return data.map((level, i) => (i % 4 === 3 ? level : (level * data[i | 3]) / 255));
  }

  // Pixels that differ and lie wholly among others that do: none where the differences are thin lines.
  function pixelsInside(levels, w, h) {
    const around = [-w - 1, -w, -w + 1, -1, 0, 1, w - 1, w, w + 1];
    return levels.filter((_, at) => at % w > 0 && at % w < w - 1 && at >= w && at < w * (h - 1) &&
      around.every((step) => levels[at + step] > invisible)).length;
  }

  window.compareAnimations = async (before, after, frames) => {
    const players = [load(before), load(after)];
    const results = [];
    for (const frame of frames) {
      players.forEach((player) => player.goToAndStop(frame, true));
      const [first, second] = await Promise.all(players.map(pixels));
      const levels = new Uint8Array(before.w * before.h);
      first.forEach((level, i) => { levels[i >> 2] = Math.max(levels[i >> 2], Math.abs(level - second[i])); });
      const count = (least) => levels.filter((level) => level > least).length;
      const largest = levels.reduce((most, level) => Math.max(most, level), 0);
      const thin = () => largest <= noise && count(faint) <= noisePixels &&
        pixelsInside(levels, before.w, before.h) <= noisePixels;
      results.push({
        frame, largest, pixels: count(invisible), isBlank: first.every((level) => level === 0),
        verdict: largest <= invisible ? "equal" : thin() ? "edge noise" : "shifted",
      });
    }
    players.forEach((player) => player.destroy());
    return results;
  };
}

// ---- Here ---------------------------------------------------------------------------------------------

const browser = await openBrowser();
test.after(() => browser.close());

async function played(before, after) {
  const page = await openPage(browser);
  await page.addScriptTag({ path: `${packages}/node_modules/lottie-web/build/player/lottie.min.js` });
  await page.evaluate(preparePage);
  const frames = Array.from({ length: framesLookedAt },
    (_, i) => Math.floor(((i + 0.5) / framesLookedAt) * (before.op - before.ip)));
  const results = await page.evaluate((given) => compareAnimations(...given), [before, after, frames]);
  assert.deepEqual(page.trouble, []);
  await page.close();
  assert.ok(results.some(({ isBlank }) => !isBlank), "nothing was drawn");
  return results;
}

const shifted = (results) => results.filter(({ verdict }) => verdict === "shifted");

async function cropAll(name) {
  const folder = inOutput("cropped");
  mkdirSync(folder, { recursive: true });
  const output = `${folder}/${name}`;
  const told = await run(["crop", "--all", `${realFiles}/${name}`, "-o", output, "--json"], exitCodes);
  return { told: JSON.parse(told), after: readJson(output) };
}

// Two at once, each a program and a page.
test("nothing shifts in a player", { concurrency: 2 }, (t) => Promise.all(
  Object.entries(files).map(([name, isCropped]) => t.test(name, async (inner) => {
    const before = readJson(`${realFiles}/${name}`);
    const { told, after } = await cropAll(name);
    const [{ counts }] = told.files;
    assert.equal(counts.cropped > 0, isCropped, JSON.stringify(counts));
    const results = await played(before, after);
    inner.diagnostic(results.map(({ verdict, largest }) => `${verdict} ${largest}`).join(", "));
    assert.deepEqual(shifted(results), []);
  }))));

test("a use that lies 2 pixels off is seen", async () => {
  const before = readJson(`${realFiles}/lock.json`);
  const after = structuredClone(before);
  for (const { ks } of after.layers.filter(({ ty }) => ty === 0)) ks.a.k[0] += 2;
  assert.equal(shifted(await played(before, after)).length, framesLookedAt);
});
