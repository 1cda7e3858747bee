// Pages with 100,000 lines: what is told, found and shown is right although few rows are laid out.

import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import { choose, launch, longPage, open, search, settle, shown, writePage } from "./browser.mjs";
import { bodyOf, makePage } from "./fixtures.mjs";
import { pdfText } from "./pdftext.mjs";

const total = Number(process.env.LONG_PAGE ?? 100000);
let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Runs in the page: near rows that tell something else than the mark-up and the filter say. */
const ariaDifferences = (words) => {
  const matches = (row) => row.querySelector(":scope > .Content").textContent.toLowerCase().includes(words);
  const isShown = (row) =>
    row.matches(".ExpandLeaf") ? matches(row) : [...row.querySelectorAll("li.ExpandLeaf")].some(matches);
  const wrong = [];
  const known = new Map();
  for (const row of document.querySelectorAll("[data-near]")) {
    const list = row.parentElement;
    if (!known.has(list)) {
      const blocks = list.parentElement.parentElement?.matches("li")
        ? [...list.parentElement.parentElement.children]
        : [];
      const lists = blocks.length
        ? blocks.flatMap((block) => [...block.querySelectorAll(":scope > ul")])
        : [list];
      known.set(
        list,
        lists.flatMap((each) => [...each.children].filter(isShown)),
      );
    }
    const siblings = known.get(list);
    if (Number(row.ariaSetSize) !== siblings.length)
      wrong.push(`set size ${row.ariaSetSize}, not ${siblings.length}`);
    if (Number(row.ariaPosInSet) !== siblings.indexOf(row) + 1) wrong.push(`position ${row.ariaPosInSet}`);
  }
  return wrong;
};

/** Whether every place of the view below the bar shows a row, as long as there are rows. */
const holes = () => {
  const wrong = [];
  const bar = document.querySelector("#bar").getBoundingClientRect().bottom;
  const trees = [...document.querySelectorAll("[role=tree]:not([hidden])")].map((tree) =>
    tree.getBoundingClientRect(),
  );
  const end = Math.max(...trees.map(({ bottom }) => bottom));
  const start = Math.min(...trees.map(({ top }) => top));
  for (let y = Math.max(bar, start) + 3; y < Math.min(innerHeight, end) - 3; y += 7) {
    const element = document.elementFromPoint(innerWidth / 2, y);
    if (!element?.closest("li, .stageblock, .messageblock, #lines > div, .menu")) wrong.push(y);
    if (element?.matches("ul")) wrong.push(y);
  }
  return wrong;
};

for (const layout of ["grouped", "staged", "flat"])
  describe(`${total} lines, ${layout}`, () => {
    let page;
    before(async () => (page = await open(browser, longPage(layout, total))));
    after(() => page.context().close());

    test("are counted as a plain count does", async () => {
      const counted = await page.evaluate(() => {
        const count = (kind) => document.querySelectorAll(`li.ExpandLeaf > .Content${kind}`).length;
        return [count(".error"), count(".warning"), count(".message"), count("")];
      });
      const told = await page.evaluate(() =>
        [...document.querySelectorAll("#kinds b")].map((each) => Number(each.textContent.replace(/\D/g, ""))),
      );
      assert.deepEqual(told, counted.slice(0, 3));
      assert.deepEqual(await shown(page), [counted[3], counted[3]]);
      assert.deepEqual(page.complaints, []);
    });

    test("show the first error", async () => {
      assert.equal(
        await page.evaluate(() => {
          const line = document.querySelector("li:has(> .error)");
          const box = line.getBoundingClientRect();
          return (
            box.top >= document.querySelector("#bar").getBoundingClientRect().bottom &&
            box.bottom <= innerHeight
          );
        }),
        true,
      );
    });

    test("can be unfolded, and each is reached", async () => {
      await choose(page, "Ветви", "Развернуть всё");
      assert.equal(await page.locator(".ExpandClosed").count(), 0);
      assert.deepEqual(await page.evaluate(holes), []);
      await page.waitForFunction(() => [...document.querySelectorAll("li.Node")].at(-1).id !== "");
      for (const part of [0.999, 0.31, 0.77, 0.001, 0.5]) {
        const id = await page.evaluate((where) => {
          const lines = document.querySelectorAll("li.ExpandLeaf");
          window.wanted = lines[Math.floor(lines.length * where)];
          return window.wanted.id;
        }, part);
        await page.evaluate((key) => (location.hash = key), id);
        await settle(page);
        const state = await page.evaluate(() => {
          const box = window.wanted.querySelector(".Content").getBoundingClientRect();
          return {
            focused: document.activeElement === window.wanted,
            top: box.top,
            bottom: box.bottom,
            height: innerHeight,
          };
        });
        assert.equal(state.focused, true);
        assert.ok(state.top > 0 && state.bottom <= state.height, JSON.stringify(state));
        assert.deepEqual(await page.evaluate(holes), []);
      }
      assert.deepEqual(await page.evaluate(ariaDifferences, ""), []);
    });

    test("are searched through, and tell their places while filtered", async () => {
      await search(page, "невязка");
      const counted = await page.evaluate(
        () =>
          [...document.querySelectorAll("li.ExpandLeaf")].filter((line) =>
            line.textContent.toLowerCase().includes("невязка"),
          ).length,
      );
      assert.equal((await shown(page))[0], counted);
      assert.deepEqual(await page.evaluate(ariaDifferences, "невязка"), []);
      assert.deepEqual(await page.evaluate(holes), []);
      const marked = await page.evaluate(() => CSS.highlights.get("found").size);
      assert.ok(marked > 5, `${marked} hits`);
      await search(page, "");
    });

    test("have no holes while scrolling", async () => {
      for (const part of [0.2, 0.202, 0.205, 0.6, 0.59, 1, 0]) {
        await page.evaluate(
          (where) => window.scrollTo(0, document.documentElement.scrollHeight * where),
          part,
        );
        await settle(page);
        await settle(page);
        assert.deepEqual(await page.evaluate(holes), [], `at ${part}`);
      }
    });

    test("walk with the keyboard from end to end", async () => {
      await page.locator('[tabindex="0"]:visible').last().focus();
      await page.keyboard.press("End");
      assert.equal(
        await page.evaluate(
          () => document.activeElement === [...document.querySelectorAll("li.Node")].at(-1),
        ),
        true,
      );
      await page.keyboard.press("ArrowUp");
      await page.keyboard.press("Home");
      assert.equal(
        await page.evaluate(() => document.activeElement === document.querySelector("li.Node, li.IsRoot")),
        true,
      );
    });

    test("keep the focused line in place when a filter toggles", async () => {
      for (const kind of ["message", "error"]) {
        await page.keyboard.press("End");
        for (let step = 0; step < 3; ++step) await page.keyboard.press("W");
        const top = () => page.evaluate(() => document.activeElement.getBoundingClientRect().top);
        const before = await top();
        for (let count = 0; count < 2; ++count) {
          await page.locator(`[data-kind=${kind}]`).click();
          await settle(page);
          assert.ok(Math.abs((await top()) - before) <= 2, kind);
        }
      }
    });

    test("are laid out for the browser's own search, and put away again", async () => {
      await page.evaluate(() => window.dispatchEvent(new Event("blur")));
      const state = await page.evaluate(() => {
        const lines = [...document.querySelectorAll("li.ExpandLeaf")];
        return [
          lines.filter((line) => !line.getBoundingClientRect().height).length,
          lines.filter((line) => line.hidden === "until-found").length > lines.length / 2,
        ];
      });
      assert.deepEqual(state, [0, true]);
      await page.evaluate(() => window.dispatchEvent(new Event("focus")));
      assert.equal(await page.locator("#lines [hidden=until-found]:is(li)").count(), 0);
      assert.ok((await page.locator("[data-near]").count()) < 500);
    });
  });

test("scroll height is near to that of the plain layout", async () => {
  for (const layout of ["grouped", "staged", "flat"]) {
    const page = await open(browser, longPage(layout, 6000));
    await choose(page, "Ветви", "Развернуть всё");
    const guessed = await page.evaluate(() => document.documentElement.scrollHeight);
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    const plain = await page.evaluate(() => document.documentElement.scrollHeight);
    assert.ok(Math.abs(guessed - plain) < plain * 0.1, `${layout}: ${guessed}, not ${plain}`);
    await page.context().close();
  }
});

test("every visible line of a long page is printed", async () => {
  const page = await open(browser, longPage("grouped", 3000));
  await choose(page, "Ветви", "Развернуть всё");
  await search(page, "невязка");
  const text = pdfText(await page.pdf()).replaceAll("\n", "");
  assert.equal(text.match(/Невязка хода/g).length, (await shown(page))[0]);
  assert.doesNotMatch(text, /получена один раз/);
  await page.context().close();
});

test("beyond 300,000 lines the page says what it does", async () => {
  const lines = Array.from({ length: 300001 }, (_, at) => ({ kind: "message", text: `с ${at}`, items: [] }));
  const page = await open(browser, writePage("many", bodyOf({ ...makePage("flat", 1), lines })));
  assert.match((await page.locator("#note").textContent()).replace(/\s/g, " "), /^Все 300 001 строк здесь/);
  assert.deepEqual(await shown(page), [300001, 300001]);
  await page.context().close();
});
