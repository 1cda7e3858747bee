import { compile, quickLength } from "./expressions.js";
import { fold, foldedOf, kinds, nameOf, textOf, treeOf } from "./item.js";
import { besideTestOf, hasNumber, ratioOf, valueOf } from "./numbers.js";

const number = "[-+\u2212]?\\d+(?:[.,]\\d+)?";
const termPattern = new RegExp(
  [
    // Before a range a minus is the sign of its number.
    `(?<sign>(?:(?!-${number}\\.\\.(?:${number})?(?:\\s|$))-)?)(?:`,
    "(?<field>kind|вид|stage|этап|item|объект):(?<value>\\S*)",
    `|(?<label>(?:[^\\s"/<>=][^\\s"<>=]*?)??)(?:(?<compare>[<>]=?|=)(?!${number}\\.\\.)(?:\\s*(?<bound>${number}))?`,
    `|=?(?<low>${number})\\.\\.(?<high>${number})?)(?=\\s|$)`,
    '|["«„“](?<phrase>[^"»“”]*)["»“”]?',
    "|/(?<pattern>(?:[^/\\\\]|\\\\.)*)/(?<flags>[a-z]*)(?=\\s|$)",
    "|(?<word>\\S+))",
  ].join(""),
  "giu",
);
const kindNames = [
  ["error", "ошибк"],
  ["warning", "предупрежд"],
  ["message", "сообщен"],
  ["other", "проч"],
];
const wholeTime = 1500;
const checkedLines = 64;
const none = [];

const isLetter = (character) => /[\p{L}\p{N}_]/u.test(character ?? "");
/** An expression for a text: "е" is as good as "ё" and a decimal point as a comma. */
const escapePattern = (text) =>
  text
    .replace(/[*+?^${}()|[\]\\/]/g, "\\$&")
    .replace(/[.,]/g, "[.,]")
    .replace(/[её]/gi, "[её]")
    .replace(/\s+/g, "\\s+");

function holdsWhole(text, words) {
  for (let at = text.indexOf(words); at >= 0; at = text.indexOf(words, at + 1)) {
    const isCut = isLetter(words[0]) && isLetter(text[at - 1]);
    const isLonger = isLetter(words.at(-1)) && isLetter(text[at + words.length]);
    if (!isCut && !isLonger) return true;
  }
  return false;
}

// What other letters have when theirs is made small.
const otherForms = { i: "I\u0130", k: "K\u212a", е: "ЕёЁ" };

/** An expression for a folded text in a text that is not; null where there may be more to it than two cases. */
function unfoldedPattern(text) {
  const parts = Array.from(text, (character) => {
    if (/[a-zа-я]/.test(character))
      return `[${character}${otherForms[character] ?? character.toUpperCase()}]`;
    const hasCase = character.toUpperCase() !== character || character.toLowerCase() !== character;
    return hasCase || /\s/.test(character) ? null : escapePattern(character);
  });
  return parts.includes(null) ? null : new RegExp(parts.join(""));
}

/** Tests for a folded text: `line` the texts of lines, `name` those of captions. To fold 100,000 takes longest. */
function testsOfText(text) {
  const pattern = unfoldedPattern(text);
  if (pattern)
    return {
      line: (line) => pattern.test(textOf(line)),
      // What is in the name is in the text.
      name: (node) => pattern.test(textOf(node)) && pattern.test(nameOf(node)),
    };
  return testsOfFolded((own) => own.includes(text));
}

const testsOfFolded = (holds) => ({
  line: (line) => holds(foldedOf(line)),
  name: (node) => holds((node.foldedName ??= fold(nameOf(node)))),
});

/** Tests for a link to the item of this id. */
function linksTo(id) {
  const link = new RegExp(`[?&;]id=${id}(?!\\d)`);
  return ({ markup }) => link.test(markup);
}

function fieldTest(field, value) {
  if (/^(?:kind|вид)$/i.test(field)) {
    const at = kindNames.findIndex((names) => names.some((name) => fold(value).startsWith(name)));
    return at < 0 ? () => false : ({ kind }) => kind === kinds[at];
  }
  if (/^(?:item|объект)$/i.test(field)) return /^-?\d+$/.test(value) ? linksTo(value) : () => false;
  return (line) => treeOf(line).stage === Number(value);
}

const comparisons = {
  ">": (value, bound) => value > bound,
  "<": (value, bound) => value < bound,
  ">=": (value, bound) => value >= bound,
  "<=": (value, bound) => value <= bound,
  "=": (value, bound) => value === bound,
};

/** Tests for a number: any one, one with a unit or name, or the ratio of a value to its limit. */
function numberTest({ label, compare, bound, low, high }) {
  const [from, to] = [low, high].map((text) => text && valueOf(text));
  const limit = bound && valueOf(bound);
  const holds = compare
    ? (value) => comparisons[compare](value, limit)
    : (value) => value >= from && value <= to;
  if (!label) return (line) => hasNumber(line, holds);
  if (/^(?:ratio|отношение)$/i.test(label)) return (line) => ratioOf(line) >= 0 && holds(ratioOf(line));
  const labelled = testsOfText(fold(label));
  const isBeside = besideTestOf(escapePattern(label), holds);
  return (line) => labelled.line(line) && isBeside(line);
}

/**
 * One term: `excluded`; `test` of a line; `caption`: a test of the captions around a line instead; `mark`: what to
 * highlight; `apart`: an expression that must run apart from the page. `longest` tells the length of the longest text.
 */
function termOf({ groups }, longest) {
  const { sign, field, value, compare, bound, low, high, phrase, pattern, flags, word } = groups;
  const excluded = sign === "-";
  if (field) return value ? { excluded, test: fieldTest(field, value) } : null;
  if (compare || low) return bound || high ? { excluded, test: numberTest(groups) } : null;
  if (pattern !== undefined) {
    const own = [...new Set(`im${flags}`.replace(/[gu]/g, ""))].join("");
    const expression = compile(pattern, own);
    const most = quickLength(pattern);
    if (most < Infinity && longest() > most) return { excluded, apart: expression };
    return { excluded, test: (line) => expression.test(textOf(line)), mark: compile(pattern, `g${own}`) };
  }
  if (word === "-") return null;
  if (word?.startsWith("/")) throw new SyntaxError("unfinished expression");
  const text = fold(phrase ?? word);
  if (!text) return null;
  const holds = phrase === undefined ? testsOfText(text) : testsOfFolded((own) => holdsWhole(own, text));
  const isNamed = /^\d+$/.test(text) && !excluded ? linksTo(text) : null;
  return {
    excluded,
    test: isNamed ? (line) => holds.line(line) || isNamed(line) : holds.line,
    caption: excluded ? null : holds.name,
    mark: compile(escapePattern(text), "gi"),
  };
}

/**
 * What is typed into the search field: words, "phrases", numbers, fields and /expressions/ that a line must hold, each
 * with "-" before it for what a line must not hold. `state` is "wrong" when an expression is, "slow" when it takes too
 * long, and "waiting" as long as one runs apart; then nothing is filtered.
 */
export class Query {
  state = "";
  terms = [];

  /** `longest` tells how long the longest text is that will be searched. */
  constructor(source, longest) {
    try {
      this.terms = [...source.matchAll(termPattern)].map((found) => termOf(found, longest)).filter(Boolean);
    } catch {
      this.state = "wrong";
    }
    if (this.apart.length) this.state = "waiting";
  }

  get isEmpty() {
    return this.state !== "" || this.terms.length === 0;
  }

  get apart() {
    return this.terms.filter((term) => term.apart);
  }

  get marks() {
    return this.isEmpty
      ? []
      : this.terms.filter(({ excluded, mark }) => mark && !excluded).map(({ mark }) => mark);
  }

  /** Gives the expressions that ran apart their answers, for each record by its place; null: none in time. */
  answer(answers, records) {
    this.state = answers.includes(null) ? "slow" : "";
    this.apart.forEach((term, at) => {
      const found = new Set(records.filter((_, place) => answers[at]?.[place]));
      term.test = (record) => found.has(record);
    });
  }

  /** Works out which of the lines match whose kinds are not hidden; gives up when that takes too long. */
  match({ records, branches }, hidden) {
    this.#markCaptions(branches);
    const end = performance.now() + wholeTime;
    for (let at = 0; at < records.length && !this.state; ++at) {
      const record = records[at];
      this.#matchRecord(record, hidden.length > 0 && hidden.includes(record.kind));
      if (at % checkedLines === 0 && performance.now() > end) this.state = "slow";
    }
  }

  /** Finds which captions hold what is searched, for the lines below them. */
  #markCaptions(branches) {
    const captions = this.terms.map(({ caption }) => caption).filter(Boolean);
    for (const node of branches) {
      node.captionHits = node.parent?.captionHits ?? none;
      if (!node.parent || node.isLine) continue;
      for (const holds of captions) if (holds(node)) node.captionHits = [...node.captionHits, holds];
    }
  }

  /** The places of a record differ in the captions around them only. */
  #matchRecord(record, isHidden) {
    const { captionHits } = record.parent;
    record.matches = !isHidden && this.#holds(record, captionHits);
    if (record.repeats.length === 0) return;
    for (const repeat of record.repeats) {
      const own = repeat.parent.captionHits;
      repeat.matches = !isHidden && (own === captionHits ? record.matches : this.#holds(record, own));
    }
  }

  // Called for each line before the browser has compiled it: a loop by places is quick then, too.
  #holds(record, hits) {
    const { terms } = this;
    for (let at = 0; at < terms.length; ++at) {
      const { test, excluded, caption } = terms[at];
      if (((hits.length > 0 && hits.includes(caption)) || test(record)) === excluded) return false;
    }
    return true;
  }
}
