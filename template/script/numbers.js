// The numbers in a line, with the words beside them.

import { fold, textOf } from "./item.js";

// A sign or a digit right behind a letter or a digit belongs to a name; thin spaces part thousands.
const number =
  "(?<![\\p{L}\\p{N}_.,])[-+\\u2212]?(?:\\d{1,3}(?:[\\u2009\\u202f\\u00a0]\\d{3})+(?!\\d)|\\d+)(?:[.,]\\d+)?";
const namePart = /[\p{L}\p{N}_.,]/u;
const unitBehind = /[\s±]?([^\s\d.,;:()<>=]+)/uy;
const limitWords = "(?:допус[кт]|предел|limit|toleran)";
// Most lines have none; without more this is found quickest.
const limitWord = new RegExp(limitWords, "gi");
// A limit, or the lower and the upper one; how many values one is for ("limit of the largest of 14: 2.91") is none. Not
// in "определяется".
const limitAt = new RegExp(
  `(?<!\\p{L})${limitWords}[^\\d]{0,40}?(?:(?:of|из) \\d+(?::| —) )?(${number})(?:\\s(?:и|and)\\s(${number}))?`,
  "iuy",
);
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
// Not the one of "per 1 km", for which the value is.
const sizeUnit = new RegExp(
  `(?<!(?<!\\p{L})(?:на|per)\\s1(?=\\s[кk][мm]))[\\s±]?(${[...units.keys()].join("|")})(?![\\p{L}\\p{N}])`,
  "uy",
);

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

/**
 * Whether one of the numbers in a text passes a test; numbers are as `number` describes them. An expression takes
 * several times as long.
 */
function someIn(text, test) {
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
      if (test(valueOf(text.slice(index, end)), index, end)) return true;
    }
    at = end - 1;
  }
  return false;
}

function foundIn(text) {
  const found = [];
  someIn(text, (value, index, end) => {
    found.push({ value, index, end });
    return false;
  });
  return found;
}

/** Whether one of a line's numbers passes a test. */
export const hasNumber = (line, test) =>
  line.numbers ? line.numbers.some(test) : someIn(textOf(line), test);

/** The values of a line's numbers. */
export function numbersOf(line) {
  return (line.numbers ??= foundIn(textOf(line)).map(({ value }) => value));
}

function unitAt(text, end) {
  unitBehind.lastIndex = end;
  return fold(unitBehind.exec(text)?.[1] ?? "");
}

/** Tests whether a number that stands right before a unit or right behind a name is such a one. */
export function besideTestOf(label, holds) {
  // Not the unit of what is told for another one, as in "mm/km".
  const behind = new RegExp(`[\\s±]?${label}(?![\\p{L}\\p{N}]|/\\p{L})`, "iuy");
  const before = new RegExp(`(?<![\\p{L}\\p{N}])${label}[\\s:=≈±]*$`, "iu");
  return (line) => {
    const text = textOf(line);
    // What is the unit of one number is not the name of the next.
    let from = 0;
    return someIn(text, (value, index, end) => {
      behind.lastIndex = end;
      const isUnit = behind.test(text);
      if (holds(value) && (isUnit || before.test(text.slice(from, index)))) return true;
      from = isUnit ? behind.lastIndex : end;
      return false;
    });
  };
}

/** How far over its limits a value is: what is to lie between two as it leaves them, below as above. */
function ratioTo([, lower, upper], { value }) {
  const [least, most] = [upper ? valueOf(lower) : 0, valueOf(upper ?? lower)];
  return Math.max(Math.abs(value / most), least && least / Math.abs(value));
}

/** What tells a limit in a text, in order; a limit of zero is none. */
function limitsIn(text) {
  const limits = [];
  limitWord.lastIndex = 0;
  for (let word = limitWord.exec(text); word; word = limitWord.exec(text)) {
    limitAt.lastIndex = word.index;
    const found = limitAt.exec(text);
    if (!found) continue;
    limitWord.lastIndex = limitAt.lastIndex;
    if (valueOf(found[2] ?? found[1])) limits.push(found);
  }
  return limits;
}

/**
 * Of the values that have a limit the one farthest over it, and its `ratio`: the last number in the limit's unit that
 * stands before it and behind the limit before, or the first one behind it. Numbers before a colon are names ("Part
 * 1:"). Null where none has a limit.
 */
function worstIn(text) {
  const limits = limitsIn(text);
  if (!limits.length) return null;
  const spans = limits.map((found) => [found.index, found.index + found[0].length]);
  const values = foundIn(text).filter(
    ({ index, end }) => text[end] !== ":" && !spans.some(([from, to]) => index >= from && end <= to),
  );
  return limits.reduce((worst, found, at) => {
    const [start, end] = spans[at];
    const [previous, next] = [spans[at - 1]?.[1] ?? 0, spans[at + 1]?.[0] ?? Infinity];
    const unit = unitAt(text, end);
    const own = values.filter(
      (value) => value.index >= previous && value.end <= next && unitAt(text, value.end) === unit,
    );
    const value = own.findLast(({ index }) => index < start) ?? own[0];
    const ratio = value ? ratioTo(found, value) : -1;
    return ratio > (worst?.ratio ?? -1) ? { ...value, ratio } : worst;
  }, null);
}

function readSize(text) {
  for (const { value, end } of foundIn(text)) {
    sizeUnit.lastIndex = end;
    const unit = sizeUnit.exec(text)?.[1];
    if (unit) return Math.abs(value) * units.get(unit);
  }
  return -1;
}

/** The ratio of a line's value to its limit; -1 where it has none. */
export const ratioOf = (line) => (line.ratio ??= worstIn(textOf(line))?.ratio ?? -1);

/** The size of a line's first number with a unit; -1 where it has none. */
export const sizeOf = (line) => (line.size ??= readSize(textOf(line)));

/** Whether a line is worse than another one: farther over its limit or, without limits, larger. */
export function isWorse(line, other) {
  const [own, others] = [ratioOf(line), ratioOf(other)];
  return own > others || (own === others && sizeOf(line) > sizeOf(other));
}

/** A number of a line with all its digits, and a true minus. */
function spelled(line, at) {
  const text = textOf(line);
  const { index, end } = foundIn(text)[at];
  return text.slice(index, end).replace("-", "\u2212");
}

/**
 * The smallest and the largest of the numbers in which alike lines differ: of those that have a limit, of the first
 * with a unit, or of the first.
 */
export function rangeOf(lines) {
  const rows = lines.map(numbersOf);
  // "М-3" has a number, "М3" a name.
  if (rows.some(({ length }) => length !== rows[0].length)) return "";
  const differing = rows[0].map((_, at) => at).filter((at) => rows.some((row) => row[at] !== rows[0][at]));
  if (!differing.length) return "";
  const text = textOf(lines[0]);
  const found = foundIn(text);
  const unitOf = found.map(({ end }) => unitAt(text, end));
  const worst = worstIn(text);
  const limited = found.findIndex(({ index }) => index === worst?.index);
  const measured = differing.find((place) => units.has(unitOf[place]));
  const at = differing.includes(limited) ? limited : (measured ?? differing[0]);
  let [low, high] = [lines[0], lines[0]];
  lines.forEach((line, row) => {
    if (rows[row][at] < low.numbers[at]) low = line;
    if (rows[row][at] > high.numbers[at]) high = line;
  });
  const unit = units.has(unitOf[at]) ? `\u00a0${unitOf[at]}` : "";
  return `${spelled(low, at)} … ${spelled(high, at)}${unit}`;
}
