// The report's page in a browser: it says what its facts say, needs no network, and can be used by keyboard.

import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import test from "node:test";
import { pathToFileURL } from "node:url";
import { examples, inOutput, openBrowser, openPage, readJson, run } from "./browser.mjs";

const grouped = (number) => number.toLocaleString("en-US");
const percent = ({ savedPercent }) => `${Math.round(savedPercent * 10) / 10} %`;
const sizeText = ({ width, height }) => `${width} × ${height}`;
const markup = `<script>document.title = "taken"</script><img src=x onerror=alert(1)> "q" 'a' &amp; 🏮 \u202Egnorw`;

// The example with such names, cropped; and the same with one use of the crop moved.
async function makeFiles() {
  const project = readJson(`${examples}/lanterns.json`);
  project.nm = `Scene ${markup}`;
  for (const asset of project.assets) if (asset.layers) asset.nm = `Lantern ${markup}`;
  const files = Object.fromEntries(["before", "cropped", "shifted"].map((name) => [name, inOutput(`${name}.json`)]));
  writeFileSync(files.before, JSON.stringify(project));
  await run(["crop", files.before, "--layer", "Big lantern", "--duration", "--padding", "2", "-o", files.cropped]);
  const shifted = readJson(files.cropped);
  const use = shifted.layers.find((layer) => layer.nm === "Big lantern");
  use.ks.a.k = use.ks.a.k.map((value, axis) => value + (axis === 0 ? 9 : 0));
  writeFileSync(files.shifted, JSON.stringify(shifted));
  return files;
}

const files = await makeFiles();
const reports = {};
for (const [name, code] of [["cropped", 0], ["shifted", 1]]) {
  const page = inOutput(`${name}.html`);
  const facts = await run(["report", files.before, files[name], "-o", page, "--json"], [code]);
  reports[name] = { facts: JSON.parse(facts), url: pathToFileURL(page).href };
}

const browser = await openBrowser();
test.after(() => browser.close());

const texts = (page, selector) => page.locator(selector).allInnerTexts();
// Marks of writing direction are shown, not obeyed.
const printable = (text) => text.replaceAll("\u202E", "\\u202E");
const frameText = (page) => page.locator("#frame").innerText();

for (const [name, { facts, url }] of Object.entries(reports)) {
  test(`${name}: the page says what the document says`, async () => {
    const page = await openPage(browser);
    await page.goto(url);
    assert.equal(await page.locator("h1").textContent(), facts.conclusion);
    assert.equal(await page.locator("h1").getAttribute("data-verdict"), facts.verdict);
    assert.deepEqual(await texts(page, "#summary b"), [String(facts.resized.length), grouped(facts.area.before),
      grouped(facts.area.after), percent(facts.area)]);
    assert.deepEqual(await page.locator(".files bdi").allTextContents(), [facts.before.file, facts.after.file]);

    const articles = page.locator("#resized article");
    assert.equal(await articles.count(), facts.resized.length);
    for (const [i, comp] of facts.resized.entries()) {
      const article = articles.nth(i);
      assert.equal(await article.locator("h3").textContent(), printable(comp.name));
      assert.equal(await article.locator(".from").innerText(), sizeText(comp.before));
      assert.equal(await article.locator(".to").innerText(), sizeText(comp.after));
      assert.equal(await article.locator(".share").innerText(), percent(comp.area));
      const crop = await article.locator("rect.crop").evaluate((rect) =>
        Object.fromEntries(["x", "y", "width", "height"].map((part) => [part, rect[part].baseVal.value])));
      assert.deepEqual(crop, { x: comp.crop.left, y: comp.crop.top, width: comp.crop.width, height: comp.crop.height });
      const picture = await article.locator("img").evaluate((image) => [image.naturalWidth, image.naturalHeight]);
      assert.deepEqual(picture, [comp.after.width, comp.after.height].map((side) => Math.ceil(side / comp.factor)));
    }

    const rows = page.locator("#compared tbody tr");
    assert.equal(await rows.count(), facts.compared.length);
    for (const [i, comp] of facts.compared.entries()) {
      assert.equal(await rows.nth(i).locator("th").textContent(), printable(comp.name));
      const [verdict, difference] = await rows.nth(i).locator("td").allInnerTexts();
      const { largest, frame, x, y, pixels } = comp.worst;
      const count = pixels > 0 ? ` (${grouped(pixels)} pixels)` : "";
      assert.equal(verdict, comp.verdict);
      assert.equal(difference,
        `${largest} of 255 in frame ${frame}, at ${x}, ${y}${count}; ${comp.frames} frames compared`);
    }
    assert.equal(await page.title(), `${facts.conclusion} - Kestrin report`);
    assert.equal(await page.locator("body script:not([type])").count(), 1);  // ours, and none from a name
    assert.deepEqual(page.trouble, []);
  });
}

test("frames are stepped by buttons, slider and keys, and played", async () => {
  const { facts, url } = reports.shifted;
  const { held, shown, frames } = facts.animation;
  const page = await openPage(browser, { reducedMotion: "no-preference" });
  await page.goto(url);
  const textAt = (place) => `Frame ${held[place]}, of 0 to ${frames - 1}`;
  const start = held.indexOf(shown);
  const pictures = () => page.locator(".scenes img").evaluateAll((images) => images.map((image) => image.src));
  const atStart = await pictures();
  assert.notEqual(atStart[0], atStart[1]);  // the frame where they differ most

  const expectPlace = async (place) => assert.equal(await frameText(page), textAt(place));
  await expectPlace(start);
  await page.keyboard.press("ArrowRight");
  await expectPlace(start + 1);
  assert.notEqual((await pictures())[0], atStart[0]);
  await page.keyboard.press("ArrowLeft");
  await page.getByRole("button", { name: "Previous frame" }).click();
  await expectPlace(start - 1);
  const slider = page.getByRole("slider", { name: "Frame" });
  await slider.focus();
  await slider.press("End");
  await expectPlace(held.length - 1);
  assert.equal(await page.getByRole("button", { name: "Next frame" }).isDisabled(), true);
  await slider.press("Home");
  await expectPlace(0);
  await slider.press("ArrowRight");
  await expectPlace(1);

  await page.getByRole("button", { name: "Play" }).press("Enter");
  await page.waitForFunction((last) => document.getElementById("frame").textContent !== last, textAt(1));
  assert.equal(await page.locator("#frame").getAttribute("aria-live"), "off");
  await page.getByRole("button", { name: "Pause" }).click();
  assert.equal(await page.locator("#frame").getAttribute("aria-live"), "polite");
  const paused = await frameText(page);
  await page.waitForTimeout(200);
  assert.equal(await frameText(page), paused);
});

test("the difference is black where the pictures are equal and bright where not", async () => {
  const page = await openPage(browser);
  const brightest = () => page.locator("#difference").evaluate((canvas) => {
    const { data } = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
    return data.reduce((most, level, i) => (i % 4 === 3 ? most : Math.max(most, level)), 0);
  });
  const drawn = () => page.waitForFunction(() => document.getElementById("difference").width !== 300);
  await page.goto(reports.shifted.url);
  await drawn();
  assert.equal(await brightest(), 255);
  await page.goto(reports.cropped.url);
  await drawn();
  assert.ok(await brightest() <= 8 * 8);  // faint, drawn at half the size
});

test("pictures have words, controls have names, headings do not skip", async () => {
  const page = await openPage(browser);
  await page.goto(reports.cropped.url);
  const lacking = await page.evaluate(() => ({
    images: [...document.querySelectorAll("img, [role=img]")]
      .filter((image) => !/\d+ by \d+|black/.test(image.alt ?? image.getAttribute("aria-label"))).length,
    controls: [...document.querySelectorAll("button, input")]
      .filter((control) => !(control.getAttribute("aria-label") ?? control.textContent).trim()).length,
    sections: [...document.querySelectorAll("section")]
      .filter((section) => !document.getElementById(section.getAttribute("aria-labelledby"))?.textContent).length,
    headings: [...document.querySelectorAll("h1, h2, h3")].map((heading) => Number(heading.tagName[1]))
      .filter((level, i, levels) => i > 0 && level > levels[i - 1] + 1).length,
    landmarks: 2 - document.querySelectorAll("body > header, body > main").length,
  }));
  assert.deepEqual(lacking, { images: 0, controls: 0, sections: 0, headings: 0, landmarks: 0 });
});

test("it says everything without scripts", async () => {
  const page = await openPage(browser, { javaScriptEnabled: false });
  await page.goto(reports.cropped.url);
  assert.equal(await page.locator(".scenes img:visible").count(), 2);
  assert.equal(await page.locator(".controls:visible, canvas:visible").count(), 0);
  assert.equal(await frameText(page), `Frame ${reports.cropped.facts.animation.shown}, of 0 to 89`);
});

const looks = {
  desktop: { viewport: { width: 1280, height: 900 } },
  dark: { viewport: { width: 1280, height: 900 }, colorScheme: "dark" },
  phone: { viewport: { width: 390, height: 844 } },
  narrow: { viewport: { width: 360, height: 740 } },
};
for (const [look, options] of Object.entries(looks)) {
  test(`${look}: nothing is wider than the screen`, async () => {
    const page = await openPage(browser, options);
    for (const [name, { url }] of Object.entries(reports)) {
      await page.goto(url);
      await page.screenshot({ path: inOutput(`${name}-${look}.png`), fullPage: true });
      assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), options.viewport.width);
    }
  });
}

test("print leaves the controls out", async () => {
  const page = await openPage(browser);
  await page.goto(reports.cropped.url);
  await page.pdf({ path: inOutput("cropped.pdf"), preferCSSPageSize: true });
  await page.emulateMedia({ media: "print" });
  assert.equal(await page.locator(".controls:visible").count(), 0);
});
