// Times of long pages, at once after the load and settled, beside the same pages without the template's style and
// script and beside a test report of the same lines: node bench.mjs [LINES POINTS | print]

import { choose, launch, open, settle } from "./browser.mjs";
import { makeLines, makeRun } from "./fixtures.mjs";
import { bodyOf, pageOf, writePage } from "./pages.mjs";
import { firstLineId, reportOf } from "./peer.mjs";

const [part, points] = process.argv.slice(2);
const lines = Number(part);
// The flat layout knows no points.
const allSizes = [
  { total: 100000, points: 5000 },
  { total: 100000, points: 100000, layouts: ["grouped", "staged"] },
  { total: 1000000, points: 50000, layouts: ["grouped"], rounds: 2 },
];
const ownSize = { total: lines, points: Number(points) || Math.max(5, lines / 20) };
const sizes = lines ? [ownSize] : part === "print" ? [] : allSizes;
const printedLines = 10000;
const printRounds = 5;
const plainTemplate = `<!DOCTYPE html><meta charset="utf-8"><title>plain</title><body><div></div></body>`;
// A page of a million lines takes a busy machine minutes.
const patience = 600000;
const peerPatience = 60000;
const acts = ["first key", "first sort", "key", "number", "error", "kind", "sort", "unfold", "copy", "end"];

/** Runs in the page before its script: marks where acts begin and end, from the first frame after the load on. */
function prepare() {
  const frames = () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
  const timed = async (name, act) => {
    performance.mark(`from ${name}`);
    await act();
    await frames();
    performance.mark(`to ${name}`);
  };
  const press = (key) => () =>
    document.body.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true, cancelable: true }));
  const type = (text) => () => {
    const field = document.querySelector("#query");
    field.value = text;
    field.dispatchEvent(new InputEvent("input", { bubbles: true }));
  };
  const typed = async (name, texts) => {
    for (const text of texts) await timed(name, type(text));
  };
  const unfold = () => {
    document.querySelector("#menus button").click();
    document.querySelector("[role=menuitem]").click();
  };
  const toggleKind = () => document.querySelector("[data-kind=message]").click();
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
  window.measureAll = async () => {
    await timed("first key", isWhole("н"));
    await typed("key", ["не", "нев", "невя", "невязка", "невязка -12", ""]);
    await typed("number", [">80", "мм>80", ""]);
    for (let count = 0; count < 2; ++count) await timed("error", press("e"));
    for (let count = 0; count < 2; ++count) await timed("kind", toggleKind);
    for (let count = 0; count < 2; ++count) await timed("sort", press("s"));
    await timed("unfold", unfold);
    window.getSelection().selectAllChildren(document.querySelector("main"));
    await timed("copy", () => document.execCommand("copy"));
    window.getSelection().removeAllRanges();
    await timed("end", press("End"));
  };
  window.measureSort = () => timed("first sort", press("s"));
  // Another generator's page is loaded long before it shows what it holds.
  const isSeen = async ({ selector, patience: limit }) => {
    while (!document.querySelector(selector)?.offsetHeight) {
      if (performance.now() > limit) throw new Error(`shows nothing within ${limit / 1000} s`);
      await frames();
    }
    await frames();
  };
  performance.mark("from load");
  window.addEventListener("load", () => {
    window.early = frames().then(async () => {
      if (window.awaited) await isSeen(window.awaited);
      performance.mark("to load");
      await window[window.atOnce]?.();
    });
  });
}

/** Traces the marks of what is done in the browser: for each act its longest time, by the clock and of the thread. */
async function traced(browser, act) {
  const session = await browser.newBrowserCDPSession();
  const traceConfig = { includedCategories: ["blink.user_timing"] };
  await session.send("Tracing.start", { transferMode: "ReturnAsStream", traceConfig });
  await act();
  const complete = new Promise((done) => session.once("Tracing.tracingComplete", done));
  await session.send("Tracing.end");
  const { stream: handle } = await complete;
  let text = "";
  for (let isWhole = false; !isWhole;) {
    const { data, base64Encoded, eof } = await session.send("IO.read", { handle });
    text += Buffer.from(data, base64Encoded ? "base64" : "utf8").toString();
    isWhole = eof;
  }
  await session.detach();
  const began = {};
  const times = { clock: {}, processor: {} };
  for (const { name, ts, tts } of JSON.parse(text).traceEvents) {
    const [, side, own] = /^(from|to) (.*)$/.exec(name) ?? [];
    if (side === "from") began[own] = { ts, tts };
    else if (side) {
      times.clock[own] = Math.max(times.clock[own] ?? 0, (ts - began[own].ts) / 1000);
      times.processor[own] = Math.max(times.processor[own] ?? 0, (tts - began[own].tts) / 1000);
    }
  }
  return times;
}

async function openPage(browser, address, script = prepare, timeout = patience) {
  const page = await open(browser, "about:blank");
  page.setDefaultTimeout(timeout);
  await page.addInitScript(script);
  await page.goto(address, { timeout });
  return page;
}

/** The longest times of several rounds. */
function worst(rows) {
  const longest = (kind) => {
    const names = Object.keys(rows[0][kind]);
    return Object.fromEntries(
      names.map((name) => [name, Math.max(...rows.map((times) => times[kind][name]))]),
    );
  };
  return { clock: longest("clock"), processor: longest("processor") };
}

/** What is measured in the first frame after the load: all acts, and on another page the order alone. */
async function measureAtOnce(browser, address, first) {
  return traced(browser, async () => {
    const page = await openPage(browser, address, `(${prepare})(); window.atOnce = "${first}";`);
    await page.evaluate(() => window.early);
    await page.context().close();
  });
}

async function measureSettled(browser, address, rounds) {
  let memory;
  const times = await traced(browser, async () => {
    const page = await openPage(browser, address);
    await page.evaluate(() => window.early);
    await page.waitForTimeout(5000);
    for (let round = 0; round < rounds; ++round) await page.evaluate(() => window.measureAll());
    memory = await memoryOf(page);
    await page.context().close();
  });
  times.clock.memory = memory;
  return times;
}

async function measureLoad(browser, address, awaited, timeout = patience) {
  let memory;
  const times = await traced(browser, async () => {
    const script = `(${prepare})(); window.awaited = ${JSON.stringify(awaited)};`;
    const page = await openPage(browser, address, script, timeout);
    await page.evaluate(() => window.early);
    memory = await memoryOf(page);
    await page.context().close();
  });
  times.clock.memory = memory;
  return times;
}

/** The other generator's report until its first line is seen; its page may end before. */
async function measurePeer(address) {
  const browser = await launch();
  try {
    const awaited = { selector: `#${firstLineId}`, patience: peerPatience };
    return await measureLoad(browser, address, awaited, peerPatience);
  } catch (error) {
    console.log(`mochawesome: ${error.message.split("\n")[0]}`);
    return { clock: {}, processor: {} };
  } finally {
    await browser.close();
  }
}

/** Megabytes of the script's objects, without what can go. */
async function memoryOf(page) {
  const session = await page.context().newCDPSession(page);
  await session.send("HeapProfiler.collectGarbage");
  return page.evaluate(() => performance.memory.usedJSHeapSize / 1e6);
}

/** Seconds of processor time that the pages of the browser have taken. */
async function processorTime(session) {
  const { processInfo } = await session.send("SystemInfo.getProcessInfo");
  const pages = processInfo.filter(({ type }) => type === "renderer");
  return pages.reduce((sum, { cpuTime }) => sum + cpuTime, 0);
}

async function printTimes(browser, address) {
  const page = await openPage(browser, address, () => {});
  await settle(page);
  if (await page.locator("#menus").count()) await choose(page, "Ветви", "Развернуть всё");
  const session = await browser.newBrowserCDPSession();
  const [start, before] = [performance.now(), await processorTime(session)];
  await page.pdf();
  const times = [performance.now() - start, 1000 * ((await processorTime(session)) - before)];
  await session.detach();
  await page.context().close();
  return times;
}

const least = (rows) => rows[0].map((_, at) => Math.min(...rows.map((times) => times[at])));

const columns = ["load", ...acts, "memory"];
const show = (value) => (value === undefined ? "-" : Math.round(value)).toString().padStart(10);
const row = (name, { clock, processor }) => {
  console.log(name.padEnd(18), ...columns.map((column) => show(clock[column])));
  console.log("  processor".padEnd(18), ...columns.map((column) => show(processor[column])));
};

async function measureSize(
  browser,
  { total, points: items, layouts = ["grouped", "staged", "flat"], rounds = 10 },
) {
  console.log(`\n${total} lines, ${items} points; the worst of ${rounds}`);
  console.log("".padEnd(18), ...columns.map((name) => name.padStart(10)));
  for (const layout of layouts) {
    const address = pageOf(layout, makeRun(layout, total, makeLines(total, { items })));
    const times = { clock: {}, processor: {} };
    for (const first of ["measureSort", "measureAll"]) {
      const own = [];
      for (let round = 0; round < rounds; ++round) own.push(await measureAtOnce(browser, address, first));
      const { clock, processor } = worst(own);
      Object.assign(times.clock, clock);
      Object.assign(times.processor, processor);
    }
    row(`${layout} at once`, times);
    row(`${layout} settled`, await measureSettled(browser, address, rounds));
    if (total > 100000) continue;
    const plain = writePage(`plain-${layout}`, bodyOf(layout), plainTemplate);
    row(`${layout} plain`, await measureLoad(browser, plain));
  }
  if (total <= 100000) row("mochawesome", await measurePeer(reportOf(makeLines(total, { items }))));
}

async function measurePrint(browser) {
  console.log(
    `\nprint of ${printedLines} lines, all branches unfolded, and plain, each by the clock and of the page's process;` +
      ` the least of ${printRounds}`,
  );
  for (const layout of ["grouped", "staged", "flat"]) {
    const printed = pageOf(`printed-${layout}`, makeRun(layout, printedLines));
    const plain = writePage(`printed-plain-${layout}`, bodyOf(`printed-${layout}`), plainTemplate);
    const [own, other] = [[], []];
    for (let round = 0; round < printRounds; ++round) {
      own.push(await printTimes(browser, printed));
      other.push(await printTimes(browser, plain));
    }
    console.log(layout.padEnd(18), ...[...least(own), ...least(other)].map(show));
  }
}

const browser = await launch();
try {
  console.log(
    "Times in ms to the second frame after the act, by the clock and of the page's thread; memory in MB",
  );
  for (const size of sizes) await measureSize(browser, size);
  if (!lines) await measurePrint(browser);
} finally {
  await browser.close();
}
