// Times of the long pages beside the same pages without the template's style and script.

import { filled, launch, open, settle } from "./browser.mjs";
import { makeRun } from "./fixtures.mjs";
import { bodyOf, pageOf, writePage, writtenRows } from "./pages.mjs";

const total = Number(process.argv[2] ?? 100000);
// A line that names two items stands under both: so many records make a page of a hundred lines.
const recordsPerHundred = { grouped: 80, staged: 87, flat: 100 };
const makeLong = (layout) => makeRun(layout, (total * recordsPerHundred[layout]) / 100);
const plainTemplate = `<!DOCTYPE html><meta charset="utf-8"><title>plain</title><body><div></div></body>`;

/** Runs in the page: what the page does in the time until its second frame. */
const timers = () => {
  window.timed = async (action) => {
    const start = performance.now();
    await action();
    await new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
    return performance.now() - start;
  };
};

async function loadTime(page) {
  await settle(page);
  return page.evaluate(() => {
    const [{ loadEventEnd }] = performance.getEntriesByType("navigation");
    return Math.max(loadEventEnd, performance.now());
  });
}

const heightOf = (page) => page.evaluate(() => document.documentElement.scrollHeight);

async function chooseEntry(page, menu, entry) {
  await page.getByRole("button", { name: menu }).click();
  return page.evaluate(
    (text) =>
      window.timed(() =>
        [...document.querySelectorAll("[role=menuitem]")].find((item) => item.textContent === text).click(),
      ),
    entry,
  );
}

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];
const largest = (values) => Math.max(...values);

async function measureOurs(browser, layout) {
  const page = await open(browser, pageOf(layout, makeLong(layout)), { locale: "en-US" });
  const results = { load: await loadTime(page) };
  await page.evaluate(timers);
  await filled(page, writtenRows(layout));
  results.filled = await page.evaluate(() => performance.now());
  await page.waitForTimeout(3000);
  results.unfold = await chooseEntry(page, "Branches", "Unfold all");
  results.height = await heightOf(page);
  const jumps = await page.evaluate(async () => {
    const lines = [...document.querySelectorAll("li.ExpandLeaf")];
    const times = [];
    for (let step = 0; step < 12; ++step) {
      const id = lines[Math.floor(((step * 7919) % 12) * (lines.length / 12.5))].id;
      times.push(await window.timed(() => (location.hash = id)));
    }
    return times;
  });
  results.jump = largest(jumps);
  const keys = await page.evaluate(async () => {
    const field = document.querySelector("input[type=search]");
    const type = (text) => () => {
      field.value = text;
      field.dispatchEvent(new InputEvent("input", { bubbles: true }));
    };
    const times = [];
    for (const text of [
      "н",
      "не",
      "нев",
      "невя",
      "невяз",
      "невязка -12",
      "/8[0-9]\\.5/",
      "",
      '"равна 8"',
      "",
    ])
      times.push(await window.timed(type(text)));
    return times;
  });
  results.key = largest(keys);
  results.keyMedian = median(keys);
  results.kind = await page.evaluate(() =>
    window.timed(() => document.querySelector("[data-kind=message]").click()),
  );
  await page.evaluate(() => document.querySelector("[data-kind=message]").click());
  await page.evaluate(() => window.dispatchEvent(new Event("blur")));
  await page.waitForFunction(() => document.querySelector("main").dataset.long === "find");
  results.back = await page.evaluate(() => window.timed(() => window.dispatchEvent(new Event("focus"))));
  await page.context().close();
  return results;
}

async function measurePlain(browser, layout) {
  const page = await open(browser, writePage(`plain-${layout}`, bodyOf(layout), plainTemplate));
  const results = { load: await loadTime(page), height: await heightOf(page) };
  await page.evaluate(timers);
  results.jump = await page.evaluate(() => {
    const lines = document.querySelectorAll("li.ExpandLeaf");
    return window.timed(() => lines[Math.floor(lines.length * 0.77)].scrollIntoView());
  });
  await page.context().close();
  return results;
}

const show = (value) => (value === undefined ? "-" : Math.round(value)).toString().padStart(10);
const browser = await launch();
try {
  console.log(`${total} lines a page; times in ms (plain: the page without our style and script)`);
  console.log(
    "layout          load    rows*    unfold      jump  search**  (median)      kind   back***    height",
  );
  for (const layout of ["grouped", "staged", "flat"]) {
    const ours = await measureOurs(browser, layout);
    const row = ["load", "filled", "unfold", "jump", "key", "keyMedian", "kind", "back", "height"];
    console.log(layout.padEnd(8), ...row.map((name) => show(ours[name])));
    const plain = process.argv.includes("--ours") ? {} : await measurePlain(browser, layout);
    console.log("  plain ", ...row.map((name) => show(plain[name])));
  }
  console.log("* until all rows are in the page");
  console.log("** the slowest of ten keystrokes, to the second frame after it");
  console.log("*** back to the window, after the page was laid out for the browser's own search");
} finally {
  await browser.close();
}
