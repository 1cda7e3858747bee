import { build, disarm, page } from "./dom.js";

// How the library writes a list of lines.
export const rowStart =
  '<li class="Node ExpandLeaf IsLast">\n<div class="Expand"></div>\n<div class="Content ';
export const rowEnd = "</div>\n</li>";
const lineLists = new RegExp(`(<ul class="Container")>\n${rowStart}([^]*?)${rowEnd}(\n</ul>)`, "g");
// Captions of branches, titles, service lines and statistics.
const named = /(<(div|h1|p)(?: class=(?:"Content"|'service'))?)>([^]*?)(<\/\2>)(?=\n|<ul)/g;

// A browser that saves the page writes its elements as they are then, with what the script has added to them.
const isSaved = page.hasAttribute("data-texts");
const withoutTraces = (text) =>
  text
    .replace(/<button type="button" class="more">.*?<\/button>/g, "")
    .replace(/<(?:ul|li|div|h1|p|a)\b[^>]*>/g, (tag) => tag.replace(/ (?!class|href)[-\w]+="[^"]*"/g, ""));

let holder;
const held = [];
const watcher = new MutationObserver(takeHeld);

function takeHeld() {
  holder ??= page.querySelector("plaintext");
  const text = holder?.firstChild;
  if (!text?.data) return;
  held.push(text.data);
  // What arrives next is added to the text, and to lengthen a long one the browser copies it.
  text.data = "";
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
  const text = markup.replace(/<a href="[^"<>]*">([^<]*)<\/a>/g, "$1");
  return /[<&]/.test(text) ? null : text;
}

/**
 * Puts the content into the page without the lines. Answers the markup of the lines of each list. What else runs
 * and items have named goes into its element by itself, since it may hold a tag that has no end. In a page that
 * a browser has saved all tags have their ends, and all lines are put into the page at once.
 */
export function placeContent() {
  takeHeld();
  watcher.disconnect();
  const text = held.splice(0).join("");
  const written = text.slice(text.indexOf(">") + 1, text.lastIndexOf("</div>"));
  const lines = [];
  const parts = [];
  const content = build("div", { id: "lines" });
  content.innerHTML = isSaved
    ? withoutTraces(written)
    : written
        .replace(lineLists, (_, start, own, end) => {
          lines.push(own.split(`${rowEnd}\n${rowStart}`));
          return `${start} data-lines="${lines.length - 1}">${end}`;
        })
        .replace(named, (whole, start, _, part, end) => {
          if (plainText(part) !== null) return whole;
          parts.push(part);
          return `${start} data-part="${parts.length - 1}">${end}`;
        });
  const find = (name) => [...content.querySelectorAll(`[data-${name}]`)];
  const lists = new Map(find("lines").map((list) => [list, lines[list.dataset.lines]]));
  for (const element of find("part")) element.innerHTML = parts[element.dataset.part];
  disarm(content);
  holder.replaceWith(content);
  return lists;
}
