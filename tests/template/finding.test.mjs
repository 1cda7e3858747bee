// The way to the one bad measurement: numbers, order, counts, what is searched.

import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import { addressHolds, choose, launch, open, search, settle, shown, visibleLines } from "./browser.mjs";
import { linkTo, makeLines, makeRun, point, runs, section } from "./fixtures.mjs";
import { fixture, pageOf } from "./pages.mjs";

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const measured = [
  "Невязка хода 1 равна 80,5 мм, допуск 20 мм",
  "Невязка хода 2 равна −95 мм, допуск ±50 мм",
  "Невязка хода 3 равна 7 мм, допуск 10 мм",
  "Длина хода 12\u202f345 м",
  "Расхождение 0.4 см",
  "Нормированная поправка v = 3.2, предел 3",
  "Пункт М2-15 не найден",
  "Обработка начата",
];
const measuredRun = makeRun(
  "flat",
  0,
  measured.map((text) => ({ kind: "error", text })),
);
const press = async (page, ...keys) => {
  for (const key of keys) await page.keyboard.press(key);
};

describe("numbers", () => {
  const cases = {
    ">80": [0, 3],
    "<-90": [1],
    "=7": [2],
    "=80.5": [0],
    "=-95": [1],
    ">=12345": [3],
    "12..15": [6],
    "3..3,2": [2, 5],
    "мм>80": [0],
    "мм=50": [1],
    "допуск>20": [1],
    "допуск=10..20": [0, 2],
    "v>3": [5],
    "см<1": [4],
    "ratio>1": [0, 1, 5],
    "отношение>1,5 -v": [0, 1],
    "отношение=0,5..1": [2],
    "хода >80": [0, 3],
    "-мм>0": [3, 4, 5, 6, 7],
    "-95..-90": [1],
    "-90..-95": [],
    "-100..7": [0, 1, 2, 4, 5],
    "-=3..100": [3, 4, 7],
  };
  for (const [query, expected] of Object.entries(cases))
    test(`${query} finds lines by them`, async () => {
      const page = await open(browser, pageOf("measured", measuredRun));
      await search(page, query);
      assert.deepEqual(
        await visibleLines(page),
        expected.map((at) => measured[at]),
      );
      await page.context().close();
    });

  test("have units with a stroke in them", async () => {
    const texts = ["Поправка 90,5 мм/км", "Поправка 7 мм/км", "Сдвиг 90 мм"];
    const run = makeRun(
      "flat",
      0,
      texts.map((text) => ({ kind: "error", text })),
    );
    const page = await open(browser, pageOf("strokes", run));
    await search(page, "мм/км>80");
    assert.deepEqual(await visibleLines(page), texts.slice(0, 1));
    await search(page, "-мм/км=1..80 /^Поправка.*мм\\/км$/");
    assert.deepEqual(await visibleLines(page), texts.slice(0, 1));
    await search(page, "мм>80");
    assert.deepEqual(await visibleLines(page), texts.slice(2));
    await page.context().close();
  });

  test("the unit of one number is not the name of the next", async () => {
    const texts = ["Сдвиг 5 мм 700 с", "Сдвиг мм: 700", "Сдвиг 700 мм"];
    const run = makeRun(
      "flat",
      0,
      texts.map((text) => ({ kind: "error", text })),
    );
    const page = await open(browser, pageOf("units", run));
    await search(page, "мм>80");
    assert.deepEqual(await visibleLines(page), texts.slice(1));
    await page.context().close();
  });

  // What an older version has written, and what one writes that spells numbers as the language does.
  const spellings = {
    plain: ["-95.5 мм", "80.5 мм", "12345.5 м", "+3.25 мм", "0.7″"],
    Russian: ["\u221295,5\u00a0мм", "80,5\u00a0мм", "12\u00a0345,5\u00a0м", "+3,25\u202fмм", "0,7\u00a0″"],
  };
  for (const [name, values] of Object.entries(spellings)) {
    const lines = values.map((value, at) => ({
      kind: "error",
      text: `Ход ${at + 1}: невязка ${value}, допуск ±${values[3].replace("+", "")}`,
    }));
    const run = makeRun("flat", 0, lines);
    const visible = async (page) =>
      (await visibleLines(page)).map((text) => Number(/Ход (\d)/.exec(text)[1]));

    test(`are understood in the ${name} spelling`, async () => {
      const page = await open(browser, pageOf(`spelled-${name}`, run));
      const found = {
        "<-90": [1],
        "=-95,5": [1],
        "=-95.5": [1],
        "=\u221295,5": [1],
        "мм>80": [2],
        "мм<-95": [1],
        "м>12345": [3],
        "12345..12346": [3],
        "ratio=1": [4],
        "ratio>24": [1, 2],
        "допуск=3,25 >80": [2, 3],
        "невязка>80": [2, 3],
      };
      for (const [query, expected] of Object.entries(found)) {
        await search(page, query);
        assert.deepEqual(await visible(page), expected, query);
      }
      await page.context().close();
    });

    test(`give the same order, histogram and alike lines in the ${name} spelling`, async () => {
      const page = await open(browser, pageOf(`spelled-${name}`, run));
      await page.locator("#chart").waitFor();
      assert.equal(await page.locator("#chart b").textContent(), "Сверх допуска: 2 из 3");
      await press(page, "s");
      assert.deepEqual(await visible(page), [1, 2, 4, 3, 5]);
      await press(page, "s");
      await page.locator("#alike").click();
      assert.equal(
        await page.locator("[data-alike]").getAttribute("data-alike"),
        name === "plain" ? "×3  \u221295.5 … 80.5\u00a0мм" : "×3  \u221295,5 … 80,5\u00a0мм",
      );
      assert.equal((await visible(page))[0], 1);
      await page.context().close();
    });
  }

  test("that are not typed to the end hide nothing", async () => {
    const page = await open(browser, pageOf("measured", measuredRun));
    for (const query of [">", "мм>", "12..", "v="]) {
      await search(page, query);
      assert.deepEqual(await shown(page), [measured.length, measured.length], query);
    }
    await page.context().close();
  });
});

describe("the search", () => {
  test("finds captions and the ids of items", async () => {
    const page = await open(browser, fixture("staged"));
    await search(page, "остаточные");
    assert.deepEqual(await shown(page), [18, 60]);
    await search(page, "-остаточные");
    assert.deepEqual(await shown(page), [60, 60]);
    const lines = [
      { kind: "error", text: `Невязка через ${linkTo({ ...point(4711), name: "А" })}` },
      { kind: "error", text: `Невязка через ${linkTo({ ...point(471), name: "Б" })}` },
    ];
    const other = await open(browser, pageOf("ids", makeRun("flat", 0, lines)));
    await search(other, "471");
    assert.deepEqual(await visibleLines(other), ["Невязка через Б"]);
    await page.context().close();
    await other.context().close();
  });

  test("takes kinds, stages and items", async () => {
    const page = await open(browser, fixture("staged"));
    const count = async (query) => {
      await search(page, query);
      return (await shown(page))[0];
    };
    assert.equal(await count("kind:error"), 8);
    assert.equal(await count("вид:ошибка"), 8);
    assert.equal(await count("-kind:error"), 52);
    assert.equal(await count("stage:2"), 24);
    assert.equal(
      await count("этап:2 kind:message"),
      (await count("stage:2")) - (await count("stage:2 -kind:message")),
    );
    const id = await page.evaluate(() => /id=(\d+)/.exec(document.querySelector(".error a").href)[1]);
    const own = runs.staged.stages
      .flatMap(({ lines }) => lines)
      .filter(({ text }) => text.includes(`id=${id}&`)).length;
    assert.equal(await count(`item:${id}`), own);
    assert.equal(await count("item:99999999"), 0);
    await page.context().close();
  });

  test("takes quoted words whole", async () => {
    const texts = ["Рп 1 найден", "Рп 12 найден", "у Рп 1", "Рп 1б"];
    const run = makeRun(
      "flat",
      0,
      texts.map((text) => ({ kind: "error", text })),
    );
    const page = await open(browser, pageOf("whole-words", run));
    await search(page, '"Рп 1"');
    assert.deepEqual(await visibleLines(page), [texts[0], texts[2]]);
    await page.context().close();
  });
});

describe("the order of the lines", () => {
  const order = (page, name) =>
    page
      .getByRole("button", { name: "Вид", exact: true })
      .click()
      .then(() => page.getByRole("menuitemradio", { name }).click());

  test("is by text, by size or by the ratio to the limit, within a branch", async () => {
    const page = await open(browser, pageOf("measured", measuredRun));
    await order(page, "Порядок: по величине");
    assert.deepEqual(
      (await visibleLines(page)).slice(0, 5),
      [3, 1, 0, 2, 4].map((at) => measured[at]),
    );
    await order(page, "Порядок: по отношению к допуску");
    assert.deepEqual(
      (await visibleLines(page)).slice(0, 4),
      [0, 1, 5, 2].map((at) => measured[at]),
    );
    await order(page, "Порядок: по тексту");
    const collator = new Intl.Collator("ru", { numeric: true });
    assert.deepEqual(
      await visibleLines(page),
      measured.toSorted((a, b) => collator.compare(a.toLowerCase(), b.toLowerCase())),
    );
    await order(page, "Порядок: как в протоколе");
    assert.deepEqual(await visibleLines(page), measured);
    await page.context().close();
  });

  test("by text has ё among е, as a dictionary has", async () => {
    const texts = ["Ель 10", "Ёлка 2", "Ежи", "Ёлка 10", "Елка 7"];
    const lines = texts.map((text) => ({ kind: "error", text }));
    const page = await open(browser, pageOf("dictionary", makeRun("flat", 0, lines)));
    await order(page, "Порядок: по тексту");
    assert.deepEqual(await visibleLines(page), ["Ежи", "Ёлка 2", "Елка 7", "Ёлка 10", "Ель 10"]);
    await page.context().close();
  });

  test("of a page that is one list moves its rows, and makes no others", async () => {
    const page = await open(browser, pageOf("measured", measuredRun));
    await page.evaluate(() => (window.written = [...document.querySelectorAll("#lines li")]));
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "s");
    const places = () =>
      Array.from(document.querySelectorAll("#lines li"), (row) => window.written.indexOf(row));
    assert.deepEqual(await page.evaluate(places), [0, 1, 5, 2, 3, 4, 6, 7]);
    await press(page, "s");
    assert.deepEqual(await visibleLines(page), measured);
    await page.context().close();
  });

  test("puts the worst first in one list, by one key, and back", async () => {
    const page = await open(browser, fixture("grouped"));
    await choose(page, "Ветви", "Развернуть всё");
    const before = await visibleLines(page);
    const [, total] = await shown(page);
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "s");
    const lines = await visibleLines(page);
    assert.equal(lines.length, total);
    const ratio = (text) => {
      const [, value, limit] = /равна ([\d.]+) мм, допуск ([\d.]+)/.exec(text) ?? [];
      return value ? value / limit : -1;
    };
    const ratios = lines.map(ratio);
    assert.deepEqual(
      ratios,
      ratios.toSorted((a, b) => b - a),
    );
    assert.equal(await page.evaluate(() => document.activeElement.textContent.trim()), lines[0]);
    assert.equal(await page.locator("#worst").getAttribute("aria-pressed"), "true");
    await addressHolds(page, "sort=ratio&list=1");
    await page.reload();
    assert.deepEqual(await visibleLines(page), lines);
    await press(page, "s");
    await choose(page, "Ветви", "Развернуть всё");
    assert.deepEqual((await visibleLines(page)).toSorted(), before.toSorted());
    assert.deepEqual(await visibleLines(page), before);
    await page.context().close();
  });

  test("from one list back to the branches keeps the line and the tab stop", async () => {
    const page = await open(browser, fixture("grouped"));
    await page.locator("#lines [tabindex='0']").focus();
    await press(page, "s", "ArrowDown", "ArrowDown");
    const text = await page.evaluate(() => document.activeElement.textContent.trim());
    await page.getByRole("button", { name: "Вид", exact: true }).click();
    await page.getByRole("menuitemcheckbox", { name: "Одним списком" }).click();
    const stops = page.locator("#lines [tabindex='0']:visible");
    assert.equal(await stops.count(), 1);
    assert.equal((await stops.textContent()).trim(), text);
    await page.context().close();
  });

  test("of a long page is right where the view is", async () => {
    const page = await open(browser, pageOf("long-order", makeRun("staged", 6000)));
    await press(page, "s");
    const ratios = (await visibleLines(page)).map((text) => {
      const [, value, limit] = /равна ([\d.]+) мм, допуск ([\d.]+)/.exec(text);
      return value / limit;
    });
    assert.ok(ratios.length > 10);
    assert.deepEqual(
      ratios,
      ratios.toSorted((a, b) => b - a),
    );
    await press(page, "End");
    assert.match(
      await page.evaluate(() => document.activeElement.textContent),
      /Прочитано|пропущена|получена/,
    );
    await search(page, "stage:2 невязка");
    assert.ok((await shown(page))[0] > 100);
    await press(page, "Escape");
    await page.locator("#worst").click();
    assert.ok((await page.locator("[aria-expanded]").count()) > 0);
    await page.context().close();
  });
});

describe("errors", () => {
  test("are counted as e goes through them, and told when it goes round", async () => {
    const page = await open(browser, fixture("staged"));
    const count = await page.locator("li:has(> .error)").count();
    const told = () => page.locator("#status").textContent();
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "Home", "e");
    assert.equal(await told(), `ошибка 1 из ${count}`);
    await press(page, "e");
    assert.equal(await told(), `ошибка 2 из ${count}`);
    await press(page, "E", "E");
    assert.equal(await told(), `ошибка ${count} из ${count}, снова с конца`);
    await press(page, "e");
    assert.equal(await told(), `ошибка 1 из ${count}, снова с начала`);
    await page.context().close();
  });

  test("are in view as a whole, above what tells which, and that moves nothing", async () => {
    const lines = Array.from({ length: 40 }, (_, at) => ({ kind: "error", text: `Невязка ${at} мм` }));
    const page = await open(browser, pageOf("told", makeRun("flat", 0, lines)));
    await page.locator('#lines [tabindex="0"]').focus();
    for (let width = 1200; width >= 400; width -= 100) {
      await page.setViewportSize({ width, height: 500 });
      await settle(page);
      await page.evaluate(() => (document.querySelector("#status").textContent = ""));
      const bar = await page.locator("#bar").boundingBox();
      await press(page, "Home");
      for (let at = 0; at < 15; ++at) {
        await press(page, "e");
        await settle(page);
        assert.equal((await page.locator("#bar").boundingBox()).height, bar.height, `${width} wide`);
        const row = await page.evaluate(() => document.activeElement.getBoundingClientRect().bottom);
        const told = await page.locator("#status").boundingBox();
        assert.ok(row <= told.y, `${row} below ${told.y} at ${width}, row ${at}`);
      }
    }
    await page.context().close();
  });

  test("that take the place of a hidden line are in view as a whole", async () => {
    const long = "Невязка хода нивелирования II класса через несколько пунктов сети ".repeat(6);
    const lines = Array.from({ length: 40 }, (_, at) =>
      at % 2 ? { kind: "warning", text: `Ход ${at}` } : { kind: "error", text: `${at}: ${long}` },
    );
    const page = await open(browser, pageOf("replaced", makeRun("flat", 0, lines)));
    await page.locator('#lines [tabindex="0"]').focus();
    await press(page, "Home");
    const isWhole = () =>
      page.evaluate(() => {
        const { top, bottom } = document.activeElement.getBoundingClientRect();
        return top >= document.querySelector("#bar").offsetHeight && bottom <= innerHeight;
      });
    for (let at = 0; at < 10; ++at) {
      await press(page, "w", "x");
      assert.equal(await page.evaluate(() => document.activeElement.matches(":has(> .error)")), true);
      assert.equal(await isWhole(), true, `warning ${at}`);
      await press(page, "x");
    }
    await page.context().close();
  });

  test("alone are shown by one key, which stands in the address", async () => {
    const page = await open(browser, fixture("staged"));
    await press(page, "x");
    assert.deepEqual(await shown(page), [8, 60]);
    await addressHolds(page, "hide=warning%2Cmessage%2Cother");
    await press(page, "x");
    assert.deepEqual(await shown(page), [60, 60]);
    await page.context().close();
  });
});

describe("branches", () => {
  test("tell the errors and warnings in them, and how many lines the filters let through", async () => {
    const page = await open(browser, fixture("grouped"));
    const root = page.locator("li.IsRoot > .Content").first();
    const whole = Number(/\((\d+)\)/.exec(await root.textContent())[1]);
    const errors = Number(await page.locator("[data-kind=error] b").textContent());
    const warnings = Number(await page.locator("[data-kind=warning] b").textContent());
    assert.equal(whole, errors + warnings);
    assert.equal(await root.getAttribute("data-holds"), `× ${errors}  ! ${warnings}`);
    await search(page, "невязка");
    const [found] = await shown(page);
    assert.equal(await root.getAttribute("data-holds"), `× ${found}  ${found} из ${whole}`);
    await page.context().close();
  });
});

test("alike lines fold over branches in one list", async () => {
  const lines = Array.from({ length: 30 }, (_, at) => ({
    kind: "error",
    text: `Секция ${linkTo(section(at + 1))}: расхождение ${at + 1},5 мм`,
  }));
  const page = await open(browser, pageOf("alike-branches", makeRun("grouped", 0, lines)));
  await press(page, "s");
  await page.locator("#alike").click();
  assert.equal((await visibleLines(page)).length, 1);
  assert.equal((await visibleLines(page))[0], "Секция 30–31: расхождение 30,5 мм");
  assert.equal(await page.locator("[data-alike]").getAttribute("data-alike"), "×30  1,5 … 30,5\u00a0мм");
  await page.context().close();
});

test("lines in one list are exported with their branches, in the order shown", async () => {
  const page = await open(
    browser,
    pageOf("flat-export", makeRun("grouped", 0, makeLines(40, { items: 5 }))),
    {
      permissions: ["clipboard-read", "clipboard-write"],
    },
  );
  await press(page, "s");
  const lines = await visibleLines(page);
  await choose(page, "Экспорт", "Копировать как JSON");
  await page.waitForFunction(() => document.querySelector("#status").textContent === "Скопировано");
  const { lines: records } = JSON.parse(await page.evaluate(() => navigator.clipboard.readText()));
  assert.deepEqual(
    records.map(({ text }) => text.replace(/\n/g, "")),
    lines,
  );
  assert.ok(records.every(({ paths }) => paths.every((path) => path.length > 0)));
  await page.context().close();
});

describe("the histogram", () => {
  const bars = (page) =>
    page.evaluate(() =>
      [...document.querySelectorAll("#chart [data-bar]")].map((bar) => [
        bar.querySelector("title").textContent,
        bar.getAttribute("class"),
      ]),
    );

  test("shows how the values lie to their limits, and filters", async () => {
    const page = await open(browser, pageOf("measured", measuredRun));
    await page.locator("#chart").waitFor();
    assert.deepEqual(
      (await bars(page)).map(([label, kind]) => [label.replace(/.*: /, ""), kind]),
      [0, 0, 1, 0, 1, 0, 0, 1, 1].map((count, at) => [String(count), at < 4 ? null : "over"]),
    );
    assert.equal(await page.locator("#chart b").textContent(), "Сверх допуска: 3 из 4");
    await page.locator("#chart [data-bar]").last().click();
    assert.deepEqual(await visibleLines(page), [measured[0]]);
    assert.equal(await page.locator("#query").inputValue(), "отношение>=2");
    await page.locator("#chart [data-bar]").nth(4).focus();
    await press(page, "Enter");
    assert.deepEqual(await visibleLines(page), [measured[5]]);
    await page.context().close();
  });

  test("takes a line that reaches its limit for one that holds it", async () => {
    const lines = [10, 10.1, 9].map((value) => ({
      kind: "error",
      text: `Невязка ${value} мм, допуск 10 мм`,
    }));
    const page = await open(browser, pageOf("reached", makeRun("flat", 0, lines)));
    await page.locator("#chart").waitFor();
    assert.equal(await page.locator("#chart b").textContent(), "Сверх допуска: 1 из 3");
    await page.locator("#chart [data-bar]").nth(3).click();
    assert.equal(await page.locator("#query").inputValue(), "отношение>=0,75 отношение<=1");
    assert.equal((await shown(page))[0], 2);
    await page.locator("#chart [data-bar]").nth(4).click();
    assert.equal((await shown(page))[0], 1);
    await page.context().close();
  });

  test("is not there where no line has a value and a limit", async () => {
    const page = await open(browser, fixture("clean"));
    await page.waitForTimeout(300);
    assert.equal(await page.locator("#chart").count(), 0);
    await page.context().close();
  });

  test("comes above the tree and leaves the view where it is", async () => {
    const page = await open(browser, pageOf("long-chart", makeRun("grouped", 6000)));
    await page.locator("#chart").waitFor();
    const [chart, tree, bar, line] = await page.evaluate(() =>
      ["#chart", "[role=tree]", "#bar", "li:has(> .error)"].map((selector) =>
        document.querySelector(selector).getBoundingClientRect().toJSON(),
      ),
    );
    assert.ok(chart.bottom <= tree.top);
    assert.ok(line.top >= bar.bottom && line.bottom <= 800);
    await page.context().close();
  });

  test("does not push the first error out of sight", async () => {
    const lines = makeLines(60).filter(({ kind }) => kind === "message");
    lines.splice(10, 0, { kind: "error", text: "Невязка 12 мм, допуск 10 мм" });
    const address = pageOf("pushing-chart", makeRun("flat", 0, lines));
    for (const height of [560, 620, 680, 740, 800]) {
      const page = await open(browser, address, { viewport: { width: 1280, height } });
      await page.locator("#chart").waitFor();
      await settle(page);
      const { y, height: own } = await page.locator("li:has(> .error)").boundingBox();
      assert.ok(y + own <= height, `${y} + ${own} in ${height}`);
      await page.context().close();
    }
  });
});

test("where colours are forced the histogram has those of the system, full beyond the limit", async () => {
  for (const colorScheme of ["light", "dark"]) {
    const page = await open(browser, fixture("flat"), { forcedColors: "active", colorScheme });
    await page.locator("#chart").waitFor();
    await page.locator("#chart a.over").first().hover();
    const colors = await page.evaluate(() => {
      const own = (selector, name) => getComputedStyle(document.querySelector(`#chart ${selector}`))[name];
      const probe = document.body.appendChild(document.createElement("p"));
      const [canvas, text] = ["Canvas", "CanvasText"].map((name) => {
        probe.style.color = name;
        return getComputedStyle(probe).color;
      });
      return {
        held: [own(":not(.over) > .bar", "fill"), own(":not(.over) > .bar", "stroke")],
        over: [own(".over > .bar", "fill"), own(".over > .bar", "stroke")],
        rest: [own(".over > text", "fill"), own("line", "stroke"), own("a:hover > .ground", "fill")],
        expected: { held: [canvas, text], over: [text, text], rest: [text, text, canvas] },
      };
    });
    const { expected, ...found } = colors;
    assert.deepEqual(found, expected);
    await page.context().close();
  }
});

test("words are found in any case of any letters, over links, and in captions", async () => {
  const texts = [
    "НЕВЯЗКА Ёлки",
    `Пункт М${linkTo(point(4, "арка 7"))}`,
    "Straße",
    "5 \u212a",
    "\u0130zmir",
    "a.b",
    "aXb",
    "ΑΘΗΝΑΣ",
  ];
  const seen = texts.map((text) => text.replace(/<[^>]*>/g, ""));
  const run = makeRun(
    "flat",
    0,
    texts.map((text) => ({ kind: "error", text })),
  );
  const page = await open(browser, pageOf("letters", run));
  const cases = {
    "невязка ёЛ": [0],
    марка: [1],
    STRASSE: [],
    straßE: [2],
    k: [3],
    izm: [4],
    i: [4],
    "A.B": [5],
    αθηνας: [7],
  };
  for (const [query, expected] of Object.entries(cases)) {
    await search(page, query);
    assert.deepEqual(
      await visibleLines(page),
      expected.map((at) => seen[at]),
      query,
    );
  }
  await page.context().close();
});
