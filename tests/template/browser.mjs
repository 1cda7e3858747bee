// The browser under test, and what the tests ask of a page in it.

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
  },
};
const startLimit = 20000;
// A page of 100,000 lines takes a busy machine some seconds.
const actLimit = 30000;
const addressLimit = 5000;
// To lay out 100,000 rows in one list takes Firefox on a busy machine a minute, in which it answers nothing.
const spreadLimit = 600000;

/** For tests of what the driver of Firefox does not see. */
export const chromiumOnly = browserName === "chromium" ? {} : { skip: "seen in Chromium only" };

/**
 * Starts the browser; it has answered with its address, or the error says why not. `firefoxUserPrefs`: settings of
 * Firefox, which Chromium does without.
 */
export async function launch(firefoxUserPrefs) {
  const { type, ...options } = browsers[browserName];
  try {
    return await type.launch({ ...options, firefoxUserPrefs, timeout: startLimit });
  } catch (error) {
    throw new Error(
      `${options.executablePath} did not start within ${startLimit / 1000} s: ${error.message}`,
    );
  }
}

/**
 * Opens a page; `complaints` collects what it says on the console, throws, or asks of the network. `prepare` runs
 * in the page before its own script.
 */
export async function open(browser, address, { locale = "ru-RU", prepare, ...options } = {}) {
  const context = await browser.newContext({ locale, viewport: { width: 1280, height: 800 }, ...options });
  context.setDefaultTimeout(actLimit);
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
