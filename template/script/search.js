import { compile, isQuick } from "./expressions.js";
import { fold, foldedOf, kinds, nameOf, treeOf } from "./item.js";
import { numbersBesideOf, numbersOf, sizesOf, valueOf } from "./numbers.js";

const number = "[-+\u2212]?\\d+(?:[.,]\\d+)?";
const termPattern = new RegExp(
  [
    "(?<sign>-?)(?:",
    "(?<field>kind|вид|stage|этап|item|объект):(?<value>\\S*)",
    `|(?<label>[^\\s"/<>=]*?)(?:(?<compare>[<>]=?|=)(?!${number}\\.\\.)(?<bound>${number})?`,
    `|=?(?<low>${number})\\.\\.(?<high>${number})?)(?=\\s|$)`,
    '|"(?<phrase>[^"]*)"?',
    "|/(?<pattern>(?:[^/\\\\]|\\\\.)*)/(?<flags>[a-z]*)(?=\\s|$)",
    "|(?<word>\\S+))",
  ].join(""),
  "gu",
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
const escapePattern = (text) => text.replace(/[.*+?^${}()|[\]\\/]/g, "\\$&").replace(/\s+/g, "\\s+");

function holdsWhole(text, words) {
  for (let at = text.indexOf(words); at >= 0; at = text.indexOf(words, at + 1)) {
    const isCut = isLetter(words[0]) && isLetter(text[at - 1]);
    const isLonger = isLetter(words.at(-1)) && isLetter(text[at + words.length]);
    if (!isCut && !isLonger) return true;
  }
  return false;
}

/** Tests for a link to the item of this id. */
function linksTo(id) {
  const link = new RegExp(`[?&;]id=${id}(?!\\d)`);
  return ({ markup }) => link.test(markup);
}

function fieldTest(field, value) {
  if (/^(?:kind|вид)$/.test(field)) {
    const at = kindNames.findIndex((names) => names.some((name) => fold(value).startsWith(name)));
    return at < 0 ? () => false : ({ kind }) => kind === kinds[at];
  }
  if (/^(?:item|объект)$/.test(field)) return /^-?\d+$/.test(value) ? linksTo(value) : () => false;
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
  if (!label) return (line) => numbersOf(line).some(holds);
  if (/^(?:ratio|отношение)$/i.test(label))
    return (line) => sizesOf(line).ratio >= 0 && holds(sizesOf(line).ratio);
  const own = fold(label);
  const numbersBeside = numbersBesideOf(escapePattern(label));
  return (line) =>
    line.folded.includes(own) && numbersOf(line).some(holds) && numbersBeside(line).some(holds);
}

/**
 * One term: `excluded`; `test` of a line; `caption`: what the captions around a line may hold instead; `mark`: what to
 * highlight; `apart`: an expression that must run apart from the page.
 */
function termOf({ groups }) {
  const { sign, field, value, compare, bound, low, high, phrase, pattern, flags, word } = groups;
  const excluded = sign === "-";
  if (field) return value ? { excluded, test: fieldTest(field, value) } : null;
  if (compare || low) return bound || high ? { excluded, test: numberTest(groups) } : null;
  if (pattern !== undefined) {
    const own = [...new Set(`im${flags}`.replace(/[gu]/g, ""))].join("");
    const expression = compile(pattern, own);
    if (!isQuick(pattern)) return { excluded, apart: expression };
    return { excluded, test: (line) => expression.test(line.text), mark: compile(pattern, `g${own}`) };
  }
  if (word === "-") return null;
  if (word?.startsWith("/")) throw new SyntaxError("unfinished expression");
  const text = fold(phrase ?? word);
  if (!text) return null;
  const holds = phrase === undefined ? (own) => own.includes(text) : (own) => holdsWhole(own, text);
  const isNamed = /^\d+$/.test(text) && !excluded ? linksTo(text) : () => false;
  return {
    excluded,
    test: (line) => holds(line.folded) || isNamed(line),
    caption: excluded ? null : holds,
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

  constructor(source) {
    try {
      this.terms = [...source.matchAll(termPattern)].map(termOf).filter(Boolean);
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

  /** Works out which of the lines match, those that do already; gives up when that takes too long. */
  match({ records, branches }) {
    this.#markCaptions(branches);
    const end = performance.now() + wholeTime;
    for (let at = 0; at < records.length && !this.state; ++at) {
      if (records[at].matches) this.#matchRecord(records[at]);
      if (at % checkedLines === 0 && performance.now() > end) this.state = "slow";
    }
  }

  /** Finds which captions hold what is searched, for the lines below them. */
  #markCaptions(branches) {
    const captions = this.terms.map(({ caption }) => caption).filter(Boolean);
    for (const node of branches) {
      node.captionHits = node.parent?.captionHits ?? none;
      if (!captions.length || !node.parent || node.isLine) continue;
      const name = (node.foldedName ??= fold(nameOf(node)));
      const hits = captions.filter((holds) => holds(name));
      if (hits.length) node.captionHits = [...node.captionHits, ...hits];
    }
  }

  /** The places of a record differ in the captions around them only. */
  #matchRecord(record) {
    foldedOf(record);
    const { captionHits } = record.parent;
    record.matches = this.#holds(record, captionHits);
    for (const repeat of record.repeats) {
      const own = repeat.parent.captionHits;
      repeat.matches = own === captionHits ? record.matches : this.#holds(record, own);
    }
  }

  #holds(record, hits) {
    return this.terms.every(
      ({ test, excluded, caption }) => (test(record) || hits.includes(caption)) !== excluded,
    );
  }
}
