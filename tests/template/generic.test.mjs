// What holds on every page: those of the fixtures, those of the sample networks, and others of the folder PAGES_DIR.

import assert from "node:assert/strict";
import fs from "node:fs";
import { createRequire } from "node:module";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { choose, launch, open, settle } from "./browser.mjs";
import { runs } from "./fixtures.mjs";
import { fixture, samplePages } from "./pages.mjs";

const axe = fs.readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

/** Pages made elsewhere. */
function foreignPages() {
  const folder = process.env.PAGES_DIR;
  const names = folder ? fs.readdirSync(folder).filter((name) => name.endsWith(".html")) : [];
  return names.map((name) => ({ name, address: pathToFileURL(path.resolve(folder, name)).href }));
}

/**
 * Counts lines by kind the plain way: lines of a stage that are the same count as often as they stand in the list
 * that holds most of them.
 */
const bruteForce = () => {
  const counts = { error: 0, warning: 0, message: 0, other: 0, total: 0, places: 0 };
  const isItemPage = !document.querySelector(".serviceinfoblock");
  const lists = new Map();
  for (const content of document.querySelectorAll("li.ExpandLeaf > .Content")) {
    const kind = ["error", "warning", "message"].find((name) => content.classList.contains(name)) ?? "other";
    const list = content.closest("ul");
    const stages = [...document.querySelectorAll(".stageblock")];
    const around = isItemPage ? ++counts.total : stages.findIndex((stage) => stage.contains(list));
    const own = [around, kind, content.innerHTML.replace(/ tabindex="-1"/g, "")].join(" ");
    if (!lists.has(own)) lists.set(own, { kind, counts: new Map() });
    const inLists = lists.get(own).counts;
    inLists.set(list, (inLists.get(list) ?? 0) + 1);
    ++counts.places;
  }
  counts.total = 0;
  for (const { kind, counts: inLists } of lists.values()) {
    const count = Math.max(...inLists.values());
    counts[kind] += count;
    counts.total += count;
  }
  return counts;
};

/** What the page tells: of each kind, shown, of how many, and in how many places if that is told. */
const toldCounts = () => {
  const digits = (text) => Number(text.replace(/\D/g, ""));
  const read = (selector) => document.querySelector(selector).textContent;
  const counts = {};
  for (const kind of ["error", "warning", "message", "other"]) {
    const isTold = document.querySelector(`#kinds [data-kind=${kind}]`);
    counts[kind] = isTold ? digits(read(`#kinds [data-kind=${kind}] b`)) : 0;
  }
  [counts.shown, counts.total] = read("#shown")
    .split(/ из | of /)
    .map(digits);
  counts.places = read("#places") ? digits(read("#places")) : counts.total;
  return counts;
};

const looks = [
  { name: "light, Russian", colorScheme: "light", locale: "ru-RU" },
  { name: "dark, English", colorScheme: "dark", locale: "en-US", unfold: ["Branches", "Unfold all"] },
];
const narrow = { viewport: { width: 390, height: 844 }, forcedColors: "active" };
const narrowLooks = [
  { name: "narrow, forced light, English", colorScheme: "light", locale: "en-US", ...narrow },
  { name: "narrow, forced dark, Russian", colorScheme: "dark", locale: "ru-RU", ...narrow },
];
/** The pages of every kind, which are looked at more closely. */
const closely = ["item", "grouped", "staged", "flat", "empty", "blunder Adjust"];

/** What axe finds, of the whole page or of a part of it, each with where it is. */
async function violationsIn(page, rules = {}, part = null) {
  if (!(await page.evaluate(() => "axe" in window))) await page.evaluate(axe);
  return page.evaluate(
    async ([chosen, context]) => {
      const { violations } = await window.axe.run(context ?? document, { rules: chosen });
      return violations.map(({ id, nodes }) => [id, ...nodes.map((node) => node.html)].join("\n"));
    },
    [rules, part],
  );
}

/** What is open only for a while is accessible, too. */
async function lookClosely(page) {
  await page.keyboard.press("Escape");
  await page.keyboard.press("s");
  await page.keyboard.press("Shift+F10");
  assert.deepEqual(await violationsIn(page), [], "worst first, with the menu of a line");
  await page.keyboard.press("Escape");
  await page.locator("#menus > button").last().click();
  await page.locator("[role=menuitem]").last().click();
  assert.deepEqual(await violationsIn(page, {}, "dialog"), [], "the help");
}

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const pages = [
  ...Object.keys(runs)
    // The attributes that hide the document's operations hide them from the tools here, too.
    .filter((name) => name !== "clobbering")
    .map((name) => ({ name, address: fixture(name) })),
  ...samplePages(),
  ...foreignPages(),
];

for (const { name, address, counts } of pages)
  describe(`page ${name}`, () => {
    const own = closely.includes(name) ? [...looks, ...narrowLooks] : looks;
    for (const { name: lookName, unfold, ...look } of own)
      test(`keeps quiet, counts right, is accessible (${lookName})`, async () => {
        const page = await open(browser, address, look);
        await settle(page);
        const isDark = await page.evaluate(() => window.matchMedia("(prefers-color-scheme: dark)").matches);
        assert.equal(isDark, look.colorScheme === "dark");
        // The browser itself reports what the policy has kept from running.
        const isNews = (text) => name !== "hostile" || !/Content[ -]Security[ -]Policy/.test(text);
        assert.deepEqual(page.complaints.filter(isNews), []);

        const counted = await page.evaluate(bruteForce);
        const told = await page.evaluate(toldCounts);
        assert.deepEqual(told, { ...counted, shown: counted.total });
        if (counts) assert.deepEqual([told.error, told.warning, told.message], counts);

        // Links that a line has left unclosed have no name, whatever the page does.
        const rules = { "link-name": { enabled: name !== "hostile" } };
        if (unfold) await choose(page, ...unfold);
        assert.deepEqual(await violationsIn(page, rules), []);
        for (const button of await page.locator("#menus > button").all()) {
          await button.click();
          assert.deepEqual(await violationsIn(page, {}, "[role=menu]"), []);
        }
        if (closely.includes(name)) await lookClosely(page);
        await page.context().close();
      });
  });
