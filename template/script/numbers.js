// The numbers in a line, with the words beside them.

import { fold, textOf } from "./item.js";
import { write } from "./texts.js";

// A sign or a digit right behind a letter or a digit belongs to a name; thin spaces part thousands.
const number =
  "(?<![\\p{L}\\p{N}_.,])[-+\\u2212]?(?:\\d{1,3}(?:[\\u2009\\u202f\\u00a0]\\d{3})+(?!\\d)|\\d+)(?:[.,]\\d+)?";
const pattern = new RegExp(number, "gu");
const unitBehind = /[\s±]?([^\s\d.,;:()<>=]+)/uy;
const limitPattern = new RegExp(`(?:допус[кт]|предел|limit|toleran)[^\\d]{0,40}?(${number})`, "iu");
// How many millimetres, seconds of arc and so on the units have.
const units = new Map(
  Object.entries({
    мм: 1,
    mm: 1,
    см: 10,
    cm: 10,
    дм: 100,
    dm: 100,
    м: 1e3,
    m: 1e3,
    км: 1e6,
    km: 1e6,
    '"': 1,
    "″": 1,
    "'": 60,
    "′": 60,
    "°": 3600,
    "%": 1,
    мгон: 1,
    mgon: 1,
    гон: 1e3,
    gon: 1e3,
  }),
);
const sizedPattern = new RegExp(`(${number})[\\s±]?(${[...units.keys()].join("|")})(?![\\p{L}\\p{N}])`, "u");

export function valueOf(text) {
  const value = Number(text);
  if (!Number.isNaN(value)) return value;
  return Number(
    text
      .replace(/[\u2009\u202f\u00a0]/g, "")
      .replace("\u2212", "-")
      .replace(",", "."),
  );
}

function* foundIn(text) {
  pattern.lastIndex = 0;
  for (let found = pattern.exec(text); found; found = pattern.exec(text)) {
    const end = pattern.lastIndex;
    yield { value: valueOf(found[0]), index: found.index, end };
    pattern.lastIndex = end;
  }
}

function readNumbers(text) {
  const values = [];
  pattern.lastIndex = 0;
  for (let found = pattern.exec(text); found; found = pattern.exec(text)) values.push(valueOf(found[0]));
  return values;
}

/** The values of a line's numbers. */
export function numbersOf(line) {
  return (line.numbers ??= readNumbers(textOf(line)));
}

function unitAt(text, end) {
  unitBehind.lastIndex = end;
  return fold(unitBehind.exec(text)?.[1] ?? "");
}

/** Reads the numbers that stand right before a unit or right behind a name. */
export function numbersBesideOf(label) {
  const beside = new RegExp(
    `(${number})[\\s±]?${label}(?![\\p{L}\\p{N}])|(?<![\\p{L}\\p{N}])${label}[\\s:=≈±]*(${number})`,
    "giu",
  );
  return (line) =>
    Array.from(textOf(line).matchAll(beside), ([, before, behind]) => valueOf(before ?? behind));
}

/** The ratio of a value to its limit: the last number before the limit in its unit, or the first one behind it. */
function readRatio(text) {
  const found = limitPattern.exec(text);
  const limit = found && valueOf(found[1]);
  if (!limit) return -1;
  const end = found.index + found[0].length;
  const unit = unitAt(text, end);
  let before = null;
  for (const each of foundIn(text)) {
    if (each.end === end || unitAt(text, each.end) !== unit) continue;
    if (each.end < end) before = each;
    else return Math.abs((before ?? each).value / limit);
  }
  return before ? Math.abs(before.value / limit) : -1;
}

function readSizes(line) {
  const text = textOf(line);
  const sized = sizedPattern.exec(text);
  return { size: sized ? Math.abs(valueOf(sized[1])) * units.get(sized[2]) : -1, ratio: readRatio(text) };
}

/**
 * What lines are sorted by: `size` is that of the first number with a unit, `ratio` that of a value to its limit;
 * -1 where a line has none.
 */
export function sizesOf(line) {
  return (line.sizes ??= readSizes(line));
}

/** Whether a line is worse than another one: farther over its limit or, without limits, larger. */
export function isWorse(line, other) {
  const [own, others] = [sizesOf(line), sizesOf(other)];
  return own.ratio > others.ratio || (own.ratio === others.ratio && own.size > others.size);
}

/** The smallest and the largest of the numbers in which alike lines differ: the first with a unit, or the first. */
export function rangeOf(lines) {
  const rows = lines.map(numbersOf);
  const differing = rows[0].map((_, at) => at).filter((at) => rows.some((row) => row[at] !== rows[0][at]));
  if (!differing.length) return "";
  const text = textOf(lines[0]);
  const unitOf = Array.from(foundIn(text), ({ end }) => unitAt(text, end));
  const at = differing.find((place) => units.has(unitOf[place])) ?? differing[0];
  let [low, high] = [Infinity, -Infinity];
  for (const row of rows) {
    low = Math.min(low, row[at]);
    high = Math.max(high, row[at]);
  }
  return `${write(low)} … ${write(high)}${units.has(unitOf[at]) ? `\u00a0${unitOf[at]}` : ""}`;
}
