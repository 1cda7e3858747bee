// The numbers in a line, with the words beside them.

import { fold, textOf } from "./item.js";
import { write } from "./texts.js";

// A sign or a digit right behind a letter or a digit belongs to a name; thin spaces part thousands.
const pattern =
  /(?<![\p{L}\p{N}_.,])[-+\u2212]?(?:\d{1,3}(?:[\u2009\u202f\u00a0]\d{3})+(?!\d)|\d+)(?:[.,]\d+)?/gu;
const unitBehind = /^[\s±]?([^\s\d.,;:()<>=]+)/u;
const nameBefore = /([^\s\d.,;:()<>=±]+)[\s:=≈±]*$/u;
const longestName = 40;
const limitWord = /(?:допус[кт]|предел|limit|toleran)[^\d]{0,40}$/i;
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

export const valueOf = (text) =>
  Number(
    text
      .replace(/[\u2009\u202f\u00a0+]/g, "")
      .replace("\u2212", "-")
      .replace(",", "."),
  );

/** The values of a line's numbers. */
export function numbersOf(line) {
  return (line.numbers ??= Array.from(textOf(line).matchAll(pattern), ([number]) => valueOf(number)));
}

/** The numbers of a line: value, unit and name (the words behind and before), and whether it is a limit. */
export function measuresOf(line) {
  const text = textOf(line);
  return Array.from(text.matchAll(pattern), ({ 0: number, index }) => {
    const before = text.slice(Math.max(0, index - longestName), index);
    const end = index + number.length;
    return {
      value: valueOf(number),
      unit: fold(unitBehind.exec(text.slice(end, end + longestName))?.[1] ?? ""),
      name: fold(nameBefore.exec(before)?.[1] ?? ""),
      isLimit: limitWord.test(before),
    };
  });
}

function readSizes(line) {
  const measures = measuresOf(line);
  const sized = measures.find(({ unit }) => units.has(unit));
  const at = measures.findIndex(({ isLimit, value }) => isLimit && value);
  const limit = measures[at];
  const isLike = ({ unit, isLimit }) => !isLimit && unit === limit.unit;
  const own = limit && (measures.slice(0, at).findLast(isLike) ?? measures.slice(at).find(isLike));
  return {
    size: sized ? Math.abs(sized.value) * units.get(sized.unit) : -1,
    ratio: own ? Math.abs(own.value / limit.value) : -1,
  };
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
  const measures = measuresOf(lines[0]);
  const at = differing.find((place) => units.has(measures[place].unit)) ?? differing[0];
  let [low, high] = [Infinity, -Infinity];
  for (const row of rows) {
    low = Math.min(low, row[at]);
    high = Math.max(high, row[at]);
  }
  const { unit } = measures[at];
  return `${write(low)} … ${write(high)}${units.has(unit) ? `\u00a0${unit}` : ""}`;
}
