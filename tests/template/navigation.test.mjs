import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import {
  addressesOpenedBy,
  addressHolds,
  choose,
  chromiumOnly,
  doubleClick,
  launch,
  open,
  rowsCalled,
  search,
  settle,
  shown,
} from "./browser.mjs";
import { makeLines, makeRun, runs } from "./fixtures.mjs";
import { fixture, pageOf } from "./pages.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const visit = (name, options) => open(browser, fixture(name), options);
const press = async (page, ...keys) => {
  for (const key of keys) await page.keyboard.press(key);
};
const focusedId = (page) => page.evaluate(() => document.activeElement.id);
const focusedText = (page) =>
  page.evaluate(() => document.activeElement.querySelector(".Content")?.textContent ?? null);
const isInView = (page, id) =>
  page.evaluate((key) => {
    const box = document.getElementById(key).querySelector(".Content").getBoundingClientRect();
    const bar = document.querySelector("#bar").getBoundingClientRect().bottom;
    return box.height > 0 && box.top >= bar && box.bottom <= innerHeight;
  }, id);

/** Names a line in the address, and waits until the page has gone there. */
async function goTo(page, id) {
  await page.evaluate((key) => (location.hash = key), id);
  await page.waitForFunction((key) => document.activeElement.id === key, id);
}

/** Ids of a kind's lines in the order of the page. */
const idsOf = (page, kind) =>
  page.evaluate(
    (name) => [...document.querySelectorAll(`li:has(> .Content.${name})`)].map((line) => line.id),
    kind,
  );

describe("closed branches", () => {
  const closedLine = (page) =>
    page.evaluate(() => [...document.querySelectorAll(".ExpandClosed li.ExpandLeaf")].at(-1).id);

  test("are left to the browser's own search", async () => {
    const page = await visit("staged");
    const state = await page.evaluate(() => {
      const closed = [...document.querySelectorAll("li.ExpandClosed")];
      const blocks = closed.flatMap((node) =>
        [...node.children].filter((child) => child.matches("ul, .errorblock, .messageblock")),
      );
      return blocks.map((block) => block.getAttribute("hidden"));
    });
    assert.ok(state.length > 0);
    assert.deepEqual([...new Set(state)], ["until-found"]);
    await page.context().close();
  });

  test("open when the browser has found something in them", async () => {
    const closed = await visit("staged");
    const words = await closed.evaluate(() =>
      [...document.querySelectorAll(".ExpandClosed li.ExpandLeaf > .error")].at(-1).textContent.trim(),
    );
    // A link to a text makes the browser search for it.
    const page = await open(browser, `${fixture("staged")}#:~:text=${encodeURIComponent(words)}`);
    await page.waitForFunction((text) => {
      const line = [...document.querySelectorAll("li.ExpandLeaf")].find((each) =>
        each.textContent.includes(text),
      );
      if (!line.checkVisibility({ contentVisibilityAuto: true })) return false;
      window.found = line;
      const { top, bottom } = line.getBoundingClientRect();
      return top > document.querySelector("#bar").getBoundingClientRect().bottom && bottom < innerHeight;
    }, words);
    const around = await page.evaluate(() => {
      const states = [];
      for (let at = window.found.parentElement.closest("li"); at; at = at.parentElement.closest("li"))
        states.push(at.matches(".ExpandOpen") && at.ariaExpanded === "true");
      return states;
    });
    assert.deepEqual(around, [true, true, true, true]);
    await closed.context().close();
    await page.context().close();
  });

  test("open around the line that a fragment names, when loaded and later", async () => {
    const page = await visit("staged");
    const id = await closedLine(page);
    const other = (await idsOf(page, "warning"))[0];
    await goTo(page, id);
    assert.equal(await focusedId(page), id);
    assert.equal(await isInView(page, id), true);
    const fresh = await open(browser, `${fixture("staged")}#${id}`);
    assert.equal(await isInView(fresh, id), true);
    await goTo(fresh, other);
    assert.equal(await isInView(fresh, other), true);
    await page.context().close();
    await fresh.context().close();
  });
});

describe("the address", () => {
  test("names the line and the filters, and restores both", async () => {
    const page = await visit("grouped");
    await page.locator("[data-kind=message]").click();
    await search(page, 'пункта "один раз"');
    await page
      .locator("li.ExpandLeaf:visible")
      .nth(2)
      .locator(".Content")
      .click({ position: { x: 5, y: 5 } });
    const id = await focusedId(page);
    const counts = await shown(page);
    await addressHolds(page, id);
    for (const renew of [() => page.reload(), () => page.goto("about:blank").then(() => page.goBack())]) {
      await renew();
      assert.deepEqual(await shown(page), counts);
      assert.equal(await page.locator("#query").inputValue(), 'пункта "один раз"');
      assert.equal(await page.locator("[data-kind=message]").getAttribute("aria-pressed"), "false");
      assert.equal(await focusedId(page), id);
      assert.equal(await isInView(page, id), true);
    }
    await page.context().close();
  });

  test("leads to its line even when the page has written another one over it", async () => {
    const page = await visit("grouped");
    const [first, second] = await idsOf(page, "error");
    await page.evaluate(
      ([wanted, written]) => {
        location.hash = wanted;
        history.replaceState(null, "", `#${written}`);
      },
      [second, first],
    );
    await page.waitForFunction((key) => document.activeElement.id === key, second);
    await page.context().close();
  });

  test("has the same ids when the same data is written again", async () => {
    const ids = async (address) => {
      const page = await open(browser, address);
      const found = await page.evaluate(() =>
        [...document.querySelectorAll("[role=treeitem]")].map(({ id }) => id),
      );
      await page.context().close();
      return found;
    };
    const first = await ids(pageOf("written-first", runs.grouped));
    const again = await ids(pageOf("written-again", { ...runs.grouped, service: ["ещё раз"] }));
    assert.deepEqual(again, first);
    assert.equal(new Set(first).size, first.length);
    assert.ok(first.every((id) => /^L[0-9a-z]+(-\d+)?$/.test(id)));
  });

  test("keeps a line's id when other lines come and go", async () => {
    const lines = makeLines(40, { seed: 3, items: 6 });
    const idOf = async (name, own) => {
      const page = await open(browser, pageOf(name, makeRun("flat", 0, own)));
      const id = await page.evaluate(() => document.querySelector("li:has(> .error)").id);
      await page.context().close();
      return id;
    };
    const later = [{ kind: "message", text: "новая строка" }, ...lines];
    assert.equal(await idOf("before", lines), await idOf("after", later));
  });

  test("of a line that the filters would hide shows it", async () => {
    const page = await visit("flat");
    const [id] = await idsOf(page, "message");
    await page.locator("[data-kind=message]").click();
    await goTo(page, id);
    assert.equal(await isInView(page, id), true);
    await page.context().close();
  });
});

/** What every visible row must tell, worked out from the mark-up alone. */
const ariaDifferences = () => {
  const isRow = (element) => element.matches("li.Node, li.IsRoot");
  const isSeen = (row) => row.checkVisibility() && row.getBoundingClientRect().height > 0;
  const rows = [...document.querySelectorAll("#lines li")].filter((row) => isRow(row) && isSeen(row));
  const parentOf = (row) => row.parentElement.closest("li.Node, li.IsRoot") ?? row.parentElement;
  const wrong = [];
  const expect = (row, name, value) => {
    if (row.getAttribute(name) !== (value === null ? null : String(value)))
      wrong.push(
        `${name} of ${row.querySelector(".Content").textContent}: ${row.getAttribute(name)}, not ${value}`,
      );
  };
  for (const row of rows) {
    const parent = parentOf(row);
    const siblings = rows.filter((other) => parentOf(other) === parent);
    let level = 1;
    for (let at = parentOf(row); isRow(at); at = parentOf(at)) ++level;
    const isBranch = row.matches(".ExpandOpen, .ExpandClosed") && row.querySelector("li");
    expect(row, "role", "treeitem");
    expect(row, "aria-level", level);
    expect(row, "aria-setsize", siblings.length);
    expect(row, "aria-posinset", siblings.indexOf(row) + 1);
    expect(row, "aria-expanded", isBranch ? row.matches(".ExpandOpen") : null);
    expect(row, "data-last", siblings.at(-1) === row ? "" : null);
    const list = row.parentElement;
    if (list.getAttribute("role") !== (isRow(parent) ? "group" : "tree")) wrong.push("role of a list");
  }
  const stops = document.querySelectorAll('#lines [tabindex="0"], #lines a:not([tabindex])');
  const inTree = [...stops].filter((stop) => stop.closest("[role=tree]"));
  if (inTree.length !== 1) wrong.push(`${inTree.length} tab stops`);
  return wrong;
};

describe("the tree for assistive software", () => {
  for (const name of ["grouped", "staged", "flat", "item", "open"])
    test(`is right on page ${name}, filtered and folded as well`, async () => {
      const page = await visit(name);
      const check = async (state) => assert.deepEqual(await page.evaluate(ariaDifferences), [], state);
      await check("as loaded");
      await page.locator("[data-kind=message]").click();
      await check("without messages");
      await search(page, "пункта -невязка");
      await check("while searching");
      await search(page, "");
      await page.locator("#alike").click();
      await check("with alike lines folded");
      await page.locator("[data-kind=message]").click();
      await choose(page, "Ветви", "Развернуть всё");
      await check("all unfolded");
      await page.context().close();
    });

  test("names the kind of a line before its text", async () => {
    const lines = ["error", "warning", "message"].map((kind) => ({ kind, text: `строка ${kind}` }));
    const page = await open(browser, pageOf("called", makeRun("flat", 0, lines)));
    for (const [kind, word] of [
      ["error", "ошибка"],
      ["warning", "предупреждение"],
      ["message", "сообщение"],
    ])
      assert.equal(await rowsCalled(page, `${word} строка ${kind}`), 1, kind);
    await page.context().close();
  });

  const oneByOne = chromiumOnly("Firefox's driver looks for a known name only");
  test("names the kind of each line, of alike ones as well", oneByOne, async () => {
    const page = await visit("flat");
    const session = await page.context().newCDPSession(page);
    const namedKinds = async () => {
      const { nodes } = await session.send("Accessibility.getFullAXTree");
      const rows = nodes.filter((node) => node.role?.value === "treeitem");
      return rows.map(({ name }) => name.value.split(" ")[0]);
    };
    const words = { error: "ошибка", warning: "предупреждение", message: "сообщение" };
    const kindsShown = async () => {
      const kinds = await page.evaluate(() =>
        [...document.querySelectorAll("li.ExpandLeaf:not([hidden]) > .Content")].map(
          (content) => content.classList[1],
        ),
      );
      return kinds.map((kind) => words[kind]);
    };
    assert.deepEqual(await namedKinds(), await kindsShown());
    await page.locator("#alike").click();
    assert.ok((await page.locator("[data-alike]").count()) > 0);
    assert.deepEqual(await namedKinds(), await kindsShown());
    await page.context().close();
  });
});

describe("the keyboard", () => {
  test("walks the rows and the branches", async () => {
    const page = await visit("staged");
    await choose(page, "Ветви", "Свернуть всё");
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "Home");
    const stages = [
      "Состав сети и предварительные высоты (18)",
      "Результаты уравнивания (24)",
      "Остаточные поправки (18)",
    ];
    assert.equal(await focusedText(page), stages[0]);
    await press(page, "ArrowDown");
    assert.equal(await focusedText(page), stages[1]);
    await press(page, "End");
    assert.equal(await focusedText(page), stages[2]);
    await press(page, "ArrowRight");
    assert.equal(await focusedText(page), stages[2]);
    await press(page, "ArrowRight");
    assert.match(await focusedText(page), /^Ошибки и предупреждения/);
    await press(page, "ArrowLeft");
    assert.equal(await focusedText(page), stages[2]);
    await press(page, "ArrowLeft");
    assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-expanded")), "false");
    await press(page, "ArrowUp");
    assert.equal(await focusedText(page), stages[1]);
    await press(page, "Enter");
    assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-expanded")), "true");
    await press(page, " ");
    assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-expanded")), "false");
    await press(page, "*");
    const states = await page.evaluate(() =>
      [...document.querySelectorAll("li.IsRoot")].map((root) => root.getAttribute("aria-expanded")),
    );
    assert.deepEqual(states, ["true", "true", "true"]);
    await page.context().close();
  });

  test("goes to the row that begins with what is typed", async () => {
    const page = await visit("staged");
    const type = (text) =>
      page.evaluate((letters) => {
        for (const key of letters)
          document.activeElement.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true }));
      }, text);
    await choose(page, "Ветви", "Свернуть всё");
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "Home");
    await type("ост");
    assert.match(await focusedText(page), /^Остаточные/);
    await page.waitForTimeout(800);
    await type("р");
    assert.match(await focusedText(page), /^Результаты/);
    await page.context().close();
  });

  test("has one tab stop in all trees", async () => {
    const page = await visit("grouped");
    // From the last stop of a page Firefox goes on to its own window, from where its driver does not return.
    await page.evaluate(() => document.body.append(document.createElement("button")));
    await page.locator('#lines [tabindex="0"]').focus();
    const start = await focusedId(page);
    await press(page, "ArrowDown");
    const next = await focusedId(page);
    assert.notEqual(next, start);
    await press(page, "Tab");
    assert.equal(await page.evaluate(() => Boolean(document.activeElement.closest("[role=tree]"))), false);
    await press(page, "Shift+Tab");
    assert.equal(await focusedId(page), next);
    await page.context().close();
  });

  for (const [key, kind] of [
    ["e", "error"],
    ["w", "warning"],
  ])
    test(`${key} visits every ${kind} in the order of the page, ${key.toUpperCase()} goes back`, async () => {
      const page = await visit("staged");
      const ids = await idsOf(page, kind);
      await page.locator('#lines [tabindex="0"]').focus();
      await press(page, "Home");
      for (const id of ids) {
        await press(page, key);
        assert.equal(await focusedId(page), id);
        assert.equal(await isInView(page, id), true);
      }
      await press(page, key);
      assert.equal(await focusedId(page), ids[0]);
      await press(page, key.toUpperCase());
      assert.equal(await focusedId(page), ids.at(-1));
      await press(page, key.toUpperCase());
      assert.equal(await focusedId(page), ids.at(-2));
      await page.context().close();
    });

  test("types letters into the search field, not commands", async () => {
    const page = await visit("flat");
    await press(page, "/");
    await page.keyboard.type("wew/*");
    assert.equal(await page.locator("#query").inputValue(), "wew/*");
    await press(page, "Escape");
    assert.equal(await page.locator("#query").inputValue(), "");
    await page.context().close();
  });
});

describe("folding", () => {
  test("the first error is open and in view on load", async () => {
    for (const name of ["grouped", "staged", "flat", "item", "open-staged"]) {
      const page = await visit(name);
      const [first] = await idsOf(page, "error");
      assert.equal(await isInView(page, first), true, name);
      await page.context().close();
    }
    const above = Array.from({ length: 300 }, (_, at) => ({ kind: "message", text: `строка ${at}` }));
    const lines = [...above, { kind: "error", text: "далёкая ошибка" }, ...above];
    const page = await open(browser, pageOf("far-error", makeRun("flat", 0, lines)));
    const [first] = await idsOf(page, "error");
    assert.equal(await isInView(page, first), true);
    await page.context().close();
  });

  const openLevels = (page) =>
    page.evaluate(() => {
      const levels = { open: new Set(), closed: new Set() };
      for (const row of document.querySelectorAll("[role=treeitem][aria-expanded]"))
        levels[row.ariaExpanded === "true" ? "open" : "closed"].add(Number(row.ariaLevel));
      return { open: [...levels.open].sort(), closed: [...levels.closed].sort() };
    });

  test("all, none, and to a level", async () => {
    const page = await visit("staged");
    await choose(page, "Ветви", "Развернуть всё");
    assert.deepEqual(await openLevels(page), { open: [1, 2, 3, 4], closed: [] });
    await choose(page, "Ветви", "До уровня 3");
    assert.deepEqual(await openLevels(page), { open: [1, 2], closed: [3, 4] });
    await choose(page, "Ветви", "Свернуть всё");
    assert.deepEqual(await openLevels(page), { open: [], closed: [1, 2, 3, 4] });
    await page.context().close();
  });

  test("of one branch with all below it", async () => {
    const page = await visit("staged");
    await choose(page, "Ветви", "Свернуть всё");
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "End", "Shift+F10");
    await page.getByRole("menuitem", { name: "Развернуть ветвь" }).click();
    const state = await page.evaluate(() => {
      const stages = [...document.querySelectorAll("li.IsRoot")];
      return stages.map(
        (stage) => stage.querySelectorAll(".ExpandClosed").length + stage.matches(".ExpandClosed"),
      );
    });
    assert.equal(state.at(-1), 0);
    assert.ok(state[0] > 0);
    await press(page, "Shift+F10");
    await page.getByRole("menuitem", { name: "Свернуть ветвь" }).click();
    const open = await page.evaluate(
      () => document.querySelectorAll("li.IsRoot:last-child .ExpandOpen").length,
    );
    assert.equal(open, 0);
    await page.context().close();
  });

  test("by a click on the caption or its toggle", async () => {
    const page = await visit("grouped");
    const branch = page.locator("li.IsRoot").first();
    await branch.locator("> .Content").click();
    assert.match(await branch.getAttribute("class"), /^IsRoot IsLast ExpandClosed$/);
    const box = await branch.locator("> .Content").boundingBox();
    await page.mouse.click(box.x + 14, box.y + 14);
    assert.match(await branch.getAttribute("class"), /^IsRoot IsLast ExpandOpen$/);
    await page.context().close();
  });

  test("not by a click into the room beside its rows", async () => {
    const page = await visit("grouped");
    const branch = page.locator("li.IsRoot").first();
    const box = await branch.boundingBox();
    await page.mouse.click(box.x + 4, box.y + 120);
    assert.match(await branch.getAttribute("class"), /ExpandOpen$/);
    await page.context().close();
  });

  for (const [size, count] of [
    ["short", 1500],
    ["long", 5000],
  ])
    test(`of the branch in which the reader is brings its caption into view, on a ${size} page`, async () => {
      const page = await open(browser, pageOf(`folded-${size}`, makeRun("staged", count)));
      await page.locator("#chart").waitFor();
      await page.locator("#stages button").nth(1).click();
      const caption = page.locator("li.IsRoot > .Content").nth(1);
      await page.keyboard.press("ArrowRight");
      await choose(page, "Ветви", "Развернуть всё");
      await caption.click();
      await caption.click();
      // Not by the wheel, which on a busy machine may turn on behind the key.
      for (let turn = 0; turn < 8; ++turn) {
        await page.evaluate(() => window.scrollBy(0, 700));
        await settle(page);
      }
      await page.keyboard.press("ArrowLeft");
      await settle(page);
      const bar = await page.locator("#bar").boundingBox();
      const box = await caption.boundingBox();
      assert.match(await caption.innerText(), /^Результаты/);
      assert.ok(box?.y >= bar.y + bar.height && box.y < 500, box?.y);
      await page.context().close();
    });

  test("by each double click once, which selects no word", async () => {
    const page = await visit("grouped");
    const branch = page.locator("li.IsRoot").first();
    const caption = branch.locator("> .Content");
    for (const state of ["ExpandClosed", "ExpandOpen", "ExpandClosed"]) {
      await doubleClick(page, caption, { x: 60, y: 14 });
      assert.equal(await branch.getAttribute("class"), `IsRoot IsLast ${state}`);
      // What comes soon is the third click of one.
      await page.waitForTimeout(1000);
    }
    await caption.click({ position: { x: 60, y: 14 } });
    assert.equal(await branch.getAttribute("class"), "IsRoot IsLast ExpandOpen");
    await page.context().close();
  });
});

describe("item links", () => {
  const state = (page) =>
    page.evaluate(() => [location.href, scrollY, document.querySelector("#shown").textContent]);

  /** Clicks as a user does: a locator's own click waits for Firefox to leave the page. */
  const click = async (page, link) => {
    const { x, y, width, height } = await link.boundingBox();
    await page.mouse.click(x + width / 2, y + height / 2);
  };

  // After the first act the browser's own question, whether to leave the page, takes the user's input: the acts
  // that follow reach the page as events.
  for (const [device, act, repeat] of [
    ["mouse", click, (link) => link.click()],
    [
      "keyboard",
      (page) => press(page, "Enter"),
      (link) =>
        link.closest("li").dispatchEvent(new KeyboardEvent("keydown", { key: "Enter", bubbles: true })),
    ],
  ])
    test(`give the exact address to the system each time, by ${device}`, async () => {
      const page = await visit("staged");
      await page.locator("[data-kind=warning]").click();
      const line = page.locator("li.ExpandLeaf:has(> .error)").first();
      const link = line.locator("a");
      const exact = await link.getAttribute("href");
      assert.match(exact, /^survey:\/\/locate-item\?type=LevellingPoint&id=\d+&project=%D0%9F/);
      await line.locator(".Content").click({ position: { x: 5, y: 5 } });
      const id = await line.getAttribute("id");
      await addressHolds(page, id);
      const before = await state(page);
      const element = await link.elementHandle();
      const urls = await addressesOpenedBy(page, async () => {
        await act(page, link);
        for (let count = 0; count < 3; ++count) await page.evaluate(repeat, element);
      });
      assert.deepEqual(urls, [exact, exact, exact, exact]);
      assert.deepEqual(await state(page), before);
      await page.context().close();
    });

  test("of a line with several are chosen from a menu", async () => {
    const page = await visit("flat");
    const line = page.locator("li.ExpandLeaf:has(a + a)").first();
    const hrefs = await line
      .locator("a")
      .evaluateAll((links) => links.map((link) => link.getAttribute("href")));
    const id = await line.getAttribute("id");
    await line.focus();
    const urls = await addressesOpenedBy(page, () => press(page, "Enter", "ArrowDown", "Enter"));
    assert.deepEqual(urls, [hrefs[1]]);
    assert.equal(await focusedId(page), id);
    await page.context().close();
  });

  test("in a caption act and do not fold the branch", async () => {
    const page = await visit("item");
    const branch = page.locator("li.Node.ExpandOpen").first();
    const element = await branch.elementHandle();
    const link = branch.locator("> .Content a");
    const exact = await link.getAttribute("href");
    assert.deepEqual(await addressesOpenedBy(page, () => click(page, link)), [exact]);
    assert.match(await page.evaluate((row) => row.className, element), /ExpandOpen/);
    await page.context().close();
  });
});
