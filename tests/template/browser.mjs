// The browser under test, and pages of the assembled template.

import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";
import { bodyOf, clobbering, makePage, pageOf, pages } from "./fixtures.mjs";

const here = path.dirname(fileURLToPath(import.meta.url));

export const templateFile =
  process.env.PROTOCOL_TEMPLATE ?? path.join(here, "../../build/release/share/orvel/Protocol/protocol.html");

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

export function launch() {
  return chromium.launch({ executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", args: switches });
}

export const folder = fs.mkdtempSync(path.join(os.tmpdir(), "protocol-pages-"));
process.on("exit", () => fs.rmSync(folder, { recursive: true, force: true }));

/** Writes a page around the assembled template; answers its address. */
export function writePage(name, body, template = fs.readFileSync(templateFile, "utf8")) {
  const file = path.join(folder, `${name}.html`);
  fs.writeFileSync(file, pageOf(template, body));
  return pathToFileURL(file).href;
}

const written = new Map();

/** The address of a small fixture page. */
export function fixture(name) {
  if (!written.has(name))
    written.set(name, writePage(name, name === "clobbering" ? clobbering : pages[name]));
  return written.get(name);
}

/** The address of a page with `total` lines of a layout. */
export function longPage(layout, total) {
  const name = `${layout}-${total}`;
  if (!written.has(name)) written.set(name, writePage(name, bodyOf(makePage(layout, total))));
  return written.get(name);
}

/** Pages of the applications, made elsewhere, that the generic tests take as well. Name to address. */
export function foreignPages() {
  const from = process.env.PAGES_DIR;
  if (!from) return {};
  const names = fs.readdirSync(from).filter((name) => name.endsWith(".html"));
  return Object.fromEntries(names.map((name) => [name, pathToFileURL(path.resolve(from, name)).href]));
}

/** Opens a page; `complaints` collects what it says on the console, throws, or asks of the network. */
export async function open(browser, address, { locale = "ru-RU", ...options } = {}) {
  const context = await browser.newContext({ locale, viewport: { width: 1280, height: 800 }, ...options });
  const page = await context.newPage();
  page.complaints = [];
  page.on("console", (message) => page.complaints.push(message.text()));
  page.on("pageerror", (error) => page.complaints.push(String(error)));
  page.on("request", (request) => {
    if (!/^(?:file|data|blob):/.test(request.url())) page.complaints.push(`request of ${request.url()}`);
  });
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

/** Waits until the browser has drawn two frames. */
export const settle = (page) =>
  page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
