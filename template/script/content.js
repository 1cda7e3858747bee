import { build, disarm, page } from "./dom.js";

// How the library writes a list of lines.
export const rowStart =
  '<li class="Node ExpandLeaf IsLast">\n<div class="Expand"></div>\n<div class="Content ';
export const rowEnd = "</div>\n</li>";
const listStart = '<ul class="Container"';
const linesStart = `${listStart}>\n${rowStart}`;
const linesEnd = `${rowEnd}\n</ul>`;
// Captions of branches, titles, service lines and statistics.
const named = /(<(div|h1|p)(?: class=(?:"Content"|'service'))?)>([^]{0,4000}?)(<\/\2>)(?=\n|<ul)/g;
export const plainLink = /<a href="([^"<>]*)">([^<]*)<\/a>/g;
const [linkStart, linkEnd, lineBreak] = ['<a href="', "</a>", "<br>"];
const foreignTag = /<(?!\/?(?:div|h1|p|ul|li|a)[\s>])/g;

// A list of so many branches of lines gets its rows as they are looked at.
const manyBranches = 100;
const branchStart = '<li class="Node ExpandClosed">\n<div class="Expand"></div>\n<div class="Content">';
const branchList = `${listStart}>\n${branchStart}`;

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

/** The same text in pieces that end where a list of lines does, or hold none. */
function* cutBehindLists(pieces) {
  let held = [];
  for (const piece of pieces) {
    const first = piece.indexOf(linesEnd);
    if (first < 0) {
      held.push(piece);
      continue;
    }
    const end = first + linesEnd.length;
    const last = piece.lastIndexOf(linesEnd) + linesEnd.length;
    yield held.join("") + piece.slice(0, end);
    yield piece.slice(end, last);
    held = [piece.slice(last)];
  }
  yield held.join("");
}

/** Takes the lists of lines out of a text; `mark` stands for the lines of one. */
function takeLines(text, mark) {
  const rest = [];
  let from = 0;
  for (let at = text.indexOf(linesStart); at >= 0; at = text.indexOf(linesStart, from)) {
    const first = at + linesStart.length;
    const end = text.indexOf(linesEnd, first);
    if (end < 0) break;
    rest.push(text.slice(from, at), listStart, mark({ lines: text.slice(first, end) }), ">");
    from = end + rowEnd.length;
  }
  rest.push(text.slice(from));
  return rest.join("");
}

/** Where the whole link ends that begins at a place of markup, and where its text begins; null when there is none. */
function linkAt(markup, at) {
  if (!markup.startsWith(linkStart, at)) return null;
  const quote = markup.indexOf('"', at + linkStart.length);
  const end = markup.indexOf("<", at + 1);
  const isWhole = end > quote && markup.indexOf(">", at) === quote + 1 && markup.startsWith(linkEnd, end);
  return isWhole ? { from: quote + 2, to: end } : null;
}

/** The text of markup that is but text, line breaks and whole links, and so can't reach beyond its element; else null. */
export function plainText(markup) {
  let text = "";
  let from = 0;
  for (let at = markup.indexOf("<"); at >= 0; at = markup.indexOf("<", from)) {
    text += markup.slice(from, at);
    const link = linkAt(markup, at);
    if (link) {
      text += markup.slice(link.from, link.to);
      from = link.to + linkEnd.length;
    } else if (markup.startsWith(lineBreak, at)) {
      text += "\n";
      from = at + lineBreak.length;
    } else return null;
  }
  text += markup.slice(from);
  return text.includes("&") ? null : text;
}

/**
 * Takes long lists of branches out of a text from which the lines have been taken. `pieces` hold the lists' lines;
 * answers the rest, in which `mark` stands for a list of branches, each with its caption and lines.
 */
function takeBranches(text, key, pieces, mark) {
  const caption = '((?:[^<&\n]|<a href="[^"<>]*">[^<&\n]*</a>)*)';
  const list = `<ul class="Container" ${key}="(\\d+)">\n</ul>\n</li>\n`;
  const branch = new RegExp(`${branchStart}${caption}</div>\n${list}`, "y");
  const rest = [];
  let from = 0;
  for (let at = text.indexOf(branchList); at >= 0; at = text.indexOf(branchList, at + 1)) {
    const first = at + branchList.length - branchStart.length;
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
 * Puts the content into the page without the lines and long lists of branches. Answers for each list the markup of its
 * `lines`, or its `branches`. What else runs and items have named goes into its element by itself, since it may hold
 * a tag that has no end; between these elements there are no tags but the library's.
 */
export function placeContent() {
  // No line can know it.
  const key = `data-${Math.random().toString(36).slice(2)}`;
  const pieces = [];
  const mark = (piece) => ` ${key}="${pieces.push(piece) - 1}"`;
  const content = build("div", { id: "lines" });
  const withoutLines = Array.from(cutBehindLists(readWritten()), (text) => takeLines(text, mark));
  content.innerHTML = takeBranches(withoutLines.join(""), key, pieces, mark)
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
