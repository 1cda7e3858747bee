// Regular expressions that a reader types.

const letter = "\\p{L}\\p{N}_";
const isLetter = `[${letter}]`;
const edge = `(?:(?<=${isLetter})(?!${isLetter})|(?<!${isLetter})(?=${isLetter}))`;
const noEdge = `(?:(?<=${isLetter})(?=${isLetter})|(?<!${isLetter})(?!${isLetter}))`;
const letterForms = { b: edge, B: noEdge, w: isLetter, W: `[^${letter}]` };
const parts = /\\.|\[(?:[^\]\\]|\\.)*\]|[^]/g;

/** `\b` and `\w` know the letters of every language. */
function withLetters(source) {
  return source.replace(parts, (part) => {
    if (part[0] === "[") return part.replace(/\\w/g, letter);
    return (part[0] === "\\" && letterForms[part[1]]) || part;
  });
}

export function compile(source, flags) {
  try {
    return new RegExp(withLetters(source), flags + "u");
  } catch {
    return new RegExp(source, flags);
  }
}

// So many steps on one text take a tenth of a second.
const quickSteps = 5e7;

/**
 * How long a text may be for an expression to end on it in good time. On one in which something repeats inside what
 * repeats it may never end; one in which nothing does takes as many steps as the text has characters.
 */
export function quickLength(source) {
  const groups = [{ varies: false }];
  let last = null;
  let repeats = 0;
  for (const [part] of source.matchAll(/\\.|\[(?:[^\]\\]|\\.)*\]|\{\d*,?\d*\}|[^]/g)) {
    if (/^\\[1-9k]/.test(part)) return 0;
    if (part === "(") groups.push({ varies: false });
    else if (part === ")" && groups.length > 1) {
      last = groups.pop();
      groups.at(-1).varies ||= last.varies;
      continue;
    } else if (part === "|") groups.at(-1).varies = true;
    else if (/^(?:[*+?]|\{\d*,?\d*\})$/.test(part)) {
      if (last?.varies && part !== "?") return 0;
      if (part !== "?" && ++repeats > 2) return 0;
      groups.at(-1).varies = true;
    }
    last = null;
  }
  return repeats ? quickSteps ** (1 / (repeats + 1)) : Infinity;
}

const timeLimit = 2000;

/** Runs in a worker: for each text whether the expression matches it. */
function work() {
  self.onmessage = ({ data: { texts, source, flags } }) => {
    const expression = new RegExp(source, flags);
    self.postMessage(Uint8Array.from(texts, (text) => expression.test(text)));
  };
}

/** Matches an expression against texts, apart from the page; without an answer in time the answer is null. */
export function matchApart({ source, flags }, texts) {
  const address = URL.createObjectURL(new Blob([`(${work})()`], { type: "text/javascript" }));
  const worker = new Worker(address);
  return new Promise((done) => {
    const finish = (matches) => {
      clearTimeout(timer);
      worker.terminate();
      URL.revokeObjectURL(address);
      done(matches);
    };
    const timer = setTimeout(() => finish(null), timeLimit);
    worker.onmessage = ({ data }) => finish(data);
    worker.onerror = () => finish(null);
    worker.postMessage({ texts, source, flags });
  });
}
