// What the numbers of a line tell, without a browser.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { after, describe, test } from "node:test";
import { fileURLToPath } from "node:url";

// The modules bind what the browser gives them as they are loaded; no number needs it.
const anything = new Proxy(function () {}, {
  get: (_, name) =>
    name === "prototype"
      ? {
          get activeElement() {
            return null;
          },
        }
      : anything,
  apply: () => anything,
  construct: () => anything,
});
for (const name of ["document", "Document", "MutationObserver"]) globalThis[name] = anything;
globalThis.navigator ??= { language: "ru" };

const folder = fs.mkdtempSync(path.join(os.tmpdir(), "page-numbers-"));
after(() => fs.rmSync(folder, { recursive: true }));
const bundle = path.join(folder, "numbers.mjs");
const source = fileURLToPath(new URL("../../template/script/numbers.js", import.meta.url));
execFileSync(process.env.ESBUILD ?? "esbuild", [source, "--bundle", "--format=esm", `--outfile=${bundle}`], {
  stdio: "pipe",
});
const { rangeOf, ratioOf, sizeOf } = await import(bundle);

function lineOf(text) {
  const line = { plain: text };
  line.origin = { record: line };
  return line;
}

const told = (read, text) => Number(read(lineOf(text)).toFixed(3));

const limits = "пределы 0,159 и 2,236 (критерий χ², доверительная вероятность 0,95)";
const node = "Узловой пункт М2: уравненная H = 145,20590\u00a0м, по ходам с размахом 57,70\u00a0мм";
const nodeLine = (name, value, limit) => `от ${name} 145,21270\u00a0м (${value}\u00a0мм, ${limit}\u00a0мм)`;
const divided =
  "Part 1: residuals are divided by their a posteriori standard deviations (Pope's τ test, sigma-act)";
const weight =
  "Часть 1, СКО единицы веса μ на 1\u00a0км хода: априорная 10,000\u00a0мм, апостериорная 309,516\u00a0мм";

describe("ratio of a value to its limit", () => {
  const cases = {
    "Невязка хода 1 равна 80,5 мм, допуск 20 мм": 4.025,
    "Невязка хода 2 равна −95 мм, допуск ±50 мм, длина 2,000 км": 1.9,
    "нормированная поправка 3,20, больше предела 3,00": 1.067,
    "отношение дисперсий 8,00, больше предела 4,00": 2,
    "Длина хода 12 км": -1,
    [`${weight}, отношение 30,952, больше верхнего предела, ${limits}; проверьте L1-анализом`]: 13.843,
    [`${weight}, отношение 1,118, ${limits}`]: 0.5,
    [`${weight}, отношение 0,053, меньше нижнего предела, ${limits}`]: 3,
    "Part 1, standard deviation: ratio 30.952, above the upper limit, limits 0.159 and 2.236 (χ² test)": 13.843,
    "Отношение 0,000, пределы 0,000 и 1,96": 0,
    "Пунктов: 12, секций: 19, неизвестных: 7, не определяется пунктов: 3": -1,
    [`${divided}; limit of the largest of 14: 2.91, warning limit 1.96`]: -1,
    "Часть 1: поправки делятся на априорные СКО; предел наибольшей из 26 — 2,73, предел предупреждения 1,92":
      -1,
    "Часть 1: предел наибольшей из 26 — 2,73, у секции 5,46": 2,
    "Допуск 20 мм, невязка 50 мм; допуск хода 10 мм, его невязка 5 мм": 5,
    [`${node}: ${nodeLine("Рп101", "+6,80", "допуск ±20,00")}, ${nodeLine("М5", "−39,44", "больше допуска ±24,65")}, ` +
    nodeLine("М1", "+1,25", "допуск ±31,81")]: 1.6,
  };
  for (const [text, expected] of Object.entries(cases))
    test(text, () => assert.equal(told(ratioOf, text), expected));
});

describe("size of a line's first number with a unit", () => {
  const cases = {
    [weight]: 10,
    "Отличается на 1 мм": 1,
    "Длина 1 км": 1e6,
    "Random standard deviation per 1 km: 0.38 mm": 0.38,
    "Прочитано 5": -1,
  };
  for (const [text, expected] of Object.entries(cases))
    test(text, () => assert.equal(told(sizeOf, text), expected));
});

test("alike lines whose names have numbers or not tell no range", () => {
  const lines = ["Пункт М-3: поправка 5 мм", "Пункт М3: поправка 7 мм"].map(lineOf);
  assert.equal(rangeOf(lines), "");
});

test("alike lines with a limit tell between what their values with a limit lie", () => {
  const loopOf = (height, misclosure) => `Превышение ${height} м, невязка ${misclosure} мм, допуск 20 мм`;
  const lines = [loopOf("1,5", "-40,5"), loopOf("-2,7", "60,2"), loopOf("3,4", "25")].map(lineOf);
  assert.equal(rangeOf(lines), "\u221240,5 … 60,2\u00a0мм");
});

test("alike lines tell between what they lie as they write it", () => {
  const heights = ["147,90410", "144,08710", "153,11670", "1\u202f150,72840"];
  const lines = heights.map((height) => lineOf(`Пункт: приближённая высота ${height} м`));
  assert.equal(rangeOf(lines), "144,08710 … 1\u202f150,72840\u00a0м");
});
