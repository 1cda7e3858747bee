import { listen, makeRange } from "./dom.js";
import { textOf } from "./item.js";
import { firstRow, lastRow, nextRow } from "./rows.js";

/** The row at an end of a selection; outside the trees the first row behind it, or the last one before it. */
function rowAt(view, model, container, offset, isEnd) {
  const child = container.nodeType === Node.ELEMENT_NODE && container.childNodes[isEnd ? offset - 1 : offset];
  const row = view.rowOf(child) ?? view.rowOf(container.parentElement) ?? view.rowOf(container);
  if (row) return row;
  const first = firstRow(model);
  if (!first) return null;
  const position = first.element.compareDocumentPosition(child || container);
  const isAround = Boolean(child) && (position & Node.DOCUMENT_POSITION_CONTAINS) !== 0;
  const isBehind = (position & Node.DOCUMENT_POSITION_FOLLOWING) !== 0;
  if (isEnd) return isBehind || isAround ? lastRow(model) : null;
  return isBehind ? null : first;
}

/** What is selected of a row: all of it, or up to where the selection ends in it. */
function textWithin(item, { startContainer, startOffset, endContainer, endOffset }) {
  const { caption } = item;
  const part = makeRange();
  part.selectNodeContents(caption);
  if (caption.contains(startContainer)) part.setStart(startContainer, startOffset);
  if (caption.contains(endContainer)) part.setEnd(endContainer, endOffset);
  return part.toString();
}

/** The text of the selected rows when some of them are not laid out; else null: the browser copies all that is. */
export function selectedText(view, model, selection) {
  if (selection.isCollapsed || !selection.rangeCount) return null;
  const range = selection.getRangeAt(0);
  const from = rowAt(view, model, range.startContainer, range.startOffset, false);
  const to = rowAt(view, model, range.endContainer, range.endOffset, true);
  if (!from || !to || from === to) return null;
  const texts = [];
  let isWhole = true;
  for (let row = from; row; row = row === to ? null : nextRow(model, row)) {
    // What is left to the browser's own search has no text for it to copy.
    isWhole &&= row.isNear || !view.isPartlyLaidOut;
    texts.push(row === from || row === to ? textWithin(row, range) : textOf(row));
  }
  return isWhole ? null : texts.join("\n");
}

/**
 * A selection begins where it began, also when its row is put away while it grows: the browser would have it begin at
 * one that is laid out.
 */
export function keepStart(view) {
  const rowAround = (node) => view.rowOf(node?.parentElement);
  let start = {};
  listen(window, "pointerdown", ({ shiftKey }) => shiftKey || (start = {}), true);
  const changed = () => {
    const selection = window.getSelection();
    const { anchorNode: node, anchorOffset: offset, focusNode, focusOffset } = selection;
    const row = rowAround(start.node);
    if (row && node !== start.node && rowAround(node) && !view.isLaidOut(row))
      selection.setBaseAndExtent(start.node, start.offset, focusNode, focusOffset);
    else start = { node, offset };
  };
  // It reaches the document only.
  listen(window, "selectionchange", changed, true);
}
