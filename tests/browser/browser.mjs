// What the tests here share: their arguments, the program under test, and pages that may load nothing.

import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { mkdirSync, readFileSync } from "node:fs";
import { createRequire } from "node:module";
import path from "node:path";

export const [packages, realFiles, program, examples, output] =
  process.argv.slice(2).map((argument) => path.resolve(argument));
mkdirSync(output, { recursive: true });

export const inOutput = (name) => path.join(output, name);
export const readJson = (file) => JSON.parse(readFileSync(file, "utf8"));

// What the program prints; another exit code than these is a failure.
export async function run(parts, codes = [0]) {
  const options = { timeout: 200_000, maxBuffer: 1 << 28 };
  const [error, stdout, stderr] =
    await new Promise((done) => execFile(program, parts, options, (...outcome) => done(outcome)));
  const code = error ? error.code : 0;
  assert.ok(codes.includes(code), `kestrin ${parts.join(" ")} ended with ${code}: ${stderr}`);
  return stdout;
}

const { chromium } = createRequire(packages + "/")("playwright-core");

export const openBrowser = () => chromium.launch({
  executablePath: "/usr/bin/chromium",
  args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync"],
});

// Collects what no page of ours may do: ask for anything, raise an error, open a dialog.
export async function openPage(browser, options = {}) {
  const page = await browser.newPage(options);
  page.trouble = [];
  page.on("request", (request) => {
    if (!/^(file|data|about):/.test(request.url())) page.trouble.push(`asked for ${request.url()}`);
  });
  page.on("pageerror", (error) => page.trouble.push(String(error)));
  page.on("console", (message) => { if (message.type() === "error") page.trouble.push(message.text()); });
  page.on("dialog", (dialog) => { page.trouble.push(`dialog: ${dialog.message()}`); dialog.dismiss(); });
  await page.route(/^https?:/, (route) => route.abort());
  return page;
}
