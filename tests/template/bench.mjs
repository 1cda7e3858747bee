// Times of long pages, at once after the load and settled, beside the same pages without the template's style and
// script and beside a test report of the same lines: node bench.mjs [LINES POINTS]

import { browserName, launch, open, settle } from "./browser.mjs";
import { makeLines, makeRun } from "./fixtures.mjs";
import { bodyOf, pageOf, writePage } from "./pages.mjs";
import { reportOf } from "./peer.mjs";

const [lines, points] = process.argv.slice(2).map(Number);
const sizes = lines
  ? [{ total: lines, points: points || Math.max(5, lines / 20) }]
  : [
      { total: 100000, points: 5000 },
      { total: 100000, points: 100000 },
      { total: 1000000, points: 50000, layouts: ["grouped"], rounds: 2 },
    ];
const printedLines = 10000;
const plainTemplate = `<!DOCTYPE html><meta charset="utf-8"><title>plain</title><body><div></div></body>`;
// A page of a million lines takes a busy machine minutes.
const patience = 600000;
const acts = ["first key", "key", "number", "error", "kind", "sort", "unfold", "copy", "end"];

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
  // A very long page waits for a pause in typing, and with that the time ends.
  const isWhole = (words) => () =>
    new Promise((done) => {
      const shown = document.querySelector("#shown");
      const before = shown.textContent;
      const watcher = new MutationObserver(() => done(watcher.disconnect()));
      watcher.observe(shown, { childList: true, characterData: true, subtree: true });
      type(words)();
      if (shown.textContent !== before) done(watcher.disconnect());
    });
  window.measure = async () => {
    const first = await timed(isWhole("н"));
    const key = await typed(["не", "нев", "невя", "невязка", "невязка -12", ""]);
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
    const end = await timed(press("End"));
    return { "first key": first, key, number, error, kind, sort, unfold: time, copy, end };
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

async function measureSettled(browser, address, rounds) {
  const page = await openPage(browser, address);
  const { load } = await page.evaluate(() => window.early);
  await page.waitForTimeout(5000);
  const rows = [];
  for (let round = 0; round < rounds; ++round) rows.push(await page.evaluate(() => window.measure()));
  const memory = await memoryOf(page);
  await page.context().close();
  return { load, ...worst(rows), memory };
}

async function measureLoad(browser, address) {
  const page = await openPage(browser, address);
  const { load } = await page.evaluate(() => window.early);
  const memory = await memoryOf(page);
  await page.context().close();
  return { load, memory };
}

/** Megabytes of the script's objects, without what can go. */
async function memoryOf(page) {
  if (browserName !== "chromium") return undefined;
  const session = await page.context().newCDPSession(page);
  await session.send("HeapProfiler.collectGarbage");
  return page.evaluate(() => performance.memory.usedJSHeapSize / 1e6);
}

async function printTime(browser, address) {
  const page = await openPage(browser, address, () => {});
  await settle(page);
  const start = performance.now();
  await page.pdf();
  await page.context().close();
  return performance.now() - start;
}

const columns = ["load", ...acts, "memory"];
const show = (value) => (value === undefined ? "-" : Math.round(value)).toString().padStart(10);
const row = (name, times) => console.log(name.padEnd(18), ...columns.map((column) => show(times[column])));

async function measureSize(
  browser,
  { total, points: items, layouts = ["grouped", "staged", "flat"], rounds = 10 },
) {
  console.log(`\n${total} lines, ${items} points; the worst of ${rounds}`);
  console.log("".padEnd(18), ...columns.map((name) => name.padStart(10)));
  for (const layout of layouts) {
    const address = pageOf(layout, makeRun(layout, total, makeLines(total, { items })));
    const first = [];
    for (let round = 0; round < rounds; ++round) first.push(await measureAtOnce(browser, address));
    row(`${layout} at once`, worst(first));
    row(`${layout} settled`, await measureSettled(browser, address, rounds));
    if (total > 100000) continue;
    const plain = writePage(`plain-${layout}`, bodyOf(layout), plainTemplate);
    row(`${layout} plain`, await measureLoad(browser, plain));
  }
  if (total <= 100000) row("mochawesome", await measureLoad(browser, reportOf(makeLines(total, { items }))));
}

async function measurePrint(browser) {
  console.log(`\nprint of ${printedLines} lines, and plain`);
  for (const layout of ["grouped", "staged", "flat"]) {
    const printed = pageOf(`printed-${layout}`, makeRun(layout, printedLines));
    const plain = writePage(`printed-plain-${layout}`, bodyOf(`printed-${layout}`), plainTemplate);
    console.log(
      layout.padEnd(18),
      show(await printTime(browser, printed)),
      show(await printTime(browser, plain)),
    );
  }
}

const browser = await launch();
try {
  console.log(`Times in ms to the second frame after the act; memory: the script's, in MB; ${browserName}`);
  for (const size of sizes) await measureSize(browser, size);
  if (browserName === "chromium") await measurePrint(browser);
} finally {
  await browser.close();
}
