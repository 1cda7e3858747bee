import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import {
  allLines,
  browserName,
  choose,
  launch,
  open,
  places,
  search,
  settle,
  shown,
  visibleLines,
} from "./browser.mjs";
import { linkTo, makeRun, point, recordsOf, runs } from "./fixtures.mjs";
import { fixture, pageOf } from "./pages.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

async function openUnfolded(name) {
  const page = await open(browser, fixture(name));
  await choose(page, "Ветви", "Развернуть всё");
  return page;
}

// The driver of Firefox scrolls the page to where the bar would stand before it clicks.
const toggle = (page, kind) => {
  const button = page.locator(`[data-kind=${kind}]`);
  return browserName === "chromium" ? button.click() : button.dispatchEvent("click");
};

describe("kinds", () => {
  test("toggles hide the lines of their kind and count what is shown", async () => {
    const page = await openUnfolded("grouped");
    const records = recordsOf(runs.grouped);
    const lines = await allLines(page);
    assert.ok(lines.length > records.length);
    for (const kind of ["error", "warning", "message"]) {
      const isLeft = (line) => line.kind !== kind;
      await toggle(page, kind);
      assert.deepEqual(await shown(page), [records.filter(isLeft).length, records.length]);
      assert.equal(await places(page), lines.filter(isLeft).length);
      assert.equal((await visibleLines(page)).length, lines.filter(isLeft).length);
      await toggle(page, kind);
    }
    assert.deepEqual(await shown(page), [records.length, records.length]);
    await page.context().close();
  });

  test("a line that stands under several items counts once, equal lines each", async () => {
    const ends = [point(1, "А"), point(2, "Б")];
    // Other points of the same names: their line reads alike and is another one.
    const namesakes = [point(11, "А"), point(12, "Б")];
    const between = (word, [a, b]) => ({ kind: "error", text: `${word} ${linkTo(a)} – ${linkTo(b)}` });
    const lines = [
      between("первая", ends),
      between("вторая", ends),
      between("вторая", ends),
      between("первая", namesakes),
    ];
    const page = await open(browser, pageOf("ends", makeRun("grouped", 4, lines)));
    assert.deepEqual(await shown(page), [4, 4]);
    assert.equal(await page.locator("#places").textContent(), "вхождений: 8");
    assert.equal(await page.locator("#verdict").textContent(), "Ошибок: 4, предупреждений нет");
    assert.equal(await page.locator("[data-kind=error] b").textContent(), "4");
    await search(page, "вторая");
    assert.deepEqual(await shown(page), [2, 4]);
    assert.equal(await page.locator("#places").textContent(), "вхождений: 4");
    await page.context().close();
  });

  test("places are not told where every line stands once", async () => {
    const page = await open(browser, fixture("flat"));
    assert.equal(await page.locator("#places").isVisible(), false);
    await page.context().close();
  });

  test("branches without visible lines hide, and come back", async () => {
    const page = await openUnfolded("grouped");
    const visibleBranches = () =>
      page.evaluate(() =>
        [...document.querySelectorAll("li:is(.ExpandOpen, .ExpandClosed)")]
          .filter((branch) => branch.checkVisibility())
          .map((branch) => branch.querySelector(".Content").textContent),
      );
    const before = await visibleBranches();
    await toggle(page, "error");
    await toggle(page, "warning");
    assert.deepEqual(
      await visibleBranches(),
      before.filter((name) => name.startsWith("Сообщения")),
    );
    await toggle(page, "error");
    await toggle(page, "warning");
    assert.deepEqual(await visibleBranches(), before);
    await page.context().close();
  });

  test("only lines of other kinds get a toggle of their own", async () => {
    const item = await open(browser, fixture("item"));
    assert.equal(await item.locator("[data-kind=other]").textContent(), "Прочие 2");
    const flat = await open(browser, fixture("flat"));
    assert.equal(await flat.locator("[data-kind=other]").count(), 0);
    await item.context().close();
    await flat.context().close();
  });
});

describe("search", () => {
  const cases = {
    "невязка допуск": (text) => text.includes("невязка") && text.includes("допуск"),
    НЕВЯЗКА: (text) => text.includes("невязка"),
    "пункта -невязка": (text) => text.includes("пункта") && !text.includes("невязка"),
    '"получена один раз"': (text) => text.includes("получена один раз"),
    '-"получена один раз"': (text) => !text.includes("получена один раз"),
    '"мм ско"': (text) => text.replace(/\s+/g, " ").includes("мм ско"),
    "/равна \\d+\\.5 мм/": (text) => /равна \d+\.5 мм/.test(text),
    "/РАВНА [0-4]/ допуск": (text) => /равна [0-4]/.test(text) && text.includes("допуск"),
    "-/\\d\\.\\d/": (text) => !/\d\.\d/.test(text),
    "/^ско/": (text) => /^ско/m.test(text),
    "a.b": () => false,
  };

  for (const [query, matches] of Object.entries(cases))
    test(`finds what ${query} asks for`, async () => {
      const page = await openUnfolded("staged");
      const lines = await allLines(page);
      const records = recordsOf(runs.staged);
      const isFound = ({ text }) => matches(text.toLowerCase());
      const expected = records.filter(isFound);
      await search(page, query);
      assert.deepEqual(await shown(page), [expected.length, records.length]);
      assert.equal((await visibleLines(page)).length, lines.filter(isFound).length);
      if (query !== "a.b") assert.ok(expected.length > 0 && expected.length < records.length);
      await page.context().close();
    });

  test("takes what is typed as it is meant", async () => {
    const texts = ["Расчёт ЁЛКИ: невязка 58,7 мм", "Высота 12,5 м, отсчет принят", "Пункт «Ёлка два» заперт"];
    const lines = texts
      .map((text) => ({ kind: "message", text }))
      .concat({ kind: "error", text: "Ёж без отметки" });
    const page = await open(browser, pageOf("typed", { type: "Import", hasReports: true, lines }));
    const cases = {
      расчет: [0],
      "елки невязка": [0],
      отсчёт: [1],
      "-ёлки": [1, 2, 3],
      58.7: [0],
      "12,5": [1],
      "мм > 50": [0],
      "> 12,4": [0, 1],
      "-> 50": [1, 2, 3],
      "«ёлка два»": [2],
      "“елка два”": [2],
      "„елка два“ заперт": [2],
      "«елка дв»": [],
      "Вид:ошибка": [3],
      "KIND:message высота": [1],
    };
    for (const [query, expected] of Object.entries(cases)) {
      await search(page, query);
      const found = await visibleLines(page);
      assert.deepEqual(
        found.map((text) => lines.findIndex((line) => line.text === text)),
        expected,
        query,
      );
    }
    await search(page, "елка");
    const hits = () => [...CSS.highlights.get("found")].map(String);
    assert.deepEqual(await page.evaluate(hits), ["Ёлка"]);
    await search(page, "");
    await page.locator("[tabindex='0']").focus();
    const type = () =>
      document.activeElement.dispatchEvent(new KeyboardEvent("keydown", { key: "Ё", bubbles: true }));
    await page.evaluate(type);
    assert.match(await page.evaluate(() => document.activeElement.textContent), /Ёж/);
    await page.context().close();
  });

  test("finds a phrase by its words, however many blanks part them", async () => {
    const texts = ["Ход  1:   невязка 5 мм", "Ход 2:\u00a0 невязка 7 мм", "Ход: невязка"];
    const run = makeRun(
      "flat",
      0,
      texts.map((text) => ({ kind: "error", text })),
    );
    const page = await open(browser, pageOf("blanks", run));
    const found = {
      '"1: невязка"': [0],
      '"2:   невязка 7"': [1],
      '": невязка"': [0, 1, 2],
      '"ход 1: невязка 5 мм"': [0],
    };
    for (const [query, expected] of Object.entries(found)) {
      await search(page, query);
      assert.deepEqual(
        await visibleLines(page),
        expected.map((at) => texts[at]),
        query,
      );
    }
    await page.context().close();
  });

  for (const wrong of ["/(/", "/abc", "невязка /[/", "/a/ /*/"])
    test(`a wrong expression ${wrong} marks the field and hides nothing`, async () => {
      const page = await openUnfolded("flat");
      await search(page, wrong);
      const [count, total] = await shown(page);
      assert.equal(count, total);
      assert.equal(await page.locator("#query").getAttribute("aria-invalid"), "true");
      assert.match(await page.locator("#problem").textContent(), /строки не скрыты/);
      await search(page, "пункт");
      assert.equal(await page.locator("#query").getAttribute("aria-invalid"), null);
      assert.equal(await page.locator("#problem").isVisible(), false);
      await page.context().close();
    });

  test("hits are highlighted, and the mark-up of the lines stays as it was", async () => {
    const page = await openUnfolded("flat");
    const markup = () =>
      page.evaluate(() => [...document.querySelectorAll(".Content")].map((line) => line.innerHTML));
    const before = (await markup()).map((html) => html.replace(/ tabindex="-1"/g, ""));
    await search(page, 'НЕВЯЗКА "один раз" -пропущена');
    await search(page, 'ВЫСОТА "один раз"');
    const found = await page.evaluate(() => [...CSS.highlights.get("found")].map(String));
    const lines = (await shown(page))[0];
    assert.equal(found.length, lines * 2);
    assert.deepEqual([...new Set(found.map((text) => text.toLowerCase()))].sort(), ["высота", "один раз"]);
    assert.deepEqual(
      (await markup()).map((html) => html.replace(/ tabindex="-1"/g, "")),
      before,
    );
    await search(page, "");
    assert.equal(await page.evaluate(() => CSS.highlights.has("found")), false);
    await page.context().close();
  });

  test("a hit that runs over a link and a line break is highlighted whole", async () => {
    const page = await openUnfolded("flat");
    await search(page, "/Рп \\d+: поправка|мм\\nСКО/");
    const found = await page.evaluate(() => [...CSS.highlights.get("found")].map(String));
    assert.ok(found.some((text) => /^Рп \d+: поправка$/.test(text)));
    assert.ok(found.some((text) => /^мм\s*СКО$/.test(text)));
    await page.context().close();
  });
});

describe("alike lines", () => {
  const rows = (page) =>
    page.evaluate(() =>
      [...document.querySelectorAll("li.ExpandLeaf")]
        .filter((line) => line.checkVisibility() && line.offsetHeight)
        .map((line) => ({
          times: Number(line.dataset.times?.slice(1) ?? 1),
          alike: line.querySelector(".Content").dataset.alike ?? null,
          text: line.querySelector(".Content").textContent,
        })),
    );

  const mask = (text) => text.replace(/[-+−]?\d+(?:[.,]\d+)*/g, "#").replace(/\s/g, "");

  test("fold as ×n to the worst of them; the sum is the number of visible lines", async () => {
    const page = await openUnfolded("flat");
    await toggle(page, "warning");
    const all = await rows(page);
    await page.locator("#alike").click();
    const folded = await rows(page);
    const sum = folded.reduce((total, { times }) => total + times, 0);
    assert.equal(sum, (await shown(page))[0]);
    assert.ok(folded.length < sum);
    const sizeOf = ({ text }) => {
      const [value, limit] = [...text.matchAll(/([\d.]+) мм/g)].map(([, number]) => Number(number));
      return limit && /допуск/.test(text) ? value / limit : (value ?? -1);
    };
    for (const { times, alike, text } of folded) {
      const group = all.filter((line) => mask(line.text) === mask(text));
      assert.equal(times, group.length);
      assert.equal(times > 1, alike !== null);
      const own = sizeOf({ text });
      assert.ok(
        group.every((line) => sizeOf(line) <= own),
        text,
      );
      const values = group.map((line) => /([\d.]+) мм/.exec(line.text)?.[1]);
      if (times > 1 && !values.includes(undefined)) {
        values.sort((one, another) => one - another);
        assert.equal(alike, `×${times}  ${values[0]} … ${values.at(-1)}\u00a0мм`);
      }
    }
    assert.equal(new Set(folded.map(({ text }) => mask(text))).size, folded.length);
    await page.context().close();
  });

  test("on a page with lines in several places make up all of these", async () => {
    const page = await openUnfolded("grouped");
    await page.locator("#alike").click();
    const sum = (await rows(page)).reduce((total, { times }) => total + times, 0);
    assert.equal(sum, await places(page));
    await page.context().close();
  });

  test("switched off give the same view again", async () => {
    const page = await openUnfolded("grouped");
    const before = await rows(page);
    await page.locator("#alike").click();
    assert.notDeepEqual(await rows(page), before);
    await page.locator("#alike").click();
    assert.deepEqual(await rows(page), before);
    await page.context().close();
  });

  test("unfold where one is chosen", async () => {
    const page = await openUnfolded("flat");
    await page.locator("#alike").click();
    const before = (await rows(page)).length;
    const head = page.locator("li[data-times]").first();
    const times = Number((await head.getAttribute("data-times")).slice(1));
    await head.locator(".Content").click();
    assert.equal((await rows(page)).length, before + times - 1);
    await page.context().close();
  });
});

describe("the focused line", () => {
  const top = (page, id) =>
    page.evaluate((key) => document.getElementById(key).getBoundingClientRect().top, id);

  test("stays where it is when a filter toggles", async () => {
    const page = await openUnfolded("staged");
    const lines = page.locator("li.ExpandLeaf:has(> .warning)");
    for (const place of [0, 5, 17, 28]) {
      const line = lines.nth(place);
      await line.focus();
      await settle(page);
      const id = await line.getAttribute("id");
      const before = await top(page, id);
      for (const kind of ["message", "error", "message", "error"]) {
        await toggle(page, kind);
        await settle(page);
        assert.ok(Math.abs((await top(page, id)) - before) <= 2, `line ${place} after ${kind}`);
        assert.equal(await page.evaluate(() => document.activeElement.id), id);
      }
    }
    await page.context().close();
  });

  test("stays where it is while searching", async () => {
    const page = await openUnfolded("flat");
    const line = page.locator("li.ExpandLeaf:has(> .error)", { hasText: "Невязка" }).nth(1);
    await line.focus();
    const id = await line.getAttribute("id");
    const before = await top(page, id);
    for (const text of ["н", "не", "невязка", ""]) {
      await search(page, text);
      await settle(page);
      assert.ok(Math.abs((await top(page, id)) - before) <= 2, text);
    }
    await page.context().close();
  });

  test("gives focus to the nearest visible line when it is hidden", async () => {
    const page = await openUnfolded("flat");
    const lines = await page.evaluate(() =>
      [...document.querySelectorAll("li.ExpandLeaf")].map((line) => ({
        id: line.id,
        kind: line.querySelector(".Content").className,
      })),
    );
    const at = lines.findIndex(({ kind }, index) => index > 8 && /message/.test(kind));
    await page.locator(`[id="${lines[at].id}"]`).focus();
    await toggle(page, "message");
    const distance = (index) =>
      /message/.test(lines[index]?.kind ?? "message") ? Infinity : Math.abs(index - at);
    const nearest = Math.min(...lines.map((_, index) => distance(index)));
    const focused = await page.evaluate(() => document.activeElement.id);
    assert.equal(distance(lines.findIndex(({ id }) => id === focused)), nearest);
    await page.context().close();
  });
});
