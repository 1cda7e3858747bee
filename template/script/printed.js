// What goes on paper: the rows as they are shown, with so little around their texts that a browser soon has many there.

import { build } from "./dom.js";
import { alikeTextOf, heldTextOf } from "./rowAttributes.js";

// Generated content, or an element for each sign, would take a browser half as long again.
const signs = { error: "<b>×</b>&#9;", warning: "!&#9;", message: "i&#9;", other: "•&#9;" };
const foreignMark = "<s></s>";

const behind = (text) => (text ? ` <b>${text}</b>` : "");

/** A row and what is open below it. `foreign` takes the rows whose texts are more than text and links. */
function markupOf(item, foreign) {
  if (item.plain === null) foreign.push(item);
  const text = item.plain === null ? foreignMark : item.markup;
  if (!item.isLine)
    return `<li><p>${text}${behind(heldTextOf(item))}</p>${item.isOpen ? rowsMarkupOf(item, foreign) : ""}`;
  return `<li class="${item.kind}">${signs[item.kind]}${text}${behind(item.times > 1 && alikeTextOf(item))}`;
}

const rowsMarkupOf = ({ rows }, foreign) =>
  rows.length ? `<ul>${rows.map((row) => markupOf(row, foreign)).join("")}</ul>` : "";

/** Puts the rows of each tree, as they are printed, before the tree; answers what it has put there. */
export function placePrinted({ trees }) {
  return trees.map((tree) => {
    const printed = build("div", { class: "printed" });
    const foreign = [];
    printed.innerHTML = rowsMarkupOf(tree, foreign);
    const marks = printed.querySelectorAll("s");
    // By itself what a line brings along can't reach beyond its row.
    foreign.forEach(({ caption }, at) => marks[at].replaceWith(...caption.cloneNode(true).childNodes));
    tree.lists[0].before(printed);
    return printed;
  });
}
