import { writeAttribute } from "./dom.js";
import { textOf } from "./item.js";
import { rangeOf } from "./numbers.js";
import { say, write } from "./texts.js";

// What was written to the rows' elements.
const writtenKeys = new WeakMap();

/** What a row tells assistive software and the style: its level and place, whether it is open, how many it is. */
function writeRowAttributes(item, position, count) {
  const key = `${position} ${count} ${item.isOpen} ${item.times} ${item.rows.length > 0} ${item.count} ${item.errors} ${item.warnings}`;
  const { element } = item;
  const writtenKey = writtenKeys.get(element);
  if (writtenKey === key) return;
  writtenKeys.set(element, key);
  if (writtenKey === undefined) writeLastingAttributes(item);
  element.setAttribute("aria-posinset", position);
  element.setAttribute("aria-setsize", count);
  writeAttribute(element, "data-last", position === count ? "" : null);
  writeAttribute(element, "aria-expanded", item.isBranch && !item.isLine ? item.isOpen : null);
  if (!item.isLine) writeContent(item);
  if (item.times > 1 || element.hasAttribute("data-times")) writeAlikeAttributes(item);
}

/** What a branch holds: errors, warnings, and how many of its lines are shown. */
export function heldTextOf({ errors, warnings, count, total, missing }) {
  const parts = [errors && `× ${write(errors)}`, warnings && `! ${write(warnings)}`].filter(Boolean);
  if (count < total) parts.push(say("someOf", count, total));
  else if (missing) parts.push(say("below", total, total + missing));
  return parts.join("  ");
}

function writeContent(item) {
  const { caption, errors, warnings } = item;
  writeAttribute(caption, "data-holds", heldTextOf(item) || null);
  writeAttribute(caption, "data-worst", errors ? "error" : warnings ? "warning" : null);
}

/** How many lines a row stands for, and between what they lie. */
export const alikeTextOf = ({ times, alike }) =>
  [`×${write(times)}`, rangeOf(alike)].filter(Boolean).join("  ");

// What a line may bring along that would be a tab stop.
const focusable = "a, area, audio, button, embed, input, object, summary, video";

/** What stays the same. Only the row is a tab stop, and never a link inside. */
function writeLastingAttributes(item) {
  const { element } = item;
  element.setAttribute("role", "treeitem");
  element.setAttribute("aria-level", item.level);
  if (!element.hasAttribute("tabindex")) element.setAttribute("tabindex", "-1");
  for (const own of item.caption.querySelectorAll(focusable)) own.setAttribute("tabindex", "-1");
  if (item.isBranch) writeBranchAttributes(item);
}

/** A row that stands for alike lines is the worst of them; it tells how many they are, and between what they lie. */
function writeAlikeAttributes(item) {
  const { element, caption } = item;
  const times = item.times > 1 ? alikeTextOf(item) : null;
  writeAttribute(element, "data-times", times && `×${item.times}`);
  writeAttribute(caption, "data-alike", times);
  writeAttribute(element, "aria-label", times && `${say(`${item.kind}One`)} ${times}: ${textOf(item)}`);
  item.height = undefined;
}

/** Writes those of the rows of a branch from `first` to the one before `last`. */
export function writeRowsAttributes({ rows }, first = 0, last = rows.length) {
  for (let at = first; at < last; ++at) writeRowAttributes(rows[at], at + 1, rows.length);
}

/** Folds what a branch holds, or unfolds it; what is folded is left to the browser's own search. */
export function writeBranchAttributes(node) {
  if (node.isLine) return;
  for (const list of node.lists) writeAttribute(list, "role", "group");
  for (const block of node.folds) writeAttribute(block, "hidden", node.isOpen ? null : "until-found");
  if (writtenKeys.has(node.built)) writtenKeys.set(node.built, "");
}
