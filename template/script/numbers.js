// The numbers in a line, with the words beside them.

import { fold, foldedOf, textOf } from "./item.js";
import { write } from "./texts.js";

// A sign or a digit right behind a letter or a digit belongs to a name; thin spaces part thousands.
const number =
  "(?<![\\p{L}\\p{N}_.,])[-+\\u2212]?(?:\\d{1,3}(?:[\\u2009\\u202f\\u00a0]\\d{3})+(?!\\d)|\\d+)(?:[.,]\\d+)?";
const namePart = /[\p{L}\p{N}_.,]/u;
const unitBehind = /[\s±]?([^\s\d.,;:()<>=]+)/uy;
const limitWord = /допус[кт]|предел|limit|toleran/;
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
const sizeUnit = new RegExp(`[\\s±]?(${[...units.keys()].join("|")})(?![\\p{L}\\p{N}])`, "uy");

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

const isDigit = (code) => code >= 48 && code <= 57;
const isThin = (code) => code === 0x2009 || code === 0x202f || code === 0xa0;
const isSign = (code) => code === 0x2d || code === 0x2b || code === 0x2212;
const isPoint = (code) => code === 0x2e || code === 0x2c;
const isBlank = (code) => code === 0x20 || code === 0x28 || code === 0x3d;

/** Whether what stands before a place ends a name or another number. */
function isInName(text, at) {
  if (at === 0 || isBlank(text.charCodeAt(at - 1))) return false;
  return namePart.test(text[at - 1]);
}

/** Where the whole part of a number ends whose first digits begin at `from` and end at `to`. */
function endOfWhole(text, from, to) {
  if (to - from > 3) return to;
  const digitAt = (at) => isDigit(text.charCodeAt(at));
  let end = to;
  while (
    isThin(text.charCodeAt(end)) &&
    digitAt(end + 1) &&
    digitAt(end + 2) &&
    digitAt(end + 3) &&
    !digitAt(end + 4)
  )
    end += 4;
  return end;
}

/** The numbers in a text as `number` describes them. An expression takes several times as long. */
function foundIn(text) {
  const found = [];
  for (let at = 0; at < text.length; ++at) {
    if (!isDigit(text.charCodeAt(at))) continue;
    let end = at + 1;
    while (isDigit(text.charCodeAt(end))) ++end;
    const hasSign = at > 0 && isSign(text.charCodeAt(at - 1)) && !isInName(text, at - 1);
    if (hasSign || !isInName(text, at)) {
      end = endOfWhole(text, at, end);
      if (isPoint(text.charCodeAt(end)) && isDigit(text.charCodeAt(end + 1)))
        for (end += 2; isDigit(text.charCodeAt(end));) ++end;
      const index = hasSign ? at - 1 : at;
      found.push({ value: valueOf(text.slice(index, end)), index, end });
    }
    at = end - 1;
  }
  return found;
}

/** The values of a line's numbers. */
export function numbersOf(line) {
  return (line.numbers ??= foundIn(textOf(line)).map(({ value }) => value));
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
function readRatio(text, numbers) {
  const found = limitPattern.exec(text);
  const limit = found && valueOf(found[1]);
  if (!limit) return -1;
  const end = found.index + found[0].length;
  const unit = unitAt(text, end);
  let before = null;
  for (const each of numbers) {
    if (each.end === end || unitAt(text, each.end) !== unit) continue;
    if (each.end < end) before = each;
    else return Math.abs((before ?? each).value / limit);
  }
  return before ? Math.abs(before.value / limit) : -1;
}

/** The size of the first number with a unit. */
function readSize(text, numbers) {
  for (const { value, end } of numbers) {
    sizeUnit.lastIndex = end;
    const unit = sizeUnit.exec(text)?.[1];
    if (unit) return Math.abs(value) * units.get(unit);
  }
  return -1;
}

function readSizes(line) {
  const text = textOf(line);
  const numbers = foundIn(text);
  line.numbers ??= numbers.map(({ value }) => value);
  const hasLimit = numbers.length > 0 && limitWord.test(foldedOf(line));
  return { size: readSize(text, numbers), ratio: hasLimit ? readRatio(text, numbers) : -1 };
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
  const unitOf = foundIn(text).map(({ end }) => unitAt(text, end));
  const at = differing.find((place) => units.has(unitOf[place])) ?? differing[0];
  let [low, high] = [Infinity, -Infinity];
  for (const row of rows) {
    low = Math.min(low, row[at]);
    high = Math.max(high, row[at]);
  }
  return `${write(low)} … ${write(high)}${units.has(unitOf[at]) ? `\u00a0${unitOf[at]}` : ""}`;
}
