// Walks over whole pages: to the worst line, by the keyboard alone, and at a zoom of 200 %.

import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import { launch, open, settle } from "./browser.mjs";
import { makeRun, recordsOf } from "./fixtures.mjs";
import { fixture, pageOf, samplePages } from "./pages.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

describe("the worst of 2,010 errors on 10,000 lines", () => {
  const run = makeRun("grouped", 10000);
  const ratioOf = (text) => {
    const [, value, limit] = /равна ([\d.]+) мм, допуск ([\d.]+)/.exec(text) ?? [];
    return limit > 0 ? value / limit : -1;
  };
  const errors = recordsOf(run)
    .filter(({ kind }) => kind === "error")
    .map(({ text }) => text);
  const worst = Math.max(...errors.map(ratioOf));
  const presentRatio = (page) => page.evaluate(() => document.activeElement.textContent.trim()).then(ratioOf);

  test("takes one key", async () => {
    assert.equal(errors.length, 2010);
    const page = await open(browser, pageOf("walk", run));
    await page.keyboard.press("s");
    assert.equal(await presentRatio(page), worst);
    await page.context().close();
  });

  test("took a key for each error as long as there was no order", async () => {
    const page = await open(browser, pageOf("walk", run));
    await page.keyboard.press("e");
    assert.match(await page.locator("#status").textContent(), /^ошибка \d+ из 2\s010/);
    await page.context().close();
  });
});

/** Runs in the page: what can be operated outside the rows and is seen, each with a name. */
const operable = () =>
  [...document.querySelectorAll("button, input, a[href]")]
    .filter((each) => !each.closest("li.Node, li.IsRoot, [role=menu]") && each.id !== "row-menu")
    .filter((each) => each.checkVisibility({ visibilityProperty: true }) && each.getClientRects().length)
    .map((each) => each.ariaLabel || each.textContent.trim() || each.id || each.getAttribute("href"));

const focusedName = () => {
  const at = document.activeElement;
  if (at.closest("[role=tree]")) return "tree";
  return at.ariaLabel || at.textContent.trim() || at.id || at.getAttribute?.("href");
};

/** The names of what Tab stops at, in one round. */
async function tabStops(page) {
  const stops = [];
  for (let count = 0; count < 120; ++count) {
    await page.keyboard.press("Tab");
    const name = await page.evaluate(focusedName);
    const isOutside = await page.evaluate(() => document.activeElement === document.body);
    if (isOutside || (stops.length > 1 && name === stops[0])) break;
    stops.push(name);
  }
  return stops;
}

describe("by the keyboard alone", () => {
  for (const name of ["grouped", "staged", "item"])
    test(`every control of the page ${name} is reached once, and the tree`, async () => {
      const page = await open(browser, fixture(name));
      await settle(page);
      await page.waitForTimeout(500);
      await page.evaluate(() => {
        document.activeElement.blur();
        window.getSelection().removeAllRanges();
      });
      const controls = await page.evaluate(operable);
      const stops = await tabStops(page);
      for (const control of [...controls, "tree"])
        assert.equal(stops.filter((stop) => stop === control).length, 1, `${control} of ${stops.join("; ")}`);
      await page.context().close();
    });

  test("each toggle turns, and each menu opens, is walked through and closes", async () => {
    const page = await open(browser, fixture("staged"));
    const toggles = page.locator("#bar [aria-pressed]:visible");
    for (const toggle of await toggles.all()) {
      const state = () => toggle.getAttribute("aria-pressed");
      const before = await state();
      await toggle.focus();
      await page.keyboard.press("Space");
      assert.notEqual(await state(), before);
      await toggle.focus();
      await page.keyboard.press("Enter");
      assert.equal(await state(), before);
    }
    for (const owner of await page.locator("[aria-haspopup=menu]:visible").all()) {
      await owner.focus();
      await page.keyboard.press("Enter");
      const entries = await page.locator("[role=menu] button").count();
      const seen = new Set();
      for (let at = 0; at < entries; ++at) {
        seen.add(await page.evaluate(() => document.activeElement.textContent));
        await page.keyboard.press("ArrowDown");
      }
      assert.equal(seen.size, entries);
      await page.keyboard.press("Escape");
      assert.equal(await page.locator("[role=menu]").count(), 0);
    }
    await page.context().close();
  });
});

test("a menu of the bar stays open while the page scrolls under it", async () => {
  const page = await open(browser, pageOf("walk-scroll", makeRun("flat", 300)));
  await page.evaluate(() => window.scrollTo(0, 2000));
  await settle(page);
  await page.getByRole("button", { name: "Вид", exact: true }).click();
  await page.evaluate(() => window.scrollBy(0, 300));
  await settle(page);
  assert.equal(await page.locator("[role=menu]").count(), 1);
  await page.context().close();
});

describe("at a zoom of 200 %", () => {
  const zoomed = { viewport: { width: 640, height: 400 }, deviceScaleFactor: 2 };
  /** Controls that are cut off by the window or stand under something else. */
  const covered = (selector) =>
    [...document.querySelectorAll(selector)]
      .filter((each) => each.getClientRects().length)
      .filter((each) => {
        each.scrollIntoView({ block: "nearest", inline: "nearest" });
        const { left, right, top, bottom } = each.getBoundingClientRect();
        if (left < 0 || right > innerWidth || top < -1 || bottom > innerHeight + 1) return true;
        const at = document.elementFromPoint((left + right) / 2, (top + bottom) / 2);
        return at !== each && !each.contains(at);
      })
      .map((each) => each.textContent || each.id);
  const widths = () => [document.documentElement.scrollWidth, document.documentElement.clientWidth];

  for (const { name, address } of [
    ...["grouped", "staged", "item"].map((each) => ({ name: each, address: fixture(each) })),
    ...samplePages().slice(0, 3),
  ])
    test(`nothing of the page ${name} is covered or cut off`, async () => {
      const page = await open(browser, address, zoomed);
      await settle(page);
      assert.deepEqual(await page.evaluate(covered, "#bar :is(button, input)"), []);
      const [scroll, client] = await page.evaluate(widths);
      assert.ok(scroll <= client, `${scroll} in ${client}`);
      const bar = await page.locator("#bar").boundingBox();
      assert.ok(bar.height <= 100, `the bar takes ${bar.height} of 400`);
      for (const owner of await page.locator("#menus [aria-haspopup=menu]").all()) {
        await owner.click();
        assert.deepEqual(await page.evaluate(covered, "[role=menu] button"), []);
        await page.keyboard.press("Escape");
      }
      await page.context().close();
    });

  test("the help fits into the window, and its button is reached", async () => {
    const page = await open(browser, fixture("staged"), zoomed);
    await page.getByRole("button", { name: "Вид", exact: true }).click();
    await page.getByRole("menuitem", { name: "Поиск и клавиши" }).click();
    const box = await page.locator("dialog").boundingBox();
    assert.ok(box.x >= 0 && box.y >= 0 && box.x + box.width <= 640 && box.y + box.height <= 400);
    await page.locator("dialog button").click();
    await page.locator("dialog").waitFor({ state: "detached" });
    await page.context().close();
  });
});
