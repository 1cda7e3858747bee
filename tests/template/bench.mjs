// Times of long pages, at once after the load and settled, beside the same pages without the template's style and
// script: node bench.mjs [LINES] [POINTS]

import { launch, open, settle } from "./browser.mjs";
import { makeLines, makeRun } from "./fixtures.mjs";
import { bodyOf, pageOf, writePage } from "./pages.mjs";

const total = Number(process.argv[2] ?? 100000);
const points = Number(process.argv[3] ?? Math.max(5, total / 20));
const rounds = 10;
const printedLines = 10000;
const plainTemplate = `<!DOCTYPE html><meta charset="utf-8"><title>plain</title><body><div></div></body>`;
// A page of a million lines takes a busy machine minutes.
const patience = 600000;
const acts = ["key", "number", "error", "kind", "sort", "unfold", "copy"];

/** Runs in the page before its script: times acts from the first frame after the load on. */
function prepare() {
  const frames = () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
  const timed = async (act) => {
    const start = performance.now();
    await act();
    await frames();
    return performance.now() - start;
  };
  const press = (key) => () =>
    document.body.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true, cancelable: true }));
  const type = (text) => () => {
    const field = document.querySelector("#query");
    field.value = text;
    field.dispatchEvent(new InputEvent("input", { bubbles: true }));
  };
  const typed = async (texts) => {
    const times = [];
    for (const text of texts) times.push(await timed(type(text)));
    return Math.max(...times);
  };
  const unfold = () => {
    document.querySelector("#menus button").click();
    document.querySelector("[role=menuitem]").click();
  };
  window.measure = async () => {
    const key = await typed(["н", "не", "нев", "невя", "невязка", "невязка -12", ""]);
    const number = await typed([">80", "мм>80", ""]);
    const error = Math.max(await timed(press("e")), await timed(press("e")));
    const kind = await timed(() => document.querySelector("[data-kind=message]").click());
    await timed(() => document.querySelector("[data-kind=message]").click());
    const sort = await timed(press("s"));
    await timed(press("s"));
    const time = await timed(unfold);
    window.getSelection().selectAllChildren(document.querySelector("main"));
    const copy = await timed(() => document.execCommand("copy"));
    window.getSelection().removeAllRanges();
    return { key, number, error, kind, sort, unfold: time, copy };
  };
  window.addEventListener("load", () => {
    window.early = frames().then(async () => {
      const load = performance.now();
      return window.measureAtOnce ? { load, ...(await window.measure()) } : { load };
    });
  });
}

async function openPage(browser, address, script = prepare) {
  const page = await open(browser, "about:blank");
  page.setDefaultTimeout(patience);
  await page.addInitScript(script);
  await page.goto(address, { timeout: patience });
  return page;
}

const worst = (rows) => {
  const names = Object.keys(rows[0]);
  return Object.fromEntries(names.map((name) => [name, Math.max(...rows.map((row) => row[name]))]));
};

async function measureAtOnce(browser, address) {
  const page = await openPage(browser, address, `(${prepare})(); window.measureAtOnce = true;`);
  const times = await page.evaluate(() => window.early);
  await page.context().close();
  return times;
}

async function measureSettled(browser, address) {
  const page = await openPage(browser, address);
  const { load } = await page.evaluate(() => window.early);
  await page.waitForTimeout(5000);
  const memory = await page.evaluate(() => performance.memory.usedJSHeapSize / 1e6);
  const rows = [];
  for (let round = 0; round < rounds; ++round) rows.push(await page.evaluate(() => window.measure()));
  await page.context().close();
  return { load, ...worst(rows), memory };
}

async function printTime(browser, address) {
  const page = await openPage(browser, address, () => {});
  await settle(page);
  const start = performance.now();
  await page.pdf();
  await page.context().close();
  return performance.now() - start;
}

const show = (value) => (value === undefined ? "-" : Math.round(value)).toString().padStart(9);
const row = (name, times) =>
  console.log(name.padEnd(18), ...["load", ...acts, "memory"].map((act) => show(times[act])));

const browser = await launch();
try {
  console.log(`${total} lines, ${points} points; the worst of ${rounds}, in ms; memory: script, MB`);
  console.log("".padEnd(18), ...["load", ...acts, "memory"].map((name) => name.padStart(9)));
  for (const layout of ["grouped", "staged", "flat"]) {
    const address = pageOf(layout, makeRun(layout, total, makeLines(total, { items: points })));
    const first = [];
    for (let round = 0; round < rounds; ++round) first.push(await measureAtOnce(browser, address));
    row(`${layout} at once`, worst(first));
    row(`${layout} settled`, await measureSettled(browser, address));
    if (total > 100000) continue;
    const plain = await openPage(browser, writePage(`plain-${layout}`, bodyOf(layout), plainTemplate));
    row(`${layout} plain`, await plain.evaluate(() => window.early));
    await plain.context().close();
  }
  const printed = pageOf("printed", makeRun("flat", printedLines));
  const plain = writePage("printed-plain", bodyOf("printed"), plainTemplate);
  const times = [await printTime(browser, printed), await printTime(browser, plain)];
  console.log(`print of ${printedLines} lines: ${show(times[0])}, plain ${show(times[1])}`);
} finally {
  await browser.close();
}
