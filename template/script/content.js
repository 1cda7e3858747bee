import { build, disarm, page } from "./dom.js";

// How the library writes a list of lines.
export const rowStart =
  '<li class="Node ExpandLeaf IsLast">\n<div class="Expand"></div>\n<div class="Content ';
export const rowEnd = "</div>\n</li>";
const lineLists = new RegExp(`(<ul class="Container")>\n${rowStart}([^]*?)${rowEnd}(?=\n</ul>)`, "g");
// Captions of branches, titles, service lines and statistics.
const named = /(<(div|h1|p)(?: class=(?:"Content"|'service'))?)>([^]{0,4000}?)(<\/\2>)(?=\n|<ul)/g;
export const plainLink = /<a href="([^"<>]*)">([^<]*)<\/a>/g;
const foreignTag = /<(?!\/?(?:div|h1|p|ul|li|a)[\s>])/g;

// A browser that saves the page writes its elements as they are then, with what the script has added to them.
const isSaved = page.hasAttribute("data-texts");
const withoutTraces = (text) =>
  text
    .replace(/<button type="button" class="more">.*?<\/button>/g, "")
    .replace(/<(?:ul|li|div|h1|p|a)\b[^>]*>/g, (tag) => tag.replace(/ (?!class|href)[-\w]+="[^"]*"/g, ""))
    .replace(/(<\/?)plaintext/g, "$1pre");

let holder;
let written = "";
const held = [];
const watcher = new MutationObserver(takeHeld);

function takeHeld() {
  holder ??= page.querySelector("plaintext");
  if (!holder) return;
  held.push(holder.textContent);
  // What arrives next is added to the text, and to lengthen a long one the browser copies it.
  holder.textContent = "";
}

/**
 * Called before the browser reads the content: keeps all of it as plain text. To make elements of 100,000 lines
 * takes a browser most of the time in which the page shall be there.
 */
export function holdContent() {
  watcher.observe(page, { childList: true, characterData: true, subtree: true });
  document.write("<plaintext hidden>");
}

/** The text of markup that is but text and whole links, and so can't reach beyond its element; else null. */
export function plainText(markup) {
  const text = markup.replace(plainLink, "$2");
  return /[<&]/.test(text) ? null : text;
}

/**
 * Puts the content into the page without the lines. Answers the markup of the lines of each list. What else runs
 * and items have named goes into its element by itself, since it may hold a tag that has no end; between these
 * elements there are no tags but the library's. In a page that a browser has saved all tags have their ends, and
 * all lines are put into the page at once.
 */
export function placeContent() {
  takeHeld();
  watcher.disconnect();
  const text = held.splice(0).join("");
  written = text.slice(text.indexOf(">") + 1, text.lastIndexOf("</div>"));
  // No line can know it.
  const key = `data-${Math.random().toString(36).slice(2)}`;
  const pieces = [];
  const mark = (piece) => ` ${key}="${pieces.push(piece) - 1}"`;
  const content = build("div", { id: "lines" });
  content.innerHTML = isSaved
    ? withoutTraces(written)
    : written
        .replace(lineLists, (_, start, lines) => `${start}${mark(lines.split(`${rowEnd}\n${rowStart}`))}>`)
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

/** Puts the whole content into the page as it was written, for a browser in which the script fails. */
export function placeAsWritten() {
  const content = page.querySelector("#lines");
  content.innerHTML = written;
  disarm(content);
  delete content.parentElement.dataset.long;
}
