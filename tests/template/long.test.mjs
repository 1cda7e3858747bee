// Pages with 100,000 lines: what is told, found and shown is right although few rows are laid out.

import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import {
  choose,
  chromiumOnly,
  launch,
  leaveToSearch,
  open,
  places,
  search,
  settle,
  shown,
  visibleLines,
} from "./browser.mjs";
import { linkTo, makeRun, point, recordsOf } from "./fixtures.mjs";
import { bodyOf, fixture, pageOf, writePage, writtenRows } from "./pages.mjs";
import { pdfText } from "./pdftext.mjs";

const total = 100000;
let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

/** Runs in the page: near rows that tell something else than what the library wrote and the filter say. */
const ariaDifferences = (words) => {
  const textOf = (row) => row.querySelector(":scope > .Content").textContent;
  const matches = (row) => textOf(row).toLowerCase().includes(words);
  const isShown = (row) =>
    row.matches(".ExpandLeaf") ? matches(row) : [...row.querySelectorAll("li.ExpandLeaf")].some(matches);
  const keyOf = (row) => {
    const path = [];
    for (let at = row.parentElement.closest("li"); at; at = at.parentElement.closest("li"))
      path.push(textOf(at));
    return path.join("\n");
  };
  if (!window.writtenLists) {
    const written = new DOMParser().parseFromString(
      document.querySelector("#written").textContent,
      "text/html",
    );
    window.writtenLists = new Map();
    for (const list of written.querySelectorAll("ul.Container")) {
      if (!list.firstElementChild) continue;
      const isBlock = list.parentElement.matches(".errorblock, .messageblock");
      const key =
        isBlock && !list.closest(".stageblock")
          ? `root ${textOf(list.firstElementChild)}`
          : keyOf(list.firstElementChild);
      window.writtenLists.set(key, [...(window.writtenLists.get(key) ?? []), ...list.children]);
    }
  }
  const wrong = [];
  const known = new Map();
  for (const row of document.querySelectorAll("[data-near]")) {
    const around = keyOf(row);
    const isRoot = !around && row.matches(".IsRoot");
    const key = isRoot && !row.closest(".stageblock") ? `root ${textOf(row)}` : around;
    if (isRoot && row.closest(".stageblock")) continue;
    if (!known.has(key)) known.set(key, window.writtenLists.get(key).filter(isShown));
    const siblings = known.get(key);
    if (Number(row.ariaSetSize) !== siblings.length)
      wrong.push(`set size ${row.ariaSetSize}, not ${siblings.length}`);
    const own = siblings[row.ariaPosInSet - 1];
    if (!own || textOf(own) !== textOf(row)) wrong.push(`position ${row.ariaPosInSet} of ${textOf(row)}`);
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
    const run = makeRun(layout, total);
    const records = recordsOf(run);
    let page;
    before(async () => (page = await open(browser, pageOf(`long-${layout}`, run))));
    after(() => page.context().close());

    test("are counted as a plain count does", async () => {
      const told = await page.evaluate(() =>
        [...document.querySelectorAll("#kinds b")].map((each) => Number(each.textContent.replace(/\D/g, ""))),
      );
      const count = (kind) => records.filter((line) => line.kind === kind).length;
      assert.deepEqual(told, [count("error"), count("warning"), count("message")]);
      assert.deepEqual(await shown(page), [total, total]);
      if (layout !== "flat") assert.equal(await places(page), writtenRows(`long-${layout}`));
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

    test("need no more rows in the page than are looked at", async () => {
      await page.waitForTimeout(1000);
      assert.ok((await page.locator("li.ExpandLeaf").count()) < 500);
    });

    test("can be unfolded, and each is reached", async () => {
      await choose(page, "Ветви", "Развернуть всё");
      assert.equal(await page.locator(".ExpandClosed").count(), 0);
      assert.deepEqual(await page.evaluate(holes), []);
      // The ids are made while the page is idle, or at once when the address names one.
      await page.evaluate(() => (location.hash = "none"));
      await leaveToSearch(page);
      const ids = await page.evaluate(() => {
        const found = [...document.querySelectorAll("li.ExpandLeaf")].map(({ id }) => id);
        window.dispatchEvent(new Event("focus"));
        return found;
      });
      assert.equal(ids.length, writtenRows(`long-${layout}`));
      for (const part of [0.999, 0.31, 0.77, 0.001, 0.5]) {
        const id = ids[Math.floor(ids.length * part)];
        await page.evaluate((key) => (location.hash = key), id);
        await page.waitForFunction((key) => document.activeElement.id === key, id, { polling: 50 });
        await settle(page);
        const state = await page.evaluate(() => {
          const { top, bottom } = document.activeElement.querySelector(".Content").getBoundingClientRect();
          return { top, bottom, height: innerHeight };
        });
        assert.ok(state.top > 0 && state.bottom <= state.height, JSON.stringify(state));
        assert.deepEqual(await page.evaluate(holes), []);
      }
      assert.deepEqual(await page.evaluate(ariaDifferences, ""), []);
    });

    test("are searched through, and tell their places while filtered", async () => {
      await search(page, "невязка");
      const expected = records.filter(({ text }) => text.toLowerCase().includes("невязка"));
      assert.deepEqual(await shown(page), [expected.length, total]);
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
          // Firefox's driver scrolls to what it is to click, though the bar stands in view.
          const { x, y, width, height } = await page.locator(`[data-kind=${kind}]`).boundingBox();
          await page.mouse.click(x + width / 2, y + height / 2);
          await settle(page);
          assert.ok(Math.abs((await top()) - before) <= 2, kind);
        }
      }
    });

    test("are where they were after printing", async () => {
      await page.evaluate(() => window.scrollTo(0, document.documentElement.scrollHeight * 0.77));
      await settle(page);
      await settle(page);
      const seen = () =>
        page.evaluate(() => {
          const middle = document.elementFromPoint(innerWidth / 2, innerHeight / 2).closest("li");
          return [
            middle.querySelector(".Content").textContent,
            Math.round(middle.getBoundingClientRect().top),
          ];
        });
      const before = await seen();
      await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
      await page.evaluate(() => window.dispatchEvent(new Event("afterprint")));
      assert.deepEqual(await seen(), before);
    });

    test("are left to the browser's own search, and put away again", async () => {
      await leaveToSearch(page);
      const lost = await page.evaluate(() => {
        const outermost = new Map();
        const outermostOf = (element) => {
          if (!element) return null;
          if (!outermost.has(element)) {
            const around = outermostOf(element.parentElement);
            outermost.set(element, around ?? (element.hidden === "until-found" ? element : null));
          }
          return outermost.get(element);
        };
        return [...document.querySelectorAll("li.ExpandLeaf")].filter(
          (line) => !(outermostOf(line) ?? line).getClientRects().length,
        ).length;
      });
      assert.equal(lost, 0);

      const found = await page.evaluate(() => {
        const lines = [...document.querySelectorAll("li.ExpandLeaf")];
        const line = lines.slice(lines.length * 0.4).find((each) => each.closest("li[hidden=until-found]"));
        const around = [];
        for (let at = line; at; at = at.parentElement) if (at.hidden === "until-found") around.unshift(at);
        for (const each of around) each.dispatchEvent(new Event("beforematch", { bubbles: true }));
        const isDrawn = (each) =>
          each.checkVisibility({ contentVisibilityAuto: true }) && each.role === "treeitem";
        const beside = [line.previousElementSibling, line.nextElementSibling].filter(Boolean);
        return [around.length > 0, isDrawn(line), beside.length > 0 && beside.every(isDrawn)];
      });
      assert.deepEqual(found, [true, true, true]);

      await page.evaluate(() => window.dispatchEvent(new Event("focus")));
      assert.equal(await page.locator("#lines [hidden=until-found]:is(li)").count(), 0);
      assert.ok((await page.locator("[data-near]").count()) < 500);
    });
  });

describe("lines whose rows are not in the page yet", () => {
  // The browser never finds time.
  const prepare = () => (window.requestIdleCallback = () => 0);
  const rows = (page) => page.locator("li.ExpandLeaf").count();
  const focusedText = (page) => page.evaluate(() => document.activeElement.textContent);

  for (const layout of ["grouped", "staged", "flat"])
    test(`are searched through, unfolded and reached, ${layout}`, async () => {
      const name = `unfilled-${layout}`;
      const run = makeRun(layout, 6000);
      const address = pageOf(name, run);
      const page = await open(browser, address, { prepare });
      const written = writtenRows(name);
      assert.ok((await rows(page)) < 300);
      assert.deepEqual(await page.evaluate(holes), []);
      await choose(page, "Ветви", "Развернуть всё");
      for (const part of [0.4, 0.41, 1, 0]) {
        await page.evaluate(
          (where) => window.scrollTo(0, document.documentElement.scrollHeight * where),
          part,
        );
        await settle(page);
        await settle(page);
        assert.deepEqual(await page.evaluate(holes), [], `at ${part}`);
      }
      await search(page, "невязка");
      const found = recordsOf(run).filter(({ text }) => text.toLowerCase().includes("невязка"));
      assert.deepEqual(await shown(page), [found.length, recordsOf(run).length]);
      assert.deepEqual(await page.evaluate(holes), []);
      await search(page, "");
      await page.locator('[tabindex="0"]:visible').last().focus();
      await page.keyboard.press("End");
      const last = bodyOf(name)
        .match(/<div class="Content [a-z]*">(?:[^<]|<a [^>]*>|<\/a>)*/g)
        .at(-1);
      assert.equal((await focusedText(page)).trim(), last.replace(/<[^>]*>/g, ""));
      assert.ok((await rows(page)) < written / 2);
      await page.context().close();
    });

  test("are reached by an address", async () => {
    const address = pageOf("unfilled-address", makeRun("grouped", 6000));
    const whole = await open(browser, address);
    await whole.waitForFunction(() => document.querySelector("li.Node:last-child").id, null, {
      polling: 200,
    });
    await leaveToSearch(whole);
    const [id, text] = await whole.evaluate(() => {
      const lines = document.querySelectorAll("li.ExpandLeaf");
      const line = lines[Math.floor(lines.length * 0.7)];
      return [line.id, line.textContent];
    });
    await whole.context().close();
    const page = await open(browser, `${address}#${id}`, { prepare });
    assert.equal(await focusedText(page), text);
    assert.ok((await rows(page)) < 300);
    await page.context().close();
  });

  test("are all there at once for the browser's own search", async () => {
    const page = await open(browser, pageOf("unfilled-find", makeRun("staged", 6000)), { prepare });
    await leaveToSearch(page);
    assert.equal(await rows(page), writtenRows("unfilled-find"));
    await page.context().close();
  });

  test("stay for the browser's own search when the histogram comes after it was opened", async () => {
    const opensSearch = () =>
      window.addEventListener("load", () =>
        document.body.dispatchEvent(new KeyboardEvent("keydown", { key: "F3", bubbles: true })),
      );
    const address = pageOf("unfilled-early", makeRun("grouped", 6000));
    const page = await open(browser, address, { prepare: opensSearch });
    await page.locator("#chart").waitFor({ state: "attached" });
    await settle(page);
    assert.equal(await page.evaluate(() => document.querySelector("main").dataset.long), "find");
    assert.equal(await rows(page), writtenRows("unfilled-early"));
    const isInView = () => {
      const { top, bottom } = document.querySelector("[data-current]").getBoundingClientRect();
      return top >= document.querySelector("#bar").getBoundingClientRect().bottom && bottom <= innerHeight;
    };
    assert.equal(await page.evaluate(isInView), true);
    await page.context().close();
  });

  test("stay for it when the page is zoomed, and are copied whole meanwhile", async () => {
    const name = "unfilled-zoomed";
    const page = await open(browser, pageOf(name, makeRun("flat", 4000)), {
      permissions: ["clipboard-read", "clipboard-write"],
    });
    await page.locator("#chart").waitFor();
    await leaveToSearch(page);
    await page.setViewportSize({ width: 900, height: 600 });
    await settle(page);
    assert.equal(await page.evaluate(() => document.querySelector("main").dataset.long), "find");
    assert.equal(await rows(page), writtenRows(name));
    await page.evaluate(() => window.getSelection().selectAllChildren(document.querySelector("#lines")));
    await page.keyboard.press("Control+c");
    const copied = await page.evaluate(() => navigator.clipboard.readText());
    const texts = recordsOf(makeRun("flat", 4000)).map(({ text }) => text);
    assert.ok(copied.endsWith(texts.join("\n")), copied.slice(0, 200));
    await page.evaluate(() => window.dispatchEvent(new Event("focus")));
    assert.deepEqual(await page.evaluate(holes), []);
    await page.context().close();
  });

  test("are left to it again when what a slow expression finds comes late", async () => {
    const page = await open(browser, pageOf("unfilled-slow", makeRun("flat", 4000)));
    await page.locator("#chart").waitFor();
    await page.evaluate(() => {
      const query = document.querySelector("#query");
      query.value = "/^(.а|н)+.{3}вязка/";
      query.dispatchEvent(new InputEvent("input", { bubbles: true }));
      document.body.dispatchEvent(new KeyboardEvent("keydown", { key: "F3", bubbles: true }));
    });
    await page.waitForFunction(() => !/4.000 из/.test(document.querySelector("#shown").textContent));
    assert.equal(await page.evaluate(() => document.querySelector("main").dataset.long), "find");
    await page.context().close();
  });

  test("stand in their lists as they were written, in whatever order they came", async () => {
    const normal = () => {
      const copy = document.querySelector("#lines").cloneNode(true);
      for (const element of copy.querySelectorAll("*"))
        for (const { name } of [...element.attributes])
          if (!/^(?:class|href)$/.test(name)) element.removeAttribute(name);
      return copy.innerHTML.replace(/>\n+/g, ">").replaceAll("ExpandClosed", "ExpandOpen");
    };
    const bare = "<!DOCTYPE html><meta charset='utf-8'><div id='lines'></div>";
    for (const layout of ["grouped", "staged", "flat"]) {
      const name = `order-${layout}`;
      const page = await open(browser, pageOf(name, makeRun(layout, 4000)), { prepare });
      await choose(page, "Ветви", "Развернуть всё");
      for (const part of [0.8, 0.3, 0.31, 0.5, 0.29]) {
        await page.evaluate(
          (where) => window.scrollTo(0, document.documentElement.scrollHeight * where),
          part,
        );
        await settle(page);
        await settle(page);
      }
      await search(page, "невязка");
      await search(page, "");
      await leaveToSearch(page);
      const plain = await open(browser, writePage(`bare-${layout}`, bodyOf(name), bare));
      assert.equal(await page.evaluate(normal), await plain.evaluate(normal));
      await plain.context().close();
      await page.context().close();
    }
  });
});

describe("the worst lines of a long page come first in one list", () => {
  const measured = (count, subject) =>
    Array.from({ length: count }, (_, at) => ({
      kind: "error",
      text: `Невязка ${subject(at)} ${at ? at / 10 : count} мм, допуск 1 мм`,
    }));
  const worstOf = async (page, count) => {
    await page.locator('#lines [tabindex="0"]').focus();
    await page.keyboard.press("s");
    await settle(page);
    assert.deepEqual(await page.evaluate(holes), []);
    return (await visibleLines(page)).slice(0, count);
  };

  test("when the worst is in view before", async () => {
    const lines = measured(3000, () => "хода");
    const page = await open(browser, pageOf("worst-in-view", makeRun("flat", lines.length, lines)));
    const expected = [3000, 299.9, 299.8].map((value) => `Невязка хода ${value} мм, допуск 1 мм`);
    assert.deepEqual(await worstOf(page, 3), expected);
    await page.context().close();
  });

  test("when the list is shorter than the tree and no longer a long one", async () => {
    const lines = measured(1500, (at) => linkTo(point(1 + (at % 30))) + linkTo(point(31 + (at % 30))));
    const page = await open(browser, pageOf("shorter-list", makeRun("grouped", lines.length, lines)));
    assert.equal(await places(page), 3000);
    const [first, second] = await worstOf(page, 2);
    assert.match(first, /1500 мм, допуск/);
    assert.match(second, /149.9 мм, допуск/);
    await page.context().close();
  });
});

test("scroll height is near to that of the plain layout", async () => {
  for (const layout of ["grouped", "staged", "flat"]) {
    const page = await open(browser, pageOf(`high-${layout}`, makeRun(layout, 6000)));
    await choose(page, "Ветви", "Развернуть всё");
    const guessed = await page.evaluate(() => document.documentElement.scrollHeight);
    await leaveToSearch(page);
    const plain = await page.evaluate(() => {
      document.querySelector("main").dataset.long = "";
      for (const row of document.querySelectorAll("[hidden=until-found]")) row.hidden = false;
      return document.documentElement.scrollHeight;
    });
    assert.ok(Math.abs(guessed - plain) < plain * 0.1, `${layout}: ${guessed}, not ${plain}`);
    await page.context().close();
  }
});

describe("on paper", () => {
  /** Runs in the page: its rows with how deep they stand, their kinds and their texts. */
  const readRows = (selector) => {
    const depthOf = (row) => (row ? 1 + depthOf(row.parentElement.closest("li")) : 0);
    return [...document.querySelectorAll(selector)].map((row) => {
      const caption = row.querySelector(":scope > .Content");
      const own = (caption ?? row).cloneNode(true);
      for (const each of own.querySelectorAll("ul, p > b")) each.remove();
      for (const each of own.querySelectorAll("br")) each.replaceWith(" ");
      const kind = (caption ?? row).className.replace("Content", "").trim();
      return [depthOf(row), kind, own.textContent.replace(/\s+/g, " ").trim()];
    });
  };
  const signs = { error: "× ", warning: "! ", message: "i " };
  const bare = "<!DOCTYPE html><meta charset='utf-8'><div id='lines'></div>";

  for (const layout of ["grouped", "staged", "flat"])
    test(`all rows stand in their branches as they were written, ${layout}`, async () => {
      const name = `paper-${layout}`;
      const page = await open(browser, pageOf(name, makeRun(layout, 4000)));
      await choose(page, "Ветви", "Развернуть всё");
      await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
      const printed = await page.evaluate(readRows, ".printed li");
      const plain = await open(browser, writePage(`bare-${name}`, bodyOf(name), bare));
      const written = await plain.evaluate(readRows, "li.Node, li.IsRoot");
      assert.deepEqual(
        printed,
        written.map(([depth, kind, text]) => [depth, kind, (signs[kind] ?? "") + text]),
      );
      await page.evaluate(() => window.dispatchEvent(new Event("afterprint")));
      assert.equal(await page.locator(".printed").count(), 0);
      await plain.context().close();
      await page.context().close();
    });

  test("folded branches stay folded, alike lines stand once, captions tell what is below", async () => {
    const page = await open(browser, pageOf("paper-alike", makeRun("grouped", 4000)));
    await page.locator("#alike").click();
    await search(page, "Строка");
    const seen = () =>
      page.evaluate(() => {
        const isSeen = (row) => !row.parentElement.closest("[hidden]");
        const told = (row, name) => row.querySelector(":scope > .Content").getAttribute(name) ?? "";
        return [...document.querySelectorAll("[data-near]")]
          .filter(isSeen)
          .map((row) => told(row, row.ariaExpanded ? "data-holds" : "data-alike"));
      });
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    const printed = await page.evaluate(() =>
      [...document.querySelectorAll(".printed li")].map(
        (row) => row.querySelector(":scope > p > b, :scope > b:last-child")?.textContent ?? "",
      ),
    );
    assert.ok(printed.length > 2 && printed.some((text) => /^×\d+ {2}\d/.test(text)), String(printed));
    assert.deepEqual(printed, await seen());
    await page.context().close();
  });

  test("a line cannot reach beyond its row", async () => {
    const page = await open(browser, fixture("hostile"));
    await choose(page, "Ветви", "Развернуть всё");
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    const texts = (selector) =>
      page.evaluate(
        (rows) =>
          [...document.querySelectorAll(rows)].map((row) => row.textContent.replace(/^[×!i]\t/, "").trim()),
        selector,
      );
    assert.deepEqual(await texts(".printed li[class]"), await texts("li.ExpandLeaf > .Content"));
    assert.equal(await page.evaluate(() => window.injected), undefined);
    await page.context().close();
  });

  const noMargins = chromiumOnly("Firefox prints nothing into the margins of a sheet");
  test("each sheet tells the run and its number", noMargins, async () => {
    const page = await open(browser, pageOf("paper-sheets", makeRun("flat", 300)));
    const text = pdfText(await page.pdf());
    const sheets = [...text.matchAll(/^Импорт – Проект: Проект 1 – (\d+) \/ (\d+)$/gm)];
    const numbers = sheets.map(([, at, count]) => [Number(at), Number(count)]);
    assert.ok(sheets.length > 3);
    assert.deepEqual(
      numbers,
      sheets.map((_, at) => [at + 1, sheets.length]),
    );
    await page.context().close();
  });
});

test("every visible line of a long page is printed", async () => {
  const page = await open(browser, pageOf("printed", makeRun("grouped", 3000)));
  await choose(page, "Ветви", "Развернуть всё");
  await search(page, "невязка");
  const text = pdfText(await page.pdf()).replace(/\s+/g, " ");
  assert.equal(text.match(/Невязка хода/g).length, (await shown(page))[0]);
  assert.doesNotMatch(text, /получена один раз/);
  await page.context().close();
});

describe("beyond 300,000 lines", () => {
  const last = 300000;
  let page;
  // With three lines a row they are higher than Firefox holds the bar in view, or lays out.
  before(async () => {
    const lines = Array.from({ length: last + 1 }, (_, at) => ({ kind: "message", text: `с ${at}\n–\n–` }));
    page = await open(browser, pageOf("many", makeRun("flat", 0, lines)));
  });
  after(() => page.context().close());

  const lowest = () => {
    const rows = [...document.querySelectorAll("[data-near]")];
    const row = rows.findLast((each) => each.getBoundingClientRect().bottom <= innerHeight);
    return row.textContent.split("–")[0].trim();
  };

  test("the page says what it does", async () => {
    assert.match((await page.locator("#note").textContent()).replace(/\s/g, " "), /^Строк: 300 001\./);
    assert.deepEqual(await shown(page), [last + 1, last + 1]);
  });

  test("a reader who comes back soon finds the page as it was left", async () => {
    const count = () => document.querySelectorAll("#lines li").length;
    const before = await page.evaluate(count);
    await page.evaluate(() => window.dispatchEvent(new Event("blur")));
    await page.waitForFunction(
      (least) => document.querySelectorAll("#lines li").length > least,
      before + 5000,
    );
    assert.equal(await page.evaluate(() => document.querySelector("main").dataset.long), "near");
    await page.evaluate(() => window.dispatchEvent(new Event("focus")));
    await page.waitForTimeout(1000);
    assert.ok((await page.evaluate(count)) <= before);
    assert.deepEqual(await page.evaluate(holes), []);
  });

  test("the lines are put into order while they are left to the browser's own search", async () => {
    await leaveToSearch(page);
    // To look for a button by its role takes Firefox's driver a quarter of an hour among so many rows.
    const written = await page.evaluate(() => {
      const press = (selector, text) =>
        [...document.querySelectorAll(selector)]
          .find(({ textContent }) => textContent.includes(text))
          .click();
      const { length } = document.querySelectorAll("#lines li");
      press("#menus button", "Вид");
      press("[role=menuitemradio]", "по тексту");
      return length;
    });
    assert.equal(written, last + 1);
    await page.locator('#lines [tabindex="0"]').focus();
    await page.keyboard.press("Home");
    assert.match(await page.evaluate(lowest), /^с \d{1,2}$/);
    assert.deepEqual(page.complaints, []);
  });

  test("every row is reached by keys and by the scroll bar", async () => {
    await page.locator('#lines [tabindex="0"]').focus();
    await page.keyboard.press("End");
    await settle(page);
    assert.equal(await page.evaluate(lowest), `с ${last}`);
    await page.keyboard.press("Home");
    await settle(page);
    assert.match(await page.evaluate(lowest), /^с \d{1,2}$/);
    const barTop = () => document.querySelector("#bar").getBoundingClientRect().top;
    for (const part of [0.3, 0.301, 0.7, 1]) {
      await page.evaluate((where) => window.scrollTo(0, document.documentElement.scrollHeight * where), part);
      await settle(page);
      await settle(page);
      assert.equal(await page.evaluate(barTop), 0, `at ${part}`);
      assert.deepEqual(await page.evaluate(holes), [], `at ${part}`);
      const seen = Number((await page.evaluate(lowest)).slice(2));
      assert.ok(Math.abs(seen / last - part) < 0.002, `${seen} at ${part}`);
    }
    assert.equal(await page.evaluate(lowest), `с ${last}`);
  });

  test("a branch of as many branches is unfolded as a whole", async () => {
    const lines = Array.from({ length: last }, (_, at) => ({ kind: "error", text: linkTo(point(1 + at)) }));
    const grouped = await open(browser, pageOf("many-branches", makeRun("grouped", last, lines)));
    await grouped.locator('#lines [tabindex="0"]').focus();
    await grouped.keyboard.press("Home");
    await grouped.keyboard.press("ContextMenu");
    await grouped.getByRole("menuitem", { name: "Развернуть ветвь" }).click();
    assert.deepEqual(grouped.complaints, []);
    assert.equal(await grouped.locator("#lines .ExpandClosed").count(), 0);
    await grouped.context().close();
  });

  test("as many branches that the browser built are put into order", async () => {
    const name = (at) => linkTo(point(1 + at, `П & ${last - at}`));
    const lines = Array.from({ length: last / 2 }, (_, at) => ({ kind: "error", text: name(at) }));
    const grouped = await open(browser, pageOf("built-branches", makeRun("grouped", 0, lines)));
    await grouped.getByRole("button", { name: "Вид", exact: true }).click();
    await grouped.getByRole("menuitemradio", { name: "Порядок: по тексту" }).click();
    assert.deepEqual(grouped.complaints, []);
    await grouped.locator('#lines [tabindex="0"]').focus();
    await grouped.keyboard.press("End");
    assert.equal(await grouped.evaluate(() => document.activeElement.innerText.trim()), `П & ${last}`);
    await grouped.context().close();
  });

  test("what stands at a place of the scroll bar is there in stages and branches, too", async () => {
    const name = (at) => `${linkTo(point(1 + (at % 3000)))}: с ${at}\n–\n–`;
    const lines = Array.from({ length: last + 1 }, (_, at) => ({ kind: "message", text: name(at) }));
    const staged = await open(browser, pageOf("many-staged", makeRun("staged", lines.length, lines)));
    await choose(staged, "Ветви", "Развернуть всё");
    for (const [part, from, to] of [
      [0.1, 0, 0.3],
      [0.5, 0.3, 0.7],
      [0.9, 0.7, 1],
      [0.15, 0, 0.3],
    ]) {
      await staged.evaluate(
        (where) => window.scrollTo(0, document.documentElement.scrollHeight * where),
        part,
      );
      await settle(staged);
      await settle(staged);
      assert.deepEqual(await staged.evaluate(holes), [], `at ${part}`);
      const [, seen] = /с (\d+)$/.exec(await staged.evaluate(lowest));
      assert.ok(seen >= from * last && seen <= to * last, `${seen} at ${part}`);
    }
    await staged.context().close();
  });
});
