import { fold } from "./item.js";

const termPattern = /(-?)(?:"([^"]*)"?|\/((?:[^/\\]|\\.)*)\/(?=\s|$)|(\S+))/g;

function compile(source, flags) {
  try {
    return new RegExp(source, flags + "u");
  } catch {
    return new RegExp(source, flags);
  }
}

const escapePattern = (text) => text.replace(/[.*+?^${}()|[\]\\/]/g, "\\$&").replace(/\s+/g, "\\s+");

/** One term: whether it is excluded, how a line is tested for it, and what to highlight. */
function termOf([, sign, phrase, pattern, word]) {
  const excluded = sign === "-";
  if (pattern !== undefined) {
    const expression = compile(pattern, "im");
    return { excluded, test: (line) => expression.test(line.text), mark: compile(pattern, "gim") };
  }
  if (word === "-") return null;
  if (word?.startsWith("/")) throw new SyntaxError("unfinished expression");
  const text = fold(phrase ?? word);
  if (!text) return null;
  return { excluded, test: (line) => line.folded.includes(text), mark: compile(escapePattern(text), "gi") };
}

/**
 * Reads what is typed into the search field: words, "phrases" and /expressions/ that a line must hold, each
 * with "-" before it for what a line must not hold. `wrong` when an expression is; then nothing is filtered.
 */
export function parseQuery(source) {
  let terms;
  try {
    terms = [...source.matchAll(termPattern)].map(termOf).filter(Boolean);
  } catch {
    return { wrong: true, isEmpty: true, test: () => true, marks: [] };
  }
  return {
    wrong: false,
    isEmpty: terms.length === 0,
    test: (line) => terms.every((term) => term.test(line) !== term.excluded),
    marks: terms.filter((term) => !term.excluded).map((term) => term.mark),
  };
}
