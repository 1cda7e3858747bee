import { build, disarm, page } from "./dom.js";
import { Item } from "./item.js";
import { foldedBranchStart, listStart, plainText, rowEnd, rowStart, styleEnd } from "./markup.js";

const linesStart = `${listStart}>\n${rowStart}`;
const nextRow = `\n${rowStart}`;
const listEnd = "\n</ul>";
// Captions of branches, titles, service lines and statistics.
const named = /(<(div|h1|p)(?: class=(?:"Content"|'service'))?)>([^]{0,4000}?)(<\/\2>)(?=\n|<ul)/g;
const foreignTag = /<(?!\/?(?:div|h1|p|ul|li|a)[\s>])/g;

// A list of so many branches of lines gets its rows as they are looked at.
const manyBranches = 100;
const branchList = `${listStart}>\n${foldedBranchStart}`;

// Keeps what the library wrote. Whichever way a browser saves the page, this goes along, and the script of the saved
// page reads it instead of the rows that were there.
let keeper = page.querySelector("#written");
const isSaved = Boolean(keeper);
keeper ??= build("pre", { id: "written" });
/** The folds of a page that was saved. */
export const savedFolds = keeper?.dataset.folds;
let holder;
const watcher = new MutationObserver(takeHeld);

function takeHeld() {
  holder ??= page.querySelector("plaintext");
  if (!holder) return;
  // What arrives next is added to the text that is there, and to lengthen a long one the browser copies it.
  if (isSaved) holder.textContent = "";
  else keeper.append(...holder.childNodes);
}

/**
 * Called before the browser reads the content: keeps all of it as plain text. To make elements of 100,000 lines
 * takes a browser most of the time in which the page shall be there.
 */
export function holdContent() {
  watcher.observe(page, { childList: true, characterData: true, subtree: true });
  document.write("<plaintext hidden>");
}

/** Takes off what stands in the template around the content. To copy all of a long content takes a browser long. */
function trimKeeper() {
  let [start, end] = ["", ""];
  while (keeper.firstChild && !start.includes(">")) {
    start += keeper.firstChild.data;
    keeper.firstChild.remove();
  }
  // The first character is one that a browser keeps when it reads the element again.
  keeper.prepend(start.slice(start.indexOf(">")));
  while (keeper.lastChild && !end.includes("</div>")) {
    end = keeper.lastChild.data + end;
    keeper.lastChild.remove();
  }
  keeper.append(end.slice(0, end.lastIndexOf("</div>")));
}

/** The content as it was written, in the pieces in which the browser has it: to join them takes it long. */
function readWritten() {
  takeHeld();
  watcher.disconnect();
  if (!keeper.isConnected) {
    trimKeeper();
    page.querySelector("main > script").before(keeper);
  }
  const [first, ...pieces] = Array.from(keeper.childNodes, ({ data }) => data);
  return [first.slice(1), ...pieces];
}

const seamLength = rowEnd.length - 1;

/** What stands between the ends of rows, in arrays. To join the pieces would take a browser long. */
function* partsBetweenRows(pieces) {
  let open = [];
  let tail = "";
  for (let piece of pieces) {
    const cut = (tail + piece.slice(0, seamLength)).indexOf(rowEnd);
    if (cut >= 0) {
      // The end of a row lies across pieces.
      const begun = tail.slice(cut);
      open = [open.join("").slice(0, -begun.length)];
      piece = begun + piece;
    }
    tail = (piece.length < seamLength ? tail + piece : piece).slice(-seamLength);
    const parts = piece.split(rowEnd);
    const last = parts.pop();
    if (parts.length) {
      parts[0] = open.join("") + parts[0];
      open = [];
      yield parts;
    }
    open.push(last);
  }
  yield [open.join("")];
}

/** Takes the lists of lines out of the content, which comes in parts; `mark` stands for the lines of one. */
class LineTaker {
  #rest = [];
  /** The lines of a list that has not ended, and the row of its last one so far. */
  #lines = null;
  #row = "";

  constructor(mark) {
    this.mark = mark;
  }

  take(part) {
    if (!this.#lines) this.#takeOther(this.#rest.length ? rowEnd + part : part);
    else if (part.indexOf(nextRow) === 0) {
      this.#endRow();
      this.#row = part.slice(nextRow.length);
    } else if (part.startsWith(listEnd)) {
      this.#endRow();
      this.#rest.push(listStart, this.mark({ lines: this.#lines }), ">");
      this.#lines = null;
      this.#takeOther(part);
    }
    // What a line holds may look like its end.
    else this.#row += rowEnd + part;
  }

  #takeOther(text) {
    const at = text.indexOf(linesStart);
    if (at < 0) {
      this.#rest.push(text);
      return;
    }
    this.#rest.push(text.slice(0, at));
    this.#lines = [];
    this.#row = text.slice(at + linesStart.length);
  }

  #endRow() {
    const style = this.#row.indexOf(styleEnd);
    const markup = this.#row.slice(style + styleEnd.length);
    this.#lines.push(new Item().setLine(this.#row.slice(0, style), markup));
  }

  /** The content without the lines; a list without end stays as it is. */
  get rest() {
    if (!this.#lines) return this.#rest.join("");
    const rows = this.#lines.map(({ style, markup }) => style + styleEnd + markup + rowEnd + nextRow);
    return [...this.#rest, linesStart, ...rows, this.#row].join("");
  }
}

/**
 * Takes long lists of branches out of a text from which the lines have been taken. `pieces` hold the lists' lines;
 * answers the rest, in which `mark` stands for a list of branches, each with its caption and lines.
 */
function takeBranches(text, key, pieces, mark) {
  const caption = '((?:[^<&\n]|<a href="[^"<>]*">[^<&\n]*</a>)*)';
  const list = `<ul class="Container" ${key}="(\\d+)">\n</ul>\n</li>\n`;
  const branch = new RegExp(`${foldedBranchStart}${caption}</div>\n${list}`, "y");
  const rest = [];
  let from = 0;
  for (let at = text.indexOf(branchList); at >= 0; at = text.indexOf(branchList, at + 1)) {
    const first = at + branchList.length - foldedBranchStart.length;
    const branches = [];
    branch.lastIndex = first;
    let end = first;
    for (let found = branch.exec(text); found; found = branch.exec(text)) {
      branches.push({ caption: found[1], lines: pieces[found[2]].lines });
      end = branch.lastIndex;
    }
    if (branches.length < manyBranches) continue;
    rest.push(text.slice(from, at), `${listStart}${mark({ branches })}>\n`);
    from = at = end;
  }
  rest.push(text.slice(from));
  return rest.join("");
}

/**
 * Puts the content into the page without the lines and long lists of branches. Answers for each list its `lines`, or its
 * `branches` with theirs. What else runs and items have named goes into its element by itself, since it may hold
 * a tag that has no end; between these elements there are no tags but the library's.
 */
export function placeContent() {
  // No line can know it.
  const key = `data-${Math.random().toString(36).slice(2)}`;
  const pieces = [];
  const mark = (piece) => ` ${key}="${pieces.push(piece) - 1}"`;
  const content = build("div", { id: "lines" });
  const taker = new LineTaker(mark);
  for (const parts of partsBetweenRows(readWritten())) for (const part of parts) taker.take(part);
  content.innerHTML = takeBranches(taker.rest, key, pieces, mark)
    .replace(named, (whole, start, _, part, end) =>
      plainText(part) === null ? `${start}${mark(part)}>${end}` : whole,
    )
    .replace(foreignTag, "&lt;");
  const lists = new Map();
  for (const element of content.querySelectorAll(`[${key}]`)) {
    const piece = pieces[element.getAttribute(key)];
    element.removeAttribute(key);
    if (typeof piece === "string") element.innerHTML = piece;
    else lists.set(element, piece);
  }
  disarm(content);
  holder.replaceWith(content);
  return lists;
}

/** Has the folds go along with the page when it is saved. */
export function saveFolds(folds) {
  keeper.dataset.folds = folds;
}

/** Puts the whole content into the page as it was written, for a browser in which the script fails. */
export function placeAsWritten() {
  const content = build("div", { id: "lines" });
  content.innerHTML = readWritten().join("");
  disarm(content);
  const before = holder.isConnected ? holder : page.querySelector("#lines");
  delete before.parentElement.dataset.long;
  before.replaceWith(content);
}
