// Random lines, searches and acts. What is expected follows from how the lines were made, not from how they read.

import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import { choose, launch, open, search, settle, shown, visibleLines } from "./browser.mjs";
import { linkTo, makeRun, point, random } from "./fixtures.mjs";
import { pageOf } from "./pages.mjs";

// More of them are a long run.
const actCount = Number(process.env.ACTS ?? 60);
const actSeeds = (process.env.SEEDS ?? "13 17").split(" ").map(Number);

let browser;
before(async () => (browser = await launch()));
after(() => browser.close());

const pick = (next, all) => all[next(all.length)];
const millimetres = { мм: 1, mm: 1, м: 1000, m: 1000, км: 1e6 };

/** A number as one of those who write protocols spells it. */
function spell(next, value) {
  const [whole, part] = Math.abs(value).toFixed(1).split(".");
  const thin = pick(next, ["", "\u2009", "\u202f", "\u00a0"]);
  const sign = value < 0 ? pick(next, ["-", "\u2212"]) : pick(next, ["", "", "+"]);
  const digits = whole.replace(/\B(?=(?:\d{3})+$)/g, thin);
  return sign + digits + (part === "0" && next(2) ? "" : pick(next, [".", ","]) + part);
}

/** A point with a name; digits right behind a letter belong to it, others are numbers. */
function makePoint(next) {
  const id = 1 + next(12);
  const [before, own] = pick(next, [
    ["Рп ", [id]],
    ["М", []],
    ["Т-", [id]],
  ]);
  return { id, numbers: own, markup: linkTo(point(id, before + id)) };
}

/** What a line says: its words with places for numbers, and what follows from them. */
const forms = [
  (next, { number, point }) => {
    const unit = pick(next, ["мм", "mm", "м"]);
    const [value, limit] = [number(), number(true)];
    return {
      text: `Невязка хода через ${point()} равна ${value.text} ${unit}, допуск ±${limit.text}\u00a0${unit}`,
      ratio: Math.abs(value.value / limit.value),
      size: Math.abs(value.value) * millimetres[unit],
      sized: [[unit, value.value, limit.value]],
    };
  },
  (next, { number, point }) => {
    const [height, first, limit, second, own] = [1, 2, 3, 4, 5].map((at) => number(at !== 2 && at !== 4));
    return {
      text:
        `Node ${point()}: H = ${height.text} m, ${first.text} mm, tolerance ±${limit.text} mm; ` +
        `${second.text}mm, exceeds the tolerance of ±${own.text} mm`,
      ratio: Math.max(Math.abs(first.value / limit.value), Math.abs(second.value / own.value)),
      size: height.value * 1000,
      sized: [
        ["m", height.value],
        ["mm", first.value, limit.value, second.value, own.value],
      ],
    };
  },
  (next, { number }) => {
    const [value, lower, upper] = [number(true), number(true), number(true)];
    return {
      text: `Отношение дисперсий ${value.text}, больше предела, пределы ${lower.text} и ${upper.text}`,
      ratio: Math.max(value.value / upper.value, lower.value / value.value),
    };
  },
  (next, { number, point }) => ({ text: `Точка ${point()} не определяется: ${number().text}` }),
  (next, { number, point }) => {
    const value = number(true);
    return {
      text: `Через ${point()} и ${point()} на 1 мм: ${value.text}\u202fкм`,
      numbers: [1],
      size: 1,
      sized: [
        ["мм", 1],
        ["км", value.value],
      ],
    };
  },
  (next) => ({ text: pick(next, ["Обработка начата", "ОБРАБОТКА окончена", "Straße"]) }),
];

function makeLine(next) {
  const numbers = [];
  const ids = new Set();
  const parts = {
    number(isPositive = false) {
      const value = (next(3) ? next(1200) + 1 : next(40000) + 1) / 10;
      const own = { value: isPositive || next(2) ? value : -value };
      numbers.push(own.value);
      return { ...own, text: isPositive ? spell(next, value).replace("+", "") : spell(next, own.value) };
    },
    point() {
      const { id, numbers: own, markup } = makePoint(next);
      numbers.push(...own);
      ids.add(id);
      return markup;
    },
  };
  const form = pick(next, forms)(next, parts);
  const kind = pick(next, ["error", "warning", "message", "message"]);
  const told = { ratio: -1, size: -1, sized: [], ...form };
  return {
    ...told,
    kind,
    ids,
    numbers: [...numbers, ...(form.numbers ?? [])],
    seen: form.text.replace(/<[^>]*>/g, ""),
  };
}

function makePage(name, seed, total) {
  const next = random(seed);
  const lines = Array.from({ length: total }, () => makeLine(next));
  // Two lines in the same words are two.
  lines.push(...lines.slice(0, 3).map((line) => ({ ...line })));
  const layout = pick(next, ["flat", "grouped", "staged"]);
  return { next, lines, address: pageOf(name, makeRun(layout, lines.length, lines)) };
}

const comparisons = {
  ">": (value, bound) => value > bound,
  "<": (value, bound) => value < bound,
  ">=": (value, bound) => value >= bound,
  "<=": (value, bound) => value <= bound,
  "=": (value, bound) => value === bound,
};

const captions =
  "ошибки и предупреждения, сообщения, общие, пункты, состав сети и предварительные высоты, " +
  "результаты уравнивания, остаточные поправки";

/** Terms of a search, each with what it takes; their numbers stand in lines. */
const terms = [
  (next, line) => {
    const word = pick(next, line.seen.match(/\p{L}{3,}/gu));
    const some = word.slice(next(word.length - 1)).slice(0, 2 + next(6));
    // In a caption it would find the lines below that.
    const part = captions.includes(some.toLowerCase()) ? word : some;
    return [pick(next, [part, part.toUpperCase().replace("SS", "ss")]), part];
  },
  (next, line) => {
    const words = line.seen.match(/\p{L}+(?: \p{L}+)?/gu);
    const phrase = pick(next, words);
    const whole = new RegExp(`(?<![\\p{L}\\p{N}_])${phrase}(?![\\p{L}\\p{N}_])`, "iu");
    return [`"${phrase}"`, ({ seen }) => whole.test(seen)];
  },
  (next, line) => {
    const [sign, holds] = pick(next, Object.entries(comparisons));
    const bound = pick(next, [...line.numbers, 80, -3.5]);
    return [sign + spelled(next, bound), ({ numbers }) => numbers.some((value) => holds(value, bound))];
  },
  (next, line) => {
    const [from, to] = [pick(next, [...line.numbers, 5]), next(900) - 300].toSorted((a, b) => a - b);
    const holds = ({ numbers }) => numbers.some((value) => value >= from && value <= to);
    return [`=${spelled(next, from)}..${spelled(next, to)}`, holds];
  },
  (next, line) => {
    const [unit, ...values] = pick(next, [...line.sized, ["мм", 20]]);
    const [sign, holds] = pick(next, Object.entries(comparisons));
    const bound = pick(next, values);
    const own = ({ sized }) => sized.filter(([other]) => other === unit).flatMap(([, ...all]) => all);
    return [unit + sign + spelled(next, bound), (each) => own(each).some((value) => holds(value, bound))];
  },
  (next) => {
    const [sign, holds] = pick(next, Object.entries(comparisons));
    const bound = pick(next, [1, 0.5, 2]);
    const word = pick(next, ["ratio", "отношение"]);
    return [word + sign + bound, ({ ratio }) => ratio >= 0 && holds(ratio, bound)];
  },
  (next) => {
    const [kind, word] = pick(next, [
      ["error", "вид:ошибка"],
      ["warning", "kind:warning"],
      ["message", "вид:сообщение"],
    ]);
    return [word, (line) => line.kind === kind];
  },
  (next) => {
    const id = 1 + next(12);
    return [pick(next, ["item:", "объект:"]) + id, ({ ids }) => ids.has(id)];
  },
];

const spelled = (next, value) =>
  pick(next, [String(value), String(value).replace(".", ","), String(value).replace("-", "\u2212")]);

/** A search of one to three terms, some behind a minus. */
function makeSearch(next, lines) {
  const parts = Array.from({ length: pick(next, [1, 1, 2, 3]) }, () => {
    const [term, holds] = pick(next, terms)(next, pick(next, lines));
    const isExcluded = next(5) === 0;
    const test =
      typeof holds === "string" ? ({ seen }) => seen.toLowerCase().includes(holds.toLowerCase()) : holds;
    return { text: (isExcluded ? "-" : "") + term, test: (line) => test(line) !== isExcluded };
  });
  return {
    text: parts.map(({ text }) => text).join(" "),
    test: (line) => parts.every(({ test }) => test(line)),
  };
}

const textsOf = (lines) => lines.map(({ seen }) => seen);

for (const seed of [1, 2, 3, 4])
  describe(`random lines ${seed}`, () => {
    test("are found by what they say", async () => {
      const { next, lines, address } = makePage(`random-${seed}`, seed, 40);
      const page = await open(browser, `${address}#list=1`);
      for (let at = 0; at < 30; ++at) {
        const { text, test } = makeSearch(next, lines);
        await search(page, text);
        const expected = lines.filter(test);
        assert.deepEqual((await visibleLines(page)).toSorted(), textsOf(expected).toSorted(), text);
        assert.deepEqual(await shown(page), [expected.length, lines.length], text);
      }
      assert.deepEqual(page.complaints, []);
      await page.context().close();
    });

    test("stand in their order, and in the histogram", async () => {
      const { lines, address } = makePage(`ordered-${seed}`, seed, 40);
      for (const order of ["size", "ratio"]) {
        const page = await open(browser, `${address}#sort=${order}&list=1`);
        const seen = await visibleLines(page);
        assert.deepEqual(seen.toSorted(), textsOf(lines).toSorted());
        const values = seen.map((text) => lines.find((line) => line.seen === text)[order]);
        assert.deepEqual(
          values,
          values.toSorted((a, b) => b - a),
        );
        await page.locator("#chart").waitFor();
        const over = lines.filter(({ ratio }) => ratio > 1).length;
        const all = lines.filter(({ ratio }) => ratio >= 0).length;
        assert.equal(await page.locator("#chart b").textContent(), `Сверх допуска: ${over} из ${all}`);
        await page.context().close();
      }
    });
  });

/** What holds after each act: one tab stop, which is seen, and each row told which of how many it is. */
const faultsOf = (page) =>
  page.evaluate(() => {
    const isSeen = (element) => element.checkVisibility();
    const rows = [...document.querySelectorAll("#lines [role=treeitem]")].filter(isSeen);
    const stops = [...document.querySelectorAll("#lines [tabindex='0']")].filter(isSeen);
    const faults = [];
    if (rows.length && stops.length !== 1) faults.push(`${stops.length} tab stops`);
    const levelOf = (row) => (row ? 1 + levelOf(row.parentElement.closest("[role=treeitem]")) : 0);
    const sets = Map.groupBy(rows, (row) => row.parentElement.closest("[role=treeitem], [role=tree]"));
    for (const set of sets.values())
      set.forEach((row, at) => {
        const told = ["level", "posinset", "setsize"].map((name) => Number(row.getAttribute(`aria-${name}`)));
        const own = [levelOf(row), at + 1, set.length];
        if (String(told) !== String(own)) faults.push(`${row.textContent} tells ${told}, not ${own}`);
      });
    return faults;
  });

const stateOf = (page) =>
  page.evaluate(() => ({
    shown: document.querySelector("#shown").textContent,
    rows: [...document.querySelectorAll("#lines [role=treeitem]")]
      .filter((row) => row.checkVisibility())
      .map((row) => [row.querySelector(".Content").textContent, row.dataset.times ?? ""].join(" ")),
    stop: [...document.querySelectorAll("#lines [tabindex='0']")]
      .find((row) => row.checkVisibility())
      ?.querySelector(".Content").textContent,
  }));

for (const seed of actSeeds)
  test(`random acts ${seed} leave the page in order, and a reload changes nothing`, async () => {
    const { next, lines, address } = makePage(`acted-${seed}`, seed, 50);
    const page = await open(browser, address);
    const keys = [
      "ArrowDown",
      "ArrowUp",
      "ArrowLeft",
      "ArrowRight",
      "Home",
      "End",
      "e",
      "E",
      "w",
      "*",
      "s",
      "s",
    ];
    let filter = { text: "", test: () => true };
    const hidden = new Set();
    const done = [];
    const acts = {
      key: async () => {
        const stop = page.locator("#lines [tabindex='0']:visible");
        if ((await stop.count()) !== 1) return "";
        await stop.focus();
        const key = pick(next, keys);
        await page.keyboard.press(key);
        return key;
      },
      search: async () => {
        filter = next(3) ? makeSearch(next, lines) : { text: "", test: () => true };
        await search(page, filter.text);
        return filter.text;
      },
      kind: async () => {
        const kind = pick(next, ["error", "warning", "message"]);
        await page.locator(`[data-kind=${kind}]`).click();
        if (!hidden.delete(kind)) hidden.add(kind);
        return kind;
      },
      view: async () => {
        await page.getByRole("button", { name: "Вид", exact: true }).click();
        const entry = pick(next, ["Одним списком", "Порядок: по тексту", "Порядок: как в протоколе"]);
        await page.locator("[role^=menuitem]").getByText(entry, { exact: true }).click();
        return entry;
      },
      branches: async () => {
        const entry = pick(next, ["Развернуть всё", "Свернуть всё"]);
        const menu = page.getByRole("button", { name: "Ветви", exact: true });
        if (!(await menu.isVisible())) return "";
        await choose(page, "Ветви", entry);
        return entry;
      },
      alike: async () => {
        await page.locator("#alike").click();
        return page.locator("#alike").getAttribute("aria-pressed");
      },
      click: async () => {
        const rows = await page.locator(":is([data-times], [aria-expanded]) > .Content").all();
        const row = rows.length ? pick(next, rows) : null;
        if (!(await row?.isVisible())) return "";
        const text = await row.textContent();
        // Not on a link, of which a caption may be full.
        await row.click({ position: { x: 1, y: 1 } });
        return text;
      },
    };
    for (let at = 0; at < actCount; ++at) {
      const act = pick(next, ["key", "key", "key", "search", "kind", "view", "branches", "alike", "click"]);
      done.push(`${act} ${await acts[act]()}`);
      await settle(page);
      const said = done.slice(-6).join("; ");
      assert.deepEqual(await faultsOf(page), [], said);
      const count = lines.filter((line) => !hidden.has(line.kind) && filter.test(line)).length;
      assert.equal((await shown(page))[0], count, said);
      if (at % 20 !== 19) continue;
      const before = await stateOf(page);
      await page.waitForTimeout(400);
      // As long as nobody has gone to a line it names none.
      const namesLine = /#L|line=/.test(page.url());
      await page.reload();
      const after = await stateOf(page);
      assert.deepEqual(namesLine ? after : { ...after, stop: before.stop }, before, said);
    }
    assert.deepEqual(page.complaints, []);
    await page.context().close();
  });
