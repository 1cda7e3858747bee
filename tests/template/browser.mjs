// The browser under test, and what the tests ask of a page in it.

import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { chromium, firefox } from "playwright-core";

const switches = [
  "--headless=new",
  "--no-sandbox",
  "--disable-gpu",
  "--disable-quic",
  "--no-first-run",
  "--disable-background-networking",
  "--disable-component-update",
  "--disable-sync",
];

/** The browser that the environment names: "chromium", or "firefox", which is driven by WebDriver BiDi. */
export const browserName = process.env.BROWSER ?? "chromium";
const downloadsPath = fs.mkdtempSync(path.join(os.tmpdir(), "protocol-downloads-"));
process.on("exit", () => fs.rmSync(downloadsPath, { recursive: true, force: true }));
const browsers = {
  chromium: {
    type: chromium,
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    args: switches,
  },
  firefox: {
    type: firefox,
    executablePath: process.env.FIREFOX ?? "/usr/bin/firefox-esr",
    channel: "moz-firefox",
    downloadsPath,
  },
};
// Its driver does not tell of a page that Firefox takes from memory when it goes back; that of Chromium keeps none.
const forgetful = { "browser.sessionhistory.max_total_viewers": 0 };
const startLimit = 60000;
// A page of 100,000 lines takes a busy machine some seconds.
const actLimit = 30000;
// One of 300,000 takes Firefox half a minute there.
const loadLimit = 120000;
const addressLimit = 5000;
// What Firefox tells of its own accord comes behind its answers.
const newsDelay = 500;
// To lay out 100,000 rows in one list takes Firefox on a busy machine a minute, in which it answers nothing.
const spreadLimit = 600000;

/** For tests of what Firefox has not; `reason` says what. */
export const chromiumOnly = (reason) => (browserName === "chromium" ? {} : { skip: reason });

// What Chromium is asked for page by page Firefox is set to when it starts.
const darkSystem = { "ui.systemUsesDarkTheme": 1 };
const forcedColors = { "browser.display.document_color_use": 2 };
const blackGround = {
  "layout.css.prefers-color-scheme.content-override": 0,
  "browser.display.use_system_colors": false,
  "browser.display.background_color": "#000000",
  "browser.display.foreground_color": "#ffffff",
  "browser.anchor_color": "#ffff00",
  "browser.display.background_color.dark": "#000000",
  "browser.display.foreground_color.dark": "#ffffff",
  "browser.anchor_color.dark": "#ffff00",
};
const noScript = { "javascript.enabled": false };

/** Starts the browser; it has answered with its address, or the error says why not. `settings`: those of Firefox. */
export async function launch(settings) {
  const { type, ...options } = browsers[browserName];
  try {
    const firefoxUserPrefs = { ...forgetful, ...settings };
    return await type.launch({ ...options, firefoxUserPrefs, timeout: startLimit });
  } catch (error) {
    throw new Error(
      `${options.executablePath} did not start within ${startLimit / 1000} s: ${error.message}`,
    );
  }
}

const setBrowsers = new Map();

/** A browser that can open a page with these options: the given one or, of Firefox, one that is set to them. */
function browserFor(browser, options) {
  const isDark = options.colorScheme === "dark";
  const isForced = options.forcedColors === "active";
  const settings = {
    ...(isDark && darkSystem),
    ...(isForced && forcedColors),
    ...(isDark && isForced && blackGround),
    ...(options.javaScriptEnabled === false && noScript),
  };
  const key = JSON.stringify(settings);
  if (browserName === "chromium" || key === "{}") return browser;
  if (!setBrowsers.has(key)) {
    const started = launch(settings);
    setBrowsers.set(key, started);
    browser.once("disconnected", async () => (await started).close());
  }
  return setBrowsers.get(key);
}

/**
 * Opens a page; `complaints` collects what it says on the console, throws, or asks of the network. `prepare` runs
 * in the page before its own script.
 */
export async function open(browser, address, { locale = "ru-RU", prepare, ...options } = {}) {
  const own = await browserFor(browser, options);
  const context = await own.newContext({ locale, viewport: { width: 1280, height: 800 }, ...options });
  context.setDefaultTimeout(actLimit);
  context.setDefaultNavigationTimeout(loadLimit);
  const page = await context.newPage();
  page.complaints = [];
  page.on("console", (message) => page.complaints.push(message.text()));
  page.on("pageerror", (error) => page.complaints.push(String(error)));
  page.on("request", (request) => {
    if (!/^(?:file|data|blob):/.test(request.url())) page.complaints.push(`request of ${request.url()}`);
  });
  if (prepare) await page.addInitScript(prepare);
  await page.goto(address);
  return page;
}

/** The texts of the rows that are laid out, each with its kind; lines only. */
export const visibleLines = (page) =>
  page.evaluate(() =>
    [...document.querySelectorAll("li.ExpandLeaf")]
      .filter((line) => line.checkVisibility({ contentVisibilityAuto: true }) && line.offsetHeight > 0)
      .map((line) => line.querySelector(".Content").textContent),
  );

/** All lines of the page: kind and text. */
export const allLines = (page) =>
  page.evaluate(() =>
    [...document.querySelectorAll("li.ExpandLeaf > .Content")].map((content) => ({
      kind: content.className.replace("Content", "").trim(),
      text: content.innerText || content.textContent,
    })),
  );

/** In how many places the shown lines stand, where that is told. */
export const places = async (page) =>
  Number((await page.locator("#places").textContent()).replace(/\D/g, ""));

/** What "shown X of Y" says. */
export const shown = async (page) =>
  (await page.locator("#shown").textContent())
    .split(/ из | of /)
    .map((text) => Number(text.replace(/\D/g, "")));

/** Chooses an entry of one of the bar's menus. */
export async function choose(page, menu, entry) {
  await page.getByRole("button", { name: menu, exact: true }).click();
  await page.getByRole("menuitem", { name: entry, exact: true }).click();
}

export const search = (page, text) => page.locator("#query").fill(text);

/** The file that an act has the page save: its name and its bytes. */
export async function savedBy(page, act) {
  if (browserName === "chromium") {
    const [download] = await Promise.all([page.waitForEvent("download"), act()]);
    return { name: download.suggestedFilename(), bytes: fs.readFileSync(await download.path()) };
  }
  // Firefox's driver tells of no download, but puts it there. What is unfinished has a second file beside it.
  for (const left of fs.readdirSync(downloadsPath)) fs.rmSync(path.join(downloadsPath, left));
  await act();
  for (const end = Date.now() + actLimit; Date.now() < end; await page.waitForTimeout(50)) {
    const names = fs.readdirSync(downloadsPath);
    const bytes = names.length === 1 ? fs.readFileSync(path.join(downloadsPath, names[0])) : "";
    if (bytes.length) return { name: names[0], bytes };
  }
  throw new Error(`nothing was saved within ${actLimit / 1000} s`);
}

/** What the driver itself hears of Firefox, and does not hand on. */
const hearing = (page) => page._connection.toImpl(page).delegate._session;

/** The addresses that an act has the browser open, outside the browser as well. */
export async function addressesOpenedBy(page, act) {
  const addresses = [];
  if (browserName === "chromium") {
    const session = await page.context().newCDPSession(page);
    await session.send("Page.enable");
    session.on("Page.frameRequestedNavigation", ({ url }) => addresses.push(url));
    await act();
    // Events come in order within a session: its next answer is behind those of the act.
    await session.send("Runtime.evaluate", { expression: "0" });
  } else {
    hearing(page).on("browsingContext.navigationStarted", ({ url }) => addresses.push(url));
    await act();
    await page.waitForTimeout(newsDelay);
  }
  return addresses;
}

/** Clicks twice at a place of an element, as one double click. */
export async function doubleClick(page, element, { x, y }) {
  if (browserName === "chromium") return element.dblclick({ position: { x, y } });
  // Firefox's driver tells of two clicks, each by itself.
  const box = await element.boundingBox();
  const down = { type: "pointerDown", button: 0 };
  const up = { type: "pointerUp", button: 0 };
  const actions = [{ type: "pointerMove", x: box.x + x, y: box.y + y }, down, up, down, up];
  const session = hearing(page);
  const mouse = { type: "pointer", id: "mouse", actions };
  return session.send("input.performActions", { context: session.sessionId, actions: [mouse] });
}

/** How many rows of the trees a screen reader calls so. */
export async function rowsCalled(page, name) {
  if (browserName === "firefox") {
    const value = { role: "treeitem", name };
    const session = hearing(page);
    const asked = { context: session.sessionId, locator: { type: "accessibility", value } };
    return (await session.send("browsingContext.locateNodes", asked)).nodes.length;
  }
  const session = await page.context().newCDPSession(page);
  const { root } = await session.send("DOM.getDocument");
  const asked = { nodeId: root.nodeId, role: "treeitem", accessibleName: name };
  return (await session.send("Accessibility.queryAXTree", asked)).nodes.length;
}

/** Has the page look as on paper. */
export async function lookPrinted(page) {
  if (browserName === "chromium") await page.emulateMedia({ media: "print" });
  // Firefox's driver knows no medium: what the page says of paper is made to hold here, and what of screens, there.
  else
    await page.evaluate(() => {
      const media = { print: "all", screen: "print" };
      for (const rule of [...document.styleSheets].flatMap(({ cssRules }) => [...cssRules]))
        if (rule.media)
          rule.media.mediaText = rule.media.mediaText.replace(/print|screen/g, (name) => media[name]);
    });
  await settle(page);
}

/** Waits until the page has written a text into its address. */
export async function addressHolds(page, text) {
  try {
    await page.waitForFunction((part) => location.hash.includes(part), text, { timeout: addressLimit });
  } catch {
    throw new Error(`the address holds no "${text}" after ${addressLimit / 1000} s: ${page.url()}`);
  }
}

/** Waits until the browser has drawn two frames. */
export const settle = (page) =>
  page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));

/** Has a long page leave all its rows to the browser's own search, as when that is opened from the browser's menu. */
export async function leaveToSearch(page) {
  await page.evaluate(() => window.dispatchEvent(new Event("blur")));
  const isSpread = () => document.querySelector("main").dataset.long === "find";
  await page.waitForFunction(isSpread, null, { timeout: spreadLimit });
}
